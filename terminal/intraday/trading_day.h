// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <optional>

/// The trading day of the two exchanges as an axis: 9:30 to 11:30 and 13:00 to 15:00 without the break between them,
/// counted in seconds of trading from 0 to kDaySeconds. 11:30 and 13:00 are one place. Pure; any thread.
namespace holdwise {

inline constexpr int kMorningSeconds = 7200;
inline constexpr int kDaySeconds = 14400;

/// Second of trading at a time in seconds since midnight: kMorningSeconds in the break, kDaySeconds after the close;
/// none before the opening and for what is no time of a day.
[[nodiscard]] std::optional<int> TradingSecondAt(int secondOfDay);
/// Seconds since midnight at a second of trading, which is cut to the day; 11:30 at kMorningSeconds.
[[nodiscard]] int SecondOfDayAt(int tradingSecond);
/// "10:15" or, with seconds, "10:15:30".
[[nodiscard]] QString TimeText(int tradingSecond, bool withSeconds = false);
/// Seconds since midnight of a time HHMMSS; none for what is no time.
[[nodiscard]] std::optional<int> SecondOfDayOf(std::uint32_t time);

/// Where the day stands in a width of points.
struct DayAxis {
  double left = 0;
  double width = 0;  ///< 0: everything is at the left
  [[nodiscard]] double XOf(int tradingSecond) const;
  /// The nearest second, cut to the day.
  [[nodiscard]] int SecondAt(double x) const;
};

}  // namespace holdwise
