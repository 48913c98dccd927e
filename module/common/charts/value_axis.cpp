// SPDX-License-Identifier: MIT
#include "common/charts/value_axis.h"

#include <algorithm>
#include <cmath>

#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

/// The least of 1, 2, 5 x 10^k that is not below `distance`.
double RoundStep(double distance) {
  const double power = std::pow(10, std::floor(std::log10(distance)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= distance) return factor * power;
  }
  return 10 * power;
}

/// As many as tell values of that distance apart.
int DecimalsOf(double distance) {
  constexpr int kMostDecimals = 4;
  return std::clamp(-static_cast<int>(std::floor(std::log10(distance))), 0, kMostDecimals);
}

AxisTick TickOf(double value, int y, int decimals) {
  return {value, y, FormatFixed(value, decimals) + QLatin1Char('%')};
}

}  // namespace

ValueAxis::ValueAxis(double low, double high, double leastSpan, int top, int bottom)
    : low_(std::min({low, high, 0.0})), high_(std::max({low, high, 0.0})), top_(top), bottom_(std::max(top, bottom)) {
  const double lacking = leastSpan - (high_ - low_);
  if (lacking <= 0) return;
  (high_ >= -low_ ? high_ : low_) += high_ >= -low_ ? lacking : -lacking;
}

int ValueAxis::YOf(double value) const {
  const double kept = std::clamp(value, low_, high_);
  return top_ + static_cast<int>(std::lround((high_ - kept) / (high_ - low_) * (bottom_ - top_)));
}

std::vector<AxisTick> ValueAxis::Ticks(int leastGap) const {
  std::vector<AxisTick> ticks;
  const int height = bottom_ - top_;
  if (height <= 0) return {{0, top_, QStringLiteral("0%")}};
  const double step = RoundStep((high_ - low_) / height * leastGap);
  const int decimals = DecimalsOf(step);
  const auto first = static_cast<long>(std::ceil(low_ / step - 1e-9));
  const auto last = static_cast<long>(std::floor(high_ / step + 1e-9));
  for (long place = first; place <= last; ++place) {
    const double value = static_cast<double>(place) * step;
    ticks.push_back(TickOf(value, YOf(value), place == 0 ? 0 : decimals));
  }
  if (ticks.size() > 1) return ticks;
  for (const AxisTick& far : FarTick(leastGap)) ticks.insert(far.value < 0 ? ticks.begin() : ticks.end(), far);
  return ticks;
}

std::vector<AxisTick> ValueAxis::FarTick(int leastGap) const {
  const double end = high_ >= -low_ ? high_ : low_;
  const double power = std::pow(10, std::floor(std::log10(std::abs(end))));
  for (const double unit : {power, power / 10}) {
    const double value = std::trunc(end / unit * (1 + 1e-12)) * unit;
    const int y = YOf(value);
    if (std::abs(y - ZeroY()) >= leastGap) return {TickOf(value, y, DecimalsOf(unit))};
  }
  return {};
}

}  // namespace holdwise
