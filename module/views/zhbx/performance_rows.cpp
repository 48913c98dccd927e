// SPDX-License-Identifier: MIT
#include "performance_rows.h"

#include <algorithm>
#include <tuple>

#include "common/frames/security_links.h"
#include "common/host/codes.h"
#include "common/host/host_access.h"
#include "common/series/holding_rows.h"
#include "common/series/shared_objects.h"
#include "holdwise/packet/number_text.h"
#include "performance_figures.h"
#include "performance_layout.h"
#include "performance_totals.h"

namespace holdwise::performance {
namespace {

void ShowCloses(const QStringList& codes, TStringGrid& grid) {
  const TNameValueSnapshot week = g_ClosePrice->GetWeekCloseStringList();
  const TNameValueSnapshot month = g_ClosePrice->GetMonthCloseStringList();
  for (int row = 0; row < codes.size(); ++row) {
    const bool known = week->Has(codes[row]);
    grid.SetCells(kWeekClose, row, known ? week->ValueOf(codes[row]) : QStringLiteral("0"));
    // The month list is not asked whether it knows the code.
    grid.SetCells(kMonthClose, row, known ? month->ValueOf(codes[row]) : QStringLiteral("0"));
  }
}

/// "甲(600001)、乙(600002) 等 7 只".
QString NamesOf(const QStringList& codes) {
  constexpr qsizetype kMostNames = 5;
  QStringList names;
  for (const QString& code : codes.first(std::min(kMostNames, codes.size())))
    names.append(QStringLiteral("%1(%2)").arg(NameOrDelisted(code), code));
  const QString text = names.join(QStringLiteral("、"));
  return names.size() < codes.size() ? text + QStringLiteral(" 等 %1 只").arg(codes.size()) : text;
}

/// What to know of a portfolio's change against the sum of closes some of which are not there.
QString RemarkOnSum(const QStringList& withoutClose, const QString& close) {
  if (withoutClose.isEmpty()) return {};
  return QStringLiteral("%1没有%2，其市值按 0 计入比较的基数，所示涨跌幅偏大").arg(NamesOf(withoutClose), close);
}

/// What a portfolio's holdings lack: codes without the latest price, and without the closes it is compared with.
struct PortfolioLacks {
  QStringList price;
  QStringList previousClose;
  QStringList weekClose;
  QStringList monthClose;
};

void RemarkOnPortfolio(TStringGrid& grid, int row, const PortfolioLacks& lacks) {
  QString value;
  if (!lacks.price.isEmpty())
    value = QStringLiteral("%1没有现价，其市值按 0 计入，所示市值、收益和涨跌幅偏小").arg(NamesOf(lacks.price));
  const auto remark = [&](int column, const QString& onClose) {
    grid.SetRemark({column, row}, value.isEmpty() || onClose.isEmpty() ? value + onClose : value + u'\n' + onClose);
  };
  for (const int column : {kValue, kGain, kGainRate}) remark(column, QString());
  remark(kDayChange, lacks.previousClose.isEmpty()
                         ? QString()
                         : QStringLiteral("%1没有昨收盘价，日涨跌幅显示为 0").arg(NamesOf(lacks.previousClose)));
  remark(kWeekChange, RemarkOnSum(lacks.weekClose, QStringLiteral("上周收盘价")));
  remark(kMonthChange, RemarkOnSum(lacks.monthClose, QStringLiteral("上月收盘价")));
}

void RemarkOnCloses(TStringGrid& grid, int row, const HoldingInput& input) {
  const QString week = input.weekClose == 0 ? QStringLiteral("没有上周收盘价，周贡献显示为 0") : QString();
  // Without the week's close the month's is not looked up either: intended.
  const QString month = input.monthClose != 0  ? QString()
                        : input.weekClose == 0 ? QStringLiteral("没有上周收盘价，月贡献也显示为 0")
                                               : QStringLiteral("没有上月收盘价，月贡献显示为 0");
  grid.SetRemark({kWeekContribution, row}, week);
  grid.SetRemark({kMonthContribution, row}, month);
}

/// The live figures of a row belong to its security: another one must not inherit them.
void StartRow(TStringGrid& grid, int row, const QString& code) {
  if (grid.Cells(kCode, row) == code) return;
  for (const int column :
       {kPrice, kChange, kDayContribution, kWeekContribution, kMonthContribution, kHoldingGain, kHoldingGainRate}) {
    grid.SetCells(column, row, QString());
    grid.SetRemark({column, row}, {});
  }
  grid.SetCells(kCode, row, code);
}

}  // namespace

void ShowPortfolios(const ResultSet& portfolios, TStringGrid& grid) {
  const int name = portfolios.Column("COMNAME");
  const int date = portfolios.Column("EDITDATE");
  const int id = portfolios.Column("ID");
  const GridBatch batch(grid);
  grid.SetRowCount(portfolios.RowCount());
  for (int row = 0; row < portfolios.RowCount(); ++row) {
    grid.SetCells(kName, row, portfolios.TextAt(row, name));
    grid.SetCells(kCreated, row, portfolios.TextAt(row, date));
    grid.SetCells(kId, row, portfolios.TextAt(row, id));
  }
}

QStringList ShowHoldings(const ResultSet& holdings, TStringGrid& grid) {
  const int code = holdings.Column("SecuCode");
  const int quantity = holdings.Column("PZSL");
  const int weight = holdings.Column("PZBL");
  const int buyPrice = holdings.Column("BUYPRICE");
  const GridBatch batch(grid);
  grid.SetRowCount(holdings.RowCount());
  if (holdings.IsEmpty()) ClearStrnGrd(grid);
  QStringList codes;
  for (int row = 0; row < holdings.RowCount(); ++row) {
    const auto number = IntegerOr(holdings.TextAt(row, code));
    const QString codeText = SixDigits(number);
    StartRow(grid, row, GetCodeCNum(codeText));
    grid.SetCells(kSecurityName, row, NameOrDelisted(codeText));
    grid.SetCells(kIndustry, row, ModuleHost().CodeNums().IndustryOf(static_cast<int>(number)));
    grid.SetCells(kQuantity, row, holdings.TextAt(row, quantity));
    grid.SetCells(kWeight, row, WeightText(NumberAt(holdings, row, weight)));
    grid.SetCells(kBuyPrice, row, holdings.TextAt(row, buyPrice));
    grid.SetCells(kWeekClose, row, QString());
    grid.SetCells(kMonthClose, row, QString());
    codes.append(codeText);
  }
  return codes;
}

std::vector<Total> RefreshHoldings(TStringGrid& grid, QStringList& closesDue) {
  const TNameValueSnapshot prices = g_NowPrice->GetNowPriceStringList();
  if (prices->Count() == 0)
    return {};  // before the first prices every row is skipped; spare the first picture the queries
  const TNameValueSnapshot previousCloses = g_UserValue->GetUserPrvCloseValues();
  const GridBatch batch(grid);
  if (!closesDue.isEmpty()) ShowCloses(closesDue, grid);
  closesDue.clear();
  std::vector<TotalInput> totals;
  totals.reserve(static_cast<std::size_t>(grid.RowCount()));
  for (int row = 0; row < grid.RowCount(); ++row) {
    const QString& code = grid.Cells(kCode, row);
    HoldingInput input;
    input.price = RealOr(prices->ValueOf(code));
    input.previousClose = RealOr(previousCloses->ValueOf(code));
    input.weekClose = RealOr(grid.Cells(kWeekClose, row));
    input.monthClose = RealOr(grid.Cells(kMonthClose, row));
    input.buyPrice = RealOr(grid.Cells(kBuyPrice, row));
    input.quantity = IntegerOr(grid.Cells(kQuantity, row));
    const auto quantity = static_cast<double>(input.quantity);
    totals.push_back({grid.Cells(kSecurityName, row), input.price * quantity, input.previousClose * quantity,
                      input.buyPrice * quantity});
    const auto figures = FiguresOf(input);
    if (!figures) continue;
    RemarkOnCloses(grid, row, input);
    grid.SetCells(kPrice, row, figures->price);
    grid.SetCells(kChange, row, figures->change);
    grid.SetCells(kDayContribution, row, figures->dayContribution);
    grid.SetCells(kWeekContribution, row, figures->weekContribution);
    grid.SetCells(kMonthContribution, row, figures->monthContribution);
    grid.SetCells(kHoldingGain, row, figures->gain);
    grid.SetCells(kHoldingGainRate, row, figures->gainRate);
  }
  return TotalsOf(totals, QStringLiteral("只股票"));
}

std::vector<Total> RefreshPortfolios(TStringGrid& grid, ShownPortfolios& shown) {
  const TNameValueSnapshot values = g_NowPrice->GetNowValueGroupStringList();
  if (values->Count() == 0) return {};
  const TNameValueSnapshot weekCloses = g_ClosePrice->GetWeekCloseStringList_Sum();
  const TNameValueSnapshot monthCloses = g_ClosePrice->GetMonthCloseStringList_Sum();
  const TNameValueSnapshot costs = g_UserValue->GetUserValuesStringList();
  const TNameValueSnapshot previousCloses = g_UserValue->GetUserValuesPrvCloseValues();
  const auto basisOf = [](const ShownPortfolios& all) {
    return std::tie(all.values, all.weekCloses, all.monthCloses, all.costs, all.previousCloses);
  };
  const ShownPortfolios now{values, weekCloses, monthCloses, costs, previousCloses, {}};
  if (basisOf(now) == basisOf(shown)) return shown.totals;
  const TMissingCodes withoutPreviousClose = g_UserValue->HoldingsWithoutPreviousClose();
  const TMissingCodes withoutWeekClose = g_ClosePrice->HoldingsWithoutWeekClose();
  const TMissingCodes withoutMonthClose = g_ClosePrice->HoldingsWithoutMonthClose();
  const TMissingCodes withoutPrice = g_NowPrice->HoldingsWithoutPrice();
  const GridBatch batch(grid);
  std::vector<TotalInput> totals;
  totals.reserve(static_cast<std::size_t>(grid.RowCount()));
  for (int row = 0; row < grid.RowCount(); ++row) {
    const QString& id = grid.Cells(kId, row);
    PortfolioInput input;
    input.value = RealOr(values->ValueOf(id));
    input.weekCloseValue = RealOr(weekCloses->ValueOf(id));
    input.monthCloseValue = RealOr(monthCloses->ValueOf(id));
    input.cost = RealOr(costs->ValueOf(id));
    if (!withoutPreviousClose.contains(id)) input.previousCloseValue = RealOr(previousCloses->ValueOf(id));
    totals.push_back(
        {grid.Cells(kName, row), input.value, input.previousCloseValue, input.cost, withoutPrice.contains(id)});
    RemarkOnPortfolio(grid, row,
                      {withoutPrice.value(id), withoutPreviousClose.value(id), withoutWeekClose.value(id),
                       withoutMonthClose.value(id)});
    const auto figures = FiguresOf(input);
    if (!figures) continue;
    grid.SetCells(kValue, row, figures->value);
    grid.SetCells(kWeekChange, row, figures->weekChange);
    grid.SetCells(kMonthChange, row, figures->monthChange);
    grid.SetCells(kGain, row, figures->gain);
    if (figures->gainRate) grid.SetCells(kGainRate, row, *figures->gainRate);
    grid.SetCells(kDayChange, row, figures->dayChange);
  }
  shown = now;
  shown.totals = TotalsOf(totals, QStringLiteral("个组合"));
  return shown.totals;
}

}  // namespace holdwise::performance
