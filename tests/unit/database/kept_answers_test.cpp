#include "database/kept_answers.h"

#include <gtest/gtest.h>

#include <functional>

#include "database/connection.h"
#include "database_texts.h"
#include "temp_database.h"

using namespace holdwise;
using namespace holdwise::test;
using firebird::KeptAnswers;

namespace {

ResultSet Numbers(int rows, int columns = 1) {
  ResultSet numbers;
  for (int column = 0; column < columns; ++column) numbers.AddColumn("C" + std::to_string(column), ColumnType::Integer);
  for (int row = 0; row < rows; ++row) {
    numbers.AppendRow();
    for (int column = 0; column < columns; ++column) numbers.SetInteger(row, column, row);
  }
  return numbers;
}

void ReadTwice(KeptAnswers& answers, const QString& sql, const ResultSet& rows) {
  for (int time = 0; time < 2; ++time) answers.Add(sql, rows);
}

bool IsKept(const QString& sql, const ResultSet& rows = Numbers(1)) {
  KeptAnswers answers;
  ReadTwice(answers, sql, rows);
  return answers.Find(sql).has_value();
}

TEST(KeptAnswers, TheSecondReadingIsKept) {
  KeptAnswers answers;
  EXPECT_FALSE(answers.Find(kIds).has_value());
  answers.Add(kIds, Numbers(2));
  EXPECT_FALSE(answers.Find(kIds).has_value());
  answers.Add(kIds, Numbers(2));
  EXPECT_EQ(answers.Find(kIds), Numbers(2));
  EXPECT_FALSE(answers.Find(kIds + QLatin1Char(' ')).has_value());
}

TEST(KeptAnswers, AChangeEndsThem) {
  KeptAnswers answers;
  ReadTwice(answers, kIds, Numbers(2));
  answers.Clear();
  EXPECT_FALSE(answers.Find(kIds).has_value());
  answers.Add(kIds, Numbers(3));
  EXPECT_FALSE(answers.Find(kIds).has_value()) << "the first reading since the change";
  answers.Add(kIds, Numbers(3));
  EXPECT_EQ(answers.Find(kIds), Numbers(3));
}

TEST(KeptAnswers, OnlyWhatDependsOnTheRowsAlone) {
  EXPECT_TRUE(IsKept(QStringLiteral("select  SECUCODE,Mainid,PZSL from alg_comdetail order by MainId")));
  EXPECT_TRUE(IsKept(QStringLiteral("SELECT d.* from alg_comdetail d where d.PZBL >= 0.5")));
  EXPECT_TRUE(IsKept(QStringLiteral("select NEXTDATE from alg_some")));
  for (const char* sql :
       {"select gen_id(ALG_ROWID_MAIN, 1) from alg_commain", "select next value for ALG_ROWID_MAIN from alg_commain",
        "select CURRENT_TIMESTAMP from alg_commain", "select Current_Date from alg_commain",
        "select LocalTime from alg_commain", "select ID from alg_commain where EDITDATE < 'now'",
        "select MON$STATE from MON$ATTACHMENTS", "select rand() from alg_commain", "select ID from alg_commain --x",
        "select ID from \"alg_commain\"", "select * from SOME_PROCEDURE", "select * from SOME_VIEW order by ID",
        "select ID from alg_commain, SOME_PROCEDURE", "select * from alg_commain natural join SOME_VIEW",
        "select N from SOME_PROCEDURE where N is distinct from alg_commain",
        "select ID from alg_commain where ID = 1\nunion select N from SOME_PROCEDURE", "insert into alg_commain",
        "update alg_commain set ID = 2", " select ID"}) {
    EXPECT_FALSE(IsKept(QString::fromLatin1(sql))) << sql;
  }
}

TEST(KeptAnswers, LargeAnswersAreNotHeld) {
  EXPECT_TRUE(IsKept(kIds, Numbers(50'000, 2)));
  EXPECT_FALSE(IsKept(kIds, Numbers(50'001, 2)));
}

TEST(KeptAnswers, TheSixteenAskedForLastStay) {
  KeptAnswers answers;
  const auto statement = [](int number) { return QStringLiteral("select %1 from alg_commain").arg(number); };
  for (int number = 0; number < 16; ++number) ReadTwice(answers, statement(number), Numbers(number));
  EXPECT_EQ(answers.Find(statement(0)), Numbers(0));
  ReadTwice(answers, statement(16), Numbers(16));
  EXPECT_EQ(answers.Find(statement(0)), Numbers(0));
  EXPECT_FALSE(answers.Find(statement(1)).has_value());
  EXPECT_EQ(answers.Find(statement(16)), Numbers(16));
}

/// The service over a database with two portfolios whose ids have been read often enough to be kept.
class KeptByTheService : public testing::Test {
 protected:
  KeptByTheService() {
    for (int id = 1; id <= 2; ++id) service().Execute(InsertPortfolio(id, QStringLiteral("组合%1").arg(id)));
    for (int time = 0; time < 3; ++time) EXPECT_EQ(Ids(), "1,2");
  }
  FirebirdUserData& service() { return database_.Service(); }
  std::string Ids() { return IdsOf(service()); }

  TempDatabase database_;
};

TEST_F(KeptByTheService, NothingIsReadAgainWhileNothingChanges) {
  // A change that goes past the service shows whether the engine is asked.
  firebird::Status status;
  auto attachment = firebird::Attach(database_.File(), {.create = false, .embedded = true, .user = {}, .password = {}});
  {
    firebird::Transaction transaction(status, *attachment, firebird::Transaction::Mode::ChangeNoWait);
    firebird::PreparedStatement(status, *attachment, transaction, "delete from alg_commain").Execute(transaction);
    transaction.Commit();
  }
  firebird::Detach(status, attachment);
  EXPECT_EQ(Ids(), "1,2");
  EXPECT_EQ(service().Count(kCountPortfolios), 0);
  service().Execute(InsertPortfolio(3, QStringLiteral("丙")));
  EXPECT_EQ(Ids(), "3");
}

TEST_F(KeptByTheService, EveryWayOfChangingIsSeen) {
  const auto session = service().OpenSession();
  const std::vector<std::pair<std::function<void()>, std::string>> steps{
      {[&] { service().Execute(QStringLiteral("delete from alg_commain where ID = 1")); }, "2"},
      {[&] { session->Execute(InsertPortfolio(3, QStringLiteral("丙"))); }, "2,3"},
      {[&] { (void)service().Query(QStringLiteral("update alg_commain set ID = 5 where ID = 3 returning ID")); },
       "2,5"},
      {[&] {
         TransactionScope scope(service());
         service().Execute(InsertPortfolio(7, QStringLiteral("戊")));
         scope.Commit();
       },
       "2,5,7"},
      {[&] {
         session->StartTransaction();
         (void)session->Query(QStringLiteral("delete from alg_commain where ID = 5 returning ID"));
         session->Commit();
       },
       "2,7"},
      {[&] { service().Execute(QStringLiteral("execute block as begin delete from alg_commain where ID = 7; end")); },
       "2"}};
  for (const auto& [step, ids] : steps) {
    step();
    for (int time = 0; time < 3; ++time) EXPECT_EQ(Ids(), ids);
  }
}

TEST_F(KeptByTheService, ATransactionSeesItsOwnChangesAndTheOthersDoNot) {
  const auto session = service().OpenSession();
  session->StartTransaction();
  session->Execute(QStringLiteral("delete from alg_commain where ID = 1"));
  for (int time = 0; time < 3; ++time) {
    EXPECT_EQ(IdsOf(*session), "2");
    for (int again = 0; again < 3; ++again) EXPECT_EQ(Ids(), "1,2");
  }
  session->RollBack();
  EXPECT_EQ(IdsOf(*session), "1,2");
  EXPECT_EQ(Ids(), "1,2");
}

TEST_F(KeptByTheService, WhatWasReadBeforeACommitEndsWithIt) {
  const auto session = service().OpenSession();
  session->StartTransaction();
  session->Execute(QStringLiteral("delete from alg_commain where ID = 1"));
  for (int time = 0; time < 3; ++time) EXPECT_EQ(Ids(), "1,2");
  session->Commit();
  EXPECT_EQ(Ids(), "2");
}

TEST_F(KeptByTheService, AFirstRowIsNotAllRows) {
  const QString other = QStringLiteral("select ID from alg_commain where ID <> 7 order by ID");
  for (int time = 0; time < 3; ++time) {
    EXPECT_EQ(service().Count(other), 1);
    EXPECT_EQ(service().Scalar(other).ToText(), QStringLiteral("1"));
  }
  EXPECT_EQ(service().Query(other).RowCount(), 2);
}

TEST_F(KeptByTheService, ATriggerOnTheEndOfATransactionIsSeen) {
  const auto session = service().OpenSession();
  service().Execute(
      QStringLiteral("create trigger KEEP_TRACE on transaction rollback as begin "
                     "in autonomous transaction do insert into alg_commain (ID) values (3); end"));
  session->StartTransaction();
  for (int time = 0; time < 3; ++time) EXPECT_EQ(Ids(), "1,2");
  session->RollBack();
  EXPECT_EQ(Ids(), "1,2,3");
}

TEST_F(KeptByTheService, AProcedureAnswersEachTimeAnew) {
  service().Execute(
      QStringLiteral("create procedure NEXT_NUMBER returns (N bigint) as begin "
                     "N = gen_id(ALG_ROWID_MAIN, 1); suspend; end"));
  for (int number = 1; number <= 4; ++number) {
    EXPECT_EQ(service().Query(QStringLiteral("select * from NEXT_NUMBER")).IntegerAt(0, 0), number);
  }
}

TEST_F(KeptByTheService, AChangedTableIsReadAnew) {
  const QString all = QStringLiteral("select * from alg_commain");
  for (int time = 0; time < 3; ++time) EXPECT_EQ(service().Query(all).FindColumn("EXTRA"), -1);
  service().Execute(QStringLiteral("alter table alg_commain add EXTRA integer"));
  EXPECT_GE(service().Query(all).FindColumn("EXTRA"), 0);
}

}  // namespace
