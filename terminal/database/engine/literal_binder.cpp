// SPDX-License-Identifier: MIT
#include "database/engine/literal_binder.h"

#include <firebird/Interface.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <string>

#include "holdwise/packet/dates.h"
#include "holdwise/packet/error.h"
#include "holdwise/packet/number_text.h"

namespace holdwise::firebird {

namespace {

constexpr unsigned kUtf8CharSet = 4;
constexpr unsigned kBytesPerUtf8Character = 4;
/// Exponents beyond are this far: no statement has as many digits.
constexpr std::int64_t kFarthest = 1LL << 40;

[[noreturn]] void Refuse(const Literal& literal, const char* why) {
  std::size_t end = std::min<std::size_t>(literal.text.size(), 80);
  while (end < literal.text.size() && (literal.text[end] & 0xC0) == 0x80) ++end;  // whole characters only
  const std::string shown(literal.text.substr(0, end));
  throw Error(ErrorCategory::Refused, "值“" + shown + "”" + why + "，语句没有执行");
}

template <typename T>
void Put(std::span<unsigned char> message, unsigned offset, T value) {
  std::memcpy(message.data() + offset, &value, sizeof value);
}

double RealOf(const Literal& literal) {
  const std::optional<double> value = ParseReal(literal.text);
  if (!value) Refuse(literal, "不是数，或超出范围");
  return *value;
}

/// Takes the exponent off the spelling of a number; 0 when it has none.
std::int64_t TakeExponent(std::string& number, const Literal& literal) {
  const std::size_t mark = number.find_first_of("eE");
  if (mark == std::string::npos) return 0;
  const std::optional<std::int64_t> exponent = ParseInteger(std::string_view(number).substr(mark + 1));
  if (!exponent) Refuse(literal, "超出范围");
  number.resize(mark);
  return std::clamp(*exponent, -kFarthest, kFarthest);
}

/// The whole number that the literal times 10^decimals is, from its digits: exact where a double is not.
std::int64_t WholeOf(const Literal& literal, int decimals) {
  if (decimals == 0) {
    if (const std::optional<std::int64_t> value = ParseInteger(literal.text)) return *value;
  }
  RealOf(literal);  // a number at all
  std::string digits(literal.text);
  if (decimals > 0 && digits.find_first_of("eE") != std::string::npos) Refuse(literal, "带指数，不能存入定点数");
  std::int64_t shift = decimals + TakeExponent(digits, literal);
  if (const std::size_t point = digits.find('.'); point != std::string::npos) {
    shift -= static_cast<std::int64_t>(digits.size() - point - 1);
    digits.erase(point, 1);
  }
  if (digits.find_first_of("123456789") == std::string::npos) return 0;
  for (; shift < 0 && digits.back() == '0'; ++shift) digits.pop_back();
  if (shift < 0) Refuse(literal, decimals > 0 ? "小数位数过多" : "不是整数");
  if (shift > std::numeric_limits<std::int64_t>::digits10) Refuse(literal, "超出整数范围");
  digits.append(static_cast<std::size_t>(shift), '0');
  const std::optional<std::int64_t> value = ParseInteger(std::string_view(digits));
  if (!value) Refuse(literal, decimals > 0 ? "超出范围" : "超出整数范围");
  return *value;
}

template <typename T>
void PutWhole(const Literal& literal, const Parameter& parameter, std::span<unsigned char> message) {
  const std::int64_t value = WholeOf(literal, -parameter.scale);
  if (value < std::numeric_limits<T>::min() || value > std::numeric_limits<T>::max()) Refuse(literal, "超出整数范围");
  Put(message, parameter.offset, static_cast<T>(value));
}

/// Reads exactly `digits` digits.
std::optional<int> Digits(std::string_view text, std::size_t at, std::size_t digits) {
  if (at + digits > text.size()) return std::nullopt;
  int value = 0;
  const auto [end, error] = std::from_chars(text.data() + at, text.data() + at + digits, value);
  const bool whole = error == std::errc() && end == text.data() + at + digits && text[at] != '-';
  return whole ? std::optional(value) : std::nullopt;
}

/// "YYYY-MM-DD" as the engine's day number (days since 1858-11-17).
std::optional<ISC_DATE> DayOf(std::string_view text) {
  constexpr int kDayZero = 18581117;
  const std::optional<int> date = ReadIsoDate(text);
  if (!date) return std::nullopt;
  return static_cast<ISC_DATE>(DayNumber(*date) - DayNumber(kDayZero));
}

/// "HH:MM:SS" with up to four decimals, in units of 100 microseconds.
std::optional<ISC_TIME> TimeOf(std::string_view text) {
  if (text.size() < 8 || text[2] != ':' || text[5] != ':') return std::nullopt;
  const auto hour = Digits(text, 0, 2);
  const auto minute = Digits(text, 3, 2);
  const auto second = Digits(text, 6, 2);
  if (!hour || !minute || !second || *hour > 23 || *minute > 59 || *second > 59) return std::nullopt;
  int fraction = 0;
  if (text.size() > 8) {
    const std::size_t decimals = text.size() - 9;
    if (text[8] != '.' || decimals < 1 || decimals > 4) return std::nullopt;
    const auto digits = Digits(text, 9, decimals);
    if (!digits) return std::nullopt;
    fraction = *digits;
    for (std::size_t i = decimals; i < 4; ++i) fraction *= 10;
  }
  return static_cast<ISC_TIME>(((*hour * 60 + *minute) * 60 + *second) * 10000 + fraction);
}

void PutDate(const Literal& literal, const Parameter& parameter, std::span<unsigned char> message) {
  const auto day = DayOf(literal.text);
  if (!day) Refuse(literal, "不是有效日期（应为“年-月-日”）");
  Put(message, parameter.offset, *day);
}

void PutTime(const Literal& literal, const Parameter& parameter, std::span<unsigned char> message) {
  const auto time = TimeOf(literal.text);
  if (!time) Refuse(literal, "不是有效时间（应为“时:分:秒”）");
  Put(message, parameter.offset, *time);
}

void PutTimestamp(const Literal& literal, const Parameter& parameter, std::span<unsigned char> message) {
  const auto day = DayOf(literal.text.substr(0, 10));
  std::optional<ISC_TIME> time = ISC_TIME{0};
  if (literal.text.size() > 10) time = literal.text[10] == ' ' ? TimeOf(literal.text.substr(11)) : std::nullopt;
  if (!day || !time) Refuse(literal, "不是有效的日期时间（应为“年-月-日 时:分:秒”）");
  Put(message, parameter.offset, ISC_TIMESTAMP{*day, *time});
}

std::size_t CharacterCount(std::string_view utf8) {
  return static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

bool PutText(const Literal& literal, const Parameter& parameter, std::span<unsigned char> message) {
  // The engine compares a text column with a number as numbers.
  if (!literal.quoted && !literal.stored) return false;
  std::string_view text = literal.text;
  std::string single;
  if (literal.doubledQuotes) {
    for (std::size_t i = 0; i < text.size(); ++i) {
      single += text[i];
      if (text[i] == '\'') ++i;
    }
    text = single;
  }
  const std::size_t limit =
      parameter.charSet == kUtf8CharSet ? parameter.length / kBytesPerUtf8Character : parameter.length;
  const std::size_t size =
      parameter.charSet == kUtf8CharSet && text.size() > limit ? CharacterCount(text) : text.size();
  if (size > limit) {
    if (literal.stored) Refuse(literal, (" 过长，最多 " + std::to_string(limit) + " 个字符").c_str());
    return false;
  }
  unsigned char* at = message.data() + parameter.offset;
  if (parameter.type == SQL_VARYING) {
    Put(message, parameter.offset, static_cast<std::uint16_t>(text.size()));
    at += sizeof(std::uint16_t);
  } else {
    std::fill_n(at, parameter.length, static_cast<unsigned char>(' '));
  }
  std::copy(text.begin(), text.end(), at);
  return true;
}

}  // namespace

bool BindLiteral(const Literal& literal, const Parameter& parameter, std::span<unsigned char> message) {
  Put(message, parameter.nullOffset, std::int16_t{0});
  switch (parameter.type) {
    case SQL_SHORT:
      PutWhole<std::int16_t>(literal, parameter, message);
      return true;
    case SQL_LONG:
      PutWhole<std::int32_t>(literal, parameter, message);
      return true;
    case SQL_INT64:
      PutWhole<std::int64_t>(literal, parameter, message);
      return true;
    case SQL_DOUBLE:
    case SQL_D_FLOAT:
      Put(message, parameter.offset, RealOf(literal));
      return true;
    case SQL_TYPE_DATE:
      PutDate(literal, parameter, message);
      return true;
    case SQL_TYPE_TIME:
      PutTime(literal, parameter, message);
      return true;
    case SQL_TIMESTAMP:
      PutTimestamp(literal, parameter, message);
      return true;
    case SQL_VARYING:
    case SQL_TEXT:
      return PutText(literal, parameter, message);
    default:
      return false;
  }
}

}  // namespace holdwise::firebird
