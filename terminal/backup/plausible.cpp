// SPDX-License-Identifier: MIT
#include "plausible.h"

#include <cmath>

#include "holdwise/packet/characters.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/entry_limits.h"

namespace holdwise::backup {
namespace {

constexpr double kLargestReturn = 1e4;
constexpr qsizetype kMostStylePoints = 40;

bool IsWithin(double value, double least, double most) {
  return std::isfinite(value) && value >= least && value <= most;
}

bool IsFlag(std::int64_t value) {
  return value == 0 || value == 1;
}

bool IsId(std::int64_t id) {
  return id >= 1 && id <= kLargestId;
}

qsizetype PointsOf(const QString& text) {
  return text.toUcs4().size();
}

}  // namespace

// Ten thousand rows are looked at within some milliseconds: a text is made for what is wrong only.
QStringList HeaderProblems(const SavedPortfolio& portfolio) {
  QStringList problems;
  if (!IsId(portfolio.id)) problems << QStringLiteral("的编号不在1到%1之间").arg(kLargestId);
  if (portfolio.name.isEmpty()) problems << QStringLiteral("没有名称");
  if (PointsOf(portfolio.name) > kMostNamePoints) problems << QStringLiteral("的名称太长");
  if (portfolio.style && PointsOf(*portfolio.style) > kMostStylePoints) problems << QStringLiteral("的风格太长");
  const std::optional<int> date = ReadIsoDate(QStringView(portfolio.date));
  if (!date || !IsMarketDate(*date))
    problems << QStringLiteral("的日期“%1”不是形如2025-03-03的日期").arg(portfolio.date);
  if (!IsWithin(portfolio.indexLevel, 0, kLargestPrice)) problems << QStringLiteral("的上证指数超出范围");
  if (!IsWithin(portfolio.targetReturn, -kLargestReturn, kLargestReturn))
    problems << QStringLiteral("的目标收益率超出范围");
  if (!IsFlag(portfolio.saveFlag)) problems << QStringLiteral("的保存标志不是0或1");
  if (!IsFlag(portfolio.isClose.value_or(0))) problems << QStringLiteral("的收盘标志不是0或1");
  if (portfolio.knownTo.value_or(0) != 0 && !IsMarketDate(*portfolio.knownTo))
    problems << QStringLiteral("的行情日期不是日期");
  return problems;
}

QStringList HoldingProblems(const SavedHolding& holding) {
  QStringList problems;
  if (!IsId(holding.id)) problems << QStringLiteral("的编号不在1到%1之间").arg(kLargestId);
  if (holding.code < kStockBase || holding.code > kLargestStockNumber)
    problems << QStringLiteral("的代码%1不是股票代码").arg(holding.code);
  if (holding.quantity < 0 || holding.quantity > kLargestQuantity)
    problems << QStringLiteral("的数量%1不在0到%2之间").arg(holding.quantity).arg(kLargestQuantity);
  if (!IsWithin(holding.buyPrice, 0, kLargestPrice)) problems << QStringLiteral("的买入价超出范围");
  if (!IsWithin(holding.weight, 0, kLargestWeight)) problems << QStringLiteral("的比例不在0到1之间");
  return problems;
}

}  // namespace holdwise::backup
