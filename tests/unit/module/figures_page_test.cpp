// SPDX-License-Identifier: MIT
// docs/figures.md is made from the table of title hints; tools/renew figures writes it anew.
#include <gtest/gtest.h>

#include <QFile>

#include "common/frames/title_hints.h"
#include "views/fxjl/risk_layout.h"
#include "views/yjfj/decomposition_layout.h"
#include "views/ylcs/stress_layout.h"
#include "views/zhbx/performance_layout.h"
#include "views/znpz/allocation_layout.h"
#include "views/znstocklist/pool_rows.h"
#include "views/ztpj/evaluation_layout.h"
#include "views/zxpz/editor_layout.h"

namespace holdwise {
namespace {

/// Text of a cell: a bar would begin the next one.
QString Cell(const QString& text) {
  return QString(text).replace(QLatin1Char('|'), QStringLiteral("\\|"));
}

QString FiguresPage() {
  QString page = QStringLiteral(
      "# 各页面的数值\n\n"
      "每一列的含义、公式和口径；在程序中把鼠标停在标题上也能看到。本页由程序中的同一张表生成（`tools/renew "
      "figures`），请勿手工修改。\n\n"
      "符号：r 为日收益率，r̄ 为其平均值，n 为天数，rm、r̄m 为指数的日收益率及其平均值，rf 为无风险利率，σ 为标准差，Σ "
      "为对全部成分股求和。\n");
  for (const ViewHints& view : FigureHints()) {
    page += QStringLiteral("\n## %1\n\n%2\n").arg(view.caption, view.foreword);
    for (const GridHints& grid : view.grids) {
      page += QStringLiteral("\n### %1：%2\n\n| 列 | 含义 | 公式 | 口径 |\n|---|---|---|---|\n")
                  .arg(view.caption, grid.caption);
      for (const TitleHint& hint : grid.titles) {
        page += QStringLiteral("| %1 | %2 | %3 | %4 |\n")
                    .arg(Cell(hint.title), Cell(hint.meaning), Cell(hint.formula), Cell(hint.basis));
      }
    }
  }
  return page;
}

QString PathOfPage() {
  return qEnvironmentVariable("HOLDWISE_SOURCE") + QStringLiteral("/docs/figures.md");
}

TEST(FiguresPage, IsWhatTheTableSays) {
  QFile file(PathOfPage());
  if (qEnvironmentVariableIsSet("HOLDWISE_RENEW")) {
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(FiguresPage().toUtf8());
    return;
  }
  ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << PathOfPage().toStdString();
  EXPECT_EQ(QString::fromUtf8(file.readAll()), FiguresPage()) << "tools/renew figures makes it anew";
}

TEST(TitleHints, EveryTitleOfTheViewsHasOne) {
  const auto check = [](const char* unit, const char* grid, const ColumnTable& table) {
    for (const QString& title : TitlesOf(table)) {
      EXPECT_FALSE(HintOfTitle(QString::fromLatin1(unit), QString::fromLatin1(grid), title).isEmpty())
          << unit << ' ' << title.toStdString();
    }
  };
  check("Znpz", "strngrd", allocation::CandidateTable());
  check("Znpz", "StringGrid1", allocation::PartTable());
  check("Znstocklist", "strngrd", pool::PoolTable());
  check("Zxpz", "strngrd", editor::PortfolioTable());
  check("Zxpz", "StringGrid1", editor::DetailTable());
  check("Zhbx", "strngrd", performance::PortfolioTable());
  check("Zhbx", "StringGrid1", performance::HoldingTable());
  check("Fxjl", "strngrd", risk::PortfolioTable());
  check("Fxjl", "StringGrid1", risk::SecurityTable());
  check("Ztpj", "strngrd", evaluation::PortfolioTable());
  check("Ztpj", "StringGrid1", evaluation::HoldingTable());
  check("Yjfj", "strngrd", decomposition::PortfolioTable());
  check("Ylcs", "strngrd", stress::PortfolioTable());
  check("Ylcs", "StringGrid1", stress::HoldingTable());
}

TEST(TitleHints, SayMeaningFormulaAndBasis) {
  EXPECT_EQ(HintOfTitle(QStringLiteral("Fxjl"), QStringLiteral("strngrd"), QStringLiteral("BETA系数")),
            QStringLiteral(
                "指数涨跌 1% 时组合平均涨跌的百分数。\n公式：β = cov(r, rm) ÷ var(rm)\n口径：统计窗口（默认最近 250 "
                "个交易日）的日收益率；指数为上证指数"));
  EXPECT_EQ(HintOfTitle(QStringLiteral("Fxjl"), QStringLiteral("strngrd"), QStringLiteral("别的")), QString());
}

}  // namespace
}  // namespace holdwise
