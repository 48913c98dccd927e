// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "holdwise/packet/message.h"
#include "holdwise/packet/number_text.h"
#include "properties.h"
#include "targets.h"

namespace holdwise::fuzz {
namespace {

/// Takes the digits off the front and says how many there were.
std::size_t TakeDigits(std::string_view& text) {
  const std::size_t count = std::min(text.find_first_not_of("0123456789"), text.size());
  text.remove_prefix(count);
  return count;
}

bool TakeOneOf(std::string_view& text, std::string_view characters) {
  if (text.empty() || characters.find(text.front()) == std::string_view::npos) return false;
  text.remove_prefix(1);
  return true;
}

bool HasFormOfInteger(std::string_view text) {
  TakeOneOf(text, "+-");
  return TakeDigits(text) > 0 && text.empty();
}

bool HasFormOfReal(std::string_view text) {
  TakeOneOf(text, "+-");
  std::size_t digits = TakeDigits(text);
  if (TakeOneOf(text, ".")) digits += TakeDigits(text);
  if (digits == 0) return false;
  if (TakeOneOf(text, "eE")) {
    TakeOneOf(text, "+-");
    if (TakeDigits(text) == 0) return false;
  }
  return text.empty();
}

void CheckReading(const std::string& text) {
  const std::optional<double> real = ParseReal(std::string_view(text));
  const double expected = std::strtod(text.c_str(), nullptr);
  Require(real.has_value() == (HasFormOfReal(text) && std::isfinite(expected)), "a real is read when it is one");
  if (real) Require(*real == expected && std::signbit(*real) == std::signbit(expected), "a real is read as C reads it");

  const std::optional<std::int64_t> integer = ParseInteger(std::string_view(text));
  errno = 0;
  const long long whole = std::strtoll(text.c_str(), nullptr, 10);
  Require(integer.has_value() == (HasFormOfInteger(text) && errno == 0), "an integer is read when it is one");
  if (integer) Require(*integer == whole, "an integer is read as C reads it");

  const QString wide = QString::fromLatin1(text.c_str());
  Require(ParseReal(QStringView(wide)) == real && ParseInteger(QStringView(wide)) == integer,
          "both kinds of text read the same");
}

/// The decimal expansion of a double is finite: all of it, then rounded as one does by hand.
std::string RoundedByHand(double value, int decimals) {
  std::array<char, 1500> exact;
  const int length = std::snprintf(exact.data(), exact.size(), "%.1080f", std::fabs(value));
  std::string digits(exact.data(), static_cast<std::size_t>(length));
  const std::size_t keep = digits.find('.') + 1 + static_cast<std::size_t>(decimals);
  const bool isUp = digits[keep] >= '5';
  digits.resize(keep);
  bool carry = isUp;
  for (std::size_t at = keep; carry && at-- > 0;) {
    if (digits[at] == '.') continue;
    carry = digits[at] == '9';
    digits[at] = carry ? '0' : static_cast<char>(digits[at] + 1);
  }
  if (carry) digits.insert(0, 1, '1');
  if (decimals == 0) digits.pop_back();
  const bool isZero = digits.find_first_not_of("0.") == std::string::npos;
  return (value < 0 && !isZero ? "-" : "") + digits;
}

std::size_t SignificantDigits(std::string_view text) {
  std::string digits;
  for (const char c : text.substr(0, text.find('e'))) {
    if (c >= '0' && c <= '9') digits += c;
  }
  digits.erase(0, digits.find_first_not_of('0'));
  digits.erase(digits.find_last_not_of('0') + 1);
  return digits.size();
}

void CheckShortest(double value) {
  const std::string shortest = ShortestUtf8(value);
  Require(ParseReal(std::string_view(shortest)) == value, "the shortest text reads back");
  Require(ShortestText(value).toStdString() == shortest, "both kinds of text are written the same");
  // A whole number without exponent has as many digits as its size asks for.
  if (shortest.find_first_of(".e") == std::string::npos) return;
  // One digit less than it has would be another number.
  const std::size_t digits = SignificantDigits(shortest);
  if (digits < 2) return;
  std::array<char, 64> shorter;
  std::snprintf(shorter.data(), shorter.size(), "%.*e", static_cast<int>(digits) - 2, value);
  Require(std::strtod(shorter.data(), nullptr) != value, "the shortest text is the shortest");
}

void CheckFixed(double value, int decimals) {
  const std::string fixed = FormatFixedUtf8(value, decimals);
  Require(fixed == RoundedByHand(std::isfinite(value) ? value : 0, decimals), "decimals are rounded as by hand");
  Require(FormatFixed(value, decimals).toStdString() == fixed, "both kinds of text are written the same");
}

void CheckDecimal(double value, int scale) {
  std::string digits = std::isfinite(value) ? RoundedByHand(value, scale) : "";
  if (const std::size_t point = digits.find('.'); point != std::string::npos) digits.erase(point, 1);
  const std::optional<std::int64_t> expected = ParseInteger(std::string_view(digits));
  try {
    const Decimal decimal = Decimal::FromDouble(value, scale);
    Require(decimal.mantissa == expected && decimal.scale == scale, "a decimal is the nearest one");
  } catch (const Error& error) {
    Require(error.Category() == ErrorCategory::Refused && !expected, "a decimal that fits is not refused");
  }
}

}  // namespace

void NumberTexts(std::string_view input) {
  if (input.find('\0') == std::string_view::npos) CheckReading(std::string(input));
  double value = 0;
  if (input.size() <= sizeof value) return;
  std::memcpy(&value, input.data(), sizeof value);
  const auto decimals = static_cast<unsigned char>(input[sizeof value]);
  CheckFixed(value, decimals % 13);
  CheckDecimal(value, decimals % 10);
  if (std::isfinite(value)) CheckShortest(value);
}

}  // namespace holdwise::fuzz
