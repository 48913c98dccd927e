// SPDX-License-Identifier: MIT
#include "holdwise/market/bar_reader.h"
#include "holdwise/packet/error.h"
#include "market_files.h"

namespace holdwise {
namespace {

using test::MarketFiles;

struct Read {
  std::string bars;
  std::string rejections;
  BarFile file;
};

Read ReadText(const QByteArray& csv, const BarRules& rules = {}) {
  const MarketFiles files;
  files.Write(QStringLiteral("a.csv"), csv);
  const QString path = files.Path(QStringLiteral("a.csv"));
  Read read;
  read.file = ReadBars(path, rules);
  for (const Bar& bar : read.file.bars) {
    read.bars += std::to_string(bar.date) + "=" + QString::number(bar.close, 'g', 15).toStdString() + ";";
  }
  for (const Rejection& rejection : read.file.rejections) {
    read.rejections += rejection.ToText().remove(path).toStdString() + "\n";
  }
  return read;
}

TEST(BarForms, DatesWithTimesAndNumbersAsProgramsWriteThem) {
  const Read read = ReadText(
      "Date,Close,Volume\n2024-01-02 00:00:00+08:00,7.9899997711181641,1.158e+08\n20240103,799e-2,0.0\n"
      "2024/1/4,+8.01,12\n2024-01-05T15:00:00,123456789.012345,1\n");
  EXPECT_EQ(read.bars, "20240102=7.98999977111816;20240103=7.99;20240104=8.01;20240105=123456789.012345;");
  EXPECT_EQ(read.rejections, "");
  EXPECT_EQ(read.file.volumes, (std::vector<double>{115800000, 0, 12, 1}));
}

TEST(BarForms, DaysWithoutATradeAreNoMistakes) {
  const Read read = ReadText(
      "date,open,high,low,close,volume,tradestatus\n"
      "2024-01-02,8,8,8,8,1,1\n"
      "2024-01-03,8,8,8,8,,0\n"        // says so
      "2024-01-04,,,,,,1\n"            // no price at all
      "2024-01-05,nan,NaN,,nan,0,1\n"  //
      "2024-01-08,8,8,8,8,,1\n"        // the last close repeated, no volume
      "2024-01-09,0,0,0,0,0,0\n"       //
      "2024-01-10,8,9,8,8,,1\n"        // a trade whose volume is missing
      "2024-01-11,8,9,8,,5,1\n"        // and one whose close is
      "2024-01-12,0,9,8,8,5,1\n"
      "2024-01-15,8,9,8,-8,5,1\n"
      "2024-01-16,8,8,8,8,0,1\n"  // the last close repeated, and said that none was traded
      "2024-01-17,nan,nan,nan,8,0,1\n"
      "2024-01-18,--,--,--,8,--,1\n"
      "2024-01-19,8,9,8,8,0,1\n");  // prices of trades
  EXPECT_EQ(read.bars, "20240102=8;20240119=8;");
  EXPECT_EQ(read.file.counts.suspendedDays, 8);
  EXPECT_EQ(read.file.counts.zeroPrices, 2);
  EXPECT_EQ(read.rejections, ":8: 成交量缺失\n:9: 收盘价缺失\n:10: 开盘价不是正数“0”\n:11: 收盘价为负数“-8”\n");
  for (const char* paused : {"TRUE", "True", "true", "1", "1.0", "是", "Y"}) {
    const Read day = ReadText(QByteArray("date,close,paused\n2024-01-02,8,0\n2024-01-03,8,") + paused + "\n");
    EXPECT_EQ(day.bars, "20240102=8;") << paused;
    EXPECT_EQ(day.file.counts.suspendedDays, 1) << paused;
  }
  for (const char* paused : {"FALSE", "False", "false", "0", "0.0", "否", "N", ""}) {
    EXPECT_EQ(ReadText(QByteArray("date,close,paused\n2024-01-03,8,") + paused + "\n").bars, "20240103=8;") << paused;
  }
}

TEST(BarForms, AColumnUnderTwoNamesMustAgreeInEveryLine) {
  BarRules rules;
  rules.codeNumber = 1600519;
  const Read read = ReadText(
      "ts_code,symbol,trade_date,日期,close,收盘,amount\n"
      "600519.SH,600519,20240102,2024-01-02,8,8.00,1\n"
      "600519.SH,600518,20240103,2024-01-03,8,8,1\n"
      "600519.SH,600519,20240104,2024-01-05,8,8,1\n"
      "600519.SH,600519,20240108,2024-01-08,8,8.01,1\n",
      rules);
  EXPECT_EQ(read.bars, "20240102=8;");
  EXPECT_EQ(read.rejections,
            ":3: 列“ts_code”与“symbol”不一致：“600519.SH”，“600518”\n"
            ":4: 列“trade_date”与“日期”不一致：“20240104”，“2024-01-05”\n"
            ":5: 列“close”与“收盘”不一致：“8”，“8.01”\n");
  EXPECT_EQ(read.file.understood.toStdString(),
            "代码=ts_code，代码=symbol，日期=trade_date，日期=日期，收盘=close，收盘=收盘；未用：amount");
}

TEST(BarForms, ACodeInALineIsThatOfTheFile) {
  BarRules rules;
  rules.codeNumber = 1000001;
  const QByteArray csv =
      "date,code,close\n2024-01-02,sz.000001,8\n2024-01-03,000001.SH,8\n2024-01-04,600519,8\n2024-01-05,x,8\n";
  const Read stock = ReadText(csv, rules);
  EXPECT_EQ(stock.bars, "20240102=8;");
  EXPECT_EQ(stock.rejections,
            ":3: 代码“000001.SH”与文件名不符\n:4: 代码“600519”与文件名不符\n:5: 代码“x”与文件名不符\n");
  rules.codeNumber = 1;
  EXPECT_EQ(ReadText(csv, rules).bars, "20240103=8;") << "the composite index";
}

TEST(BarForms, BackwardAdjustedBarsAreRefused) {
  try {
    (void)ReadText("date,close,adjustflag\n2024-01-02,8,1\n");
    FAIL() << "no error";
  } catch (const Error& error) {
    EXPECT_EQ(error.Category(), ErrorCategory::Refused);
    EXPECT_NE(std::string(error.what()).find("后复权"), std::string::npos) << error.what();
  }
  EXPECT_EQ(ReadText("date,close,adjustflag\n2024-01-02,8,2\n2024-01-03,8,3\n").bars, "20240102=8;20240103=8;");
}

// A file of several megabytes is read piece by piece: lines are counted through all of them.
TEST(BarForms, LinesOfLargeFilesAreCounted) {
  QByteArray csv = "date,close,备注\n";
  const QByteArray remark(200, 'x');
  constexpr int kLines = 60000;
  for (int i = 0; i < kLines; ++i) csv += "2024-01-02,8," + remark + "\n";
  csv += "2024-01-03,x,行末\n";
  const Read read = ReadText(csv);
  EXPECT_EQ(read.bars, "20240102=8;");
  ASSERT_EQ(read.file.rejections.size(), static_cast<std::size_t>(kLines));
  EXPECT_EQ(read.file.rejections.front().line, 3);
  EXPECT_EQ(read.file.rejections.back().line, kLines + 2);
  EXPECT_EQ(read.file.rejections.back().reason.toStdString(), "收盘价不是数字“x”");
}

TEST(BarForms, CountsWhatIsMissingAndWhatStandsStill) {
  const int dates[] = {20240102, 20240103, 20240104, 20240105, 20240108, 20240109};
  BarRules rules;
  rules.tradingDates = dates;
  const Read read = ReadText("date,close\n2024-01-02,8\n2024-01-04,8\n2024-01-05,\n2024-01-09,8\n", rules);
  EXPECT_EQ(read.file.counts.missingDays, 2);
  EXPECT_EQ(read.file.counts.suspendedDays, 1);
  EXPECT_EQ(read.file.counts.longestStandstill, 3);
}

}  // namespace
}  // namespace holdwise
