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
  FirebirdUserData& service() { return database_.Service(); }
  void Close() { database_.Close(); }
  void Reopen() { database_.Open(); }

 private:
  TempDatabase database_;
};

TEST_F(Transactions, StatementsAloneAreStoredAtOnce) {
  service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  Reopen();
  EXPECT_EQ(service().Count(kCountPortfolios), 1);
}

TEST_F(Transactions, RolledBackIsGoneCommittedStays) {
  service().StartTransaction();
  EXPECT_TRUE(service().InTransaction());
  service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  EXPECT_EQ(service().Count(kCountPortfolios), 1) << "seen inside";
  service().RollBack();
  EXPECT_FALSE(service().InTransaction());
  EXPECT_EQ(service().Count(kCountPortfolios), 0);
  service().StartTransaction();
  service().Execute(InsertPortfolio(2, QStringLiteral("乙")));
  service().Commit();
  Reopen();
  EXPECT_EQ(service().Count(QStringLiteral("select ID from alg_commain")), 2);
}

TEST_F(Transactions, MisuseIsRefused) {
  EXPECT_EQ(CategoryOf([&] { service().Commit(); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([&] { service().RollBack(); }), ErrorCategory::Refused);
  service().StartTransaction();
  service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  EXPECT_EQ(CategoryOf([&] { service().StartTransaction(); }), ErrorCategory::Refused);
  EXPECT_TRUE(service().InTransaction()) << "the first one goes on";
  service().Commit();
  EXPECT_EQ(service().Count(kCountPortfolios), 1);
  EXPECT_EQ(CategoryOf([&] { service().Commit(); }), ErrorCategory::Refused);
}

TEST_F(Transactions, FailedStatementLeavesTheOthersOfItsTransaction) {
  service().StartTransaction();
  service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  EXPECT_EQ(CategoryOf([&] { service().Execute(InsertPortfolio(1, QStringLiteral("乙"))); }), ErrorCategory::Database);
  EXPECT_EQ(CategoryOf([&] { service().Execute(InsertHolding("1", "1600000", "1.5", "1")); }), ErrorCategory::Refused);
  service().Commit();
  EXPECT_EQ(service().Count(kCountPortfolios), 1);
}

TEST_F(Transactions, ScopeRollsBackUnlessCommitted) {
  {
    TransactionScope scope(service());
    service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  }
  EXPECT_EQ(service().Count(kCountPortfolios), 0);
  EXPECT_FALSE(service().InTransaction());
}

TEST_F(Transactions, OpenOneIsRolledBackWhenTheServiceGoes) {
  service().StartTransaction();
  service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  Reopen();
  EXPECT_EQ(service().Count(kCountPortfolios), 0);
}

TEST_F(Transactions, SessionHasItsOwn) {
  const auto session = service().OpenSession();
  session->StartTransaction();
  session->Execute(InsertPortfolio(1, QStringLiteral("甲")));
  EXPECT_FALSE(service().InTransaction());
  EXPECT_EQ(session->Count(kCountPortfolios), 1);
  EXPECT_EQ(service().Count(kCountPortfolios), 0) << "not committed yet";
  session->Commit();
  EXPECT_EQ(service().Count(kCountPortfolios), 1);
}

TEST_F(Transactions, SessionRollsBackAtItsEnd) {
  {
    const auto session = service().OpenSession();
    session->StartTransaction();
    session->Execute(InsertPortfolio(1, QStringLiteral("甲")));
  }
  EXPECT_EQ(service().Count(kCountPortfolios), 0);
  service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  EXPECT_EQ(service().Count(kCountPortfolios), 1);
}

TEST_F(Transactions, SessionMayOutliveTheService) {
  auto session = service().OpenSession();
  session->StartTransaction();
  Close();
  session->Execute(InsertPortfolio(1, QStringLiteral("甲")));
  session->Commit();
  session.reset();
  Reopen();
  EXPECT_EQ(service().Count(kCountPortfolios), 1);
}

TEST_F(Transactions, ConflictIsBusyAndLeavesBothUsable) {
  service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  const auto session = service().OpenSession();
  session->StartTransaction();
  session->Execute(QStringLiteral("update alg_commain set SAVEFLAG = 1 where ID = 1"));
  const QString update = QStringLiteral("update alg_commain set SAVEFLAG = 2 where ID = 1");
  EXPECT_EQ(CategoryOf([&] { service().Execute(update); }), ErrorCategory::Busy);
  session->Commit();
  EXPECT_EQ(service().Execute(update), 1);
  EXPECT_EQ(service().Count(QStringLiteral("select SAVEFLAG from alg_commain where ID = 1")), 2);
}

}  // namespace
