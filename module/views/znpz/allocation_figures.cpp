// SPDX-License-Identifier: MIT
#include "allocation_figures.h"

#include <QStringList>
#include <algorithm>
#include <cmath>

#include "common/helpers/date_text.h"
#include "holdwise/packet/number_text.h"

namespace holdwise::allocation {
namespace {

constexpr double kYuan = 10'000;  // in a unit of capital
constexpr std::int64_t kLot = 100;

}  // namespace

double AmountOf(double weight, double capital) {
  return weight * capital * kYuan;
}

double LotCost(double price) {
  return price * static_cast<double>(kLot);
}

std::int64_t QuantityOf(double weight, double capital, double price) {
  // Three roundings of the processor must not cost a lot where the quotient is a whole number.
  constexpr int kExact = 14;
  constexpr double kMost = 1e15;
  if (price == 0) return 0;
  const double shares = RoundToDigits(AmountOf(weight, capital) / price, kExact);
  const auto raw = static_cast<std::int64_t>(std::clamp(shares, -kMost, kMost));
  return raw - raw % kLot;
}

double WeightErrorOf(const Bought& holding, double capital) {
  return static_cast<double>(holding.quantity) * holding.price / (capital * kYuan) - holding.weight;
}

Rounding RoundingOf(const std::vector<Bought>& holdings, double capital) {
  Rounding rounding{capital * kYuan, 0};
  for (const Bought& holding : holdings) {
    rounding.leftOver -= static_cast<double>(holding.quantity) * holding.price;
    rounding.largestError = std::max(rounding.largestError, std::abs(WeightErrorOf(holding, capital)));
  }
  return rounding;
}

QString ShortfallText(const QStringList& names) {
  QStringList quoted;
  for (const QString& name : names) quoted << QLatin1Char('"') + name + QLatin1Char('"');
  return quoted.join(QLatin1Char(','));
}

QString PortfolioName(const QString& style, QDate today, int stockCount, const QString& number) {
  return style + DayNumberText(today) + QLatin1Char('_') + QString::number(stockCount) + QLatin1Char('_') + number;
}

}  // namespace holdwise::allocation
