// SPDX-License-Identifier: MIT
#include "common/store/database.h"
#include "common/store/statement_advice.h"
#include "common_fixture.h"
#include "database/statements/statement_advice.h"
#include "database/statements/statement_shape.h"
#include "temp_database.h"

namespace holdwise {
namespace {

/// Rows of every kind that an inner select may treat in its own way, on a real database.
class EqualStatements : public CommonTest {
 protected:
  EqualStatements() {
    host_.SetUserData(temporary_.Service());
    FDBServer = &temporary_.Service();
    temporary_.Service().Advise(sql::Advice());
    // Not in the order of the keys; 5 has no holdings, 4 no mark, 9 of the holdings no portfolio.
    for (const char* portfolio : {"7,1", "3,1", "5,1", "2,0", "4,null", "1,1"}) {
      Run(QStringLiteral("insert into alg_commain (ID,SAVEFLAG) values (%1)").arg(QLatin1String(portfolio)));
    }
    // The places of the removed rows are filled again, so the rows do not lie in the order of their keys.
    for (int id = 100; id < 140; ++id) AddHolding(id, "7", 1600000 + id % 3);
    Run(QStringLiteral("delete from alg_comdetail where ID between 105 and 130"));
    Run(QStringLiteral("update alg_comdetail set PZSL = PZSL"));
    int id = 0;
    for (const char* portfolio : {"3", "7", "1", "9", "2", "null", "4", "3", "1", "7", "3"}) {
      ++id;
      AddHolding(id, portfolio, 1600000 + id % 5);
    }
    Run(QStringLiteral("insert into alg_comdetail (ID,MAINID) values (99,1)"));
    // Two rows of one day, the latter with a smaller close; days outside; a security nobody holds; no code.
    for (const char* close :
         {"1600000,1,20240524,9.5", "1600000,1,20240524,9.25", "1600001,1,20240520,8", "1600001,1,20240526,8.5",
          "1600001,1,20240519,7", "1600002,1,20240527,6", "1600002,2,20240524,5", "1600009,1,20240524,4",
          "null,1,20240524,3", "1600003,1,null,2", "1600004,null,20240524,1", "1600004,1,20240524,null"}) {
      Run(QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate,closeprice) values (%1)")
              .arg(QLatin1String(close)));
    }
  }
  void AddHolding(int id, const char* portfolio, int code) {
    Run(QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values (%1,%2,%3,%4,0.1,9.5)")
            .arg(id)
            .arg(QLatin1String(portfolio))
            .arg(code)
            .arg(100 + id));
  }
  void Run(const QString& statement) { ASSERT_EQ(Database().Execute(statement), 1) << statement.toStdString(); }

  /// The rows of the statement, after a check that they are those of the statement as it is written.
  static ResultSet RowsOf(const QString& statement) {
    const std::string text = statement.toStdString();
    EXPECT_TRUE(HasEqualForm(statement)) << "has no equal";
    // The comment is part of the shape, so this one is prepared as it stands.
    const ResultSet asWritten = Database().Query(QStringLiteral("/**/") + statement);
    ResultSet rows = Database().Query(statement);
    EXPECT_TRUE(rows == asWritten) << text;
    return rows;
  }

  static bool HasEqualForm(const QString& statement) {
    const std::string text = statement.toStdString();
    firebird::StatementShape shape;
    shape.Read(text);
    return Advised().FormToPrepare(shape.Text()) != shape.Text();
  }
  static bool MayBeKept(const QString& statement) {
    const std::string text = statement.toStdString();
    firebird::StatementShape shape;
    shape.Read(text);
    return Advised().MayBeKept(shape.Text());
  }

  test::TempDatabase temporary_;

 private:
  static firebird::AdvisedStatements Advised() {
    firebird::AdvisedStatements advised;
    advised.Take(sql::Advice());
    return advised;
  }
};

TEST_F(EqualStatements, SavedHoldings) {
  const ResultSet rows = RowsOf(sql::kSavedHoldings);
  // Of 3, 7 and 1: 3 + 2 + 3 of the last eleven and the bare one, and fourteen that stayed of the first forty.
  EXPECT_EQ(rows.RowCount(), 22);
  EXPECT_EQ(rows.IntegerAt(0, rows.Column("MAINID")), 1);
  EXPECT_EQ(rows.IntegerAt(21, rows.Column("MAINID")), 7);
}

TEST_F(EqualStatements, SavedHoldingsForCloses) {
  EXPECT_EQ(RowsOf(sql::kSavedHoldingsForCloses).RowCount(), 22);
}

TEST_F(EqualStatements, HeldCloses) {
  const ResultSet rows = RowsOf(sql::HeldCloses(sql::PeriodType::Week, {QDate(2024, 5, 20), QDate(2024, 5, 26)}));
  EXPECT_EQ(rows.RowCount(), 5);
  EXPECT_EQ(RowsOf(sql::HeldCloses(sql::PeriodType::Month, {QDate(2024, 5, 1), QDate(2024, 5, 31)})).RowCount(), 1);
}

TEST_F(EqualStatements, OthersStayAsTheyAre) {
  for (const char* other : {"", "select * from alg_commain", "select * from alg_comdetail where MAINID = 1"}) {
    EXPECT_FALSE(HasEqualForm(QString::fromLatin1(other))) << other;
  }
}

TEST_F(EqualStatements, KeptIsWhatIsReadAgainAndAgain) {
  for (const QString& statement :
       {sql::kSavedPortfolios, sql::kHeldCodes, sql::kHoldingsForNowValues, sql::kHoldingsForPreviousCloses,
        sql::HoldingsOf(QStringLiteral("12")), sql::CodesOf(QStringLiteral("345"))}) {
    EXPECT_TRUE(MayBeKept(statement)) << statement.toStdString();
  }
  for (const QString& statement : {sql::kNextPortfolioId, sql::PortfolioByName(QStringLiteral("甲")),
                                   sql::kCountUnfinished, sql::DeleteRecord(QStringLiteral("甲"))}) {
    EXPECT_FALSE(MayBeKept(statement)) << statement.toStdString();
  }
}

}  // namespace
}  // namespace holdwise
