// SPDX-License-Identifier: MIT
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Texts of datetime values: milliseconds since 1970-01-01 00:00:00, no time zone.
namespace holdwise {

/// "YYYY-MM-DD" at midnight, else "YYYY-MM-DD HH:MM:SS"; milliseconds are dropped.
std::string DateTimeUtf8(std::int64_t milliseconds);
/// The same with ".mmm" behind when there are milliseconds; nothing outside the years 1 to 9999.
std::optional<std::string> ExactDateTimeUtf8(std::int64_t milliseconds);
/// Strict reading of any of these forms; a date or time that does not exist gives nothing.
std::optional<std::int64_t> ParseDateTime(std::string_view text);

}  // namespace holdwise
