// SPDX-License-Identifier: MIT
#include "database/engine/kept_answers.h"

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
    Service().Advise({{.statement = kIds, .mayBeKept = true}});
    for (int id = 1; id <= 2; ++id) Service().Execute(InsertPortfolio(id, QStringLiteral("组合%1").arg(id)));
    for (int time = 0; time < 3; ++time) EXPECT_EQ(Ids(), "1,2");
  }
  FirebirdUserData& Service() { return database_.Service(); }
  std::string Ids() { return IdsOf(Service()); }
  /// A change that the service does not hear of shows whether the engine is asked.
  void DeletePastTheService() {
    firebird::Status status;
    auto attachment =
        firebird::Attach(database_.File(), {.create = false, .embedded = true, .user = {}, .password = {}});
    {
      firebird::Transaction transaction(status, *attachment, firebird::Transaction::Mode::ChangeNoWait);
      firebird::PreparedStatement(status, *attachment, transaction, "delete from alg_commain").Execute(transaction);
      transaction.Commit();
    }
    firebird::Detach(status, attachment);
  }

  TempDatabase database_;
};

TEST_F(KeptByTheService, NothingIsReadAgainWhileNothingChanges) {
  DeletePastTheService();
  EXPECT_EQ(Ids(), "1,2");
  EXPECT_EQ(Service().Count(kCountPortfolios), 0);
  Service().Execute(InsertPortfolio(3, QStringLiteral("丙")));
  EXPECT_EQ(Ids(), "3");
}

TEST_F(KeptByTheService, OnlyWhatIsAdvised) {
  const auto of = [](int id) { return QStringLiteral("select ID from alg_commain where ID = %1").arg(id); };
  Service().Advise({{.statement = of(1), .mayBeKept = true}});
  const QStringList others{QStringLiteral("select ID  from alg_commain order by ID"),
                           QStringLiteral("select id from alg_commain order by ID"),
                           QStringLiteral("select ID from alg_commain order by ID desc"),
                           QStringLiteral("select COMNAME from alg_commain"),
                           QStringLiteral("select ID from alg_commain where ID > 0"),
                           QStringLiteral("select ID from alg_commain where ID = 1 + 0")};
  for (int time = 0; time < 3; ++time) {
    EXPECT_EQ(Ids(), "1,2");
    EXPECT_EQ(Service().Query(of(2)).RowCount(), 1) << "of the shape that is advised, with another value";
    for (const QString& other : others) EXPECT_GT(Service().Query(other).RowCount(), 0) << other.toStdString();
  }
  DeletePastTheService();
  EXPECT_EQ(Ids(), "1,2");
  EXPECT_EQ(Service().Query(of(2)).RowCount(), 1);
  EXPECT_EQ(Service().Query(of(3)).RowCount(), 0) << "kept are the rows of a value, not of a shape";
  EXPECT_EQ(Service().Query(of(1)).RowCount(), 0) << "never read before";
  for (const QString& other : others) EXPECT_EQ(Service().Query(other).RowCount(), 0) << other.toStdString();
}

TEST_F(KeptByTheService, AdviceCanBeTakenBack) {
  Service().Advise({{.statement = kIds}});
  for (int time = 0; time < 3; ++time) EXPECT_EQ(Ids(), "1,2");
  DeletePastTheService();
  EXPECT_EQ(Ids(), "");
}

TEST_F(KeptByTheService, EveryWayOfChangingIsSeen) {
  const auto session = Service().OpenSession();
  const std::vector<std::pair<std::function<void()>, std::string>> steps{
      {[&] { Service().Execute(QStringLiteral("delete from alg_commain where ID = 1")); }, "2"},
      {[&] { session->Execute(InsertPortfolio(3, QStringLiteral("丙"))); }, "2,3"},
      {[&] { (void)Service().Query(QStringLiteral("update alg_commain set ID = 5 where ID = 3 returning ID")); },
       "2,5"},
      {[&] {
         TransactionScope scope(Service());
         Service().Execute(InsertPortfolio(7, QStringLiteral("戊")));
         scope.Commit();
       },
       "2,5,7"},
      {[&] {
         session->StartTransaction();
         (void)session->Query(QStringLiteral("delete from alg_commain where ID = 5 returning ID"));
         session->Commit();
       },
       "2,7"},
      {[&] { Service().Execute(QStringLiteral("execute block as begin delete from alg_commain where ID = 7; end")); },
       "2"}};
  for (const auto& [step, ids] : steps) {
    step();
    for (int time = 0; time < 3; ++time) EXPECT_EQ(Ids(), ids);
  }
}

TEST_F(KeptByTheService, ATransactionSeesItsOwnChangesAndTheOthersDoNot) {
  const auto session = Service().OpenSession();
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
  const auto session = Service().OpenSession();
  session->StartTransaction();
  session->Execute(QStringLiteral("delete from alg_commain where ID = 1"));
  for (int time = 0; time < 3; ++time) EXPECT_EQ(Ids(), "1,2");
  session->Commit();
  EXPECT_EQ(Ids(), "2");
}

TEST_F(KeptByTheService, AFirstRowIsNotAllRows) {
  const QString other = QStringLiteral("select ID from alg_commain where ID <> 7 order by ID");
  Service().Advise({{.statement = other, .mayBeKept = true}});
  for (int time = 0; time < 3; ++time) {
    EXPECT_EQ(Service().Count(other), 1);
    EXPECT_EQ(Service().Scalar(other).ToText(), QStringLiteral("1"));
  }
  EXPECT_EQ(Service().Query(other).RowCount(), 2);
}

TEST_F(KeptByTheService, ATriggerOnTheEndOfATransactionIsSeen) {
  const auto session = Service().OpenSession();
  Service().Execute(
      QStringLiteral("create trigger KEEP_TRACE on transaction rollback as begin "
                     "in autonomous transaction do insert into alg_commain (ID) values (3); end"));
  session->StartTransaction();
  for (int time = 0; time < 3; ++time) EXPECT_EQ(Ids(), "1,2");
  session->RollBack();
  EXPECT_EQ(Ids(), "1,2,3");
}

TEST_F(KeptByTheService, AProcedureAnswersEachTimeAnew) {
  Service().Execute(
      QStringLiteral("create procedure NEXT_NUMBER returns (N bigint) as begin "
                     "N = gen_id(ALG_ROWID_MAIN, 1); suspend; end"));
  for (int number = 1; number <= 4; ++number) {
    EXPECT_EQ(Service().Query(QStringLiteral("select * from NEXT_NUMBER")).IntegerAt(0, 0), number);
  }
}

TEST_F(KeptByTheService, AChangedTableIsReadAnew) {
  const QString all = QStringLiteral("select * from alg_commain");
  Service().Advise({{.statement = all, .mayBeKept = true}});
  for (int time = 0; time < 3; ++time) EXPECT_EQ(Service().Query(all).FindColumn("EXTRA"), -1);
  Service().Execute(QStringLiteral("alter table alg_commain add EXTRA integer"));
  EXPECT_GE(Service().Query(all).FindColumn("EXTRA"), 0);
}

}  // namespace
