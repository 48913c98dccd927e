// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QStringList>

#include "holdwise/packet/error.h"
#include "parts/database_side.h"

namespace holdwise {
namespace {

const QString kCount = QStringLiteral("select Count(*) from alg_commain");

/// A file that every statement finds damaged, or locked.
template <typename Base>
class Failing : public Base {
 public:
  explicit Failing(ErrorCategory category) : category_(category) {}
  ResultSet Query(const QString&) override { throw Error(category_, "bad page"); }
  std::int64_t Count(const QString&) override { throw Error(category_, "bad page"); }
  Value Scalar(const QString&) override { throw Error(category_, "bad page"); }
  int Execute(const QString&) override { throw Error(category_, "bad page"); }
  void StartTransaction() override { throw Error(category_, "bad page"); }
  void Commit() override { throw Error(category_, "bad page"); }
  void RollBack() override { throw Error(category_, "bad page"); }
  bool InTransaction() const override { return false; }

 protected:
  const ErrorCategory category_;
};

class FailingUserData final : public Failing<UserDataServices> {
 public:
  using Failing::Failing;
  std::unique_ptr<UserDataSession> OpenSession() override {
    return std::make_unique<Failing<UserDataSession>>(category_);
  }
};

TEST(DatabaseSide, TellsOfDamageThatAnyStatementMeets) {
  for (const auto category : {ErrorCategory::Corrupt, ErrorCategory::Busy}) {
    QStringList told;
    DatabaseSide watched([category] { return std::make_unique<FailingUserData>(category); },
                         [&told](const QString& text) { told.append(text); });
    ASSERT_TRUE(watched.Open().isEmpty());
    const auto session = watched.OpenSession();
    const auto calls = [](DatabaseStatements& line) {
      return std::vector<std::function<void()>>{[&line] { (void)line.Query(kCount); },
                                                [&line] { (void)line.Count(kCount); },
                                                [&line] { (void)line.Scalar(kCount); },
                                                [&line] { line.Execute(kCount); },
                                                [&line] { line.StartTransaction(); },
                                                [&line] { line.Commit(); },
                                                [&line] { line.RollBack(); }};
    };
    for (DatabaseStatements* line :
         {static_cast<DatabaseStatements*>(&watched), static_cast<DatabaseStatements*>(session.get())}) {
      for (const auto& call : calls(*line)) EXPECT_THROW(call(), Error);
    }
    EXPECT_EQ(told.size(), category == ErrorCategory::Corrupt ? 14 : 0);
    EXPECT_TRUE(told.isEmpty() || told[0] == QStringLiteral("bad page"));
  }
}

/// Damage that is met only where a transaction ends.
class DamagedAtTheEnd final : public Failing<UserDataServices> {
 public:
  using Failing::Failing;
  void StartTransaction() override { isOpen_ = true; }
  void Commit() override { End(); }
  void RollBack() override { End(); }
  bool InTransaction() const override { return isOpen_; }
  std::unique_ptr<UserDataSession> OpenSession() override { return nullptr; }

 private:
  void End() {
    isOpen_ = false;
    throw Error(category_, "bad page");
  }
  bool isOpen_ = false;
};

TEST(DatabaseSide, TellsOfDamageThatTheEndOfAScopeMeetsAndNothingLeavesIt) {
  QStringList told;
  DatabaseSide watched([] { return std::make_unique<DamagedAtTheEnd>(ErrorCategory::Corrupt); },
                       [&told](const QString& text) { told.append(text); });
  ASSERT_TRUE(watched.Open().isEmpty());
  { const TransactionScope scope(watched); }
  EXPECT_EQ(told, QStringList(QStringLiteral("bad page"))) << "by the roll-back";
  EXPECT_FALSE(watched.InTransaction());
  TransactionScope scope(watched);
  EXPECT_THROW(scope.Commit(), Error);
  EXPECT_EQ(told.size(), 2);
  EXPECT_FALSE(watched.InTransaction());
}

}  // namespace
}  // namespace holdwise
