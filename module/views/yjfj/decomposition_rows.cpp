// SPDX-License-Identifier: MIT
#include "decomposition_rows.h"

#include <array>

#include "common/host/host_access.h"
#include "common/series/holding_rows.h"
#include "common/series/shared_objects.h"
#include "decomposition_figures.h"
#include "decomposition_layout.h"
#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/number_text.h"

namespace holdwise::decomposition {
namespace {

constexpr int kDecimals = 2;

/// What all rows share.
struct Market {
  double deviation = 0;  ///< of the composite index's daily returns; 0 = not known
  double level = 0;      ///< of the composite index now, points; 0 = not known
};

Market ReadMarket() {
  const TNameValueSnapshot deviations = g_AllStockData->GetBZCStringList();
  return {RealOr(deviations->ValueOf(QString::number(kCompositeIndex))),
          ModuleHost().DataCenter().IndexNowData(kCompositeIndex).currentPrice};
}

const QString kNoDeviation =
    QStringLiteral("没有上证指数的标准差，多样化增溢和净选择回报率按标准差 1 计算：请等待统计数据下载完成。");
const QString kNoLevel = QStringLiteral("没有上证指数的当前点位，业绩分解不可信：请检查数据目录中的行情文件。");

RowInput InputOfRow(const TStringGrid& grid, int row, const Market& market) {
  RowInput input;
  input.riskFreePercent = RealOr(grid.Cells(kRiskFree, row));
  input.beta = RealOr(grid.Cells(kBeta, row));
  input.deviation = RealOr(grid.Cells(kDeviation, row));
  input.indexAtPurchase = RealOr(grid.Cells(kIndexAtPurchase, row));
  input.marketDeviation = market.deviation;
  input.indexNow = market.level;
  return input;
}

void ShowTexts(const Texts& texts, int row, TStringGrid& grid) {
  grid.SetCells(kReturn, row, texts.total);
  grid.SetCells(kExcess, row, texts.excess);
  grid.SetCells(kDiversification, row, texts.diversification);
  grid.SetCells(kNetSelection, row, texts.netSelection);
  grid.SetCells(kSelection, row, texts.selection);
  grid.SetCells(kRiskPremium, row, texts.riskPremium);
}

/// A term of a step, and the column that it is read from.
struct TermOfColumn {
  QString name;
  int column;
  ChartColor color;
};
struct StepOfColumns {
  QString caption;
  TermOfColumn total, left, right;
};

/// A term that is split in the next step keeps its colour there.
const std::array<StepOfColumns, 3>& Steps() {
  static const TermOfColumn kTotalTerm{QStringLiteral("回报率"), kReturn, ChartColor::Blue};
  static const TermOfColumn kExcessTerm{QStringLiteral("超额回报率"), kExcess, ChartColor::Red};
  static const TermOfColumn kSelectionTerm{QStringLiteral("选择回报率"), kSelection, ChartColor::Blue};
  static const std::array<StepOfColumns, 3> steps{{
      {QStringLiteral("回报率分解"),
       kTotalTerm,
       {QStringLiteral("无风险回报率"), kRiskFree, ChartColor::Yellow},
       kExcessTerm},
      {QStringLiteral("超额回报率分解"),
       kExcessTerm,
       {QStringLiteral("风险增溢"), kRiskPremium, ChartColor::Yellow},
       kSelectionTerm},
      {QStringLiteral("选择回报率分解"),
       kSelectionTerm,
       {QStringLiteral("多样化增溢"), kDiversification, ChartColor::Yellow},
       {QStringLiteral("净选择回报率"), kNetSelection, ChartColor::Red}},
  }};
  return steps;
}

ChartTerm PartOf(const TermOfColumn& term, const TStringGrid& grid, int row) {
  const double value = RealOr(grid.Cells(term.column, row));
  return {term.name, value, ShortestText(value), term.color};
}

}  // namespace

void ShowPortfolios(const ResultSet& portfolios, double rate, TStringGrid& grid) {
  const int name = portfolios.Column("COMNAME");
  const int id = portfolios.Column("ID");
  const int level = portfolios.Column("ZSCLOSEPRICE");
  const int beta = portfolios.Column("BETA");
  const int deviation = portfolios.Column("ZHBZC");
  const QString riskFree = FormatFixed(rate, kDecimals);
  const GridBatch batch(grid);
  grid.SetRowCount(portfolios.RowCount());
  for (int row = 0; row < portfolios.RowCount(); ++row) {
    grid.SetCells(kName, row, portfolios.TextAt(row, name));
    grid.SetCells(kId, row, portfolios.TextAt(row, id));
    grid.SetCells(kRiskFree, row, riskFree);
    grid.SetCells(kIndexAtPurchase, row, FormatFixed(NumberAt(portfolios, row, level), kDecimals));
    grid.SetCells(kBeta, row, portfolios.TextAt(row, beta));
    grid.SetCells(kDeviation, row, portfolios.TextAt(row, deviation));
  }
}

ViewNotice RefreshPortfolios(TStringGrid& grid) {
  ViewNotice notice;
  const TNameValueSnapshot values = g_NowPrice->GetNowValueGroupStringList();
  if (values->Count() == 0) return notice;  // every row would be skipped; spare the first picture the query
  const TNameValueSnapshot costs = g_UserValue->GetUserValuesStringList();
  const Market market = ReadMarket();
  const GridBatch batch(grid);
  for (int row = 0; row < grid.RowCount(); ++row) {
    const QString& id = grid.Cells(kId, row);
    RowInput input = InputOfRow(grid, row, market);
    input.value = RealOr(values->ValueOf(id));
    input.cost = RealOr(costs->ValueOf(id));
    const auto inputs = InputsOf(input);
    if (!inputs) continue;
    ShowTexts(TextsOf(Decompose(*inputs)), row, grid);
    IncompletePortfolio portfolio{id, grid.Cells(kName, row), 0, {}};
    if (input.cost == 0) portfolio.missing.push_back({Lack::NoCost, {}, {}, 0});
    if (input.indexAtPurchase == 0) portfolio.missing.push_back({Lack::NoBuyIndex, {}, {}, 0});
    if (!portfolio.missing.empty()) notice.lacking.push_back(std::move(portfolio));
  }
  if (market.deviation == 0) notice.awaited = kNoDeviation;
  if (market.level == 0) notice.hint = kNoLevel;
  return notice;
}

StepChart ChartOf(const TStringGrid& grid, int row) {
  StepChart chart;
  chart.isEmpty = grid.IsEmpty();
  chart.subject = grid.Cells(kName, row);
  if (!chart.isEmpty && grid.Cells(kReturn, row).isEmpty())
    chart.note = QStringLiteral("“%1”没有市值，回报率没有计算：只画出无风险利率，其余按 0 画。").arg(chart.subject);
  for (std::size_t place = 0; place < chart.steps.size(); ++place) {
    const StepOfColumns& columns = Steps()[place];
    ChartStep& step = chart.steps[place];
    step.caption = columns.caption;
    step.left = PartOf(columns.left, grid, row);
    step.right = PartOf(columns.right, grid, row);
    // The sum of the parts that are shown, not the total's own column: intended.
    const double sum = step.left.value + step.right.value;
    step.total = {columns.total.name, sum, FormatFixed(sum, kDecimals), columns.total.color};
    if (chart.isEmpty) step.total.text = QStringLiteral("0");
  }
  return chart;
}

QString HintOf(const TStringGrid& grid, int row, int bar) {
  const StepOfColumns& step = Steps().at(static_cast<std::size_t>(bar / kBarsOfAStep));
  const std::array<const TermOfColumn*, kBarsOfAStep> terms{&step.total, &step.left, &step.right};
  const TermOfColumn& term = *terms.at(static_cast<std::size_t>(bar % kBarsOfAStep));
  return term.name + QLatin1Char(':') + grid.Cells(term.column, row);
}

}  // namespace holdwise::decomposition
