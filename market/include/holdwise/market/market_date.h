#pragma once
#include <optional>
#include <string>
#include <string_view>

/// Calendar dates as integers YYYYMMDD. Pure and thread-safe. Functions that take a date want a valid one.
namespace holdwise {

/// Reads "YYYY-MM-DD", "YYYYMMDD" or "YYYY/M/D"; nothing before or behind. A day that the calendar does not have, or a
/// year outside 1900 to 2100, is none.
[[nodiscard]] std::optional<int> ParseDate(std::string_view text) noexcept;
/// "YYYY-MM-DD".
[[nodiscard]] std::string DateText(int date);
/// Days since 1970-01-01.
[[nodiscard]] int DayNumber(int date) noexcept;
[[nodiscard]] int DateOfDayNumber(int dayNumber) noexcept;
/// Running number of the week from Monday to Sunday; it goes on over the turn of the year.
[[nodiscard]] int WeekNumber(int date) noexcept;
/// Running number of the calendar month.
[[nodiscard]] int MonthNumber(int date) noexcept;
[[nodiscard]] bool IsWeekday(int date) noexcept;

}  // namespace holdwise
