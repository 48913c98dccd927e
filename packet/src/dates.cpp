// SPDX-License-Identifier: MIT
#include "holdwise/packet/dates.h"

#include <chrono>
#include <cstdio>

namespace holdwise {
namespace {

using std::chrono::year_month_day;

constexpr int kFirstMarketYear = 1900;
constexpr int kLastMarketYear = 2100;
constexpr int kLargestDate = 9999'12'31;
// 1970-01-01 was a Thursday: three days after a Monday.
constexpr int kDaysFromMonday = 3;

year_month_day FromNumber(int date) noexcept {
  return {std::chrono::year(date / 10000), std::chrono::month(static_cast<unsigned>(date / 100 % 100)),
          std::chrono::day(static_cast<unsigned>(date % 100))};
}

int FloorDivide(int value, int divisor) noexcept {
  return value >= 0 ? value / divisor : -((-value + divisor - 1) / divisor);
}

// Takes `least` to `most` digits off the front; -1 when there are fewer.
int TakeDigits(std::string_view& text, int least, int most) noexcept {
  int value = 0;
  int count = 0;
  while (count < most && !text.empty() && text.front() >= '0' && text.front() <= '9') {
    value = value * 10 + (text.front() - '0');
    text.remove_prefix(1);
    ++count;
  }
  return count < least ? -1 : value;
}

bool TakeMark(std::string_view& text, char mark) noexcept {
  if (text.empty() || text.front() != mark) return false;
  text.remove_prefix(1);
  return true;
}

// "YYYY-MM-DD" in characters of either width.
template <typename View>
std::optional<int> ReadIso(View text) noexcept {
  constexpr std::string_view kPattern = "0000-00-00";
  if (static_cast<std::size_t>(text.size()) != kPattern.size()) return std::nullopt;
  int date = 0;
  std::size_t place = 0;
  for (const auto c : text) {
    if (kPattern[place++] == '-') {
      if (c != u'-') return std::nullopt;
    } else {
      if (c < u'0' || c > u'9') return std::nullopt;
      date = date * 10 + static_cast<int>(c - u'0');
    }
  }
  if (!IsCalendarDate(date)) return std::nullopt;
  return date;
}

constexpr int kMinutesOfHour = 60;
constexpr int kMinutesOfDay = 24 * kMinutesOfHour;
constexpr int kShanghaiMinutes = 8 * kMinutesOfHour;

// "HH:MM" of at least so many digits for the hour, in minutes; -1 when it is none.
int TakeClock(std::string_view& text, int leastDigits, bool needsColon) noexcept {
  const int hours = TakeDigits(text, leastDigits, 2);
  if (hours < 0 || (!TakeMark(text, ':') && needsColon)) return -1;
  const int minutes = TakeDigits(text, 2, 2);
  const bool isClock = minutes >= 0 && hours < 24 && minutes < kMinutesOfHour;
  return isClock ? hours * kMinutesOfHour + minutes : -1;
}

bool TakeSeconds(std::string_view& text) noexcept {
  constexpr int kLongestFraction = 9;
  if (!TakeMark(text, ':')) return true;
  const int seconds = TakeDigits(text, 2, 2);
  if (seconds < 0 || seconds >= kMinutesOfHour) return false;
  return !TakeMark(text, '.') || TakeDigits(text, 1, kLongestFraction) >= 0;
}

// Minutes that the zone is ahead of Greenwich; none when what stands there is no zone.
std::optional<int> ReadZone(std::string_view text) noexcept {
  if (text == "Z") return 0;
  const bool isBehind = text.starts_with('-');
  if (!isBehind && !text.starts_with('+')) return std::nullopt;
  text.remove_prefix(1);
  const int offset = TakeClock(text, 2, false);
  if (offset < 0 || !text.empty()) return std::nullopt;
  return isBehind ? -offset : offset;
}

}  // namespace

bool IsCalendarDate(std::int64_t date) noexcept {
  constexpr int kFirstDate = 1'01'01;
  return date >= kFirstDate && date <= kLargestDate && FromNumber(static_cast<int>(date)).ok();
}

bool IsMarketDate(std::int64_t date) noexcept {
  return IsCalendarDate(date) && date / 10000 >= kFirstMarketYear && date / 10000 <= kLastMarketYear;
}

std::optional<int> ReadIsoDate(std::string_view text) noexcept {
  return ReadIso(text);
}

std::optional<int> ReadIsoDate(QStringView text) noexcept {
  return ReadIso(std::u16string_view(text.utf16(), static_cast<std::size_t>(text.size())));
}

std::optional<int> ReadMarketDate(std::string_view text) noexcept {
  const int year = TakeDigits(text, 4, 4);
  if (year < 0 || text.empty()) return std::nullopt;
  const char mark = text.front();
  const bool hasMarks = mark == '-' || mark == '/';
  const int leastDigits = hasMarks ? 1 : 2;
  if (hasMarks) TakeMark(text, mark);
  const int month = TakeDigits(text, leastDigits, 2);
  if (month < 0 || (hasMarks && !TakeMark(text, mark))) return std::nullopt;
  const int day = TakeDigits(text, leastDigits, 2);
  if (day < 0 || !text.empty()) return std::nullopt;
  const int date = year * 10000 + month * 100 + day;
  if (!IsMarketDate(date)) return std::nullopt;
  return date;
}

std::optional<int> ReadTimedDate(std::string_view text) noexcept {
  const std::size_t end = text.find_first_of(" T");
  const std::optional<int> date = ReadMarketDate(text.substr(0, end));
  if (!date || end == std::string_view::npos) return date;
  text.remove_prefix(end + 1);
  const int minutes = TakeClock(text, 1, true);
  if (minutes < 0 || !TakeSeconds(text)) return std::nullopt;
  if (text.empty()) return date;
  const std::optional<int> zone = ReadZone(text);
  if (!zone) return std::nullopt;
  const int day = DateOfDayNumber(DayNumber(*date) + FloorDivide(minutes - *zone + kShanghaiMinutes, kMinutesOfDay));
  if (!IsMarketDate(day)) return std::nullopt;
  return day;
}

std::string DateText(int date) {
  char text[16];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d", date / 10000, date / 100 % 100, date % 100);
  return text;
}

int DayNumber(int date) noexcept {
  return static_cast<int>(std::chrono::sys_days(FromNumber(date)).time_since_epoch().count());
}

int DateOfDayNumber(int dayNumber) noexcept {
  const year_month_day date{std::chrono::sys_days(std::chrono::days(dayNumber))};
  return static_cast<int>(date.year()) * 10000 + static_cast<int>(static_cast<unsigned>(date.month())) * 100 +
         static_cast<int>(static_cast<unsigned>(date.day()));
}

int WeekNumber(int date) noexcept {
  return FloorDivide(DayNumber(date) + kDaysFromMonday, 7);
}

int MonthNumber(int date) noexcept {
  return date / 10000 * 12 + date / 100 % 100;
}

bool IsWeekday(int date) noexcept {
  return DayNumber(date) + kDaysFromMonday - WeekNumber(date) * 7 < 5;
}

}  // namespace holdwise
