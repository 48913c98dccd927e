// SPDX-License-Identifier: MIT
#include "build_fixture.h"

namespace holdwise {
namespace {

class Sources : public Build {
 protected:
  void RemoveBars() { QDir(files_.Path(QStringLiteral("bars"))).removeRecursively(); }
  [[nodiscard]] std::string Closes(const QString& name) const { return Rows(name, {"hqtype", "hqdate", "closeprice"}); }
  static std::string Joined(const std::vector<QString>& lines) {
    std::string text;
    for (const QString& line : lines) text += line.toStdString() + "\n";
    return text;
  }
};

const QString kPingAn = QStringLiteral("QMTL/TZZH/Day250/股票/000001.dat");

TEST_F(Sources, OneTableOfAllStocksGivesTheSameAsAFileEach) {
  files_.Write(QStringLiteral("bars/000001.csv"), "date,close\n2024-01-08,9\n2024-01-09,9.5\n");
  ASSERT_EQ(Run().error, "");
  const std::string moutai = Csv(kMoutai);
  const std::string pingAn = Csv(kPingAn);
  const std::string quotes = Csv(QStringLiteral("quotes.dat"));

  RemoveBars();
  files_.Write(QStringLiteral("all.csv"),
               "ts_code,trade_date,close\n000001.SZ,20240109,9.5\n600519.SH,20240109,15.5\n600519.SH,20240108,14.5\n"
               "000001.SZ,20240108,9\n600519.SH,20240105,13.5\n");
  options_.barsFolder = files_.Path(QStringLiteral("all.csv"));
  const Outcome long1 = Run();
  EXPECT_EQ(long1.error + long1.rejections, "");
  EXPECT_EQ(Csv(kMoutai), moutai);
  EXPECT_EQ(Csv(kPingAn), pingAn);
  EXPECT_EQ(Csv(QStringLiteral("quotes.dat")), quotes);

  files_.Write(QStringLiteral("days/20240105.csv"), "code,date,close\nsh600519,2024-01-05,13.5\n");
  files_.Write(QStringLiteral("days/20240108.csv"),
               "code,date,close\nsh600519,2024-01-08,14.5\nsz000001,2024-01-08,9\n");
  files_.Write(QStringLiteral("days/20240109.csv"),
               "date,code,close\n2024-01-09,sz000001,9.5\n2024-01-09,sh600519,15.5\n");
  options_.barsFolder = files_.Path(QStringLiteral("days"));
  const Outcome days = Run();
  EXPECT_EQ(days.error + days.rejections, "");
  EXPECT_EQ(Csv(kMoutai), moutai);
  EXPECT_EQ(Csv(kPingAn), pingAn);
}

TEST_F(Sources, ATableNamesItsBadLinesAndTheCodesThatNobodyWants) {
  RemoveBars();
  files_.Write(QStringLiteral("bars/a.csv"),
               "code,date,close\n600519,2024-01-08,14.5\n600519,2024-01-09,x\n430047.BJ,2024-01-09,1\n"
               "510300,2024-01-09,4\n510300,2024-01-08,4\nsz600519,2024-01-09,4\n430047.BJ,2024-01-08,1\n"
               "bj920001,2024-01-08,1\n");
  files_.Write(QStringLiteral("bars/b.csv"), "code,date,close\n600519,2024-01-08,14.6\n600519,2024-01-09,15.5\n");
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.error, "");
  EXPECT_EQ(outcome.rejections,
            "bars/a.csv:3: 收盘价不是数字“x”\n"
            "bars/a.csv:5: 代码“510300”不在证券表中，或不是沪深证券代码（共 2 行）\n"
            "bars/a.csv:7: 代码“sz600519”的市场与代码不符（共 1 行）\n"
            "bars/a.csv:4: 北京证券交易所的代码，如“430047.BJ”，不采用（共 3 行）\n"
            "bars/b.csv:2: 日期 2024-01-08 重复，首次在 bars/a.csv 第 2 行\n");
  EXPECT_EQ(outcome.summary.rejectedLines, 8);
  EXPECT_EQ(Rows(kMoutai, {"hqtype", "closeprice"}).substr(0, 14), "0 14.5 \n0 15.5");
  files_.Write(QStringLiteral("bars/b.csv"), "code,date,close,pre_close\n600519,2024-01-09,15.5,15\n");
  EXPECT_TRUE(Run().error.starts_with("与前面的文件的复权依据列不一致")) << Run().error;
}

TEST_F(Sources, OneTableOfTheIndices) {
  ASSERT_EQ(Run().error, "");
  const std::string before = Csv(QStringLiteral("QMTL/TZZH/Day250/指数/allzs.dat"));
  QByteArray table = "date,code,close\n";
  for (const QByteArray& line : QByteArray(kWeek).split('\n').mid(1)) {
    if (line.isEmpty()) continue;
    for (const char* code : {"sh.000001", "sz.399001", "sh.000300"})
      table += QByteArray(line).replace(',', QByteArray(",") + code + ",") + "\n";
  }
  files_.Write(QStringLiteral("index.csv"), table);
  options_.indicesFolder = files_.Path(QStringLiteral("index.csv"));
  EXPECT_EQ(Run().error, "");
  EXPECT_EQ(Csv(QStringLiteral("QMTL/TZZH/Day250/指数/allzs.dat")), before);
  files_.Write(QStringLiteral("index.csv"), "date,code,close\n2024-01-09,sh.000001,1\n2024-01-09,sh.000300,1\n");
  EXPECT_TRUE(Run().error.starts_with("缺少指数行情 深证成指（399001.csv）")) << Run().error;
}

TEST_F(Sources, ClosedDaysOfACalendarAreNoTradingDays) {
  options_.datesFile = files_.Path(QStringLiteral("dates.csv"));
  const std::string wanted = "date:integer\n20240103\n20240104\n20240105\n20240108\n20240109\n";
  files_.Write(
      QStringLiteral("dates.csv"),
      "exchange,cal_date,is_open,pretrade_date\nSSE,20240109,1,\nSZSE,20240109,1,\nSSE,20240108,1,\n"
      "SSE,20240107,0,\nSSE,20240106,0,\nSSE,20240105,1,\nSSE,20240104,1,\nSSE,20240103,1,\nSSE,20240102,0,\n");
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.error + outcome.rejections, "");
  EXPECT_EQ(Csv(QStringLiteral("trading_dates.dat")), wanted);
  files_.Write(QStringLiteral("dates.csv"),
               "calendar_date,is_trading_day\n2024-01-02,0\n2024-01-03,1\n2024-01-04,1\n2024-01-05,1\n2024-01-06,0\n"
               "2024-01-08,1\n2024-01-09,1\n2024-01-09,0\n2024-01-10,?\n");
  EXPECT_EQ(Run().rejections, "dates.csv:9: 日期 2024-01-09 重复\ndates.csv:10: 是否开市无法识别“?”\n");
  EXPECT_EQ(Csv(QStringLiteral("trading_dates.dat")), wanted);
}

TEST_F(Sources, SecuritiesAsTheirListsHaveThem) {
  const std::string heading =
      "code:text,name:text,industry:text,market:integer,list_date:integer,a_share:integer,pinyin:text\n";
  const std::string wanted =
      heading + "600519,贵州茅台,白酒,1,20010827,1,G Z M T\n000001,平安银行,银行,2,19910403,1,P A Y HX\n";
  const char* lists[] = {
      "ts_code,symbol,name,area,industry,market,list_date\n600519.SH,600519,贵州茅台,贵州,白酒,主板,20010827\n"
      "000001.SZ,000001,平安银行,深圳,银行,主板,19910403\n",
      "A股代码,A股简称,A股上市日期,所属行业,板块\n600519,贵州茅台,2001-08-27,白酒,主板\n000001,平安银行,1991/4/"
      "3,银行,主板\n",
      "code,code_name,ipoDate,outDate,type,status,industry\nsh.000001,上证综合指数,1991-07-15,,2,1,\n"
      "sh.600519,贵州茅台,2001-08-27,,1,1,白酒\nsz.000001,平安银行,1991-04-03 "
      "00:00:00,,1,1,银行\nsz.159915,基金,,,5,1,\n",
      "代码,名称,行业,交易所,上市日期\n600519.SS,贵州茅台,白酒,SSE,20010827\n000001.SZ,平安银行,银行,SZSE,19910403\n",
  };
  for (const char* list : lists) {
    files_.Write(QStringLiteral("securities.csv"), list);
    const Outcome outcome = Run();
    EXPECT_EQ(outcome.error + outcome.rejections, "") << list;
    EXPECT_EQ(Csv(QStringLiteral("securities.dat")), wanted) << list;
  }
  files_.Write(
      QStringLiteral("securities.csv"),
      "code,name,market\n600519,贵州茅台,创业板\n000001,平安银行,科创板\n600000,浦发银行,主板\n600004,nan,主板\n"
      "830799,艾融软件,北交所\n920002.BJ,万达轴承,北交所\n");
  EXPECT_EQ(Run().rejections,
            "securities.csv:2: 市场“创业板”与代码 600519 不符\nsecurities.csv:3: 市场“科创板”与代码 000001 不符\n"
            "securities.csv:5: 名称缺失\n"
            "securities.csv:6: 北京证券交易所的代码，如“830799”，不采用（共 2 行）\n"
            "bars/600519.csv: 代码不在证券表中\n");
}

TEST_F(Sources, IndustriesAndListDatesComeFromElsewhere) {
  files_.Write(QStringLiteral("securities.csv"), "证券代码,证券简称,行业\n600519,贵州茅台,\n000001,平安银行,银行\n");
  files_.Write(QStringLiteral("industries.csv"),
               "code,industry\nsh.600519,食品饮料\n000001,货币金融\n600000,银行\n600519,again\nx,y\n");
  options_.industriesFile = files_.Path(QStringLiteral("industries.csv"));
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.rejections, "industries.csv:5: 代码 600519 重复\nindustries.csv:6: 不是沪深证券代码“x”\n");
  EXPECT_EQ(Csv(QStringLiteral("securities.dat")),
            "code:text,name:text,industry:text,market:integer,list_date:integer,a_share:integer,pinyin:text\n"
            "600519,贵州茅台,食品饮料,1,20240105,1,G Z M T\n000001,平安银行,银行,2,,1,P A Y HX\n")
      << "the security master comes first; without bars there is no list date";
}

// Prices before the fifth times 0.9, before the ninth times 0.8 more: by hand.
TEST_F(Sources, FactorsInEveryForm) {
  files_.Write(QStringLiteral("bars/600519.csv"),
               "date,close\n2024-01-04,20\n2024-01-05,18\n2024-01-08,20\n2024-01-09,16\n");
  options_.factorsPlace = files_.Path(QStringLiteral("factors.csv"));
  const char* forms[] = {
      "code,ex_date,factor\n600519,2024-01-09,0.8\n600519,2024-01-05,0.9\n",
      "ts_code,trade_date,adj_factor\n600519.SH,20240109,12.5\n600519.SH,20240108,10\n600519.SH,20240105,10\n"
      "600519.SH,20240104,9\n",
      "code,dividOperateDate,foreAdjustFactor,backAdjustFactor,adjustFactor\nsh.600519,2000-01-01,0.72,9,9\n"
      "sh.600519,2024-01-05,0.8,10,10\nsh.600519,2024-01-09,1,12.5,12.5\n",
      "code,date,qfq_factor\n600519,2024-01-09,1\n600519,2024-01-05,1.25\n600519,1900-01-01,1.3888888888888888\n",
      "code,date,factor\n600519,2024-01-02,1.8\n600519,2024-01-03,1.8\n600519,2024-01-04,1.8\n600519,2024-01-05,2\n"
      "600519,2024-01-08,2\n600519,2024-01-09,2.5\n600519,2024-01-10,2.5\n600519,2024-01-11,2.5\n",
      "code,date,factor\n600519,2024-01-02,0.72\n600519,2024-01-03,0.72\n600519,2024-01-04,0.72\n"
      "600519,2024-01-05,0.8\n600519,2024-01-08,0.8\n600519,2024-01-09,1\n600519,2024-01-10,1\n",
      "code,ex_date,event_factor\n600519,2024-01-09,0.8\n600519,2024-01-05,0.9\n600519,2000-01-05,1\n",
  };
  for (const char* form : forms) {
    files_.Write(QStringLiteral("factors.csv"), form);
    const Outcome outcome = Run();
    EXPECT_EQ(outcome.error + outcome.rejections, "") << form;
    const ResultSet table = Table(kMoutai);
    const double closes[] = {20 * 0.72, 18 * 0.8, 20 * 0.8, 16};
    for (int row = 0; row < 4; ++row) {
      EXPECT_NEAR(table.RealAt(row, table.Column("closeprice")), closes[row], 1e-12) << form;
    }
  }
  files_.Write(QStringLiteral("factors/600519.csv"),
               "date,hfq_factor\n2024-01-04,9\n2024-01-05,10\n2024-01-09,12.5\nx,1\n");
  options_.factorsPlace = files_.Path(QStringLiteral("factors"));
  EXPECT_EQ(Run().rejections, "factors/600519.csv:5: 日期无法识别“x”\n");
  EXPECT_NEAR(Table(kMoutai).RealAt(0, 1), 14.4, 1e-12);
  files_.Write(QStringLiteral("factors/600519.csv"), "date,value\n2024-01-04,9\n");
  EXPECT_NE(Run().error.find("表头缺少列“adj_factor”"), std::string::npos) << Run().error;
}

TEST_F(Sources, FactorsThatCanBeTakenEitherWayAreRefused) {
  options_.factorsPlace = files_.Path(QStringLiteral("factors.csv"));
  const char* const eventsOfEveryDay =
      "code,date,factor\n600519,2024-01-03,1\n600519,2024-01-04,1\n600519,2024-01-05,0.9\n600519,2024-01-08,1\n"
      "600519,2024-01-09,1\n600519,2024-01-10,1\n600519,2024-01-11,1\n";
  const char* const forms[] = {
      // Of events by another rule, or cumulative.
      "code,date,factor\n600519,2024-01-05,1.02\n600519,2024-01-09,1.04\n",
      "code,date,factor\n600519,2000-01-01,1.8\n600519,2024-01-05,2\n600519,2024-01-09,2.5\n",
      "code,date,factor\n600519,2023-01-05,0.95\n600519,2023-06-05,0.95\n",
      eventsOfEveryDay,
  };
  for (const char* form : forms) {
    files_.Write(QStringLiteral("factors.csv"), form);
    const std::string error = Run().error;
    EXPECT_TRUE(error.starts_with("看不出 factor 一列是累计因子还是每次除权一个")) << form << error;
    EXPECT_NE(error.find("adj_factor"), std::string::npos);
  }
  files_.Write(QStringLiteral("factors.csv"), "code,date,ex_factor\n600519,2024-01-05,1.02\n600519,2024-01-09,1.04\n");
  EXPECT_TRUE(Run().error.starts_with("除权因子应当每次除权一行、小于 1")) << Run().error;
  // Told for a folder as a whole: the daily rows of one say what the single rows of the other are.
  const QByteArray daily =
      "date,factor\n2024-01-02,0.95\n2024-01-03,0.95\n2024-01-04,0.95\n2024-01-05,0.95\n2024-01-08,0.95\n";
  files_.Write(QStringLiteral("factors/000001.csv"), daily);
  files_.Write(QStringLiteral("factors/600519.csv"), "date,factor\n2024-01-05,0.9\n2024-01-09,0.99\n");
  options_.factorsPlace = files_.Path(QStringLiteral("factors"));
  EXPECT_EQ(Run().error, "");
  const ResultSet table = Table(kMoutai);
  EXPECT_NEAR(table.RealAt(0, table.Column("closeprice")), 13.5 * 0.9 / 0.99, 1e-12);
}

// A row a day, of which two days lack it: on which of the three something went off cannot be told.
TEST_F(Sources, AnEventInsideAGapOfTheFactorsIsNamed) {
  options_.factorsPlace = files_.Path(QStringLiteral("factors.csv"));
  files_.Write(QStringLiteral("bars/600519.csv"), "date,close\n2024-01-05,15\n2024-01-08,14.3\n2024-01-09,13.6\n");
  const auto warnings = [this](const char* factors) {
    files_.Write(QStringLiteral("factors.csv"), factors);
    std::string text;
    BuildObserver observer;
    observer.onWarning = [&](const Rejection& warning) {
      if (warning.file.contains(QStringLiteral("600519"))) text += warning.reason.toStdString() + "\n";
    };
    (void)BuildDataFolder(options_, observer);
    return text;
  };
  EXPECT_EQ(warnings("code,date,adj_factor\n600519,2024-01-02,9\n600519,2024-01-03,9\n600519,2024-01-04,9\n"
                     "600519,2024-01-09,10\n600519,2024-01-10,10\n"),
            "600519 复权因子从 2024-01-04 到 2024-01-09 之间缺行，其间的除权（-10.00%）按 2024-01-09 计算\n");
  EXPECT_EQ(warnings("code,date,adj_factor\n600519,2024-01-02,9\n600519,2024-01-03,9\n600519,2024-01-04,9\n"
                     "600519,2024-01-05,9\n600519,2024-01-08,10\n600519,2024-01-10,10\n"),
            "")
      << "the day behind a weekend";
  EXPECT_EQ(warnings("code,date,adj_factor\n600519,2023-01-02,9\n600519,2024-01-09,10\n"), "")
      << "a row an event says on which day it was";
  files_.Write(QStringLiteral("bars/600519.csv"), "date,close\n2024-01-04,15\n2024-01-09,13.5\n");
  EXPECT_EQ(warnings("code,date,adj_factor\n600519,2024-01-02,9\n600519,2024-01-03,9\n600519,2024-01-04,9\n"
                     "600519,2024-01-09,10\n600519,2024-01-10,10\n"),
            "")
      << "no bar inside the gap: its day does not matter";
}

TEST_F(Sources, RatesAndQuotesInTheWordsOfTheirSources) {
  files_.Write(QStringLiteral("rates.csv"),
               "pubDate,demandDepositRate,fixedDepositRate3Month,fixedDepositRate6Month,fixedDepositRate1Year,"
               "fixedDepositRate2Year,fixedDepositRate3Year,fixedDepositRate5Year\n"
               "2015-08-26,0.350000,1.350000,1.550000,1.750000,2.350000,3.000000,\n"
               "2015-10-24,0.350000,1.100000,1.300000,1.500000,2.100000,2.750000,\n");
  options_.ratesFile = files_.Path(QStringLiteral("rates.csv"));
  options_.quotesFile = files_.Path(QStringLiteral("quotes.csv"));
  for (const char* quotes :
       {"代码,名称,最新价,涨跌幅,昨收\n600519,贵州茅台,16.01,3.29,15.5\n",
        "ts_code,price,pre_close\n600519.SH,16.01,15.5\n", "code,price,prev_close\nsh600519,1.601e1,15.50\n"}) {
    files_.Write(QStringLiteral("quotes.csv"), quotes);
    const Outcome outcome = Run();
    EXPECT_EQ(outcome.error + outcome.rejections, "") << quotes;
    EXPECT_TRUE(QuotesCsv().ends_with("1600519,16.01,15.5\n")) << quotes << QuotesCsv();
  }
  EXPECT_EQ(Rows(QStringLiteral("QMTL/TZZH/InterestRate.Dat"), {"TERM", "INTEREST"}),
            "一年 1.5 \n活期 0.35 \n三个月 1.1 \n半年 1.3 \n二年 2.1 \n三年 2.75 \n");
}

TEST_F(Sources, AFileOfItsOwnComesBeforeATable) {
  files_.Write(QStringLiteral("bars/all.csv"),
               "code,date,close\n600519,2024-01-09,99\n000001,2024-01-08,9\n000001,2024-01-09,9.5\n");
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.rejections, "bars/all.csv: 代码 600519 另有文件，这里的不用\n");
  EXPECT_TRUE(QuotesCsv().ends_with("1000001,9.5,9\n1600519,15.5,14.5\n")) << QuotesCsv();
}

TEST_F(Sources, SaysThatBarsLookAsTraded) {
  files_.WriteMarket(kIndexWeek);
  files_.Write(QStringLiteral("bars/600519.csv"),
               "date,close,change\n2024-01-05,20,1\n2024-01-08,15,-1\n2024-01-09,14.5,-0.5\n");
  std::string warnings;
  BuildObserver observer;
  observer.onWarning = [&](const Rejection& warning) { warnings += warning.reason.toStdString() + "\n"; };
  const BuildSummary summary = BuildDataFolder(options_, observer);
  EXPECT_EQ(warnings, "600519 2024-01-08 收盘变动 -25.00%，超过涨跌幅限制 10%\n");
  EXPECT_EQ(Joined(summary.advice),
            "行情像是未复权的：1 只股票 1 处，如 600519 2024-01-08 收盘变动 -25.00%，超过涨跌幅限制 "
            "10%。请用前复权的行情、带昨收一列的行情，或用 --factors 给出复权因子\n");
  files_.Write(QStringLiteral("bars/600519.csv"), "date,close\n2024-01-05,20\n2024-01-08,19\n");
  EXPECT_TRUE(BuildDataFolder(options_).advice.empty());
}

// The week has six days; what is odd is named with its date.
TEST_F(Sources, StaleAndBrokenIndicesAndCalendarsAreNamed) {
  std::string warnings;
  BuildObserver observer;
  observer.onWarning = [&](const Rejection& warning) { warnings += warning.reason.toStdString() + "\n"; };
  const auto run = [&] {
    warnings.clear();
    return BuildDataFolder(options_, observer);
  };
  files_.WriteMarket(kIndexWeek);
  EXPECT_TRUE(run().advice.empty());
  EXPECT_EQ(warnings, "");

  files_.Write(QStringLiteral("indices/399300.csv"),
               "date,close,pre_close\n2024-01-02,1000,1000\n2024-01-04,1200,1100\n");
  const BuildSummary summary = run();
  EXPECT_EQ(warnings,
            "指数 沪深300（399300.csv） 只到 2024-01-04，最后一个交易日是 2024-01-09：请更新\n"
            "指数 沪深300（399300.csv） 中间缺 1 个交易日，如 2024-01-03\n");
  EXPECT_EQ(Joined(summary.advice),
            "指数行情和交易日历有 2 处要核对，如 指数 沪深300（399300.csv） 只到 2024-01-04，最后一个交易日是 "
            "2024-01-09：请更新\n");

  // All indices end before the bars do.
  for (const char* name : {"indices/1.csv", "indices/399001.csv", "indices/399300.csv"}) {
    files_.Write(QString::fromUtf8(name), "date,close\n2024-01-04,1200\n2024-01-05,1300\n");
  }
  (void)run();
  EXPECT_EQ(warnings, "1 只股票有 2 行晚于最后一个交易日 2024-01-05，不在统计之内：请更新指数行情和交易日历\n");
  options_.currentDate = 20240105;
  (void)run();
  EXPECT_EQ(warnings, "") << "asked for";

  options_.currentDate = 0;
  files_.WriteMarket(kIndexWeek);
  files_.Write(QStringLiteral("dates.csv"), "date\n2024-01-02\n2024-01-03\n2024-01-04\n2024-01-05\n");
  options_.datesFile = files_.Path(QStringLiteral("dates.csv"));
  (void)run();
  EXPECT_EQ(warnings,
            "交易日历只到 2024-01-05，早于当前日期 2024-01-09，此后的行情不在统计之内：请更新交易日历\n"
            "1 只股票有 2 行晚于最后一个交易日 2024-01-05，不在统计之内：请更新指数行情和交易日历\n");
}

TEST_F(Sources, AnIndexThatIsNoneIsNamed) {
  files_.WriteMarket(kIndexWeek);
  files_.Write(QStringLiteral("indices/1.csv"), "date,close\n2024-01-08,10.2\n2024-01-09,10.1\n");
  std::string warnings;
  BuildObserver observer;
  observer.onWarning = [&](const Rejection& warning) { warnings += warning.reason.toStdString() + "\n"; };
  EXPECT_EQ(BuildDataFolder(options_, observer).advice.size(), 1U);
  EXPECT_EQ(warnings,
            "指数 上证指数（1.csv） 在 2024-01-09 只有 10.10 点，不像指数的点位（是不是同号股票的价格？）：请核对\n");
}

TEST_F(Sources, ACheckSaysWhatItUnderstandsAndWritesNothing) {
  files_.Write(QStringLiteral("bars/000001.csv"), "date,close\n2024-01-04,9\n2024-01-08,9\n2024-01-09,0\n");
  options_.outFolder.clear();
  std::string root = files_.Path(QString()).toStdString();
  const BuildSummary summary = CheckInputs(options_);
  std::string text = Joined(summary.understood);
  for (std::size_t at = text.find(root); at != std::string::npos; at = text.find(root)) text.erase(at, root.size());
  for (std::size_t at = text.find("\n/"); at != std::string::npos; at = text.find("\n/")) text.erase(at + 1, 1);
  EXPECT_EQ(text.substr(text.starts_with('/') ? 1 : 0),
            "indices/1.csv 等 3 个文件：日期=date，收盘=close\n"
            "securities.csv：代码=code，名称=name，行业=industry，市场=market，上市日期=list_date\n"
            "bars/000001.csv 等 2 个文件：日期=date，收盘=close\n"
            "交易日：6 个，2024-01-02 至 2024-01-09\n"
            "行情：2 只，2024-01-04 至 2024-01-09\n"
            "复权：2 只按原样采用（应为前复权）\n"
            "停牌的行：0，价格为零或负数的行：1\n"
            "中间缺交易日：1 只（如 000001 缺 1 日）\n"
            "没有最后一个交易日：1 只（如 000001 到 2024-01-08）\n"
            "收盘价久不变动：无\n");
  EXPECT_EQ(summary.series, 2);
  EXPECT_EQ(Names(QString()), (QStringList{QStringLiteral("bars/000001.csv"), QStringLiteral("bars/600519.csv"),
                                           QStringLiteral("indices/1.csv"), QStringLiteral("indices/399001.csv"),
                                           QStringLiteral("indices/399300.csv"), QStringLiteral("securities.csv")}));
}

}  // namespace
}  // namespace holdwise
