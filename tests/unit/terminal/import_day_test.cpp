// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "import_fixture.h"

namespace holdwise {
namespace {

/// Closes of three days, those of another index and of a week among them; the market trades from 2024-05-24 to
/// 2024-05-29.
class ImportDay : public ImportTest {
 protected:
  static constexpr char kIndexFile[] = "QMTL/TZZH/Day250/指数/allzs.dat";

  void SetUp() override {
    ImportTest::SetUp();
    WriteIndex({{"1", "0", "20240524", "3088.87"},
                {"1", "0", "20240527", "3124.035"},
                {"1", "0", "20240529", "3111.02"},
                {"1", "1", "20240528", "9999"},
                {"399300", "0", "20240528", "3609.17"}});
  }
  void WriteIndex(const std::vector<QStringList>& rows) {
    folder_.Write(QString::fromUtf8(kIndexFile),
                  MakeTable({QStringLiteral("SecuCode:integer"), QStringLiteral("hqtype:integer"),
                             QStringLiteral("hqdate:integer"), QStringLiteral("closeprice:real")},
                            rows));
  }
  /// "line: reason" of every problem of a file with these rows below the heading.
  QStringList Problems(const QByteArray& rows) {
    QStringList lines;
    for (const ImportProblem& problem : Import("name,code,quantity,price,date\n" + rows).problems) {
      lines += QStringLiteral("%1: %2").arg(problem.line).arg(problem.reason);
    }
    EXPECT_EQ(lines.isEmpty(), Everything() != QStringLiteral("##"));
    return lines;
  }
};

TEST_F(ImportDay, APortfolioStartsAtItsDayAndThatDaysIndexClose) {
  EXPECT_EQ(Problems("甲,600000,1000,8.00,2024-05-24\n"
                     "乙,600000,1000,8.00,20240527\n"
                     "丙,600000,1000,8.00,\n"
                     "甲,600036,500,34,2024/5/24\n"
                     "乙,600036,500,34,2024-05-27\n"
                     "丙,600036,500,34,\n"),
            QStringList());
  // 3124.035 has no exact binary form: it is 3124.034999999999854… and rounds down.
  EXPECT_EQ(Dump("select COMNAME,ZSCLOSEPRICE,EDITDATE,ISFINISHED,SAVEFLAG,INDEXISCLOSE from alg_commain order by ID"),
            QStringLiteral("甲|3088.87|2024-05-24|0|1|1\n"
                           "乙|3124.03|2024-05-27|0|1|1\n"
                           "丙|3111.02|2024-05-29|0|1|"));
}

/// A file of another build put into the folder.
TEST_F(ImportDay, TheIndexOfAnotherEditionIsNotBoughtAt) {
  const QByteArray rows = "甲,600000,1,8,2024-05-24\n甲,600036,1,34,2024-05-24\n";
  const auto writeIndex = [this](const char* edition) {
    folder_.Write(QString::fromUtf8(kIndexFile),
                  MakeTable({"SecuCode:integer", "hqtype:integer", "hqdate:integer", "closeprice:real", "edition:text"},
                            {{"1", "0", "20240524", "3088.87", QString::fromLatin1(edition)}}));
  };
  folder_.WriteMarket(20240529, false, QStringLiteral("a1"));
  writeIndex("b2");
  const QStringList problems = Problems(rows);
  ASSERT_EQ(problems.size(), 1);
  EXPECT_TRUE(problems[0].contains(QStringLiteral("allzs.dat")) && problems[0].contains(QStringLiteral("另一份数据")))
      << problems[0].toStdString();
  writeIndex("a1");
  EXPECT_EQ(Problems(rows), QStringList());
}

TEST_F(ImportDay, AnIndexWhoseDaysCannotBeIsNotBoughtAt) {
  const QByteArray rows = "甲,600000,1,8,2024-05-24\n甲,600036,1,34,2024-05-24\n";
  struct Case {
    const char* day;
    const char* reason;
  };
  for (const Case& one : {Case{"20240524", "重复或没有按先后顺序排列"}, Case{"20240523", "重复或没有按先后顺序排列"},
                          Case{"20240525", "不是交易日"}, Case{"20240532", "不是交易日"}}) {
    WriteIndex({{"1", "0", "20240524", "3088.87"}, {"1", "0", one.day, "2000"}});
    const QStringList problems = Problems(rows);
    ASSERT_EQ(problems.size(), 1) << one.day;
    for (const char* part : {"allzs.dat", "第2行", one.day, one.reason})
      EXPECT_TRUE(problems[0].contains(QString::fromUtf8(part))) << problems[0].toStdString();
  }
}

/// Also when somebody is asked in between.
TEST_F(ImportDay, TheClosesAreAskedForOnceAndOnlyWithADay) {
  const auto timesOf = [this](const QByteArray& csv) {
    int times = 0;
    ImportServices services = Services();
    services.indexCloses = [&times, read = services.indexCloses] {
      ++times;
      return read();
    };
    ImportOptions options;
    options.ask = [](const ImportPreview& preview) { return ImportChoice{preview.name, false}; };
    EXPECT_EQ(ImportPortfolios(csv, services, {}, options).portfolios, 1);
    return times;
  };
  EXPECT_EQ(timesOf("name,code,quantity,price,date\n甲,600000,1,8,2024-05-24\n"), 1);
  EXPECT_EQ(timesOf("name,code,quantity,price\n乙,600000,1,8\n"), 0);
}

TEST_F(ImportDay, AllHeadingsOfTheColumn) {
  int number = 0;
  for (const char* heading : {"date", "日期", "买入日期", "创建日期", " DATE "}) {
    const QByteArray name = "组合" + QByteArray::number(++number);
    const ImportResult result = Import("name,code,quantity,price," + QByteArray(heading) + "\n" + name +
                                       ",600000,1,8,2024-05-24\n" + name + ",600036,1,34,2024-05-24\n");
    EXPECT_TRUE(result.problems.empty()) << heading;
  }
  EXPECT_EQ(Dump("select distinct EDITDATE from alg_commain"), QStringLiteral("2024-05-24"));
}

TEST_F(ImportDay, DaysThatCannotBeAreNamedWithTheirLine) {
  EXPECT_EQ(Problems("甲,600000,1,8,2024-05-30\n甲,600036,1,34,2024-05-30\n"
                     "乙,600000,1,8,2024-05-26\n乙,600036,1,34,2024-05-26\n"
                     "丙,600000,1,8,2024-05-23\n丙,600036,1,34,2024-05-23\n"
                     "丁,600000,1,8,2024-05-28\n丁,600036,1,34,2024-05-28\n"
                     "戊,600000,1,8,2024-02-30\n戊,600036,1,34,2024-05-24\n"
                     "己,600000,1,8,2024-05-24\n己,600036,1,34,2024-05-27\n"
                     "庚,600000,1,8,2024-05-24\n庚,600036,1,34,\n"),
            (QStringList{"2: 日期2024-05-30晚于行情日期2024-05-29", "4: 日期2024-05-26不是交易日",
                         "6: 行情数据没有2024-05-23的上证指数收盘（最早为2024-05-24）",
                         "8: 行情数据没有2024-05-28的上证指数收盘（最早为2024-05-24）",
                         "10: 日期“2024-02-30”不是形如2025-03-03的日期",
                         "13: 组合“己”的日期与第12行不同，一个组合只有一个买入日期",
                         "15: 组合“庚”的日期与第14行不同，一个组合只有一个买入日期"}));
}

TEST_F(ImportDay, WithoutTheIndexNothingIsImportedByDay) {
  const QByteArray rows = "甲,600000,1,8,2024-05-24\n甲,600036,1,34,2024-05-24\n";
  WriteIndex({{"1", "0", "20240524", "0"}});
  QStringList problems = Problems(rows);
  ASSERT_EQ(problems.size(), 1);
  EXPECT_TRUE(problems[0].startsWith(QStringLiteral("0: 不能按买入日期导入："))) << problems[0].toStdString();
  EXPECT_TRUE(problems[0].contains(QStringLiteral("allzs.dat"))) << problems[0].toStdString();
  WriteIndex({{"399001", "0", "20240524", "9000"}});
  EXPECT_EQ(Problems(rows).size(), 1);
  ASSERT_TRUE(QFile::remove(folder_.File(QString::fromUtf8(kIndexFile))));
  EXPECT_EQ(Problems(rows).size(), 1);
  // Nothing of the file is needed for a portfolio without a day.
  EXPECT_EQ(Problems("甲,600000,1,8,\n甲,600036,1,34,\n"), QStringList());
}

}  // namespace
}  // namespace holdwise
