// SPDX-License-Identifier: MIT
#include "backup/portfolio_file.h"
#include "backup/restore.h"
#include "holdwise/packet/text_file.h"
#include "import_fixture.h"

namespace holdwise {
namespace {

class ImportSavedTest : public ImportTest {
 protected:
  [[nodiscard]] backup::PortfolioSet Now() { return backup::ReadPortfolios(temp_.Service()); }
  void Clear() {
    MustExecute(temp_.Service(), QStringLiteral("delete from alg_comdetail"));
    MustExecute(temp_.Service(), QStringLiteral("delete from alg_commain"));
  }
  /// The portfolios without what is given anew.
  static backup::PortfolioSet WithoutNumbers(backup::PortfolioSet set) {
    for (backup::SavedPortfolio& portfolio : set.portfolios) {
      portfolio.id = 0;
      for (backup::SavedHolding& holding : portfolio.holdings) holding.id = holding.portfolioId = 0;
    }
    return set;
  }
};

TEST_F(ImportSavedTest, WhatWasExportedComesInAgain) {
  ASSERT_TRUE(Import(kGood).problems.empty());
  MustExecute(temp_.Service(), QStringLiteral("update alg_commain set ZHFG='稳健型',SAVEFLAG=0 where ID=1"));
  const backup::PortfolioSet before = Now();
  const QByteArray file = ToUtf8Text(backup::PortfolioFileText(before));
  Clear();
  const ImportResult result = Import(file);
  ASSERT_TRUE(result.problems.empty()) << result.problems.front().reason.toStdString();
  EXPECT_EQ(result.portfolios, 2);
  EXPECT_EQ(result.holdings, 5);
  EXPECT_EQ(WithoutNumbers(Now()), WithoutNumbers(before));
  EXPECT_EQ(Dump("select ID,ISFINISHED from alg_commain order by ID"), QStringLiteral("3|0\n4|0"));
}

TEST_F(ImportSavedTest, ANameThatIsTakenRefusesTheFile) {
  ASSERT_TRUE(Import(kGood).problems.empty());
  const QString before = Everything();
  const ImportResult result = Import(ToUtf8Text(backup::PortfolioFileText(Now())));
  ASSERT_EQ(result.problems.size(), 2U);
  EXPECT_EQ(result.problems[0].line, 2);
  EXPECT_EQ(result.problems[0].reason, QStringLiteral("已有名称为“稳健一号”的组合"));
  EXPECT_EQ(result.problems[1].line, 4);
  EXPECT_EQ(Everything(), before);
}

TEST_F(ImportSavedTest, AChangedRowNeedsTheLastLineTakenAway) {
  ASSERT_TRUE(Import(kGood).problems.empty());
  QByteArray file = ToUtf8Text(backup::PortfolioFileText(Now()));
  Clear();
  file.replace(",1000,", ",2000,");
  ImportResult result = Import(file);
  ASSERT_EQ(result.problems.size(), 1U);
  EXPECT_TRUE(result.problems[0].reason.contains(QStringLiteral("合计")));
  EXPECT_EQ(Dump("select count(*) from alg_commain"), QStringLiteral("0"));
  file.truncate(file.indexOf("合计"));
  result = Import(file);
  EXPECT_TRUE(result.problems.empty());
  EXPECT_EQ(Dump("select PZSL from alg_comdetail order by ID"), QStringLiteral("2000\n500\n300\n100\n7"));
}

TEST_F(ImportSavedTest, NamesAndStocksAreCheckedAsInAnyImport) {
  ASSERT_TRUE(Import(kGood).problems.empty());
  QByteArray file = ToUtf8Text(backup::PortfolioFileText(Now()));
  Clear();
  file.truncate(file.indexOf("合计"));
  file.replace("稳健一号", "稳'健").replace(",000001,", ",999999,");
  const ImportResult result = Import(file);
  ASSERT_EQ(result.problems.size(), 2U);
  EXPECT_TRUE(result.problems[0].reason.contains(QStringLiteral("不允许的字符“'”")));
  EXPECT_EQ(result.problems[1].reason, QStringLiteral("没有代码为999999的A股股票"));
  EXPECT_EQ(Dump("select count(*) from alg_commain"), QStringLiteral("0"));
}

TEST_F(ImportSavedTest, WhicheverStatementFailsNothingIsAdded) {
  ASSERT_TRUE(Import(kGood).problems.empty());
  const QByteArray file = ToUtf8Text(backup::PortfolioFileText(Now()));
  Clear();
  int call = 0;
  for (;; ++call) {
    database_.plan.FailCall(call);
    bool isDone = true;
    try {
      isDone = Import(file).problems.empty();
    } catch (const Error&) {
      isDone = false;
    }
    if (!database_.plan.HasFailed()) break;
    EXPECT_FALSE(isDone) << call;
    EXPECT_EQ(Dump("select count(*) from alg_commain"), QStringLiteral("0")) << call;
    EXPECT_EQ(Dump("select count(*) from alg_comdetail"), QStringLiteral("0")) << call;
  }
  EXPECT_EQ(Now().HoldingCount(), 5);
}

}  // namespace
}  // namespace holdwise
