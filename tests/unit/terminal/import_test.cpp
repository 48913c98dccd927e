// SPDX-License-Identifier: MIT
#include "transfer/import.h"

#include <gtest/gtest.h>

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
      QStringLiteral("select COMNAME from alg_commain"),
      QStringLiteral("start"),
      QStringLiteral("select gen_id(ALG_ROWID_MAIN,1) from rdb$database"),
      QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values "
                     "(gen_id(ALG_ROWID_DETAIL,1),1,1600000,1000,0.32,8.00)"),
      QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values "
                     "(gen_id(ALG_ROWID_DETAIL,1),1,1600036,500,0.68,34)"),
      QStringLiteral("insert into alg_commain (ID,COMNAME,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG)"
                     "values(1,'甲',3111.02,0,0,0,0,'2024-05-29',1)"),
      QStringLiteral("commit")};
  EXPECT_EQ(database_.plan.Calls(), expected);
}

TEST_F(ImportTest, TheNamesThatAreThereAreReadOnceForAWholeFile) {
  ASSERT_TRUE(Import(kGood).problems.empty());
  // As the database compares: blanks at the end do not count, capital letters do.
  ASSERT_EQ(temp_.Service().Execute(QStringLiteral("update alg_commain set COMNAME = '稳健一号  ' where ID = 1")), 1);
  const auto before = database_.plan.Calls().size();
  const ImportResult result = Import(
      "name,code,quantity,price\n稳健一号,600000,1,8\n进取(2)_a-b,600000,1,8\n丙,600000,1,8\n"
      "进取(2)_A-b,600000,1,8\n");
  EXPECT_EQ(database_.plan.Calls().mid(before), QStringList{"select COMNAME from alg_commain"});
  ASSERT_EQ(result.problems.size(), 2U);
  EXPECT_EQ(result.problems[0].line, 2);
  EXPECT_EQ(result.problems[1].line, 5);
}

/// Somebody is asked whether to delete a portfolio, which has begun its transaction.
TEST_F(ImportTest, WhileAQuestionIsOpenItIsSaidWhatToDo) {
  const TransactionScope question(database_);
  try {
    (void)Import(kGood);
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Category(), ErrorCategory::Busy);
    EXPECT_NE(std::string(error.what()).find("请先回答它，再导入一次"), std::string::npos) << error.what();
  }
  EXPECT_TRUE(database_.InTransaction());
}

TEST_F(ImportTest, StatisticsAreNotTouched) {
  temp_.Service().Execute(
      QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate) values(1600000,0,20200102)"));
  EXPECT_TRUE(Import(kGood).warnings.isEmpty());
  EXPECT_EQ(Dump("select secucode,hqtype,hqdate from alg_stockstatistic"), QStringLiteral("1600000|0|20200102"));
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

TEST_F(ImportTest, NeedsAnIndexLevel) {
  folder_.WriteQuotes({{QStringLiteral("1600000"), QStringLiteral("8.15"), QStringLiteral("8.2")}});
  MarketData bare(clock_, log_, reader_);
  bare.Load(folder_.Path());
  const ImportServices services{database_, bare, bare, {}};
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
  ASSERT_EQ(seen.size(), 3U);  // 2 portfolios, the end
  for (int i = 0; i < 3; ++i) EXPECT_EQ(seen[static_cast<std::size_t>(i)], std::pair(i, 2));
}

TEST_F(ImportTest, GivingUpAtAnyStepWritesNothing) {
  for (int stop = 0; stop <= 2; ++stop) {
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
    const ImportServices services{probe, data_, data_, {}};
    (void)ImportPortfolios(kGood, services, [](int done, int total) { return done < total; });  // all but the commit
    calls = static_cast<int>(probe.plan.Calls().size());  // with a roll-back in place of the commit
    ASSERT_EQ(probe.plan.Calls().last(), QStringLiteral("rollback"));
  }
  ASSERT_EQ(Everything(), before);
  // The names that are there, the transaction, 2 numbers, 5 holdings, 2 portfolios, the end.
  ASSERT_EQ(calls, 12);
  using Kind = test::FailurePlan::Kind;
  for (int number = 0; number < calls; ++number) {
    for (const Kind kind : {Kind::Throws, Kind::Refuses}) {
      test::InjectingUserData failing(temp_.Service());
      failing.plan.FailCall(number, kind);
      const ImportServices services{failing, data_, data_, {}};
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
