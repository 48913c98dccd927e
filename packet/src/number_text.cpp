// SPDX-License-Identifier: MIT
#include "holdwise/packet/number_text.h"

#include <QVarLengthArray>
#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

__extension__ typedef unsigned __int128 Uint128;

constexpr int kMaxDecimals = 12;
/// Sign, 309 digits of the largest double, point, decimals.
constexpr std::size_t kFixedBuffer = 1 + 309 + 1 + kMaxDecimals;
constexpr std::size_t kShortestBuffer = 40;
constexpr std::array<std::uint64_t, kMaxDecimals + 1> kPowersOfTen = {
    1,        10,        100,        1000,        10000,        100000,       1000000,
    10000000, 100000000, 1000000000, 10000000000, 100000000000, 1000000000000};

bool IsDigit(char c) noexcept {
  return c >= '0' && c <= '9';
}

/// The characters of an ASCII text; nothing when a character is outside ASCII.
class AsciiText {
 public:
  explicit AsciiText(QStringView text) {
    characters_.reserve(text.size());
    for (const QChar c : text) {
      if (c.unicode() > 0x7F) {
        characters_.clear();
        return;
      }
      characters_.append(static_cast<char>(c.unicode()));
    }
  }
  [[nodiscard]] std::string_view View() const noexcept {
    return {characters_.constData(), static_cast<std::size_t>(characters_.size())};
  }

 private:
  QVarLengthArray<char, 64> characters_;
};

/// Whether a well-formed number that does not fit into a double is too small (rather than too large).
bool IsTooSmall(std::string_view number) noexcept {
  const std::size_t exponentMark = number.find_first_of("eE");
  const std::string_view digits = number.substr(0, exponentMark);
  const auto pointAt = static_cast<std::int64_t>(std::min(digits.find('.'), digits.size()));
  const auto firstAt = static_cast<std::int64_t>(std::min(digits.find_first_of("123456789"), digits.size()));
  std::int64_t exponent = 0;
  if (exponentMark != std::string_view::npos) {
    std::string_view tail = number.substr(exponentMark + 1);
    if (tail.starts_with('+')) tail.remove_prefix(1);
    const auto [end, error] = std::from_chars(tail.data(), tail.data() + tail.size(), exponent);
    if (error == std::errc::result_out_of_range) return tail.starts_with('-');
  }
  return exponent < firstAt - pointAt;
}

std::size_t WriteFixed(char* out, double value, int decimals) noexcept {
  decimals = std::clamp(decimals, 0, kMaxDecimals);
  if (!std::isfinite(value)) value = 0;
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const auto exponent = static_cast<int>((bits >> 52) & 0x7FF);
  std::uint64_t mantissa = bits & ((1ULL << 52) - 1);
  if (exponent != 0) mantissa |= 1ULL << 52;
  const int shift = 1075 - std::max(exponent, 1);  // |value| = mantissa / 2^shift, exactly
  if (shift <= 0) {
    return static_cast<std::size_t>(
        std::to_chars(out, out + kFixedBuffer, value, std::chars_format::fixed, decimals).ptr - out);
  }
  std::uint64_t whole = shift < 64 ? mantissa >> shift : 0;
  const std::uint64_t low = shift < 64 ? mantissa & ((1ULL << shift) - 1) : mantissa;
  const std::uint64_t unit = kPowersOfTen[static_cast<std::size_t>(decimals)];
  std::uint64_t fraction = 0;
  if (shift <= 100) {  // beyond, low * unit < 2^93 is less than half of 2^shift
    const Uint128 scaled = static_cast<Uint128>(low) * unit;
    fraction = static_cast<std::uint64_t>(scaled >> shift) + static_cast<std::uint64_t>((scaled >> (shift - 1)) & 1U);
  }
  if (fraction == unit) {
    fraction = 0;
    ++whole;
  }
  char* at = out;
  if ((bits >> 63) != 0 && (whole != 0 || fraction != 0)) *at++ = '-';
  at = std::to_chars(at, out + kFixedBuffer, whole).ptr;
  if (decimals > 0) {
    *at = '.';
    for (int i = decimals; i > 0; --i) {
      at[i] = static_cast<char>('0' + fraction % 10);
      fraction /= 10;
    }
    at += decimals + 1;
  }
  return static_cast<std::size_t>(at - out);
}

std::size_t WriteShortest(char* out, double value) {
  if (!std::isfinite(value)) throw Error(ErrorCategory::Refused, "数值不是有限数，无法写成文本");
  if (value == 0) {
    *out = '0';
    return 1;
  }
  const double magnitude = std::fabs(value);
  const bool plain = magnitude >= 1e-7 && magnitude < 1e17;
  char* end =
      std::to_chars(out, out + kShortestBuffer, value, plain ? std::chars_format::fixed : std::chars_format::scientific)
          .ptr;
  if (!plain) {  // "e+05" and "e-05" are not the shortest: the plus sign and leading zeros say nothing
    char* at = std::find(out, end, 'e') + 1;
    char* keep = *at == '-' ? at + 1 : at;
    char* digits = std::find_if(at + 1, end - 1, [](char c) { return c != '0'; });
    end = std::copy(digits, end, keep);
  }
  return static_cast<std::size_t>(end - out);
}

}  // namespace

std::optional<double> ParseReal(std::string_view text) noexcept {
  const bool signedText = text.starts_with('+') || text.starts_with('-');
  const bool negative = text.starts_with('-');
  if (signedText) text.remove_prefix(1);
  if (text.empty() || (!IsDigit(text.front()) && text.front() != '.')) return std::nullopt;
  double value = 0;
  const char* last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, value);
  if (end != last || error == std::errc::invalid_argument) return std::nullopt;
  if (error == std::errc::result_out_of_range) {
    if (!IsTooSmall(text)) return std::nullopt;
    value = 0;
  }
  if (!std::isfinite(value)) return std::nullopt;
  return negative ? -value : value;
}

std::optional<double> ParseReal(QStringView text) noexcept {
  return ParseReal(AsciiText(text).View());
}

std::optional<std::int64_t> ParseInteger(std::string_view text) noexcept {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  std::int64_t value = 0;
  const char* last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, value);
  if (end != last || error != std::errc()) return std::nullopt;
  return value;
}

std::optional<std::int64_t> ParseInteger(QStringView text) noexcept {
  return ParseInteger(AsciiText(text).View());
}

double RealOr(QStringView text, double fallback) noexcept {
  return ParseReal(text).value_or(fallback);
}

std::int64_t IntegerOr(QStringView text, std::int64_t fallback) noexcept {
  return ParseInteger(text).value_or(fallback);
}

QString FormatFixed(double value, int decimals) {
  std::array<char, kFixedBuffer> buffer;
  return QString::fromLatin1(buffer.data(), static_cast<qsizetype>(WriteFixed(buffer.data(), value, decimals)));
}

std::string FormatFixedUtf8(double value, int decimals) {
  std::array<char, kFixedBuffer> buffer;
  return {buffer.data(), WriteFixed(buffer.data(), value, decimals)};
}

QString ShortestText(double value) {
  std::array<char, kShortestBuffer> buffer;
  return QString::fromLatin1(buffer.data(), static_cast<qsizetype>(WriteShortest(buffer.data(), value)));
}

std::string ShortestUtf8(double value) {
  std::array<char, kShortestBuffer> buffer;
  return {buffer.data(), WriteShortest(buffer.data(), value)};
}

double RoundToDigits(double value, int digits) noexcept {
  if (!std::isfinite(value)) return value;
  std::array<char, kShortestBuffer> text;
  const char* end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::scientific,
                                  std::clamp(digits, 1, std::numeric_limits<double>::max_digits10) - 1)
                        .ptr;
  double rounded = value;  // kept where the rounded text is beyond the largest double
  std::from_chars(text.data(), end, rounded);
  return rounded;
}

QString SixDigits(std::int64_t value) {
  const auto magnitude = value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
  const QString digits = QString::number(magnitude).rightJustified(6, QLatin1Char('0'));
  return value < 0 ? QLatin1Char('-') + digits : digits;
}

}  // namespace holdwise
