// SPDX-License-Identifier: MIT
#include "intraday/trading_day.h"

#include <algorithm>
#include <cmath>

namespace holdwise {
namespace {

constexpr int kMinute = 60, kHour = 3600;
constexpr int kMorning = 9 * kHour + 30 * kMinute;
constexpr int kNoon = kMorning + kMorningSeconds;
constexpr int kAfternoon = 13 * kHour;
constexpr int kClose = kAfternoon + kDaySeconds - kMorningSeconds;
constexpr int kMidnight = 24 * kHour;

}  // namespace

std::optional<int> TradingSecondAt(int secondOfDay) {
  if (secondOfDay < kMorning || secondOfDay >= kMidnight) return std::nullopt;
  if (secondOfDay <= kNoon) return secondOfDay - kMorning;
  if (secondOfDay <= kAfternoon) return kMorningSeconds;
  return std::min(secondOfDay, kClose) - kAfternoon + kMorningSeconds;
}

int SecondOfDayAt(int tradingSecond) {
  const int second = std::clamp(tradingSecond, 0, kDaySeconds);
  return second <= kMorningSeconds ? kMorning + second : kAfternoon + second - kMorningSeconds;
}

QString TimeText(int tradingSecond, bool withSeconds) {
  const int second = SecondOfDayAt(tradingSecond);
  const auto two = [](int number) { return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')); };
  const QString text = two(second / kHour) + QLatin1Char(':') + two(second / kMinute % 60);
  return withSeconds ? text + QLatin1Char(':') + two(second % 60) : text;
}

std::optional<int> SecondOfDayOf(std::uint32_t time) {
  const std::uint32_t hours = time / 10000, minutes = time / 100 % 100, seconds = time % 100;
  if (hours >= 24 || minutes >= 60 || seconds >= 60) return std::nullopt;
  return static_cast<int>(hours) * kHour + static_cast<int>(minutes) * kMinute + static_cast<int>(seconds);
}

double DayAxis::XOf(int tradingSecond) const {
  return left + width * std::clamp(tradingSecond, 0, kDaySeconds) / kDaySeconds;
}

int DayAxis::SecondAt(double x) const {
  if (width <= 0) return 0;
  return static_cast<int>(std::lround(std::clamp((x - left) / width, 0.0, 1.0) * kDaySeconds));
}

}  // namespace holdwise
