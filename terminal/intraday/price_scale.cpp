// SPDX-License-Identifier: MIT
#include "intraday/price_scale.h"

#include <algorithm>
#include <cmath>

#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

constexpr double kRoom = 1.05;
constexpr double kLeastShare = 0.005;
constexpr double kLeastReach = 2;

QString InTenThousands(double number, const QString& unit, int plainDecimals) {
  constexpr double kTenThousand = 1e4, kHundredMillion = 1e8;
  if (number >= kHundredMillion) return FormatFixed(number / kHundredMillion, 2) + QStringLiteral(" 亿") + unit;
  if (number >= kTenThousand) return FormatFixed(number / kTenThousand, 2) + QStringLiteral(" 万") + unit;
  return FormatFixed(number, plainDecimals) + QLatin1Char(' ') + unit;
}

}  // namespace

PriceScale ScaleFor(std::span<const Tick> ticks, std::span<const AveragePoint> averages, std::int64_t previousClose,
                    std::span<const std::int64_t> known) {
  std::vector<double> prices;
  for (const Tick& tick : ticks) prices.push_back(static_cast<double>(tick.price));
  for (const std::int64_t price : known)
    if (price > 0) prices.push_back(static_cast<double>(price));
  PriceScale scale;
  scale.middle = previousClose > 0 || prices.empty() ? static_cast<double>(previousClose) : prices.front();
  for (const AveragePoint& point : averages) prices.push_back(point.price);
  double farthest = 0;
  for (const double price : prices) farthest = std::max(farthest, std::abs(price - scale.middle));
  scale.reach = std::max({farthest * kRoom, scale.middle * kLeastShare, kLeastReach});
  return scale;
}

double PercentOf(double price, std::int64_t previousClose) {
  if (previousClose <= 0) return 0;
  const auto close = static_cast<double>(previousClose);
  return (price - close) / close * 100;
}

QString PercentText(double percent) {
  const QString text = FormatFixed(percent, 2) + QLatin1Char('%');
  return percent > 0 && text != QStringLiteral("0.00%") ? QLatin1Char('+') + text : text;
}

QString PriceText(double price) {
  return FormatFixed(price / 100, 2);
}

QString VolumeText(std::int64_t shares) {
  if (shares < 0) return QStringLiteral("—");
  return InTenThousands(static_cast<double>(shares), QStringLiteral("股"), 0);
}

QString AmountText(std::int64_t hundredths) {
  if (hundredths < 0) return QStringLiteral("—");
  return InTenThousands(static_cast<double>(hundredths) / 100, QStringLiteral("元"), 2);
}

std::int64_t MostTraded(std::span<const MinuteBar> bars) {
  std::int64_t most = 1;
  for (const MinuteBar& bar : bars) most = std::max(most, bar.volume);
  return most;
}

}  // namespace holdwise
