// SPDX-License-Identifier: MIT
#include "stress_figures.h"

#include <algorithm>

#include "common/series/all_stock_data.h"
#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/number_text.h"

namespace holdwise::stress {

QString ReturnRateText(double gain, double cost) {
  constexpr int kDecimals = 4;
  if (cost == 0) return QStringLiteral("0.00");
  return FormatFixed(gain / cost * 100, kDecimals);
}

QString PercentText(double move) {
  constexpr int kDigits = 15;
  return ShortestText(RoundToDigits(move * 100, kDigits));
}

double MoveOf(const QString& percent) {
  return RealOr(percent) / 100;
}

bool IsMove(const QString& text) {
  const auto isTyped = [](QChar one) { return one == u'-' || one == u'.' || (one >= u'0' && one <= u'9'); };
  return text.size() <= kMostCharacters && std::all_of(text.begin(), text.end(), isTyped) && ParseReal(text);
}

const QStringList& IndexNumbers() {
  static const QStringList numbers = [] {
    QStringList texts;
    for (const int number : kIndexNumbers) texts << QString::number(number);
    return texts;
  }();
  return numbers;
}

QString ScenarioText(TIndexType index, double move) {
  return IndexNames()[index] + QLatin1Char(' ') + PercentText(move) + QLatin1Char('%');
}

}  // namespace holdwise::stress
