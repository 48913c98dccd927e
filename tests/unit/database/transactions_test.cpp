// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "database_texts.h"
#include "temp_database.h"

using namespace holdwise;
using namespace holdwise::test;

namespace {

template <typename Call>
ErrorCategory CategoryOf(Call&& call) {
  return ErrorOf(std::forward<Call>(call)).Category();
}

class Transactions : public testing::Test {
 protected:
  FirebirdUserData& Service() { return database_.Service(); }
  void Close() { database_.Close(); }
  [[nodiscard]] QString File() const { return database_.File(); }
  void Reopen() { database_.Open(); }

 private:
  TempDatabase database_;
};

TEST_F(Transactions, StatementsAloneAreStoredAtOnce) {
  Service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  Reopen();
  EXPECT_EQ(Service().Count(kCountPortfolios), 1);
}

TEST_F(Transactions, RolledBackIsGoneCommittedStays) {
  Service().StartTransaction();
  EXPECT_TRUE(Service().InTransaction());
  Service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  EXPECT_EQ(Service().Count(kCountPortfolios), 1) << "seen inside";
  Service().RollBack();
  EXPECT_FALSE(Service().InTransaction());
  EXPECT_EQ(Service().Count(kCountPortfolios), 0);
  Service().StartTransaction();
  Service().Execute(InsertPortfolio(2, QStringLiteral("乙")));
  Service().Commit();
  Reopen();
  EXPECT_EQ(Service().Count(QStringLiteral("select ID from alg_commain")), 2);
}

TEST_F(Transactions, MisuseIsRefused) {
  EXPECT_EQ(CategoryOf([&] { Service().Commit(); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([&] { Service().RollBack(); }), ErrorCategory::Refused);
  Service().StartTransaction();
  Service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  EXPECT_EQ(CategoryOf([&] { Service().StartTransaction(); }), ErrorCategory::Refused);
  EXPECT_TRUE(Service().InTransaction()) << "the first one goes on";
  Service().Commit();
  EXPECT_EQ(Service().Count(kCountPortfolios), 1);
  EXPECT_EQ(CategoryOf([&] { Service().Commit(); }), ErrorCategory::Refused);
}

TEST_F(Transactions, AFileThatHasGoneTakesNoChanges) {
  Service().StartTransaction();
  Service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  const QString away = File() + QStringLiteral(".away");
  ASSERT_TRUE(QFile::rename(File(), away));
  EXPECT_EQ(CategoryOf([&] { Service().Commit(); }), ErrorCategory::Io);
  EXPECT_EQ(CategoryOf([&] { Service().Execute(InsertPortfolio(2, QStringLiteral("乙"))); }), ErrorCategory::Io);
  EXPECT_EQ(Service().Count(kCountPortfolios), 0) << "what is there can still be read";
  // Another file in its place is not the one.
  ASSERT_TRUE(QFile::copy(away, File()));
  EXPECT_EQ(CategoryOf([&] { Service().StartTransaction(); }), ErrorCategory::Io);
  ASSERT_TRUE(QFile::remove(File()) && QFile::rename(away, File()));
  Service().Execute(InsertPortfolio(3, QStringLiteral("丙")));
  EXPECT_EQ(Service().Count(kCountPortfolios), 1);
}

TEST_F(Transactions, FailedStatementLeavesTheOthersOfItsTransaction) {
  Service().StartTransaction();
  Service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  EXPECT_EQ(CategoryOf([&] { Service().Execute(InsertPortfolio(1, QStringLiteral("乙"))); }), ErrorCategory::Database);
  EXPECT_EQ(CategoryOf([&] { Service().Execute(InsertHolding("1", "1600000", "1.5", "1")); }), ErrorCategory::Refused);
  Service().Commit();
  EXPECT_EQ(Service().Count(kCountPortfolios), 1);
}

TEST_F(Transactions, ScopeRollsBackUnlessCommitted) {
  {
    TransactionScope scope(Service());
    Service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  }
  EXPECT_EQ(Service().Count(kCountPortfolios), 0);
  EXPECT_FALSE(Service().InTransaction());
}

TEST_F(Transactions, OpenOneIsRolledBackWhenTheServiceGoes) {
  Service().StartTransaction();
  Service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  Reopen();
  EXPECT_EQ(Service().Count(kCountPortfolios), 0);
}

TEST_F(Transactions, SessionHasItsOwn) {
  const auto session = Service().OpenSession();
  session->StartTransaction();
  session->Execute(InsertPortfolio(1, QStringLiteral("甲")));
  EXPECT_FALSE(Service().InTransaction());
  EXPECT_EQ(session->Count(kCountPortfolios), 1);
  EXPECT_EQ(Service().Count(kCountPortfolios), 0) << "not committed yet";
  session->Commit();
  EXPECT_EQ(Service().Count(kCountPortfolios), 1);
}

TEST_F(Transactions, SessionRollsBackAtItsEnd) {
  {
    const auto session = Service().OpenSession();
    session->StartTransaction();
    session->Execute(InsertPortfolio(1, QStringLiteral("甲")));
  }
  EXPECT_EQ(Service().Count(kCountPortfolios), 0);
  Service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  EXPECT_EQ(Service().Count(kCountPortfolios), 1);
}

TEST_F(Transactions, SessionMayOutliveTheService) {
  auto session = Service().OpenSession();
  session->StartTransaction();
  Close();
  session->Execute(InsertPortfolio(1, QStringLiteral("甲")));
  session->Commit();
  session.reset();
  Reopen();
  EXPECT_EQ(Service().Count(kCountPortfolios), 1);
}

TEST_F(Transactions, ConflictIsBusyAndLeavesBothUsable) {
  Service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  const auto session = Service().OpenSession();
  session->StartTransaction();
  session->Execute(QStringLiteral("update alg_commain set SAVEFLAG = 1 where ID = 1"));
  const QString update = QStringLiteral("update alg_commain set SAVEFLAG = 2 where ID = 1");
  EXPECT_EQ(CategoryOf([&] { Service().Execute(update); }), ErrorCategory::Busy);
  session->Commit();
  EXPECT_EQ(Service().Execute(update), 1);
  EXPECT_EQ(Service().Count(QStringLiteral("select SAVEFLAG from alg_commain where ID = 1")), 2);
}

}  // namespace
