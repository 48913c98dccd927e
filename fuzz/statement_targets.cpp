// SPDX-License-Identifier: MIT
#include <firebird/Interface.h>

#include <QDate>
#include <QUtf8StringView>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "database/engine/literal_binder.h"
#include "database/statements/statement_shape.h"
#include "properties.h"
#include "targets.h"

namespace holdwise::fuzz {
namespace {

using firebird::Literal;
using firebird::Parameter;
using firebird::StatementShape;

/// Where a literal with its quotes stands in the statement.
struct Place {
  std::size_t begin;
  std::size_t size;
};

Place PlaceOf(const Literal& literal, std::string_view sql) {
  const std::size_t quote = literal.quoted ? 1 : 0;
  Require(literal.text.data() >= sql.data() + quote, "a literal stands in the statement");
  const Place place{static_cast<std::size_t>(literal.text.data() - sql.data()) - quote,
                    literal.text.size() + 2 * quote};
  Require(place.begin + place.size <= sql.size(), "a literal ends in the statement");
  return place;
}

void CheckLiteral(const Literal& literal, std::string_view sql) {
  const Place place = PlaceOf(literal, sql);
  if (!literal.quoted) {
    Require(literal.text.find_first_not_of("+-.0123456789eE") == std::string_view::npos, "a number is one");
    return;
  }
  Require(sql[place.begin] == '\'' && sql[place.begin + place.size - 1] == '\'', "a text stands in quotes");
  std::string_view rest = literal.text;
  bool isDoubled = false;
  for (std::size_t quote = rest.find('\''); quote != std::string_view::npos; quote = rest.find('\'')) {
    Require(rest.substr(quote, 2) == "''", "a quote in a text is doubled");
    isDoubled = true;
    rest.remove_prefix(quote + 2);
  }
  Require(literal.doubledQuotes == isDoubled, "doubled quotes are known");
}

/// The same statement with other literals of the same form.
std::string WithOtherLiterals(std::string sql, const StatementShape& shape, std::string_view original) {
  for (const Literal& literal : shape.Literals()) {
    const Place place = PlaceOf(literal, original);
    for (std::size_t at = place.begin; at < place.begin + place.size; ++at) {
      const bool isDigit = sql[at] >= '0' && sql[at] <= '9';
      if (literal.quoted ? sql[at] != '\'' : isDigit) sql[at] = '7';
    }
  }
  return sql;
}

bool IsSame(const Literal& left, const Literal& right) {
  return left.text == right.text && left.quoted == right.quoted && left.doubledQuotes == right.doubledQuotes &&
         left.stored == right.stored;
}

/// Whatever takes a literal's place, `used` reads the statement as a shape does that has read nothing before.
void CheckReplacements(StatementShape& used, const std::string& sql) {
  static constexpr std::array<std::string_view, 12> kValues = {"5",   "-.5e3", "'a''b'", "'",  "1x", "",
                                                               "- 1", "--1",   "q'[x]'", "5.", "''", "1/*"};
  constexpr std::size_t kMostLiterals = 4;
  StatementShape original;
  original.Read(sql);
  for (std::size_t i = 0; i < std::min(original.Literals().size(), kMostLiterals); ++i) {
    const Place place = PlaceOf(original.Literals()[i], sql);
    for (const std::string_view value : kValues) {
      used.Read(sql);
      const std::string other = std::string(sql).replace(place.begin, place.size, value);
      used.Read(other);
      StatementShape fresh;
      fresh.Read(other);
      Require(used.Text() == fresh.Text() && used.Kind() == fresh.Kind() &&
                  std::equal(used.Literals().begin(), used.Literals().end(), fresh.Literals().begin(),
                             fresh.Literals().end(), IsSame),
              "a statement is read alike after another");
    }
  }
}

}  // namespace

void StatementShapes(std::string_view sql) {
  StatementShape shape;
  shape.Read(sql);
  std::string expected;
  std::size_t copied = 0;
  for (const Literal& literal : shape.Literals()) {
    CheckLiteral(literal, sql);
    const Place place = PlaceOf(literal, sql);
    Require(place.begin >= copied, "literals stand one behind the other");
    expected.append(sql, copied, place.begin - copied) += '?';
    copied = place.begin + place.size;
  }
  expected.append(sql, copied);
  Require(shape.Text() == expected, "the shape with its literals is the statement");

  const std::string other = WithOtherLiterals(std::string(sql), shape, sql);
  StatementShape otherShape;
  otherShape.Read(other);
  Require(otherShape.Text() == shape.Text() && otherShape.Kind() == shape.Kind() &&
              otherShape.Literals().size() == shape.Literals().size(),
          "statements that differ in their literals have one shape");
  CheckReplacements(otherShape, std::string(sql));

  StatementShape bare;
  bare.Read(shape.Text());
  Require(bare.Text() == shape.Text() && bare.Literals().empty(), "nothing is left to take out of a shape");
}

namespace {

constexpr unsigned kOffset = 8;

struct ParameterKind {
  unsigned type;
  int scale;
  unsigned length;
  unsigned charSet;
};
constexpr unsigned kUtf8 = 4;
constexpr unsigned kAnyBytes = 1;
constexpr std::array<ParameterKind, 13> kKinds = {{
    {SQL_SHORT, 0, 2, 0},
    {SQL_LONG, 0, 4, 0},
    {SQL_INT64, 0, 8, 0},
    {SQL_LONG, -2, 4, 0},
    {SQL_INT64, -4, 8, 0},
    {SQL_DOUBLE, 0, 8, 0},
    {SQL_TYPE_DATE, 0, 4, 0},
    {SQL_TYPE_TIME, 0, 4, 0},
    {SQL_TIMESTAMP, 0, 8, 0},
    {SQL_VARYING, 0, 40, kUtf8},
    {SQL_TEXT, 0, 40, kUtf8},
    {SQL_VARYING, 0, 10, kAnyBytes},
    {SQL_BLOB, 0, 8, 0},
}};

template <typename T>
T At(const std::vector<unsigned char>& message, unsigned offset) {
  T value;
  std::memcpy(&value, message.data() + offset, sizeof value);
  return value;
}

std::string DateText(ISC_DATE day) {
  return QDate(1858, 11, 17).addDays(day).toString(Qt::ISODate).toStdString();
}

std::string TimeText(ISC_TIME time) {
  char text[32];
  const unsigned second = time / 10000;
  std::snprintf(text, sizeof text, "%02u:%02u:%02u.%04u", second / 3600, second / 60 % 60, second % 60, time % 10000);
  return text;
}

/// "09:30:00" and "09:30:00.5" are "09:30:00.0000" and "09:30:00.5000".
bool IsTime(ISC_TIME time, std::string text) {
  if (text.size() == 8) text += '.';
  text.resize(13, '0');
  return TimeText(time) == text;
}

/// A whole number and the decimals behind its point as they lie in the message: exactly what was written, in any form.
void CheckWhole(std::int64_t value, int decimals, const std::string& text) {
  // 64 bits of mantissa hold every whole number exactly; the scaled ones of this length nearly.
  const long double written = std::strtold(text.c_str(), nullptr);
  if (decimals == 0) return Require(written == static_cast<long double>(value), "a whole number is not changed");
  long double scaled = static_cast<long double>(value);
  for (int i = 0; i < decimals; ++i) scaled /= 10;
  Require(std::abs(scaled - written) <= std::abs(written) * 1e-18L, "a decimal number is not changed");
}

void CheckText(const std::vector<unsigned char>& message, const ParameterKind& kind, const std::string& text) {
  const std::size_t head = kind.type == SQL_VARYING ? sizeof(std::uint16_t) : 0;
  const std::string_view held(reinterpret_cast<const char*>(message.data()) + kOffset + head, kind.length);
  if (kind.type == SQL_VARYING) Require(At<std::uint16_t>(message, kOffset) == text.size(), "a text keeps its length");
  Require(held.substr(0, text.size()) == text, "a text is not changed");
  if (kind.type == SQL_TEXT) {
    Require(held.find_first_not_of(' ', text.size()) == std::string_view::npos, "blanks stand behind a text");
  }
}

void CheckBound(const std::vector<unsigned char>& message, const ParameterKind& kind, const std::string& text) {
  switch (kind.type) {
    case SQL_SHORT:
      return CheckWhole(At<std::int16_t>(message, kOffset), -kind.scale, text);
    case SQL_LONG:
      return CheckWhole(At<std::int32_t>(message, kOffset), -kind.scale, text);
    case SQL_INT64:
      return CheckWhole(At<std::int64_t>(message, kOffset), -kind.scale, text);
    case SQL_DOUBLE:
      return Require(At<double>(message, kOffset) == std::strtod(text.c_str(), nullptr), "a real is not changed");
    case SQL_TYPE_DATE:
      return Require(DateText(At<ISC_DATE>(message, kOffset)) == text, "a date is not changed");
    case SQL_TYPE_TIME:
      return Require(IsTime(At<ISC_TIME>(message, kOffset), text), "a time is not changed");
    case SQL_TIMESTAMP: {
      const auto value = At<ISC_TIMESTAMP>(message, kOffset);
      const std::string time = text.size() > 11 ? text.substr(11) : "00:00:00";
      return Require(DateText(value.timestamp_date) == text.substr(0, 10) && IsTime(value.timestamp_time, time),
                     "a date with time is not changed");
    }
    case SQL_VARYING:
    case SQL_TEXT:
      return CheckText(message, kind, text);
    default:
      Require(false, "other types are not bound");
  }
}

std::string InStatement(unsigned form, const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("''") : std::string(1, c);
  quoted += '\'';
  return (form & 2U) == 0 ? "insert into t values (" + ((form & 1U) == 0 ? quoted : text) + ")"
                          : "select * from t where a = " + ((form & 1U) == 0 ? quoted : text);
}

}  // namespace

void Literals(std::string_view input) {
  if (input.size() < 2) return;
  const ParameterKind& kind = kKinds[static_cast<unsigned char>(input[0]) % kKinds.size()];
  const auto form = static_cast<unsigned char>(input[1]);
  const std::string text(input.substr(2));
  // Statements come in as UTF-16 and without a zero character.
  if (!QUtf8StringView(text.data(), static_cast<qsizetype>(text.size())).isValidUtf8()) return;
  if (text.find('\0') != std::string::npos) return;
  const std::string sql = InStatement(form, text);
  StatementShape shape;
  shape.Read(sql);
  if ((form & 1U) == 0) Require(shape.Literals().size() == 1, "a quoted text is one literal");
  // Only a number that stands alone as a literal; the text may be anything.
  if (shape.Literals().size() != 1 || ((form & 1U) != 0 && shape.Literals().front().text != text)) return;

  const Parameter parameter{kind.type, kind.scale, kind.length, kind.charSet, kOffset, 0};
  std::vector<unsigned char> message(kOffset + kind.length + (kind.type == SQL_VARYING ? sizeof(std::uint16_t) : 0));
  try {
    if (!BindLiteral(shape.Literals().front(), parameter, message)) return;
  } catch (const Error& error) {
    return Require(error.Category() == ErrorCategory::Refused, "a value that does not fit is refused");
  }
  Require(At<std::int16_t>(message, 0) == 0, "a literal is not null");
  CheckBound(message, kind, text);
}

}  // namespace holdwise::fuzz
