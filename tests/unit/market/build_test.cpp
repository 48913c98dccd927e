// SPDX-License-Identifier: MIT
#include <cmath>
#include <set>

#include "build_fixture.h"

namespace holdwise {
namespace {

TEST_F(Build, WritesTheWholeFolder) {
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.error, "");
  EXPECT_EQ(outcome.rejections, "");
  EXPECT_EQ(Names(QStringLiteral("out")),
            (QStringList{QStringLiteral("QMTL/TZZH/Day250/指数/allzs.dat"), kMoutai, QStringLiteral("QMTL/TZZH/GZ.dat"),
                         QStringLiteral("QMTL/TZZH/InterestRate.Dat"), QStringLiteral("QMTL/TZZH/StockPool.dat"),
                         QStringLiteral("QMTL/TZZH/风险计量/HS.dat"), QStringLiteral("QMTL/TZZH/风险计量/SH.dat"),
                         QStringLiteral("QMTL/TZZH/风险计量/SZ.dat"), QStringLiteral("market.dat"),
                         QStringLiteral("quotes.dat"), QStringLiteral("securities.dat"),
                         QStringLiteral("trading_dates.dat")}));
  EXPECT_EQ(Rows(QStringLiteral("market.dat"), {"current_date", "simulated", "format"}), "20240109 0 1 \n");
  EXPECT_EQ(Csv(QStringLiteral("securities.dat")),
            "code:text,name:text,industry:text,market:integer,list_date:integer,a_share:integer,pinyin:text\n"
            "600519,贵州茅台,白酒,1,20010827,1,G Z M T\n"
            "000001,平安银行,银行,2,19910403,1,P A Y HX\n");
  EXPECT_EQ(Csv(QStringLiteral("trading_dates.dat")),
            "date:integer\n20240102\n20240103\n20240104\n20240105\n20240108\n20240109\n");
  EXPECT_EQ(QuotesCsv(),
            "code_number:integer,price:real,prev_close:real\n"
            "1,15,14\n399001,15,14\n399300,15,14\n1600519,15.5,14.5\n");
  // Window 2024-01-04 to 09; the week of 2024-01-02 ends with 2024-01-05 inside it.
  EXPECT_EQ(
      Rows(kMoutai, {"hqtype", "rowid", "hqdate", "closeprice", "oldcloseprice", "islastday", "startdate", "enddate"}),
      "0 1 20240105 13.5 0 0 20240104 20240109 \n"
      "0 2 20240108 14.5 13.5 0 20240104 20240109 \n"
      "0 3 20240109 15.5 14.5 1 20240104 20240109 \n"
      "1 1 20240105 13.5 0 0 20240104 20240109 \n"
      "1 2 20240109 15.5 13.5 1 20240104 20240109 \n"
      "2 1 20240109 15.5 0 1 20240104 20240109 \n");
  const ResultSet indices = Table(QStringLiteral("QMTL/TZZH/Day250/指数/allzs.dat"));
  std::string series;
  for (int row = 0; row < indices.RowCount(); ++row) {
    series += indices.Utf8At(row, 0) + "/" + indices.Utf8At(row, 2) + "/" + indices.Utf8At(row, 3) + " ";
  }
  EXPECT_EQ(series,
            "1/0/1 1/0/2 1/0/3 1/0/4 1/1/1 1/1/2 1/2/1 "
            "399001/0/1 399001/0/2 399001/0/3 399001/0/4 399001/1/1 399001/1/2 399001/2/1 "
            "399300/0/1 399300/0/2 399300/0/3 399300/0/4 399300/1/1 399300/1/2 399300/2/1 ");
  EXPECT_EQ(outcome.summary.securities, 2);
  EXPECT_EQ(outcome.summary.series, 1);
  EXPECT_EQ(outcome.summary.rows, 6 + 21);
  EXPECT_EQ(outcome.summary.currentDate, 20240109);
}

TEST_F(Build, CutsAtTheCurrentDate) {
  options_.currentDate = 20240106;  // a Saturday
  options_.isSimulated = true;
  EXPECT_EQ(Run().error, "");
  EXPECT_EQ(Rows(QStringLiteral("market.dat"), {"current_date", "simulated", "format"}), "20240106 1 1 \n");
  EXPECT_EQ(Rows(kMoutai, {"hqtype", "hqdate", "startdate", "enddate"}),
            "0 20240105 20240102 20240105 \n1 20240105 20240102 20240105 \n2 20240105 20240102 20240105 \n");
  EXPECT_EQ(Csv(QStringLiteral("trading_dates.dat")), "date:integer\n20240102\n20240103\n20240104\n20240105\n");
  EXPECT_EQ(QuotesCsv(),
            "code_number:integer,price:real,prev_close:real\n1,13,12\n399001,13,12\n399300,13,12\n1600519,13.5,0\n");
}

// One edition a content: of the statistics, the rates and the estimates, not of the quotes.
TEST_F(Build, TheEditionIsThatOfTheBaseData) {
  const auto edition = [this] {
    const Outcome outcome = Run();
    EXPECT_EQ(outcome.error, "");
    return Table(QStringLiteral("market.dat")).TextAt(0, 3).toStdString();
  };
  const std::string first = edition();
  EXPECT_EQ(first.size(), 64U);
  EXPECT_EQ(first.find_first_not_of("0123456789abcdef"), std::string::npos) << first;
  files_.Write(QStringLiteral("quotes.csv"), "code,price,prev_close\n600519,16.01,15.5\n");
  options_.quotesFile = files_.Path(QStringLiteral("quotes.csv"));
  options_.threads = 1;
  EXPECT_EQ(edition(), first);
  std::set<std::string> seen{first};
  files_.Write(QStringLiteral("bars/600519.csv"), "date,close\n2024-01-05,13.5\n2024-01-08,14.4\n2024-01-09,15.5\n");
  EXPECT_TRUE(seen.insert(edition()).second) << "a corrected bar";
  files_.Write(QStringLiteral("bars/000001.csv"), "date,close\n2024-01-09,9\n");
  EXPECT_TRUE(seen.insert(edition()).second) << "one more stock";
  files_.Write(QStringLiteral("indices/399300.csv"), "date,close\n2024-01-08,14\n2024-01-09,15\n");
  EXPECT_TRUE(seen.insert(edition()).second) << "an index";
  files_.Write(QStringLiteral("rates.csv"), "date,one_year\n2015-10-24,1.75\n");
  options_.ratesFile = files_.Path(QStringLiteral("rates.csv"));
  EXPECT_TRUE(seen.insert(edition()).second) << "another rate";
  files_.Write(QStringLiteral("estimates.csv"), "code,price\n600519,18\n");
  options_.estimatesFile = files_.Path(QStringLiteral("estimates.csv"));
  EXPECT_TRUE(seen.insert(edition()).second) << "an estimate";
}

TEST_F(Build, FilesNameTheEdition) {
  files_.Write(QStringLiteral("bars/000001.csv"), "date,close\n2024-01-08,9\n2024-01-09,8\n");
  files_.Write(QStringLiteral("estimates.csv"), "code,price\n600519,18\n000001,9\n");
  options_.estimatesFile = files_.Path(QStringLiteral("estimates.csv"));
  EXPECT_EQ(Run().error, "");
  const QString edition = Table(QStringLiteral("market.dat")).TextAt(0, 3);
  for (const char* name :
       {"quotes.dat", "QMTL/TZZH/风险计量/SH.dat", "QMTL/TZZH/风险计量/SZ.dat", "QMTL/TZZH/风险计量/HS.dat",
        "QMTL/TZZH/Day250/股票/600519.dat", "QMTL/TZZH/Day250/股票/000001.dat", "QMTL/TZZH/Day250/指数/allzs.dat",
        "QMTL/TZZH/InterestRate.Dat", "QMTL/TZZH/GZ.dat"}) {
    const ResultSet table = Table(QString::fromUtf8(name));
    const int column = table.Column("edition");
    EXPECT_EQ(column, table.ColumnCount() - 1) << name;
    ASSERT_GE(table.RowCount(), 1) << name;
    EXPECT_EQ(table.TextAt(0, column), edition) << name;
    for (int row = 1; row < table.RowCount(); ++row) EXPECT_TRUE(table.IsNull(row, column)) << name;
  }
}

TEST_F(Build, ShorterHistoryThanTheWindowGivesAllOfIt) {
  options_.days = 250;
  EXPECT_EQ(Run().error, "");
  EXPECT_EQ(Rows(QStringLiteral("QMTL/TZZH/Day250/指数/allzs.dat"), {"SecuCode", "hqtype", "rowid", "startdate"})
                .substr(0, 39),
            "1 0 1 20240102 \n1 0 2 20240102 \n1 0 3 2");
  options_.days = 0;
  EXPECT_NE(Run().error, "");
}

TEST_F(Build, TakesTradingDatesFromAFile) {
  // The file begins earlier than the bars and goes beyond the current date; 2024-01-05 is missing in it.
  files_.Write(QStringLiteral("dates.csv"),
               "日期\n2024-01-10\n2023-12-29\n2024-01-02\n2024-01-03\n2024-01-04\n2024-01-08\n2024/1/9\n20240109\nx\n");
  options_.datesFile = files_.Path(QStringLiteral("dates.csv"));
  options_.days = 3;
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.error, "");
  EXPECT_EQ(outcome.rejections,
            "dates.csv:9: 日期 20240109 重复\ndates.csv:10: 日期无法识别“x”\n"
            "bars/600519.csv:2: 2024-01-05 不是交易日\n");
  EXPECT_EQ(outcome.summary.rejectedLines, 3);
  EXPECT_EQ(Csv(QStringLiteral("trading_dates.dat")),
            "date:integer\n20231229\n20240102\n20240103\n20240104\n20240108\n20240109\n");
  EXPECT_EQ(Rows(kMoutai, {"hqtype", "hqdate", "startdate"}),
            "0 20240108 20240104 \n0 20240109 20240104 \n1 20240109 20240104 \n2 20240109 20240104 \n");
}

TEST_F(Build, GoesOnWithoutTheFilesItCannotUse) {
  files_.Write(QStringLiteral("bars/sz000001.csv"), "日期,收盘\n2024-01-08,9\n2024-01-09,bad\n");
  files_.Write(QStringLiteral("bars/000001.SZ.csv"), "date,close\n2024-01-08,9\n");
  files_.Write(QStringLiteral("bars/600000.csv"), "date,close\n2024-01-08,9\n");
  files_.Write(QStringLiteral("bars/sh000001.csv"), "date,close\n2024-01-08,9\n");
  files_.Write(QStringLiteral("bars/readme.txt"), "no bars\n");
  files_.Write(QStringLiteral("bars/notes.csv"), "a,b\n");
  files_.Write(QStringLiteral("securities.csv"),
               "代码,名称,市场,上市日期\n600519.SH,贵州茅台,上海,20010827\n000001,平安银行,SZ,\n000002,万科A,SH,\n"
               "600519,again,SH,\n000004,,SZ,\n1,one,SZ,\n000005,五,SZ,2024-02-30\n000006,六,SZ,\n000007,七,SZ,\n");
  files_.Write(QStringLiteral("bars/000006.csv"), "");
  files_.Write(QStringLiteral("bars/000007.csv"), "date,close\n2024-01-08,\n");
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.error, "");
  EXPECT_EQ(outcome.rejections,
            "securities.csv:4: 市场“SH”与代码 000002 不符\n"
            "securities.csv:5: 代码 600519 重复\n"
            "securities.csv:6: 名称缺失\n"
            "securities.csv:7: 不是沪深证券代码“1”\n"
            "securities.csv:8: 上市日期无法识别“2024-02-30”\n"
            "bars/notes.csv: 文件名不是沪深证券代码\n"
            "bars/sh000001.csv: 文件名不是沪深证券代码\n"
            "bars/sz000001.csv: 与 bars/000001.SZ.csv 是同一证券\n"
            "bars/600000.csv: 代码不在证券表中\n"
            "bars/000006.csv: 文件为空\n"
            "bars/000007.csv: 没有可用的行\n");
  EXPECT_EQ(outcome.summary.rejectedFiles, 6);
  EXPECT_EQ(outcome.summary.rejectedLines, 5);
  EXPECT_EQ(outcome.summary.series, 2);
  EXPECT_EQ(Csv(QStringLiteral("securities.dat")),
            "code:text,name:text,industry:text,market:integer,list_date:integer,a_share:integer,pinyin:text\n"
            "600519,贵州茅台,\"\",1,20010827,1,G Z M T\n000001,平安银行,\"\",2,20240108,1,P A Y HX\n"
            "000006,六,\"\",2,,1,L\n000007,七,\"\",2,,1,Q\n");
}

TEST_F(Build, NamesWhatIsNoFile) {
  ASSERT_TRUE(QDir(files_.Path(QStringLiteral("bars"))).mkdir(QStringLiteral("000001.csv")));
  files_.Write(QStringLiteral("securities.csv"), "code,name\n600519,a\n000001,b\n000002,c\n000004,d\n");
  ASSERT_TRUE(QFile::link(QStringLiteral("nowhere"), files_.Path(QStringLiteral("bars/000002.csv"))));
  ASSERT_TRUE(QFile::link(QStringLiteral("000004.csv"), files_.Path(QStringLiteral("bars/000004.csv"))));
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.error, "");
  EXPECT_EQ(outcome.rejections,
            "bars/000001.csv: 不是普通文件，无法读取\n"
            "bars/000002.csv: 文件不存在\n"
            "bars/000004.csv: 文件无法读取（符号链接绕成了圈）\n");
}

TEST_F(Build, SaysWhenTheMarketBeginsLater) {
  options_.currentDate = 20000101;
  EXPECT_TRUE(Run().error.starts_with("截至 2000-01-01，指数行情没有可用的行："));
}

TEST_F(Build, TakesQuotesFromAFileAndNamesItsBadRows) {
  files_.Write(QStringLiteral("quotes.csv"),
               "代码,名称,最新价,昨收\n600519,茅台,16.01,15.5\n000001,平安,0,9\n600519,茅台,1,1\n000001,平安,x,9\n"
               "600000,浦发,7,7\nsh000001,上证,3000.5,2999\n399001,深成,,9\n12,x,1,1\n");
  options_.quotesFile = files_.Path(QStringLiteral("quotes.csv"));
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.error, "");
  EXPECT_EQ(outcome.rejections,
            "quotes.csv:4: 代码 600519 重复\n"
            "quotes.csv:5: 价格不是数字“x”\n"
            "quotes.csv:6: 代码 600000 不在证券表中\n"
            "quotes.csv:8: 价格缺失\n"
            "quotes.csv:9: 不是沪深证券代码“12”\n");
  EXPECT_EQ(QuotesCsv(),
            "code_number:integer,price:real,prev_close:real\n"
            "1,3000.5,2999\n399001,15,14\n399300,15,14\n1000001,9,9\n1600519,16.01,15.5\n");
}

TEST_F(Build, AStockWithoutABarOnTheLastDayHasNoChange) {
  files_.Write(QStringLiteral("securities.csv"), "code,name\n600519,甲\n000001,乙\n000002,丙\n000004,丁\n");
  files_.Write(QStringLiteral("bars/000001.csv"), "date,close\n2024-01-04,9\n2024-01-05,8\n");
  files_.Write(QStringLiteral("bars/000002.csv"), "date,close\n2024-01-09,7\n");
  files_.Write(QStringLiteral("bars/000004.csv"), "date,close\n2024-01-08,6\n");
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.error, "");
  EXPECT_EQ(QuotesCsv(),
            "code_number:integer,price:real,prev_close:real\n"
            "1,15,14\n399001,15,14\n399300,15,14\n"
            "1000001,8,8\n1000002,7,0\n1000004,6,6\n1600519,15.5,14.5\n")
      << "the first bar of all has no previous close";
  EXPECT_EQ(outcome.summary.suspended, 2);
  // The last trading day up to the market's date counts, not the date itself.
  options_.currentDate = 20240106;
  EXPECT_EQ(Run().summary.suspended, 0);
}

TEST_F(Build, AQuoteOfPriceZeroIsASuspendedStock) {
  files_.Write(QStringLiteral("quotes.csv"),
               "code,price,prev_close\n600519,0,15.25\n399001,0,14.5\n399300,0,0\n000001,0,0.00\n1,0.00,15\n");
  options_.quotesFile = files_.Path(QStringLiteral("quotes.csv"));
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.error, "");
  EXPECT_EQ(outcome.rejections, "quotes.csv:4: 价格和昨收都是 0\nquotes.csv:5: 价格和昨收都是 0\n");
  EXPECT_EQ(QuotesCsv(),
            "code_number:integer,price:real,prev_close:real\n"
            "1,15,15\n399001,14.5,14.5\n399300,15,14\n1600519,15.25,15.25\n");
  EXPECT_EQ(outcome.summary.suspended, 1);
}

TEST_F(Build, AQuoteWithoutAPriceIsASuspendedStock) {
  for (const char* blank : {"", "nan", "-"}) {
    files_.Write(QStringLiteral("quotes.csv"),
                 QByteArray("代码,名称,最新价,昨收\n600519,茅台,") + blank + ",15.25\n000001,平安,,\n399001,深成,,9\n");
    options_.quotesFile = files_.Path(QStringLiteral("quotes.csv"));
    const Outcome outcome = Run();
    EXPECT_EQ(outcome.rejections, "quotes.csv:3: 昨收缺失\nquotes.csv:4: 价格缺失\n") << blank;
    EXPECT_EQ(outcome.summary.suspended, 1) << blank;
    EXPECT_NE(QuotesCsv().find("\n1600519,15.25,15.25\n"), std::string::npos) << QuotesCsv();
  }
}

TEST_F(Build, NamesThatNobodyHasAreLeftOut) {
  const QByteArray longName(600, 'n');
  files_.Write(QStringLiteral("securities.csv"), "code,name\n600519,甲\n000001," + longName + "\n");
  EXPECT_EQ(Run().rejections, "securities.csv:3: 名称或行业过长\n");
}

TEST_F(Build, WritesTheRatesInForce) {
  files_.Write(QStringLiteral("rates.csv"),
               "date,one_year,demand,five_year\n2015-10-24,1.50,0.35,\n2014-11-22,2.75,0.35,4.25\n2030-01-01,9,9,9\n"
               "2015-08-26,x,0.35,\n2015-10-24,3,3,3\n2016-01-01,101,0,0\n");
  options_.ratesFile = files_.Path(QStringLiteral("rates.csv"));
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.error, "");
  EXPECT_EQ(outcome.rejections,
            "rates.csv:5: 一年利率不是数字“x”\nrates.csv:6: 日期 2015-10-24 重复\nrates.csv:7: 一年利率超过 100\n");
  const std::string edition = Table(QStringLiteral("market.dat")).TextAt(0, 3).toStdString();
  EXPECT_EQ(
      Csv(QStringLiteral("QMTL/TZZH/InterestRate.Dat")),
      "ID:integer,SOURCEID:integer,SOURCEDB:text,SOURCETABLE:text,UPDATEID:integer,CTIME:datetime,UPTIME:datetime,"
      "ISVAILD:text,REMARK:text,DEPOSITTYPE:text,TERM:text,INTERESTCHANGEDATE:datetime,INTEREST:real,"
      "INTERESTCODE:text,edition:text\n"
      "1,1,holdwise-market,deposit_rates,1,2024-01-09,2024-01-09,1,\"\",定期存款整存整取,一年,2015-10-24,1.5,FIXED_"
      "12M," +
          edition +
          "\n"
          "2,2,holdwise-market,deposit_rates,1,2024-01-09,2024-01-09,1,\"\",活期存款,活期,2015-10-24,0.35,DEMAND,\n");

  options_.currentDate = 20240109;
  files_.Write(QStringLiteral("rates.csv"), "date,one_year\n2030-01-01,9\n");
  EXPECT_NE(Run().error.find("没有在 2024-01-09 或之前生效的利率"), std::string::npos);
}

TEST_F(Build, WithoutRatesTheBenchmarkRateIsInForceFromItsFirstDay) {
  const auto rates = [this](int date) {
    options_.currentDate = date;
    files_.WriteMarket("date,close\n2015-10-22,10\n2015-10-23,11\n2015-10-26,12\n");
    files_.Write(QStringLiteral("bars/600519.csv"), "date,close\n2015-10-22,10\n2015-10-23,11\n");
    EXPECT_EQ(Run().error, "");
    return Rows(QStringLiteral("QMTL/TZZH/InterestRate.Dat"),
                {"DEPOSITTYPE", "TERM", "INTERESTCHANGEDATE", "INTEREST"});
  };
  EXPECT_EQ(rates(20151026), "定期存款整存整取 一年 2015-10-24 1.5 \n");
  EXPECT_EQ(rates(20151023), "");
}

// Daily returns inside the window of three days: indices 0.01, -0.01, 0.03; stock 600519 0.02, 0, 0.07 (as in the test
// of the figures); stock 000001 first has a bar on the second day and stands still; stock 000002 has none.
TEST_F(Build, WritesTheRiskFiles) {
  files_.WriteMarket("date,close\n2024-01-03,1000\n2024-01-04,1010\n2024-01-05,999.9\n2024-01-08,1029.897\n");
  files_.Write(QStringLiteral("indices/399001.csv"),
               "date,close\n2024-01-03,1000\n2024-01-04,1020\n2024-01-05,999.6\n2024-01-08,1059.576\n");
  files_.Write(QStringLiteral("securities.csv"), "code,name\n600519,甲\n000001,乙\n000002,丙\n");
  files_.Write(QStringLiteral("bars/600519.csv"),
               "date,close\n2024-01-03,100\n2024-01-04,102\n2024-01-05,102\n2024-01-08,109.14\n");
  files_.Write(QStringLiteral("bars/000001.csv"), "date,close\n2024-01-05,9\n2024-01-08,9\n");
  files_.Write(QStringLiteral("bars/000002.csv"), "date,close\n2024-01-02,9\n2024-01-03,9\n");
  files_.Write(QStringLiteral("rates.csv"), "date,one_year\n2015-10-24,50\n");
  options_.ratesFile = files_.Path(QStringLiteral("rates.csv"));  // 0.002 a day
  options_.days = 3;
  ASSERT_EQ(Run().error, "");
  const auto expectRow = [](const ResultSet& table, int row, const char* code, const std::vector<double>& figures) {
    EXPECT_EQ(table.Utf8At(row, 0), code);
    for (int i = 0; i < 4; ++i) EXPECT_NEAR(table.RealAt(row, i + 1), figures[static_cast<std::size_t>(i)], 1e-12) << i;
  };
  for (const char* name : {"SH", "HS"}) {
    const ResultSet table = Table(QStringLiteral("QMTL/TZZH/风险计量/%1.dat").arg(QString::fromUtf8(name)));
    ASSERT_EQ(table.RowCount(), 2) << name;
    expectRow(table, 0, "000001", {0, -0.002, 0, 0});
    expectRow(table, 1, "600519", {1.75, 0.014, 0.016, 0.028 / std::sqrt(0.0013)});
  }
  // Every return of the Shenzhen index is twice that of the others: half the beta, alpha 0.028 - 0.875 x 0.018.
  const ResultSet shenzhen = Table(QStringLiteral("QMTL/TZZH/风险计量/SZ.dat"));
  ASSERT_EQ(shenzhen.RowCount(), 2);
  expectRow(shenzhen, 0, "000001", {0, -0.002, 0, 0});
  expectRow(shenzhen, 1, "600519", {0.875, 0.01225, 0.032, 0.028 / std::sqrt(0.0013)});
}

TEST_F(Build, TakesEstimatesFromAFileAndNamesItsBadRows) {
  files_.Write(QStringLiteral("estimates.csv"),
               "代码,估值\n600519.SH,1850.50\n000001,12.345\n600519,1\n000001,0\n600000,7\n12,1\nsz000001,x\n");
  options_.estimatesFile = files_.Path(QStringLiteral("estimates.csv"));
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.error, "");
  EXPECT_EQ(outcome.rejections,
            "estimates.csv:4: 代码 600519 重复\n"
            "estimates.csv:5: 估值不是正数“0”\n"
            "estimates.csv:6: 代码 600000 不在证券表中\n"
            "estimates.csv:7: 不是沪深证券代码“12”\n"
            "estimates.csv:8: 估值不是数字“x”\n");
  EXPECT_EQ(outcome.summary.rejectedLines, 5);
  const QString file = QStringLiteral("QMTL/TZZH/GZ.dat");
  const std::string edition = Table(QStringLiteral("market.dat")).TextAt(0, 3).toStdString();
  EXPECT_EQ(Csv(file),
            "SECUCODE:text,ID:integer,PRICE:text,edition:text\n600519,1,1850.5," + edition + "\n000001,2,12.345,\n");
  options_.estimatesFile.clear();
  EXPECT_EQ(Run().error, "");
  EXPECT_EQ(Csv(file), "SECUCODE:text,ID:integer,PRICE:text,edition:text\n") << "values of an earlier run do not stay";
}

}  // namespace
}  // namespace holdwise
