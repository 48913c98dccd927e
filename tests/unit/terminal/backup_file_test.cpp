// SPDX-License-Identifier: MIT
#include "backup_fixture.h"
#include "holdwise/packet/csv_reader.h"

namespace holdwise::backup {
namespace {

using BackupFileTest = BackupTest;

QByteArray Changed(QByteArray text, const char* from, const char* to) {
  EXPECT_TRUE(text.contains(from)) << from;
  return text.replace(from, to);
}

/// The text with the numbers and the checksum of its last line taken off, as a person leaves it who has changed rows.
QByteArray WithoutLastLine(const QByteArray& text) {
  return text.left(text.lastIndexOf('\n', text.size() - 2) + 1);
}

TEST_F(BackupFileTest, WhatIsWrittenReadsBackEqual) {
  AddThree();
  const PortfolioSet set = Now();
  ASSERT_EQ(set.portfolios.size(), 3U);
  EXPECT_EQ(set.HoldingCount(), 9);
  EXPECT_EQ(ProblemsOf(set), QStringList());
  const ReadFile read = ReadPortfolioText(PortfolioFileText(set));
  ASSERT_TRUE(read.problems.empty()) << read.problems.front().reason.toStdString();
  EXPECT_EQ(read.set, set);
}

TEST_F(BackupFileTest, HoldsEveryColumnOfAPortfolio) {
  Add(QStringLiteral("稳健一号"), 2, QStringLiteral("稳健型"));
  const QByteArray text = PortfolioFileText(Now());
  EXPECT_TRUE(text.startsWith("\xEF\xBB\xBF组合名称,股票代码,数量(股),买入价(元),买入日期,"));
  // By hand, from the statements of Add.
  EXPECT_TRUE(text.contains("\n稳健一号,600000,100,8.01,2026-03-02,1,3123.45,1,1,稳健型,0.12,20260303,1,0.5\n"))
      << text.toStdString();
  EXPECT_TRUE(text.contains("\n稳健一号,600007,200,9.01,2026-03-02,1,3123.45,1,1,稳健型,0.12,20260303,2,0.5\n"));
  EXPECT_TRUE(text.contains("\n合计,1,2,x"));
}

TEST_F(BackupFileTest, ASpreadsheetRunsNoName) {
  for (const char* name : {"=1+1", "+1", "-1", "@x", "'quoted", "\tx"}) Add(QString::fromUtf8(name), 2);
  const QByteArray text = PortfolioFileText(Now());
  CsvReader csv(std::string_view(text.constData(), static_cast<std::size_t>(text.size())));
  while (csv.Next()) EXPECT_EQ(std::string_view("=+-@\t").find(csv.Fields()[0].front()), std::string_view::npos);
  EXPECT_EQ(ReadPortfolioText(text).set, Now());
}

TEST_F(BackupFileTest, NoSingleBitMayBeOtherThanWritten) {
  AddThree();
  const QByteArray good = PortfolioFileText(Now());
  for (qsizetype place = 0; place < good.size(); ++place) {
    QByteArray bad = good;
    bad[place] = static_cast<char>(bad[place] ^ 1);
    EXPECT_FALSE(ReadPortfolioText(bad).problems.empty()) << place;
    EXPECT_TRUE(ReadPortfolioText(bad).set.portfolios.empty());
  }
}

TEST_F(BackupFileTest, NoPieceOfAFilePassesForTheWhole) {
  AddThree();
  const QByteArray good = PortfolioFileText(Now());
  for (qsizetype size = 0; size < good.size() - 1; ++size)
    EXPECT_FALSE(ReadPortfolioText(good.left(size)).problems.empty()) << size;
  EXPECT_FALSE(ReadPortfolioText(good + "x,1\n").problems.empty());
}

TEST_F(BackupFileTest, ABadRowIsNamed) {
  Add(QStringLiteral("稳健一号"), 2);
  const QByteArray good = WithoutLastLine(PortfolioFileText(Now()));
  const QByteArray row = "稳健一号,600007,200,9.01,2026-03-02,1,3123.45,,1,,0,,2,0.5";
  const struct {
    const char* from;
    const char* to;
    const char* reason;
  } kCases[] = {
      {",200,9.01,", ",-200,9.01,", "持股的数量-200不在0到2147483647之间"},
      {",200,9.01,", ",2147483648,9.01,", "持股的数量2147483648不在0到2147483647之间"},
      {",200,9.01,", ",abc,9.01,", "数量(股)“abc”不能读取"},
      {",200,9.01,", ",200,,", "买入价(元)“”不能读取"},
      {",200,9.01,", ",200,9e9,", "持股的买入价超出范围"},
      {"600007", "7", "股票代码“7”不能读取"},
      {",2,0.5", ",1,0.5", "持股编号1重复"},
      {",2,0.5", ",2000000001,0.5", "持股的编号不在1到2000000000之间"},
      {",2,0.5", ",2,1.5", "持股的比例不在0到1之间"},
      {"3123.45", "3123.46", "编号为1的组合在这一行与第2行写得不同"},
      {",2,0.5", "", "有12个字段，应为14个"},
  };
  for (const auto& one : kCases) {
    const QByteArray bad = Changed(good, row.constData(), Changed(row, one.from, one.to).constData());
    const ReadFile read = ReadPortfolioText(bad, LastLine::MayLack);
    ASSERT_EQ(read.problems.size(), 1U) << one.reason;
    EXPECT_EQ(read.problems[0].line, 3) << one.reason;
    EXPECT_EQ(read.problems[0].reason.toStdString(), one.reason);
    EXPECT_TRUE(read.set.portfolios.empty());
  }
  EXPECT_EQ(ReadPortfolioText(good, LastLine::MayLack).set, Now());
  ASSERT_EQ(ReadPortfolioText(good).problems.size(), 1U);
  EXPECT_EQ(ReadPortfolioText(good).problems[0].reason, QStringLiteral("文件不完整，没有“合计”行"));
}

TEST_F(BackupFileTest, ManyBadRowsAreToldShortly) {
  PortfolioSet set;
  for (int id = 1; id <= 1000; ++id) {
    set.portfolios.push_back({.id = id,
                              .name = QStringLiteral("甲"),
                              .date = QStringLiteral("2026-03-02"),
                              .holdings = {{id, id, 1600000, -1, 1, 1}}});
  }
  const ReadFile read = ReadPortfolioText(PortfolioFileText(set));
  ASSERT_EQ(read.problems.size(), 101U);
  EXPECT_EQ(read.problems[0].line, 2);
  EXPECT_EQ(read.problems[99].line, 101);
  EXPECT_EQ(read.problems[100].reason, QStringLiteral("另有900处"));
}

TEST_F(BackupFileTest, ASetThatCannotBeEnteredIsFoundOut) {
  AddThree();
  Do(QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values (900,77,1600000,1,1,1)"));
  Do(QStringLiteral("update alg_comdetail set PZSL = null where ID = 1"));
  Do(QStringLiteral("update alg_comdetail set BUYPRICE = -1 where ID = 2"));
  Do(QStringLiteral("delete from alg_comdetail where MAINID = 2"));
  const PortfolioSet set = Now();
  EXPECT_EQ(set.orphans.size(), 1U);
  const QString problems = ProblemsOf(set, ReadGenerators(temp_.Service())).join(QLatin1Char('\n'));
  for (const char* text : {"编号为900的持股属于不存在的组合（编号77）", "编号为1的持股没有PZSL",
                           "组合“稳健一号”（编号1）中编号为2的持股的买入价超出范围", "组合“=进取”（编号2）没有持股"})
    EXPECT_TRUE(problems.contains(QString::fromUtf8(text))) << text << "\n" << problems.toStdString();
  EXPECT_FALSE(ReadPortfolioText(PortfolioFileText(set)).problems.empty());
}

TEST_F(BackupFileTest, AnIdThatTheGeneratorHasNotReachedIsFoundOut) {
  AddThree();
  EXPECT_EQ(ProblemsOf(Now(), ReadGenerators(temp_.Service())), QStringList());
  Do(QStringLiteral("SET GENERATOR ALG_ROWID_MAIN TO 2"));
  const QStringList problems = ProblemsOf(Now(), ReadGenerators(temp_.Service()));
  ASSERT_EQ(problems.size(), 1);
  EXPECT_TRUE(problems[0].contains(QStringLiteral("（编号3）的编号大于最后发出的编号2")));
}

}  // namespace
}  // namespace holdwise::backup
