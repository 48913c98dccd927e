// SPDX-License-Identifier: MIT

#include "holdwise/market/bar_reader.h"
#include "holdwise/market/statistics.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/error.h"
#include "market_files.h"

namespace holdwise {
namespace {

using test::MarketFiles;

std::string BarsText(const BarFile& file) {
  std::string text;
  for (const Bar& bar : file.bars) {
    text += std::to_string(bar.date) + "=" + QString::number(bar.close, 'g', 12).toStdString() + ";";
  }
  return text;
}

std::string RejectionsText(const BarFile& file, const QString& path) {
  std::string text;
  for (const Rejection& rejection : file.rejections) {
    text += rejection.ToText().remove(path).toStdString() + "\n";
  }
  return text;
}

TEST(MarketDate, ReadsThreeFormsAndNothingElse) {
  EXPECT_EQ(ReadMarketDate("2024-02-29"), 20240229);
  EXPECT_EQ(ReadMarketDate("20240229"), 20240229);
  EXPECT_EQ(ReadMarketDate("2024/2/9"), 20240209);
  EXPECT_EQ(ReadMarketDate("2024/02/09"), 20240209);
  EXPECT_EQ(ReadMarketDate("2024-2-9"), 20240209);
  for (const char* text : {"2023-02-29", "2024-13-01", "2024-00-10", "2024-1-", "2024-001-02", "2024-01-02 ",
                           " 2024-01-02", "2024-01/02", "202401022", "2024010", "24-01-02", "1899-12-31", "2101-01-01",
                           "", "2024-04-31", "2024/1/", "２０２４-01-02", "+024-01-02", "2024-01-02 00:00:00"}) {
    EXPECT_FALSE(ReadMarketDate(text)) << text;
  }
}

TEST(MarketDate, CountsWeeksAndMonths) {
  EXPECT_EQ(DayNumber(19700101), 0);
  EXPECT_EQ(DayNumber(20240101), 19723);  // 54 years of 365 days and 13 leap days
  EXPECT_EQ(DateOfDayNumber(19723), 20240101);
  EXPECT_EQ(WeekNumber(20241230), WeekNumber(20250105)) << "Monday to Sunday over the turn of the year";
  EXPECT_NE(WeekNumber(20241229), WeekNumber(20241230));
  EXPECT_NE(WeekNumber(20250105), WeekNumber(20250106));
  EXPECT_EQ(WeekNumber(19691229), WeekNumber(19700104));
  EXPECT_NE(WeekNumber(19691228), WeekNumber(19691229));
  EXPECT_EQ(MonthNumber(20250101), MonthNumber(20241231) + 1);
  EXPECT_TRUE(IsWeekday(20250103));
  EXPECT_FALSE(IsWeekday(20250104));
  EXPECT_FALSE(IsWeekday(20250105));
  EXPECT_EQ(DateText(20250105), "2025-01-05");
}

TEST(BarReader, TakesAnyColumnOrderAndHeadings) {
  const char* contents[] = {
      "date,open,high,low,close,volume\n2024-01-02,8.15,8.17,7.99,7.99,115836645\n",
      "Volume,Close,Low,High,Open,Date,Turnover\n1,7.99,7.99,8.17,8.15,20240102,x\n",
      "交易日期,收盘价(元),成交量（手）\r\n2024/1/2,7.99,1158.36\r\n",
      "日期,代码,开盘,收盘,最高,最低,成交量,备注\n2024-01-02,000001,8.15,7.99,8.17,7.99,1,\"a,\"\"b\"\n",
      "close,trade_date\n7.990000,20240102",
      "\n date , close \n\n 2024-01-02 , 7.99 \n\n",
  };
  for (const char* content : contents) {
    const MarketFiles files;
    files.Write(QStringLiteral("a.csv"), content);
    const BarFile file = ReadBars(files.Path(QStringLiteral("a.csv")));
    EXPECT_EQ(BarsText(file), "20240102=7.99;") << content;
    EXPECT_TRUE(file.rejections.empty()) << content << RejectionsText(file, QString());
  }
}

TEST(BarReader, TakesUtf8WithMarkAndGb18030) {
  const QByteArray utf8("日期,收盘\n2024-01-02,7.99\n");
  // "日期,收盘" in GB18030, from the code table: C8D5 C6DA 2C CAD5 C5CC.
  const QByteArray gb18030("\xC8\xD5\xC6\xDA,\xCA\xD5\xC5\xCC\n2024-01-02,7.99\n");
  for (const QByteArray& content : {QByteArray("\xEF\xBB\xBF" + utf8), utf8, gb18030}) {
    const MarketFiles files;
    files.Write(QStringLiteral("a.csv"), content);
    EXPECT_EQ(BarsText(ReadBars(files.Path(QStringLiteral("a.csv")))), "20240102=7.99;");
  }
}

TEST(BarReader, NamesEveryLineItDoesNotUse) {
  const MarketFiles files;
  files.Write(QStringLiteral("a.csv"),
              "date,open,high,low,close,volume\n"     // 1
              "2024-01-02,8,8.5,7.5,8,100\n"          // 2
              "2024-02-30,8,8.5,7.5,8,100\n"          // 3
              "2024-01-03,8,8.5,7.5,abc,100\n"        // 4
              "2024-01-04,8,8.5,7.5,0,100\n"          // 5
              "2024-01-05,8,8.5,7.5,-8,100\n"         // 6
              "2024-01-08,8,8.5,7.5,8.00001,100\n"    // 7
              "2024-01-09,8,8.5,7.5\n"                // 8
              "2024-01-10,8,8.5,7.5,,100\n"           // 9
              ",8,8.5,7.5,8,100\n"                    // 10
              "2024-01-02,9,9.5,8.5,9,100\n"          // 11
              "2024-01-11,x,8.5,7.5,8,100\n"          // 12
              "2024-01-12,8,8.5,7.5,9,100\n"          // 13
              "2024-01-15,8,8.5,7.5,8,-\n"            // 14
              "2024-01-16,8,8.5,7.5,nan,100\n"        // 15
              "2024-01-17,8,8.5,7.5,8e0,100\n"        // 16
              "2024-01-18,8,8.5,7.5,\"7,900\",100\n"  // 17
              "2024-01-19,8,8.5,7.5,8.1234,100\n");   // 18
  const QString path = files.Path(QStringLiteral("a.csv"));
  const BarFile file = ReadBars(path);
  EXPECT_EQ(BarsText(file), "20240102=8;20240108=8.00001;20240117=8;20240119=8.1234;");
  EXPECT_EQ(RejectionsText(file, path),
            ":3: 日期无法识别“2024-02-30”\n"
            ":4: 收盘价不是数字“abc”\n"
            ":5: 收盘价不是正数“0”\n"
            ":6: 收盘价为负数“-8”\n"
            ":8: 字段数 4 与表头的 6 不符\n"
            ":9: 收盘价缺失\n"
            ":10: 日期缺失\n"
            ":11: 日期 2024-01-02 重复，首次在第 2 行\n"
            ":12: 开盘价不是数字“x”\n"
            ":13: 收盘价不在最低价与最高价之间\n"
            ":14: 成交量缺失\n"
            ":15: 收盘价不是数字“nan”\n"
            ":17: 收盘价不是数字“7,900”\n");
}

TEST(BarReader, SortsLinesAndStopsAtTheLastDate) {
  const MarketFiles files;
  files.Write(QStringLiteral("a.csv"),
              "date,close\n2024-01-05,5\n2024-01-02,2\n2024-01-09,nonsense\n2024-01-03,3\n2024-01-04,4\n");
  const BarFile file = ReadBars(files.Path(QStringLiteral("a.csv")), {}, 20240104);
  EXPECT_EQ(BarsText(file), "20240102=2;20240103=3;20240104=4;");
  EXPECT_TRUE(file.rejections.empty()) << "lines behind the last date are not read";
}

TEST(BarReader, RejectsDaysThatAreNoTradingDays) {
  const MarketFiles files;
  files.Write(QStringLiteral("a.csv"),
              "date,close\n2023-12-29,1\n2024-01-02,2\n2024-01-03,3\n2024-01-04,4\n2024-01-08,8\n");
  const int dates[] = {20240102, 20240104};
  const QString path = files.Path(QStringLiteral("a.csv"));
  const BarFile file = ReadBars(path, dates);
  EXPECT_EQ(BarsText(file), "20231229=1;20240102=2;20240104=4;20240108=8;") << "outside the calendar nothing is known";
  EXPECT_EQ(RejectionsText(file, path), ":4: 2024-01-03 不是交易日\n");
}

TEST(BarReader, RefusesFilesThatAreNoTable) {
  const MarketFiles files;
  files.Write(QStringLiteral("empty.csv"), "");
  files.Write(QStringLiteral("heading.csv"), "date,open\n2024-01-02,1\n");
  files.Write(QStringLiteral("twice.csv"), "date,close,Close\n2024-01-02,1,1\n");
  files.Write(QStringLiteral("binary.csv"), QByteArray("date,close\n\xFF\xFE\x80\x00", 15));
  files.Write(QStringLiteral("quote.csv"), "date,close\n2024-01-02,1\n\"2024-01-03,2\n2024-01-04,3\n");
  const auto category = [&](const char* name) {
    try {
      (void)ReadBars(files.Path(QString::fromUtf8(name)));
    } catch (const Error& error) {
      return static_cast<int>(error.Category());
    }
    return -1;
  };
  EXPECT_EQ(category("empty.csv"), static_cast<int>(ErrorCategory::Refused));
  EXPECT_EQ(category("heading.csv"), static_cast<int>(ErrorCategory::Refused));
  EXPECT_EQ(category("twice.csv"), static_cast<int>(ErrorCategory::Refused));
  EXPECT_EQ(category("binary.csv"), static_cast<int>(ErrorCategory::Corrupt));
  EXPECT_EQ(category("missing.csv"), static_cast<int>(ErrorCategory::NotFound));
  const BarFile cut = ReadBars(files.Path(QStringLiteral("quote.csv")));
  EXPECT_EQ(BarsText(cut), "20240102=1;") << "what stands before an unclosed quote counts";
  ASSERT_EQ(cut.rejections.size(), 1U);
  EXPECT_EQ(cut.rejections[0].line, 3);
}

TEST(BarReader, ControlCharactersOfAHeadingAreShown) {
  const MarketFiles files;
  files.Write(QStringLiteral("a.csv"), "date,close,close(\x1B[2J)\n2024-01-02,1,1\n");
  const QString path = files.Path(QStringLiteral("a.csv"));
  try {
    (void)ReadBars(path);
    FAIL() << "no error";
  } catch (const Error& error) {
    EXPECT_EQ(QString::fromUtf8(error.what()), QStringLiteral("表头重复“close(\\x1b[2J)”：") + path);
  }
}

TEST(BarReader, AHeadingThatIsNotUnderstoodComesWithAHint) {
  const MarketFiles files;
  const auto refusal = [&](const QByteArray& text) {
    files.Write(QStringLiteral("a.csv"), text);
    try {
      (void)ReadBars(files.Path(QStringLiteral("a.csv")));
    } catch (const Error& error) {
      return QString::fromUtf8(error.what());
    }
    return QString();
  };
  EXPECT_TRUE(refusal("date;close\n2024-01-02;1\n").contains(QStringLiteral("逗号分隔")));
  EXPECT_TRUE(refusal("date\tclose\n2024-01-02\t1\n").contains(QStringLiteral("逗号分隔")));
  EXPECT_TRUE(refusal("Price,Close\nTicker,600519.SS\nDate,\n").contains(QStringLiteral("multi_level_index=False")));
  EXPECT_TRUE(refusal("day,close\n2024-01-02,1\n").contains(QStringLiteral("表头缺少列“date”：")));
}

TEST(BarReader, ABadQuoteCostsItsOwnLine) {
  const MarketFiles files;
  files.Write(QStringLiteral("a.csv"), "date,close\n\"2024-01-02\"x,1\n2024-01-03,2\n");
  const QString path = files.Path(QStringLiteral("a.csv"));
  const BarFile file = ReadBars(path);
  EXPECT_EQ(BarsText(file), "20240103=2;");
  EXPECT_EQ(RejectionsText(file, path), ":2: 引号之后有多余的字符\n");
}

TEST(BarReader, ControlCharactersDoNotCutAReason) {
  const MarketFiles files;
  files.Write(QStringLiteral("a.csv"), QByteArrayLiteral("date,close\n2024-01-02,1\0002\n2024-01-03,\"2\n\x1B[2J\"\n"));
  const QString path = files.Path(QStringLiteral("a.csv"));
  EXPECT_EQ(RejectionsText(ReadBars(path), path), ":2: 收盘价不是数字“1\\x002”\n:3: 收盘价不是数字“2\\x0a\\x1b[2J”\n");
}

// date:close:previous close of each row.
std::string RowsText(const PeriodSeries& series) {
  std::string text;
  for (const PeriodRow& row : series) {
    text += std::to_string(row.date) + ":" + QString::number(row.close).toStdString() + ":" +
            QString::number(row.previousClose).toStdString() + " ";
  }
  return text;
}

TEST(Statistics, WeeksGoFromMondayToSundayAlsoOverTheTurnOfTheYear) {
  // 2024-12-27 was a Friday, 2024-12-30 a Monday, 2025-01-03 a Friday, 2025-01-06 a Monday.
  const Bar bars[] = {{20241226, 9},  {20241227, 10}, {20241230, 11}, {20241231, 12},
                      {20250102, 13}, {20250103, 14}, {20250106, 15}};
  const Window window{20241226, 20250106};
  EXPECT_EQ(RowsText(ComputeSeries(bars, PeriodType::Week, window)), "20241227:10:0 20250103:14:10 20250106:15:14 ");
  EXPECT_EQ(RowsText(ComputeSeries(bars, PeriodType::Month, window)), "20241231:12:0 20250106:15:12 ");
}

TEST(Statistics, SuspendedWeeksAndMissingDaysHaveNoRow) {
  // No bar in the week of 2024-03-11 and none in April.
  const Bar bars[] = {{20240306, 10}, {20240308, 11}, {20240318, 12}, {20240506, 15}};
  const Window window{20240301, 20240531};
  EXPECT_EQ(RowsText(ComputeSeries(bars, PeriodType::Day, window)),
            "20240306:10:0 20240308:11:10 20240318:12:11 20240506:15:12 ");
  EXPECT_EQ(RowsText(ComputeSeries(bars, PeriodType::Week, window)), "20240308:11:0 20240318:12:11 20240506:15:12 ");
  EXPECT_EQ(RowsText(ComputeSeries(bars, PeriodType::Month, window)), "20240318:12:0 20240506:15:12 ");
}

// Fridays and month ends: 2024-03-15 a week without a bar, April a month without one; the 29th has the bar itself.
TEST(Statistics, APriceThatStandsStillHasItsWeeksAndMonths) {
  const Bar bars[] = {{20240306, 10}, {20240308, 11}, {20240318, 12}, {20240329, 14}, {20240506, 15}};
  const int tradingDates[] = {20240305, 20240308, 20240315, 20240318, 20240322, 20240329, 20240412, 20240430, 20240507};
  const std::vector<Bar> standing = StandingBars(bars, tradingDates);
  EXPECT_EQ(standing, (std::vector<Bar>{{20240306, 10},
                                        {20240308, 11},
                                        {20240315, 11},
                                        {20240318, 12},
                                        {20240322, 12},
                                        {20240329, 14},
                                        {20240412, 14},
                                        {20240430, 14},
                                        {20240506, 15},
                                        {20240507, 15}}));
  const Window window{20240311, 20240531};
  EXPECT_EQ(RowsText(ComputeSeries(standing, PeriodType::Week, window)),
            "20240315:11:11 20240322:12:11 20240329:14:12 20240412:14:14 20240430:14:14 20240507:15:14 ");
  EXPECT_EQ(RowsText(ComputeSeries(standing, PeriodType::Month, window)),
            "20240329:14:0 20240430:14:14 20240507:15:14 ");
  EXPECT_TRUE(StandingBars({}, tradingDates).empty());
  EXPECT_EQ(StandingBars(bars, {}), std::vector<Bar>(std::begin(bars), std::end(bars)));
}

TEST(Statistics, DaysHaveRowsForBarsOnlyWeeksAndMonthsAlsoForAStandingPrice) {
  const Bar bars[] = {{20240130, 10}, {20240213, 12}};
  const int tradingDates[] = {20240129, 20240130, 20240131, 20240201, 20240208, 20240213, 20240214};
  const Window window{20240130, 20240214};
  const MarketReturns market = ReturnsOf(std::vector<Bar>{{20240130, 1}, {20240208, 1}, {20240214, 1}}, window);
  const SecurityStatistics statistics = ComputeStatistics({1600000, bars, tradingDates}, market, window, 0);
  EXPECT_EQ(RowsText(statistics.ofTypes.front().series), "20240130:10:0 20240213:12:10 ");
  ResultSet table = MakeStatisticsTable();
  AppendStatistics(table, statistics);
  std::string rows;
  for (int row = 0; row < table.RowCount(); ++row) {
    for (const char* name : {"SecuCode", "hqtype", "rowid", "hqdate", "closeprice", "oldcloseprice", "islastday"}) {
      rows += table.Utf8At(row, table.Column(name)) + " ";
    }
    rows += "\n";
  }
  EXPECT_EQ(rows,
            "1600000 0 1 20240130 10 0 0 \n"
            "1600000 0 2 20240213 12 10 1 \n"
            "1600000 1 1 20240201 10 0 0 \n"
            "1600000 1 2 20240208 10 10 0 \n"
            "1600000 1 3 20240214 12 10 1 \n"
            "1600000 2 1 20240131 10 0 0 \n"
            "1600000 2 2 20240214 12 10 1 \n");
}

TEST(Statistics, PreviousClosesComeFromBeforeTheWindow) {
  const Bar bars[] = {{20240129, 8}, {20240131, 9}, {20240201, 10}, {20240202, 11}, {20240205, 12}};
  const Window window{20240202, 20240205};
  EXPECT_EQ(RowsText(ComputeSeries(bars, PeriodType::Day, window)), "20240202:11:10 20240205:12:11 ");
  EXPECT_EQ(RowsText(ComputeSeries(bars, PeriodType::Week, window)), "20240202:11:0 20240205:12:11 ");
  EXPECT_EQ(RowsText(ComputeSeries(bars, PeriodType::Month, window)), "20240205:12:9 ");
}

TEST(Statistics, FiguresLeaveOutTheRowWithoutPreviousClose) {
  const Bar bars[] = {{20240102, 10}, {20240103, 11}, {20240104, 9.9}, {20240105, 9.9}};
  const PeriodSeries series = ComputeSeries(bars, PeriodType::Day, {20240102, 20240105});
  ASSERT_EQ(series.size(), 4U);
  EXPECT_EQ(series[0].periodReturn, 0);
  // Returns 0.1, -0.1, 0: mean 0, deviation sqrt(0.02 / 2) = 0.1.
  EXPECT_NEAR(series[1].periodReturn, 0.1, 1e-15);
  EXPECT_NEAR(series[2].periodReturn, -0.1, 1e-15);
  const Figures figures = ComputeFigures(series, ReturnsOf(series));
  EXPECT_NEAR(figures.meanReturn, 0, 1e-15);
  EXPECT_NEAR(figures.deviation, 0.1, 1e-15);

  const auto figuresOfFirst = [&](std::size_t count) {
    const PeriodSeries cut = ComputeSeries(std::span(bars).first(count), PeriodType::Day, {20240102, 20240105});
    return ComputeFigures(cut, ReturnsOf(cut));
  };
  const Figures one = figuresOfFirst(2);
  EXPECT_NEAR(one.meanReturn, 0.1, 1e-15);
  EXPECT_EQ(one.deviation, 0) << "one return has no deviation";
  EXPECT_EQ(figuresOfFirst(1), Figures());
  EXPECT_TRUE(ComputeSeries({}, PeriodType::Day, {20240102, 20240105}).empty());
}

TEST(Statistics, TableHasTheColumnsInOrderAndMarksTheLastRow) {
  ResultSet table = MakeStatisticsTable();
  std::string names;
  for (int column = 0; column < table.ColumnCount(); ++column) names += table.ColumnName(column) + " ";
  EXPECT_EQ(names,
            "SecuCode closeprice hqtype rowid ggqjsyl pjsyl hqdate oldcloseprice sylbzc islastday startdate enddate ");
  const Bar bars[] = {{20240130, 10}, {20240131, 11}, {20240201, 12}};
  const Window window{20240130, 20240201};
  AppendStatistics(table, ComputeStatistics({399001, bars, {}}, ReturnsOf(bars, window), window, 0));
  std::string rows;
  for (int row = 0; row < table.RowCount(); ++row) {
    for (const char* name : {"SecuCode", "hqtype", "rowid", "hqdate", "islastday", "startdate", "enddate"}) {
      rows += table.Utf8At(row, table.Column(name)) + " ";
    }
    rows += "\n";
  }
  EXPECT_EQ(rows,
            "399001 0 1 20240130 0 20240130 20240201 \n"
            "399001 0 2 20240131 0 20240130 20240201 \n"
            "399001 0 3 20240201 1 20240130 20240201 \n"
            "399001 1 1 20240201 1 20240130 20240201 \n"
            "399001 2 1 20240131 0 20240130 20240201 \n"
            "399001 2 2 20240201 1 20240130 20240201 \n");
}

}  // namespace
}  // namespace holdwise
