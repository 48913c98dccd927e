// SPDX-License-Identifier: MIT
#include "parts/database_side.h"

#include <gtest/gtest.h>

#include "fake_user_data.h"
#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

const QString kCount = QStringLiteral("select Count(*) from alg_commain");

StatementAdvice AdviceOn(const QString& statement) {
  return {.statement = statement, .mayBeKept = true};
}

/// Refuses all advice, and counts how often.
class RefusingUserData final : public UserDataServices {
 public:
  explicit RefusingUserData(UserDataServices& inner) : inner_(inner) {}
  ResultSet Query(const QString& sql) override { return inner_.Query(sql); }
  std::int64_t Count(const QString& sql) override { return inner_.Count(sql); }
  Value Scalar(const QString& sql) override { return inner_.Scalar(sql); }
  int Execute(const QString& sql) override { return inner_.Execute(sql); }
  void StartTransaction() override { inner_.StartTransaction(); }
  void Commit() override { inner_.Commit(); }
  void RollBack() override { inner_.RollBack(); }
  bool InTransaction() const override { return inner_.InTransaction(); }
  std::unique_ptr<UserDataSession> OpenSession() override { return inner_.OpenSession(); }
  void Advise(const std::vector<StatementAdvice>& advice) override {
    throw Error(ErrorCategory::Refused, "no: " + advice.front().statement.toStdString());
  }

 private:
  UserDataServices& inner_;
};

TEST(DatabaseSide, EveryStatementIsRefusedUntilItIsOpen) {
  DatabaseSide late([] { return std::make_unique<FakeUserData>(); });
  ResultSet rows;
  const std::vector<std::function<void()>> calls{
      [&] { (void)late.Query(kCount); }, [&] { (void)late.Count(kCount); }, [&] { (void)late.Scalar(kCount); },
      [&] { late.Execute(kCount); },     [&] { late.StartTransaction(); },  [&] { late.Commit(); },
      [&] { late.RollBack(); },          [&] { (void)late.OpenSession(); }, [&] { late.DoQuery(kCount, rows); }};
  for (const auto& call : calls) {
    try {
      call();
      ADD_FAILURE() << "not refused";
    } catch (const Error& error) {
      EXPECT_EQ(error.Category(), ErrorCategory::Refused);
    }
  }
  EXPECT_FALSE(late.InTransaction());
}

TEST(DatabaseSide, MayBeOpenedAgainWithTheSameAdvice) {
  std::vector<FakeUserData*> made;
  DatabaseSide side([&made] {
    auto one = std::make_unique<FakeUserData>();
    one->SetNumber(kCount, static_cast<int>(made.size()));
    made.push_back(one.get());
    return one;
  });
  side.Advise({AdviceOn(kCount)});
  (void)side.Open();
  EXPECT_EQ(side.Count(kCount), 0);
  side.Close();
  EXPECT_THROW((void)side.Count(kCount), Error);
  (void)side.Open();
  EXPECT_EQ(side.Count(kCount), 1);
  ASSERT_EQ(made[1]->advice.size(), 1U);
  EXPECT_EQ(made[1]->advice[0].front().statement, kCount);
}

TEST(DatabaseSide, PassesEverythingOnOnceOpen) {
  auto made = std::make_unique<FakeUserData>();
  FakeUserData& database = *made;
  database.SetNumber(kCount, 7);
  DatabaseSide late([&made] { return std::move(made); });
  EXPECT_TRUE(late.Open().isEmpty());
  EXPECT_EQ(late.Query(kCount).IntegerAt(0, 0), 7);
  EXPECT_EQ(late.Count(kCount), 7);
  EXPECT_EQ(late.Scalar(kCount).ToText(), QStringLiteral("7"));
  ResultSet rows;
  late.DoQuery(kCount, rows);
  EXPECT_EQ(rows.IntegerAt(0, 0), 7);
  late.StartTransaction();
  EXPECT_TRUE(late.InTransaction());
  EXPECT_EQ(late.Execute(QStringLiteral("delete from alg_commain")), 1);
  late.Commit();
  late.StartTransaction();
  late.RollBack();
  EXPECT_EQ(late.OpenSession()->Count(kCount), 7);
  const QString change = QStringLiteral("delete from alg_commain");
  const auto start = QStringLiteral("start");
  EXPECT_EQ(database.Log(),
            (std::vector<QString>{kCount, kCount, kCount, kCount, start, change, QStringLiteral("commit"), start,
                                  QStringLiteral("rollback"), kCount}));
}

TEST(DatabaseSide, AdviceWaitsForTheDatabase) {
  auto made = std::make_unique<FakeUserData>();
  FakeUserData& database = *made;
  DatabaseSide late([&made] { return std::move(made); });
  late.Advise({AdviceOn(QStringLiteral("first"))});
  late.Advise({AdviceOn(QStringLiteral("second"))});
  EXPECT_TRUE(late.Open().isEmpty());
  ASSERT_EQ(database.advice.size(), 2U);
  EXPECT_EQ(database.advice[0].front().statement, QStringLiteral("first"));
  EXPECT_EQ(database.advice[1].front().statement, QStringLiteral("second"));
  late.Advise({AdviceOn(QStringLiteral("third"))});
  ASSERT_EQ(database.advice.size(), 3U);
  EXPECT_TRUE(database.advice[2].front().mayBeKept);
}

TEST(DatabaseSide, WhatMayHaveBeenStoredIsToldAndNothingElse) {
  const auto change = QStringLiteral("delete from alg_commain");
  FakeUserData database;
  database.SetNumber(kCount, 7);
  DatabaseSide side([&database] { return std::make_unique<RefusingUserData>(database); });
  EXPECT_TRUE(side.Open().isEmpty());
  QStringList told;
  side.SetChangeListener({[&] { told << QStringLiteral("before"); },
                          [&](bool isSession) { told << (isSession ? QStringLiteral("session") : QString("line")); }});
  (void)side.Query(kCount);
  side.StartTransaction();
  side.Execute(change);
  side.RollBack();
  EXPECT_EQ(told, QStringList());
  side.StartTransaction();
  side.Execute(change);
  EXPECT_EQ(told, QStringList());
  side.Commit();
  EXPECT_EQ(told, QStringList({"before", "line"}));
  side.Execute(change);
  EXPECT_EQ(told, QStringList({"before", "line", "before", "line"}));
  told.clear();
  database.FailNext(change, Error(ErrorCategory::Database, "no"));
  EXPECT_THROW(side.Execute(change), Error);
  EXPECT_EQ(told, QStringList("before"));
  told.clear();
  const std::unique_ptr<UserDataSession> session = side.OpenSession();
  (void)session->Count(kCount);
  session->StartTransaction();
  session->Execute(change);
  EXPECT_EQ(told, QStringList());
  session->Commit();
  session->Execute(change);
  EXPECT_EQ(told, QStringList({"session", "session"}));
}

TEST(DatabaseSide, RefusedAdviceIsToldAndTheDatabaseIsOpen) {
  FakeUserData database;
  database.SetNumber(kCount, 7);
  DatabaseSide late([&database] { return std::make_unique<RefusingUserData>(database); });
  late.Advise({AdviceOn(QStringLiteral("first"))});
  late.Advise({AdviceOn(QStringLiteral("second"))});
  EXPECT_EQ(late.Open(), (QStringList{QStringLiteral("no: first"), QStringLiteral("no: second")}));
  EXPECT_EQ(late.Count(kCount), 7);
}

}  // namespace
}  // namespace holdwise
