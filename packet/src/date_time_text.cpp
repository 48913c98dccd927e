// SPDX-License-Identifier: MIT
#include "date_time_text.h"

#include <QDate>
#include <array>
#include <cstdio>

#include "holdwise/packet/dates.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

constexpr std::int64_t kDayMilliseconds = 86'400'000;
constexpr std::int64_t kEpochJulianDay = 2'440'588;
constexpr std::int64_t kFirstDateTime = -62'135'596'800'000;  // 0001-01-01 00:00:00.000
constexpr std::int64_t kLastDateTime = 253'402'300'799'999;   // 9999-12-31 23:59:59.999

/// Digits at fixed places, punctuation as in the pattern ("0" stands for a digit).
bool Matches(std::string_view text, std::string_view pattern) {
  if (text.size() != pattern.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool digit = text[i] >= '0' && text[i] <= '9';
    if (pattern[i] == '0' ? !digit : text[i] != pattern[i]) return false;
  }
  return true;
}

}  // namespace

std::string DateTimeUtf8(std::int64_t milliseconds) {
  std::int64_t days = milliseconds / kDayMilliseconds;
  std::int64_t inDay = milliseconds % kDayMilliseconds;
  if (inDay < 0) {
    inDay += kDayMilliseconds;
    --days;
  }
  int year = 0;
  int month = 0;
  int day = 0;
  QDate::fromJulianDay(days + kEpochJulianDay).getDate(&year, &month, &day);
  char text[64];
  int length = std::snprintf(text, sizeof text, "%04d-%02d-%02d", year, month, day);
  if (inDay != 0) {
    const auto seconds = static_cast<int>(inDay / 1000);
    length += std::snprintf(text + length, sizeof text - static_cast<std::size_t>(length), " %02d:%02d:%02d",
                            seconds / 3600, seconds / 60 % 60, seconds % 60);
  }
  return {text, static_cast<std::size_t>(length)};
}

std::optional<std::string> ExactDateTimeUtf8(std::int64_t milliseconds) {
  if (milliseconds < kFirstDateTime || milliseconds > kLastDateTime) return {};
  std::string text = DateTimeUtf8(milliseconds);
  if (const auto fraction = static_cast<int>((milliseconds - kFirstDateTime) % 1000); fraction != 0) {
    std::array<char, 8> buffer;
    std::snprintf(buffer.data(), buffer.size(), ".%03d", fraction);
    text.append(buffer.data());
  }
  return text;
}

std::optional<std::int64_t> ParseDateTime(std::string_view text) {
  constexpr std::string_view kPattern = "0000-00-00 00:00:00.000";
  constexpr std::size_t kDateLength = 10;
  constexpr std::size_t kSecondsLength = 19;
  if (text.size() != kDateLength && text.size() != kSecondsLength && text.size() != kPattern.size()) return {};
  if (!Matches(text, kPattern.substr(0, text.size()))) return {};
  const auto number = [text](std::size_t at, std::size_t length) {
    return at < text.size() ? static_cast<int>(*ParseInteger(text.substr(at, length))) : 0;
  };
  const std::optional<int> date = ReadIsoDate(text.substr(0, kDateLength));
  const int hour = number(11, 2);
  const int minute = number(14, 2);
  const int second = number(17, 2);
  if (!date || hour > 23 || minute > 59 || second > 59) return {};
  return DayNumber(*date) * kDayMilliseconds + ((hour * 60 + minute) * 60 + second) * 1000LL + number(20, 3);
}

}  // namespace holdwise
