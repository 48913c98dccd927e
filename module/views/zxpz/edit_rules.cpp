// SPDX-License-Identifier: MIT
#include "edit_rules.h"

#include <QRegularExpression>
#include <algorithm>

#include "holding_row.h"
#include "holdwise/packet/number_text.h"

namespace holdwise::edit_rules {
namespace {

constexpr int kLongQuantity = 8;    // a longer text takes no further digit
constexpr int kLongPrice = 6;       // a text of so many characters neither
constexpr double kHighPrice = 999;  // nor one above it
constexpr int kDecimals = 2;

bool IsDigit(QChar key) {
  return key >= u'0' && key <= u'9';
}

/// Is it the other text, or that one with characters taken out?
bool IsLeftOf(QStringView text, QStringView other) {
  qsizetype found = 0;
  for (const QChar character : other) {
    if (found < text.size() && text[found] == character) ++found;
  }
  return found == text.size();
}

bool QuantityTakes(QStringView text, QChar key) {
  return text.size() <= kLongQuantity && key != u'.';
}

bool PriceTakes(QStringView text, qsizetype caret, QChar key) {
  const auto point = text.indexOf(u'.');
  if (key == u'.' && point >= 0) return false;
  if (RealOr(text) > kHighPrice || text.size() >= kLongPrice) return false;
  const bool hasDecimals = point >= 0 && text.size() - point - 1 >= kDecimals;
  return !hasDecimals || caret <= point;
}

}  // namespace

KeyVerdict HoldingKey(int column, QStringView text, qsizetype caret, QChar key) {
  KeyVerdict verdict{.clearsFirst = RealOr(text) == 0, .isTaken = true};
  if (key == kBackspace || key == kEnter) return verdict;
  if (verdict.clearsFirst) {
    text = {};
    caret = 0;
  }
  verdict.isTaken = IsDigit(key) || key == u'.';
  if (column == kHoldingQuantity) verdict.isTaken = verdict.isTaken && QuantityTakes(text, key);
  if (column == kHoldingPrice) verdict.isTaken = verdict.isTaken && PriceTakes(text, caret, key);
  return verdict;
}

bool MayStand(int column, const QString& text, const QString& opened) {
  // Of four digits before the point the last one typed can be the first, with a decimal already there.
  static const QRegularExpression price(QStringLiteral("^([0-9]{0,3}([.][0-9]{0,2})?|[0-9]{4}([.][0-9]?)?)$"));
  static const QRegularExpression quantity(QStringLiteral("^[0-9]{0,9}$"));
  return (column == kHoldingPrice ? price : quantity).match(text).hasMatch() || IsLeftOf(text, opened);
}

bool IsCodeKey(QChar key) {
  return key == kBackspace || key == kEnter || IsDigit(key);
}

bool IsTypedByInitials(const QStringList& readings, const QString& typed) {
  if (typed.isEmpty()) return false;
  return std::search(readings.begin(), readings.end(), typed.begin(), typed.end(),
                     [](const QString& letters, QChar one) { return letters.contains(one, Qt::CaseInsensitive); }) !=
         readings.end();
}

}  // namespace holdwise::edit_rules
