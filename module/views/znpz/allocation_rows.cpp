// SPDX-License-Identifier: MIT
#include "allocation_rows.h"

#include "allocation_layout.h"
#include "common/frames/security_links.h"
#include "common/host/codes.h"
#include "common/host/host_access.h"
#include "common/series/shared_objects.h"
#include "grid_sort.h"
#include "holdwise/packet/number_text.h"

namespace holdwise::allocation {
namespace {

constexpr int kMoneyDecimals = 2;
constexpr int kErrorDecimals = 4;
constexpr double kMostWeight = 1.0001;  // all together; four decimals a weight

QString Percent(double fraction) {
  return FormatFixed(fraction * 100, 2);
}

void ShowRounding(const Rounding& rounding, TStringGrid& grid) {
  for (int row = 0; row < grid.RowCount(); ++row) {
    grid.SetCells(kLeftOver, row, FormatFixed(rounding.leftOver, kMoneyDecimals));
    grid.SetCells(kLargestError, row, FormatFixed(rounding.largestError * 100, kErrorDecimals));
  }
}

/// Remarks do not move with their rows, so they come after the sorting.
void RemarkOnMissing(double capital, TStringGrid& grid) {
  for (int row = 0; row < grid.RowCount(); ++row) {
    if (IntegerOr(grid.Cells(kQuantity, row)) != 0) continue;
    const QString& name = grid.Cells(kSecurityName, row);
    const double price = RealOr(grid.Cells(kPrice, row));
    const double share = AmountOf(RealOr(grid.Cells(kWeight, row)), capital);
    grid.SetRemark(
        {kQuantity, row},
        price == 0 ? QStringLiteral("%1：没有取得价格，算不出数量。行情恢复后请再按“配 置”。").arg(name)
                   : QStringLiteral("%1：分到 %2 元，不够买一手（100 股，%3 元）。请增加资金量。")
                         .arg(name, FormatFixed(share, kMoneyDecimals), FormatFixed(LotCost(price), kMoneyDecimals)));
  }
}

}  // namespace

void ShowCandidates(const std::vector<Candidate>& candidates, TStringGrid& grid) {
  const GridBatch batch(grid);
  grid.SetRowCount(static_cast<int>(candidates.size()));
  int row = 0;
  for (const Candidate& candidate : candidates) {
    grid.SetCells(kNumber, row, QString::number(row + 1));
    grid.SetCells(kStyle, row, candidate.style);
    grid.SetCells(kTarget, row, FormatFixed(candidate.targetReturn * 100, 2));
    grid.SetCells(kVariance, row, FormatFixed(candidate.variance, 6));
    grid.SetCells(kBeta, row, FormatFixed(candidate.beta, 6));
    grid.SetCells(kFileName, row, candidate.fileName);
    ++row;
  }
}

double PriceOf(const QString& code) {
  const double fetched = RealOr(g_StockClosePrice->Prices()->ValueOf(code));
  if (fetched != 0) return fetched;
  return ModuleHost().DataCenter().StockNowData(CodeNumberOf(code)).currentPrice;
}

PartsShown ShowParts(const std::vector<Part>& parts, double capital, TStringGrid& grid) {
  PartsShown shown;
  std::vector<Bought> bought;
  {
    const GridBatch batch(grid);
    grid.SetRowCount(static_cast<int>(parts.size()));
    int row = 0;
    for (const Part& part : parts) {
      const QString code = GetCodeCNum(part.code);
      const QString name = NameOrDelisted(GetCodeNum(part.code));
      const double price = PriceOf(code);
      const Bought one{part.weight, price, QuantityOf(part.weight, capital, price)};
      grid.SetCells(kCode, row, code);
      grid.SetCells(kSecurityName, row, name);
      grid.SetCells(kQuantity, row, QString::number(one.quantity));
      grid.SetCells(kWeight, row, part.weightText);
      grid.SetCells(kPrice, row, FormatFixed(price, kMoneyDecimals));
      grid.SetCells(kWeightError, row, FormatFixed(WeightErrorOf(one, capital) * 100, kErrorDecimals));
      if (one.quantity == 0) shown.unaffordable << name;
      if (price == 0) shown.unpriced << name;
      shown.weightSum += part.weight;
      bought.push_back(one);
      ++row;
    }
  }
  shown.rounding = RoundingOf(bought, capital);
  if (parts.empty()) return shown;
  ShowRounding(shown.rounding, grid);
  GridQuickSort(grid, kWeight, false, true);
  RemarkOnMissing(capital, grid);
  return shown;
}

QString HintOfPart(const TStringGrid& grid, int row, double capital) {
  const double price = RealOr(grid.Cells(kPrice, row));
  const double error = RealOr(grid.Cells(kWeightError, row)) / 100;
  const double weight = RealOr(grid.Cells(kWeight, row));
  if (price == 0) return {};
  const QString cost = FormatFixed(static_cast<double>(IntegerOr(grid.Cells(kQuantity, row))) * price, kMoneyDecimals);
  return QStringLiteral("%1 股 × %2 元 = %3 元，占 %4 万元的 %5%；目标 %6%，误差 %7 个百分点")
      .arg(grid.Cells(kQuantity, row), grid.Cells(kPrice, row), cost, ShortestText(capital), Percent(weight + error),
           Percent(weight), Percent(error));
}

PartsNotice NoticeOf(const PartsShown& shown) {
  if (!shown.unpriced.isEmpty()) {
    const QString lacking = QStringLiteral("%1没有价格，数量按 0 计").arg(ShortfallText(shown.unpriced));
    return {QStringLiteral("%1 只股票没有价格").arg(shown.unpriced.size()), lacking, lacking};
  }
  if (shown.weightSum > kMostWeight) {
    const QString sum = QStringLiteral("比例之和是 %1%，超过 100%").arg(Percent(shown.weightSum));
    return {sum, QStringLiteral("照此买入要用的钱比资金量多，请更新数据目录。"), sum};
  }
  return {QStringLiteral("剩余 %1 元，最大误差 %2%")
              .arg(FormatFixed(shown.rounding.leftOver, kMoneyDecimals), Percent(shown.rounding.largestError)),
          QStringLiteral("按整手（100 股）取整后没有用完的资金，以及实际比例与目标比例之差的最大值（百分点）。"),
          {}};
}

QStringList UnaffordableIn(const TStringGrid& grid) {
  QStringList names;
  for (int row = 0; row < grid.RowCount(); ++row)
    if (IntegerOr(grid.Cells(kQuantity, row)) == 0) names << grid.Cells(kSecurityName, row);
  return names;
}

}  // namespace holdwise::allocation
