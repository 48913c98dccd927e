// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QDateTime>
#include <limits>
#include <thread>

#include "database_texts.h"
#include "temp_database.h"

using namespace holdwise;
using namespace holdwise::test;

namespace {

class Statements : public testing::Test {
 protected:
  FirebirdUserData& Service() { return database_.Service(); }
  /// The category and text of the error a statement ends with.
  std::pair<ErrorCategory, QString> ErrorOf(const QString& sql) {
    try {
      Service().Execute(sql);
    } catch (const Error& error) {
      return {error.Category(), QString::fromUtf8(error.what())};
    }
    ADD_FAILURE() << "no error: " << sql.toStdString();
    return {};
  }

 private:
  TempDatabase database_;
};

TEST_F(Statements, PortfolioRowComesBackTyped) {
  EXPECT_EQ(Service().Execute(InsertPortfolio(7, QStringLiteral("组合''一"), 0, 1)), 1);
  const ResultSet rows =
      Service().Query(QStringLiteral("select * from alg_commain where SAVEFLAG = 1 order by ID desc"));
  ASSERT_EQ(rows.RowCount(), 1);
  EXPECT_EQ(rows.TypeOf(rows.Column("ID")), ColumnType::Integer);
  EXPECT_EQ(rows.IntegerAt(0, rows.Column("id")), 7);
  EXPECT_EQ(rows.TextAt(0, rows.Column("comname")), QStringLiteral("组合'一"));
  EXPECT_EQ(rows.RealAt(0, rows.Column("zscloseprice")), 3012.45);
  EXPECT_EQ(rows.TextAt(0, rows.Column("editdate")), QStringLiteral("2026-01-05"));
  EXPECT_TRUE(rows.IsNull(0, rows.Column("zhfg")));
}

TEST_F(Statements, DeleteRecordBlockRemovesHeaderAndHoldings) {
  Service().Execute(InsertPortfolio(3, QStringLiteral("甲")));
  Service().Execute(InsertPortfolio(4, QStringLiteral("乙")));
  Service().Execute(InsertHolding("3", "1600000", "100", "0.5"));
  Service().Execute(InsertHolding("4", "1600000", "100", "0.5"));
  const QString text =
      QStringLiteral(
          "execute block\r\nas\r\ndeclare id int ;\r\nbegin\r\n  select ID from alg_commain where COMNAME = '%1' into "
          ":id;\r\n  if (:id<>0) then\r\n  begin\r\n    delete from alg_commain where id = :id;\r\n    delete from "
          "alg_comdetail where mainid = :id;\r\n  end\r\nend")
          .arg(QStringLiteral("甲"));
  EXPECT_EQ(Service().Execute(text), 1);
  EXPECT_EQ(Service().Count(QStringLiteral("select ID from alg_commain")), 4);
  EXPECT_EQ(Service().Count(QStringLiteral("select MAINID from alg_comdetail")), 4);
  EXPECT_EQ(Service().Count(kCountHoldings), 1);
  EXPECT_EQ(Service().Execute(text), 1) << "nothing to delete is no failure";
}

TEST_F(Statements, EveryStatementOfTheModuleIsUnderstood) {
  Service().Execute(InsertPortfolio(1, QStringLiteral("甲"), 0, 1));
  Service().Execute(InsertHolding("1", "1600000", "100", "1"));
  for (const char* sql : {
           "select * from alg_commain",
           "select * from alg_commain where SAVEFLAG <> 1 order by ID",
           "select * from alg_commain where COMNAME = '甲'",
           "select ISFINISHED from alg_commain where COMNAME='甲'",
           "select count(COMNAME) from alg_commain where COMNAME='甲'",
           "select count(ID) from alg_commain where isFinished = 0 ",
           "select SECUCODE from alg_comdetail where mainid = 1",
           "select  SECUCODE,Mainid,PZSL from alg_comdetail order by MainId",
           "select distinct SECUCODE from alg_comdetail",
           "select MainID,SecuCode,PZSL from alg_comdetail where MainID in (select ID from alg_commain where SAVEFLAG "
           "= 1) "
           "order by MainID",
           "select MainId,Sum(PZSL*BUYPRICE) as sum_value from alg_comdetail group by MainId",
           "select distinct secucode from alg_comdetail a,alg_commain b where a.Mainid = b.Id and b.isFinished = 0",
           "select count(distinct secucode) from alg_comdetail a,alg_commain b where a.Mainid = b.Id and b.isFinished "
           "= 0 ",
           "select distinct secucode,sylbzc from alg_stockstatistic where Hqtype = 0 order by secucode",
           "select Max(HQDate) from alg_stockstatistic where hqtype = 0",
           "select Max(HQDate) from alg_stockstatistic where hqtype = 0 and SecuCode = 1600000",
           "select ClosePrice from ALG_STOCKSTATISTIC  where (SECUCODE=1) and (HqType = 0) order by HQDATE desc",
           "select SECUCODE, CLOSEPRICE from ALG_STOCKSTATISTIC where HqType = 1 and  SECUCODE in (select distinct "
           "SECUCODE "
           "from alg_comdetail) and HqDate >= 20260105 and HqDate <= 20260111",
           "select alg_rmbinterestrate.*,1 as Change from alg_rmbinterestrate",
           "select ALG_STOCKESTIMATEVALUE.*,1 as Change from ALG_STOCKESTIMATEVALUE",
           "Select * From ALG_STOCKESTIMATEVALUE",
           "select INTEREST from  alg_rmbinterestrate where DEPOSITTYPE = '定期存款整存整取' and term= '一年'",
       }) {
    EXPECT_NO_THROW({ EXPECT_GT(Service().Query(QString::fromUtf8(sql)).ColumnCount(), 0) << sql; }) << sql;
  }
  for (const char* sql : {
           "Update alg_commain set SAVEFLAG = 1 where COMNAME ='甲'",
           "delete from alg_stockstatistic where secucode = 1600000 and hqdate between 20260105 and 20260111",
           "update alg_stockstatistic set islastday = 0 where secucode = 399001",
           "delete from alg_stockstatistic where hqdate < 20260105 and secucode = 1 and hqtype = 2",
           "execute procedure INITFIRSTCALC('2026-01-05')",
           "execute procedure SP_GETBETA(1,1)",
           "Delete from alg_comdetail where MAINID = 1",
           "Delete from alg_commain where ID =1",
           "Delete from alg_commain where COMNAME ='甲'",
       }) {
    EXPECT_EQ(Service().Execute(QString::fromUtf8(sql)), 1) << sql;
  }
}

TEST_F(Statements, SumOfAPortfolioWithoutHoldingsGivesNoRow) {
  Service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  EXPECT_TRUE(
      Service()
          .Query(QStringLiteral("select MainId,Sum(PZSL*BUYPRICE) as sum_value from alg_comdetail group by MainId"))
          .IsEmpty());
  Service().Execute(InsertHolding("1", "1600000", "200", "1", "7.25"));
  const ResultSet sums = Service().Query(
      QStringLiteral("select MainId,Sum(PZSL*BUYPRICE) as sum_value from alg_comdetail group by MainId"));
  EXPECT_EQ(sums.RealAt(0, sums.Column("sum_value")), 1450.0);
}

TEST_F(Statements, NothingThereIsToldFromZero) {
  EXPECT_EQ(Service().Count(QStringLiteral("select ID from alg_commain where COMNAME ='x'")), -1) << "no row";
  EXPECT_EQ(Service().Count(QStringLiteral("select Max(HQDate) from alg_stockstatistic where hqtype = 0")), -1)
      << "null";
  EXPECT_EQ(Service().Count(kCountPortfolios), 0);
  EXPECT_TRUE(Service().Scalar(QStringLiteral("select ClosePrice from alg_stockstatistic")).isNull);
  EXPECT_TRUE(Service().Scalar(QStringLiteral("select Max(HQDate) from alg_stockstatistic where hqtype = 0")).isNull);
  const ResultSet none = Service().Query(QStringLiteral("select * from alg_comdetail"));
  EXPECT_TRUE(none.IsEmpty());
  EXPECT_EQ(none.ColumnCount(), 6) << "an empty result still has its columns";
}

TEST_F(Statements, GeneratorsCountAndCanBeMoved) {
  const QString next = QStringLiteral("select gen_id(ALG_ROWID_MAIN,1) from rdb$database");
  EXPECT_EQ(Service().Count(next), 1);
  EXPECT_EQ(Service().Count(next), 2);
  EXPECT_EQ(Service().Execute(QStringLiteral("SET GENERATOR alg_rowid_main TO 40")), 1);
  EXPECT_EQ(Service().Count(next), 41);
}

TEST_F(Statements, NumbersAreStoredAsTheyStand) {
  const struct {
    const char* literal;
    double value;
  } cases[] = {{"0.1", 0.1},     {"-0.0123456789012345678", -0.0123456789012345678},
               {"1E-5", 1e-5},   {"-1.5e300", -1.5e300},
               {"+2", 2},        {".5", 0.5},
               {"6.", 6},        {"123456789012345678901234567890", 123456789012345678901234567890.0},
               {"'7.25'", 7.25}, {"0", 0}};
  for (const auto& [literal, value] : cases) {
    Service().Execute(QStringLiteral("delete from alg_comdetail"));
    Service().Execute(InsertHolding("1", "1600000", "100", "0.5", QString::fromLatin1(literal)));
    const Value stored = Service().Scalar(QStringLiteral("select BUYPRICE from alg_comdetail"));
    EXPECT_EQ(stored.real, value) << literal;
  }
}

TEST_F(Statements, WholeNumbersAreStoredAsTheyStand) {
  for (const auto& [literal, value] :
       {std::pair{"2147483647", 2147483647LL}, std::pair{"-2147483648", -2147483648LL}, std::pair{"100.00", 100LL},
        std::pair{"1e3", 1000LL}, std::pair{"'12'", 12LL}, std::pair{"12.5e1", 125LL}, std::pair{"-1200e-2", -12LL}}) {
    Service().Execute(QStringLiteral("delete from alg_comdetail"));
    Service().Execute(InsertHolding("1", "1600000", QString::fromLatin1(literal), "0.5"));
    EXPECT_EQ(Service().Count(QStringLiteral("select PZSL from alg_comdetail")), value) << literal;
  }
}

TEST_F(Statements, LargeWholeNumbersDoNotPassThroughADouble) {
  Service().Execute(QStringLiteral("create table wide (n bigint)"));
  for (const auto& [literal, value] :
       {std::pair{"9007199254740993.0", 9007199254740993LL}, std::pair{"9007199254740993e1", 90071992547409930LL},
        std::pair{"-9223372036854775808.00", std::numeric_limits<long long>::min()}}) {
    Service().Execute(QStringLiteral("delete from wide"));
    Service().Execute(QStringLiteral("insert into wide values (%1)").arg(QLatin1String(literal)));
    EXPECT_EQ(Service().Query(QStringLiteral("select n from wide")).IntegerAt(0, 0), value) << literal;
  }
  const auto [category, text] = ErrorOf(QStringLiteral("insert into wide values (4503599627370497.5)"));
  EXPECT_EQ(category, ErrorCategory::Refused);
  EXPECT_TRUE(text.contains(QStringLiteral("不是整数"))) << text.toStdString();
}

TEST_F(Statements, ValuesThatDoNotFitAreRefusedByName) {
  const struct {
    const char* quantity;
    const char* weight;
    const char* named;
  } cases[] = {{"12.5", "0.5", "12.5"},
               {"1.00000000000000000001", "0.5", "1.00000000000000000001"},  // a double rounds it to 1
               {"1e-400", "0.5", "1e-400"},                                  // and this to 0
               {"1.5e-9223372036854775808", "0.5", "1.5e-9223372036854775808"},
               {"2147483648", "0.5", "2147483648"},
               {"-99999999999999999999", "0.5", "-99999999999999999999"},
               {"1e10", "0.5", "1e10"},
               {"'abc'", "0.5", "abc"},
               {"''", "0.5", "“”"},
               {"100", "1e400", "1e400"},
               {"100", "'notanumber'", "notanumber"},
               {"100", "'NaN'", "NaN"},
               {"100", "'1,5'", "1,5"},
               {"100", "' 1'", " 1"}};
  for (const auto& [quantity, weight, named] : cases) {
    const auto [category, text] =
        ErrorOf(InsertHolding("1", "1600000", QString::fromLatin1(quantity), QString::fromLatin1(weight)));
    EXPECT_EQ(category, ErrorCategory::Refused) << quantity << " " << weight;
    EXPECT_TRUE(text.contains(QString::fromUtf8(named))) << text.toStdString();
  }
  EXPECT_EQ(Service().Count(kCountHoldings), 0) << "nothing may have been stored";
}

TEST_F(Statements, BareWordsAreNoNumbers) {
  EXPECT_EQ(ErrorOf(InsertHolding("1", "1600000", "NaN", "0.5")).first, ErrorCategory::Database);
  EXPECT_EQ(ErrorOf(InsertHolding("1", "1600000", "", "0.5")).first, ErrorCategory::Database);
  EXPECT_EQ(Service().Execute(InsertHolding("1", "null", "100", "0.5")), 1);
  EXPECT_TRUE(Service().Scalar(QStringLiteral("select SecuCode from alg_comdetail")).isNull);
}

TEST_F(Statements, UpdatedValuesAreCheckedToo) {
  Service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  EXPECT_EQ(ErrorOf(QStringLiteral("update alg_commain set SAVEFLAG = 1.5 where ID = 1")).first,
            ErrorCategory::Refused);
  EXPECT_EQ(
      ErrorOf(QStringLiteral("update alg_commain set COMNAME = '%1' where ID = 1").arg(QString(161, u'长'))).first,
      ErrorCategory::Refused);
  EXPECT_EQ(Service().Execute(QStringLiteral("update alg_commain set SAVEFLAG = -3 where ID = 1")), 1);
  EXPECT_EQ(Service().Count(QStringLiteral("select SAVEFLAG from alg_commain where ID = 1")), -3);
}

TEST_F(Statements, TextsFitByCharactersNotBytes) {
  const QString longest(160, u'长');
  EXPECT_EQ(Service().Execute(InsertPortfolio(1, longest)), 1);
  EXPECT_EQ(Service().Scalar(QStringLiteral("select COMNAME from alg_commain")).ToText(), longest);
  const auto [category, text] = ErrorOf(InsertPortfolio(2, longest + u'x'));
  EXPECT_EQ(category, ErrorCategory::Refused);
  EXPECT_TRUE(text.contains(QStringLiteral("160")));
  EXPECT_EQ(Service().Count(QStringLiteral("select count(COMNAME) from alg_commain where COMNAME='%1x'").arg(longest)),
            0)
      << "a longer text equals none";
  const QString half = InsertPortfolio(3, QString(QChar(0xD83D)));
  EXPECT_EQ(ErrorOf(half).first, ErrorCategory::Refused) << "half a character";
  EXPECT_EQ(Service().Execute(InsertPortfolio(4, QStringLiteral("😀"))), 1);
  EXPECT_EQ(Service().Count(QStringLiteral("select ID from alg_commain where COMNAME='😀'")), 4);
}

TEST_F(Statements, DatesAreCalendarDates) {
  const auto insert = [](const QString& date) {
    return QStringLiteral("insert into alg_rmbinterestrate (ID,CTIME) values (1,'%1')").arg(date);
  };
  for (const char* bad : {"2026-02-30", "30 Feb", "2026-13-01", "2025-02-29", "2026-1-5", "05.01.2026", "", "TODAY",
                          "2026-01-05 24:00:00", "2026-01-05T10:00:00", "2026-01-05 10:00"}) {
    const auto [category, text] = ErrorOf(insert(QString::fromLatin1(bad)));
    EXPECT_EQ(category, ErrorCategory::Refused) << bad;
    EXPECT_TRUE(text.contains(QString::fromLatin1(bad)));
  }
  EXPECT_EQ(Service().Count(QStringLiteral("select count(*) from alg_rmbinterestrate")), 0);
  for (const char* good : {"2024-02-29 23:59:59", "0001-01-01 00:00:01", "9999-12-31 10:20:30"}) {
    Service().Execute(QStringLiteral("delete from alg_rmbinterestrate"));
    Service().Execute(insert(QString::fromLatin1(good)));
    const Value stored = Service().Scalar(QStringLiteral("select CTIME from alg_rmbinterestrate"));
    EXPECT_EQ(stored.type, ColumnType::DateTime);
    EXPECT_EQ(stored.integer, QDateTime::fromString(QString::fromLatin1(good) + u'Z', Qt::ISODate).toMSecsSinceEpoch())
        << good;
    EXPECT_EQ(stored.ToText(), QString::fromLatin1(good));
  }
}

TEST_F(Statements, ColumnTypesOfTheEngineHaveTheirPlace) {
  Service().Execute(
      QStringLiteral("create table t (c char(6), d date, s smallint, b bigint, n numeric(9,2), f float, "
                     "o boolean, x blob sub_type text character set utf8)"));
  Service().Execute(
      QStringLiteral("insert into t values ('ab','2026-01-05',-5,9007199254740993,12.30,0.5,true,'长长的说明')"));
  const ResultSet row = Service().Query(QStringLiteral("select * from t"));
  EXPECT_EQ(row.TextAt(0, 0), QStringLiteral("ab")) << "padding is not part of the text";
  EXPECT_EQ(row.TextAt(0, 1), QStringLiteral("2026-01-05"));
  EXPECT_EQ(row.IntegerAt(0, 2), -5);
  EXPECT_EQ(row.IntegerAt(0, 3), 9007199254740993LL);
  EXPECT_EQ(row.RealAt(0, 4), 12.3);
  EXPECT_EQ(row.RealAt(0, 5), 0.5);
  EXPECT_EQ(row.IntegerAt(0, 6), 1);
  EXPECT_EQ(row.TextAt(0, 7), QStringLiteral("长长的说明"));
  EXPECT_EQ(ErrorOf(QStringLiteral("insert into t (n) values (12.345)")).first, ErrorCategory::Refused);
  EXPECT_EQ(ErrorOf(QStringLiteral("insert into t (s) values (40000)")).first, ErrorCategory::Refused);
  EXPECT_EQ(ErrorOf(QStringLiteral("insert into t (d) values ('2026-02-30')")).first, ErrorCategory::Refused);
}

TEST_F(Statements, RepeatedColumnNamesAreNumbered) {
  const ResultSet row = Service().Query(QStringLiteral("select 1 as A, 2 as A, 3 as A from rdb$database"));
  EXPECT_EQ(row.ColumnName(0), "A");
  EXPECT_EQ(row.ColumnName(1), "A_1");
  EXPECT_EQ(row.IntegerAt(0, 2), 3);
}

TEST_F(Statements, NumberAgainstTextColumnComparesAsTheEngineDoes) {
  Service().Execute(
      QStringLiteral("insert into ALG_STOCKESTIMATEVALUE (ID,SECUCODE,CTIME,PRICE) values (1,'000001',19910101,0)"));
  EXPECT_EQ(Service().Count(QStringLiteral("select ID from ALG_STOCKESTIMATEVALUE where SECUCODE = 1")), 1);
  EXPECT_EQ(Service().Count(QStringLiteral("select ID from ALG_STOCKESTIMATEVALUE where SECUCODE = '1'")), -1);
}

TEST_F(Statements, ManyShapesAndChangedTablesKeepWorking) {
  Service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 150; ++i) {
      const QString sql = QStringLiteral("select ID as C%1 from alg_commain where ID = 1").arg(i);
      ASSERT_EQ(Service().Count(sql), 1);
    }
  }
  const QString all = QStringLiteral("select * from alg_comdetail");
  EXPECT_EQ(Service().Query(all).ColumnCount(), 6);
  Service().Execute(QStringLiteral("alter table alg_comdetail add EXTRA integer"));
  EXPECT_EQ(Service().Query(all).ColumnCount(), 7) << "a prepared statement must not outlive its table's shape";
}

TEST_F(Statements, BadStatementsAreErrors) {
  EXPECT_EQ(ErrorOf(QStringLiteral("selekt 1")).first, ErrorCategory::Database);
  EXPECT_EQ(ErrorOf(QStringLiteral("insert into nowhere values (1)")).first, ErrorCategory::Database);
  EXPECT_EQ(ErrorOf(QStringLiteral("insert into alg_commain (ID,COMNAME) values (1,'open)")).first,
            ErrorCategory::Database);
  EXPECT_EQ(ErrorOf(QStringLiteral("delete from alg_commain where ID = ?")).first, ErrorCategory::Refused);
  EXPECT_EQ(ErrorOf(QStringLiteral("commit")).first, ErrorCategory::Refused);
  EXPECT_EQ(ErrorOf(QStringLiteral("set transaction read only")).first, ErrorCategory::Refused);
  EXPECT_EQ(ErrorOf(QString()).first, ErrorCategory::Database);
  Service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  EXPECT_EQ(ErrorOf(InsertPortfolio(1, QStringLiteral("乙"))).first, ErrorCategory::Database) << "the id is a key";
}

TEST_F(Statements, CallsFromManyThreadsRunOneAfterTheOther) {
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([this, thread] {
      for (int i = 0; i < 25; ++i) Service().Execute(InsertPortfolio(thread * 100 + i + 1, QStringLiteral("甲")));
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(Service().Count(kCountPortfolios), 100);
}

}  // namespace
