// SPDX-License-Identifier: MIT
#include "plausible.h"

#include <cmath>

#include "holdwise/packet/characters.h"
#include "holdwise/packet/dates.h"

namespace holdwise::backup {
namespace {

constexpr std::int64_t kLargestQuantity = 2'147'483'647;  // what the column holds
constexpr double kLargestPrice = 1e6;
constexpr double kLargestLevel = 1e6;
constexpr double kLargestReturn = 1e4;
// Weights of a portfolio are rounded one by one.
constexpr double kLargestWeight = 1.01;
constexpr qsizetype kMostStylePoints = 40;
constexpr std::int64_t kFirstCode = 1'000'000;
constexpr std::int64_t kLastCode = 1'999'999;

bool IsWithin(double value, double least, double most) {
  return std::isfinite(value) && value >= least && value <= most;
}

bool IsId(std::int64_t id) {
  return id >= 1 && id <= kLargestId;
}

qsizetype PointsOf(const QString& text) {
  return text.toUcs4().size();
}

/// Collects the texts of what is not so.
class Demands {
 public:
  void Require(bool isGood, const QString& otherwise) {
    if (!isGood) problems_.append(otherwise);
  }
  [[nodiscard]] QStringList Take() { return std::move(problems_); }

 private:
  QStringList problems_;
};

}  // namespace

QStringList HeaderProblems(const SavedPortfolio& portfolio) {
  Demands demands;
  demands.Require(IsId(portfolio.id), QStringLiteral("的编号不在1到%1之间").arg(kLargestId));
  demands.Require(!portfolio.name.isEmpty(), QStringLiteral("没有名称"));
  demands.Require(PointsOf(portfolio.name) <= kMostNamePoints, QStringLiteral("的名称太长"));
  demands.Require(PointsOf(portfolio.style.value_or(QString())) <= kMostStylePoints, QStringLiteral("的风格太长"));
  const std::optional<int> date = ReadIsoDate(QStringView(portfolio.date));
  demands.Require(date && IsMarketDate(*date),
                  QStringLiteral("的日期“%1”不是形如2025-03-03的日期").arg(portfolio.date));
  demands.Require(IsWithin(portfolio.indexLevel, 0, kLargestLevel), QStringLiteral("的上证指数超出范围"));
  demands.Require(IsWithin(portfolio.targetReturn, -kLargestReturn, kLargestReturn),
                  QStringLiteral("的目标收益率超出范围"));
  demands.Require(portfolio.saveFlag == 0 || portfolio.saveFlag == 1, QStringLiteral("的保存标志不是0或1"));
  demands.Require(portfolio.isClose.value_or(0) == 0 || portfolio.isClose == 1, QStringLiteral("的收盘标志不是0或1"));
  demands.Require(portfolio.knownTo.value_or(0) == 0 || IsMarketDate(*portfolio.knownTo),
                  QStringLiteral("的行情日期不是日期"));
  return demands.Take();
}

QStringList HoldingProblems(const SavedHolding& holding) {
  Demands demands;
  demands.Require(IsId(holding.id), QStringLiteral("的编号不在1到%1之间").arg(kLargestId));
  demands.Require(holding.code >= kFirstCode && holding.code <= kLastCode,
                  QStringLiteral("的代码%1不是股票代码").arg(holding.code));
  demands.Require(holding.quantity >= 0 && holding.quantity <= kLargestQuantity,
                  QStringLiteral("的数量%1不在0到%2之间").arg(holding.quantity).arg(kLargestQuantity));
  demands.Require(IsWithin(holding.buyPrice, 0, kLargestPrice), QStringLiteral("的买入价超出范围"));
  demands.Require(IsWithin(holding.weight, 0, kLargestWeight), QStringLiteral("的比例不在0到1之间"));
  return demands.Take();
}

}  // namespace holdwise::backup
