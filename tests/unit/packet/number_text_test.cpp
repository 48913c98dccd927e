// SPDX-License-Identifier: MIT
#include "holdwise/packet/number_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <limits>
#include <random>

#include "packet_test_support.h"

namespace holdwise {
namespace {

struct FixedCase {
  double value;
  int decimals;
  const char* text;
};

// Expected: Python's Decimal(value).quantize(..., ROUND_HALF_UP), which works on the exact value of the double.
const FixedCase kFixedCases[] = {
    {0.125, 2, "0.13"},
    {-0.125, 2, "-0.13"},
    {0.375, 2, "0.38"},
    {2.675, 2, "2.67"},     // the double is 2.67499999999999982...
    {1.005, 2, "1.00"},     // 1.00499999999999989...
    {99.995, 2, "100.00"},  // 99.9950000000000045...
    {0.995, 2, "0.99"},     // 0.99499999999999999...
    {0.5, 0, "1"},
    {-0.5, 0, "-1"},
    {1.5, 0, "2"},
    {2.5, 0, "3"},
    {0.49999999999999994, 0, "0"},
    {9.5, 0, "10"},
    {-0.001, 2, "0.00"},
    {-0.0, 2, "0.00"},
    {0, 0, "0"},
    {-0.005, 2, "-0.01"},  // -0.00500000000000000010...
    {-0.004999999999999999, 2, "0.00"},
    {1e-320, 12, "0.000000000000"},
    {5e-13, 12, "0.000000000000"},  // 4.99999999999999990e-13
    {0.000000000001, 12, "0.000000000001"},
    {123456789.123456789, 6, "123456789.123457"},
    {4503599627370495.5, 0, "4503599627370496"},
    {4503599627370495.5, 1, "4503599627370495.5"},
    {9007199254740993.0, 2, "9007199254740992.00"},
    {1e22, 1, "10000000000000000000000.0"},
    {-1e22, 0, "-10000000000000000000000"},
    {0.0000005, 6, "0.000000"},  // 4.99999999999999977e-7
    {0.00000049999, 6, "0.000000"},
    {0.00390625, 7, "0.0039063"},  // 2^-8: exact tie at seven decimals
    {-0.00390625, 7, "-0.0039063"},
};

TEST(FormatFixed, RoundsHalfAwayFromZeroOnTheExactValue) {
  for (const FixedCase& c : kFixedCases) {
    EXPECT_EQ(FormatFixedUtf8(c.value, c.decimals), c.text) << c.value << " " << c.decimals;
    EXPECT_EQ(FormatFixed(c.value, c.decimals), QString::fromLatin1(c.text));
  }
}

/// The same by school arithmetic on the full decimal expansion.
std::string RoundedExpansion(double value, int decimals) {
  char buffer[1500];
  const char* end = std::to_chars(buffer, buffer + sizeof buffer, std::fabs(value), std::chars_format::fixed, 1080).ptr;
  const std::string_view expansion(buffer, static_cast<std::size_t>(end - buffer));
  const std::size_t point = expansion.find('.');
  std::string digits = std::string(expansion.substr(0, point)) + std::string(expansion.substr(point + 1));
  const std::size_t keep = point + static_cast<std::size_t>(decimals);
  const bool up = digits[keep] >= '5';
  digits = "0" + digits.substr(0, keep);
  for (std::size_t i = digits.size(); up; --i) {
    if (digits[i - 1] != '9') {
      ++digits[i - 1];
      break;
    }
    digits[i - 1] = '0';
  }
  if (digits.front() == '0') digits.erase(0, 1);
  const bool zero = digits.find_first_not_of('0') == std::string::npos;
  if (decimals > 0) digits.insert(digits.size() - static_cast<std::size_t>(decimals), ".");
  return (value < 0 && !zero ? "-" : "") + digits;
}

TEST(FormatFixed, AgreesWithSchoolArithmeticOnRandomDoubles) {
  std::mt19937_64 random(20240102);
  std::uniform_int_distribution<int> decimals(0, 12);
  std::uniform_int_distribution<int> thousandths(-2'000'000, 2'000'000);
  for (int i = 0; i < 20'000; ++i) {
    double value = std::bit_cast<double>(random());
    const int places = decimals(random);
    if (std::isfinite(value)) {
      ASSERT_EQ(FormatFixedUtf8(value, places), RoundedExpansion(value, places)) << value;
    }
    value = std::ldexp(static_cast<double>(thousandths(random)), -places);  // many exact ties
    ASSERT_EQ(FormatFixedUtf8(value, places), RoundedExpansion(value, places)) << value;
    ASSERT_EQ(FormatFixedUtf8(value, std::max(places - 1, 0)), RoundedExpansion(value, std::max(places - 1, 0)));
    value = thousandths(random) / 1000.0;
    ASSERT_EQ(FormatFixedUtf8(value, 2), RoundedExpansion(value, 2)) << value;
  }
}

TEST(FormatFixed, NotFiniteIsZeroAndDecimalsStayInRange) {
  EXPECT_EQ(FormatFixedUtf8(NAN, 2), "0.00");
  EXPECT_EQ(FormatFixedUtf8(-INFINITY, 0), "0");
  EXPECT_EQ(FormatFixedUtf8(INFINITY, 6), "0.000000");
  EXPECT_EQ(FormatFixedUtf8(DBL_MAX, 12).size(), 309U + 1 + 12);
  EXPECT_EQ(FormatFixedUtf8(-DBL_MAX, 12).size(), 1 + 309U + 1 + 12);
}

TEST(ShortestText, PlainInsideTheRangeExponentOutside) {
  const std::pair<double, const char*> cases[] = {
      {0, "0"},
      {-0.0, "0"},
      {0.1, "0.1"},
      {-1.5, "-1.5"},
      {100000, "100000"},
      {123456789.125, "123456789.125"},
      {1e-7, "0.0000001"},
      {-1e-7, "-0.0000001"},
      {9.999e-8, "9.999e-8"},
      {1e16, "10000000000000000"},
      {99999999999999984.0, "99999999999999984"},
      {1e17, "1e17"},
      {-1.25e100, "-1.25e100"},
      {5e-324, "5e-324"},
      {1.7976931348623157e308, "1.7976931348623157e308"},
      {0.30000000000000004, "0.30000000000000004"},
  };
  for (const auto& [value, text] : cases) {
    EXPECT_EQ(ShortestUtf8(value), text);
    EXPECT_EQ(ShortestText(value), QString::fromLatin1(text));
  }
}

TEST(ShortestText, ReadsBackEqual) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 20'000; ++i) {
    const double value = std::bit_cast<double>(random());
    if (!std::isfinite(value)) continue;
    const std::optional<double> back = ParseReal(std::string_view(ShortestUtf8(value)));
    ASSERT_TRUE(back.has_value());
    ASSERT_EQ(*back, value);
  }
}

TEST(ShortestText, NotFiniteIsRefused) {
  for (const double value : {std::numeric_limits<double>::quiet_NaN(), HUGE_VAL, -HUGE_VAL}) {
    EXPECT_EQ(CategoryOf([&] { (void)ShortestUtf8(value); }), ErrorCategory::Refused);
    EXPECT_EQ(CategoryOf([&] { (void)ShortestText(value); }), ErrorCategory::Refused);
  }
}

TEST(RoundToDigits, LeavesNoMoreDigitsThanAsked) {
  EXPECT_EQ(RoundToDigits(0.01400000000000001, 12), 0.014);
  EXPECT_EQ(RoundToDigits(-0.00049476739123456, 12), -0.000494767391235);  // ...391 234 56
  EXPECT_EQ(RoundToDigits(1.9999999999999, 12), 2.0);
  EXPECT_EQ(RoundToDigits(123456, 3), 123000.0);
  EXPECT_EQ(RoundToDigits(0.1 + 0.2, 17), 0.1 + 0.2);
  EXPECT_EQ(RoundToDigits(0, 12), 0.0);
  constexpr double kLargest = std::numeric_limits<double>::max();
  EXPECT_EQ(RoundToDigits(kLargest, 2), kLargest);  // 1.8e308 is no double
  EXPECT_EQ(RoundToDigits(-std::numeric_limits<double>::infinity(), 12), -std::numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isnan(RoundToDigits(std::nan(""), 12)));
}

TEST(RoundToDigits, StaysWithinHalfAUnitOfTheLastDigit) {
  std::mt19937_64 random(12);
  std::uniform_real_distribution<double> magnitude(-12, 12);
  std::uniform_real_distribution<double> mantissa(-10, 10);
  for (int i = 0; i < 20000; ++i) {
    const double value = mantissa(random) * std::pow(10.0, magnitude(random));
    const double rounded = RoundToDigits(value, 12);
    EXPECT_LE(std::abs(rounded - value), std::abs(value) * 5.001e-12);
    EXPECT_EQ(RoundToDigits(rounded, 12), rounded);
    std::string digits = ShortestUtf8(rounded);
    digits.resize(std::min(digits.find('e'), digits.size()));
    std::erase_if(digits, [](char c) { return c < '0' || c > '9'; });
    digits.erase(0, digits.find_first_not_of('0'));
    while (digits.ends_with('0')) digits.pop_back();
    EXPECT_LE(digits.size(), 12U) << ShortestUtf8(value);
  }
}

TEST(ParseReal, AcceptsDecimalNumbersOnly) {
  const std::pair<const char*, double> good[] = {
      {"0", 0},
      {"+1", 1},
      {"-1.50", -1.5},
      {".5", 0.5},
      {"5.", 5},
      {"1e5", 1e5},
      {"1E+05", 1e5},
      {"-2.5e-3", -0.0025},
      {"00012", 12},
      {"1.7976931348623157e308", DBL_MAX},
      {"5e-324", 5e-324},
      {"1e-400", 0},  // too small for a double is zero, not an error
      {"-0.00000001e-99999999999999999999", 0},
      {"0e99999", 0},
      {"0.000000000000000000001e328", 1e307},
  };
  for (const auto& [text, value] : good) {
    EXPECT_EQ(ParseReal(std::string_view(text)), value) << text;
    EXPECT_EQ(ParseReal(QStringView(QString::fromLatin1(text))), value) << text;
  }
  for (const char* text : {"",          " ",        "+",     "-",      ".",
                           "-.",        "e5",       "1e",    "1e+",    "1 ",
                           " 1",        "1,000",    "1.2.3", "--1",    "+-1",
                           "-+1",       "0x10",     "nan",   "NaN",    "inf",
                           "-inf",      "infinity", "1e309", "-1e400", "1e99999999999999999999",
                           "10000e306", "1f",       "12abc", "1\n",    "１"}) {
    EXPECT_FALSE(ParseReal(std::string_view(text)).has_value()) << text;
    EXPECT_FALSE(ParseReal(QStringView(QString::fromUtf8(text))).has_value()) << text;
  }
  EXPECT_FALSE(ParseReal(std::string_view("1\0", 2)).has_value());
  std::string longText(400, '1');
  longText.append("e-399");
  EXPECT_EQ(ParseReal(std::string_view(longText)), 1.1111111111111112);
}

TEST(ParseInteger, AcceptsWholeNumbersInRangeOnly) {
  EXPECT_EQ(ParseInteger(std::string_view("000001")), 1);
  EXPECT_EQ(ParseInteger(std::string_view("+7")), 7);
  EXPECT_EQ(ParseInteger(std::string_view("-9223372036854775808")), INT64_MIN);
  EXPECT_EQ(ParseInteger(QStringView(u"9223372036854775807")), INT64_MAX);
  for (const char* text : {"", "+", "-", "+-1", "-+1", "1.0", "1e3", " 1", "1 ", "9223372036854775808", "0x1", "１"}) {
    EXPECT_FALSE(ParseInteger(std::string_view(text)).has_value()) << text;
    EXPECT_FALSE(ParseInteger(QStringView(QString::fromUtf8(text))).has_value()) << text;
  }
}

TEST(ReadingWithDefault, AcceptsWhatTheStrictReadingAccepts) {
  EXPECT_EQ(RealOr(u"12.5"), 12.5);
  EXPECT_EQ(RealOr(u"12.5元"), 0);
  EXPECT_EQ(RealOr(u"", -1), -1);
  EXPECT_EQ(IntegerOr(u"100"), 100);
  EXPECT_EQ(IntegerOr(u"1,00", 9), 9);
  EXPECT_EQ(IntegerOr(u"100.0"), 0);
}

TEST(SixDigits, PadsWithZeros) {
  EXPECT_EQ(SixDigits(1), QStringLiteral("000001"));
  EXPECT_EQ(SixDigits(0), QStringLiteral("000000"));
  EXPECT_EQ(SixDigits(600000), QStringLiteral("600000"));
  EXPECT_EQ(SixDigits(1600000), QStringLiteral("1600000"));
  EXPECT_EQ(SixDigits(-42), QStringLiteral("-000042"));
  EXPECT_EQ(SixDigits(INT64_MIN), QStringLiteral("-9223372036854775808"));
}

}  // namespace
}  // namespace holdwise
