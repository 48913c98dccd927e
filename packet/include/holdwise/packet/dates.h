// SPDX-License-Identifier: MIT
#pragma once
#include <QStringView>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Calendar dates as integers YYYYMMDD, and their texts. The one place that reads a date. Pure and thread-safe.
/// Functions that take a date want one of the calendar.
namespace holdwise {

/// A day that the calendar has, of the years 1 to 9999?
[[nodiscard]] bool IsCalendarDate(std::int64_t date) noexcept;
/// A day that the calendar has, of the years 1900 to 2100: what can be the date of a bar, a listing, a rate.
[[nodiscard]] bool IsMarketDate(std::int64_t date) noexcept;
/// Reads exactly "YYYY-MM-DD" of a calendar date; none for anything else.
[[nodiscard]] std::optional<int> ReadIsoDate(std::string_view text) noexcept;
[[nodiscard]] std::optional<int> ReadIsoDate(QStringView text) noexcept;
/// Reads a market date as people write it: "YYYY-M-D", "YYYY/M/D" or "YYYYMMDD"; nothing before or behind.
[[nodiscard]] std::optional<int> ReadMarketDate(std::string_view text) noexcept;

/// The same, or with a time behind it as programs write one: a blank or "T", hours and minutes, perhaps seconds with or
/// without a fraction, perhaps a zone ("Z", "+08:00", "+0800"). With a zone it is the day in Shanghai at that moment.
[[nodiscard]] std::optional<int> ReadTimedDate(std::string_view text) noexcept;

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
