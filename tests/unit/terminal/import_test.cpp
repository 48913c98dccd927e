#include "transfer/import.h"

#include <gtest/gtest.h>

#include <QFile>

#include "import_fixture.h"

namespace holdwise {
namespace {

TEST_F(ImportTest, PortfoliosAndHoldingsStandInTheDatabase) {
  const ImportResult result = Import(kGood);
  EXPECT_TRUE(result.problems.empty());
  EXPECT_TRUE(result.warnings.isEmpty()) << result.warnings.join(QLatin1Char('\n')).toStdString();
  EXPECT_EQ(result.portfolios, 2);
  EXPECT_EQ(result.holdings, 5);
  EXPECT_EQ(
      Dump("select COMNAME,ZHFG,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG from alg_commain order by ID"),
      QStringLiteral("稳健一号||3111.02|0|0|0|0|2024-05-29|1\n"
                     "进取(2)_A-b||3111.02|0|0|0|0|2024-05-29|1"));
  // 1000 x 8.00 = 8000 and 500 x 34 = 17000 of 25000; the other weights by Python's shortest repr.
  EXPECT_EQ(Dump("select b.COMNAME,a.SecuCode,a.PZSL,a.PZBL,a.BUYPRICE from alg_comdetail a join alg_commain b on "
                 "a.MAINID = b.ID order by a.ID"),
            QStringLiteral("稳健一号|1600000|1000|0.32|8\n"
                           "稳健一号|1600036|500|0.68|34\n"
                           "进取(2)_A-b|1000001|300|0.1438879647049528|11.23\n"
                           "进取(2)_A-b|1300750|100|0.8536754640910053|199.88\n"
                           "进取(2)_A-b|1600000|7|0.002436571204042018|8.15"));
  EXPECT_FALSE(temp_.Service().InTransaction());
}

TEST_F(ImportTest, StatementsAreTheModulesOwn) {
  ASSERT_TRUE(Import("name,code,quantity,price\n甲,600000,1000,8.00\n甲,600036,500,34\n").problems.empty());
  const QStringList expected = {
      QStringLiteral("select count(COMNAME) from alg_commain where COMNAME='甲'"),
      QStringLiteral("start"),
      QStringLiteral("select gen_id(ALG_ROWID_MAIN,1) from rdb$database"),
      QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values "
                     "(gen_id(ALG_ROWID_DETAIL,1),1,1600000,1000,0.32,8.00)"),
      QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values "
                     "(gen_id(ALG_ROWID_DETAIL,1),1,1600036,500,0.68,34)"),
      QStringLiteral("insert into alg_commain (ID,COMNAME,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG)"
                     "values(1,'甲',3111.02,0,0,0,0,'2024-05-29',1)"),
      QStringLiteral("delete from alg_stockstatistic where secucode = 1600000"),
      QStringLiteral("insert into alg_stockstatistic (secucode,closeprice,hqtype,rowid,ggqjsyl,pjsyl,hqdate,"
                     "oldcloseprice,sylbzc,islastday,startdate,enddate) "
                     "values(1600000,8.15,0,1,0.01,0.005,20240528,8.1,0.02,0,20230601,20240529)")};
  EXPECT_EQ(database_.plan.Calls().mid(0, expected.size()), expected);
  EXPECT_EQ(database_.plan.Calls().last(), QStringLiteral("commit"));
}

TEST_F(ImportTest, StatisticsAreReplaced) {
  temp_.Service().Execute(
      QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate) values(1600000,0,20200102)"));
  temp_.Service().Execute(
      QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate) values(1,0,20200102)"));
  temp_.Service().Execute(
      QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate) values(1601001,0,20200102)"));
  ASSERT_TRUE(Import(kGood).warnings.isEmpty());
  EXPECT_EQ(Dump("select secucode,count(*),min(hqdate) from alg_stockstatistic group by secucode order by secucode"),
            QStringLiteral("1|3|20240528\n399001|3|20240528\n399300|3|20240528\n1000001|3|20240528\n"
                           "1300750|3|20240528\n1600000|3|20240528\n1600036|3|20240528\n1601001|1|20200102"));
  EXPECT_EQ(Dump("select * from alg_stockstatistic where secucode = 1600036 and hqtype = 0 and rowid = 2"),
            QStringLiteral("1600036|8.15|0|2|-0.002|0.005|20240529|8.2|0.02|1|20230601|20240529"));
}

TEST_F(ImportTest, MissingAndDamagedBaseDataAreWarnings) {
  ASSERT_TRUE(QFile::remove(folder_.File(StockFile("600000"))));
  folder_.WriteBytes(StockFile("600036"), "rubbish");
  std::vector<QStringList> rows = StatisticsRows("199.88");
  rows[1][5] = QStringLiteral("20240230");
  folder_.Write(StockFile("300750"), MakeTable(StatisticsHeadings(), rows));
  QStringList headings = StatisticsHeadings();
  headings[4] = QStringLiteral("pjsyl:text");
  rows = StatisticsRows("11.23");
  rows[2][4] = QStringLiteral("1); drop table x");
  folder_.Write(StockFile("000001"), MakeTable(headings, rows));
  folder_.Write(QStringLiteral("QMTL/TZZH/Day250/指数/allzs.dat"),
                MakeTable(StatisticsHeadings(), StatisticsRows("1")));
  temp_.Service().Execute(
      QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate) values(1600000,0,20200102)"));
  const ImportResult result = Import(kGood);
  EXPECT_EQ(result.portfolios, 2);
  ASSERT_EQ(result.warnings.size(), 5);
  const char* expected[][2] = {{"000001.dat", "pjsyl"},
                               {"300750.dat", "20240230"},
                               {"600000.dat", "不存在"},
                               {"600036.dat", "无法使用"},
                               {"allzs.dat", "SecuCode"}};
  for (int i = 0; i < 5; ++i) {
    EXPECT_TRUE(result.warnings[i].contains(QString::fromUtf8(expected[i][0]))) << result.warnings[i].toStdString();
    EXPECT_TRUE(result.warnings[i].contains(QString::fromUtf8(expected[i][1]))) << result.warnings[i].toStdString();
  }
  EXPECT_EQ(Dump("select secucode from alg_stockstatistic"), QStringLiteral("1600000"));  // what was there stays
}

TEST_F(ImportTest, StocksWithoutAPriceAreNamed) {
  std::vector<QStringList> quotes = MarketFolder::QuoteRows();
  std::erase_if(quotes, [](const QStringList& row) { return row[0] == QLatin1String("1000001"); });
  folder_.WriteQuotes(quotes);
  data_.Load(folder_.Path());
  const ImportResult result = Import(kGood);
  EXPECT_EQ(result.portfolios, 2);
  EXPECT_EQ(result.warnings, QStringList(QStringLiteral("股票000001没有行情，组合市值暂不包括它")));
}

TEST_F(ImportTest, BaseDataOfAnUnknownIndexAreNotTaken) {
  std::vector<QStringList> rows = {QStringList{QStringLiteral("1600000")} + StatisticsRows("1")[0]};
  folder_.Write(QStringLiteral("QMTL/TZZH/Day250/指数/allzs.dat"),
                MakeTable(QStringList{QStringLiteral("SecuCode:integer")} + StatisticsHeadings(), rows));
  const ImportResult result = Import(kGood);
  ASSERT_EQ(result.warnings.size(), 1);
  EXPECT_TRUE(result.warnings[0].contains(QStringLiteral("1600000"))) << result.warnings[0].toStdString();
}

TEST_F(ImportTest, EmptyBaseDataValuesBecomeZero) {
  std::vector<QStringList> rows = {StatisticsRows("8.15")[0]};
  for (const int column : {0, 5, 9}) rows[0][column] = QStringLiteral("NULL");
  folder_.Write(StockFile("600000"), MakeTable(StatisticsHeadings(), rows));
  ASSERT_TRUE(Import(kGood).warnings.isEmpty());
  EXPECT_EQ(Dump("select * from alg_stockstatistic where secucode = 1600000"),
            QStringLiteral("1600000|0|0|1|0.01|0.005|0|8.1|0.02|0|0|20240529"));
}

TEST_F(ImportTest, NeedsAnIndexLevel) {
  folder_.WriteQuotes({{QStringLiteral("1600000"), QStringLiteral("8.15"), QStringLiteral("8.2")}});
  MarketData bare(clock_, log_, reader_);
  bare.Load(folder_.Path());
  const ImportServices services{database_, bare, bare, folder_.Path()};
  try {
    (void)ImportPortfolios(kGood, services);
    ADD_FAILURE();
  } catch (const Error& error) {
    EXPECT_EQ(error.Category(), ErrorCategory::Refused);
  }
  EXPECT_EQ(Everything(), QStringLiteral("##"));
}

TEST_F(ImportTest, AnOpenTransactionIsNotJoined) {
  temp_.Service().StartTransaction();
  EXPECT_THROW((void)Import(kGood), Error);
  temp_.Service().RollBack();
  EXPECT_EQ(Everything(), QStringLiteral("##"));
}

TEST_F(ImportTest, ProgressRunsToItsTotal) {
  std::vector<std::pair<int, int>> seen;
  ASSERT_EQ(Import(kGood, [&](int done, int total) { return seen.emplace_back(done, total), true; }).portfolios, 2);
  ASSERT_EQ(seen.size(), 8U);  // 2 portfolios, 4 stocks, the indices, the end
  for (int i = 0; i < 8; ++i) EXPECT_EQ(seen[static_cast<std::size_t>(i)], std::pair(i, 7));
}

TEST_F(ImportTest, GivingUpAtAnyStepWritesNothing) {
  for (int stop = 0; stop <= 7; ++stop) {
    const ImportResult result = Import(kGood, [stop](int done, int) { return done < stop; });
    EXPECT_TRUE(result.cancelled) << stop;
    EXPECT_EQ(result.portfolios, 0);
    EXPECT_EQ(Everything(), QStringLiteral("##")) << stop;
    EXPECT_FALSE(temp_.Service().InTransaction());
  }
}

TEST_F(ImportTest, AnyFailingStatementRollsEverythingBack) {
  temp_.Service().Execute(
      QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate) values(1600000,0,20200102)"));
  const QString before = Everything();
  int calls = 0;
  {
    test::InjectingUserData probe(temp_.Service());
    const ImportServices services{probe, data_, data_, folder_.Path()};
    (void)ImportPortfolios(kGood, services, [](int done, int total) { return done < total; });  // all but the commit
    calls = static_cast<int>(probe.plan.Calls().size());  // with a roll-back in place of the commit
    ASSERT_EQ(probe.plan.Calls().last(), QStringLiteral("rollback"));
  }
  ASSERT_EQ(Everything(), before);
  ASSERT_GT(calls, 35);
  using Kind = test::FailurePlan::Kind;
  for (int number = 0; number < calls; ++number) {
    for (const Kind kind : {Kind::Throws, Kind::Refuses}) {
      test::InjectingUserData failing(temp_.Service());
      failing.plan.FailCall(number, kind);
      const ImportServices services{failing, data_, data_, folder_.Path()};
      EXPECT_THROW((void)ImportPortfolios(kGood, services), Error) << number;
      ASSERT_TRUE(failing.plan.HasFailed()) << number;
      ASSERT_EQ(Everything(), before) << number << ' ' << failing.plan.Calls().last().toStdString();
      ASSERT_FALSE(temp_.Service().InTransaction()) << number;
    }
  }
  EXPECT_EQ(Import(kGood).portfolios, 2);  // and the database is as good as ever
}

}  // namespace
}  // namespace holdwise
