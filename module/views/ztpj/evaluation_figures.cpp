// SPDX-License-Identifier: MIT
#include "evaluation_figures.h"

#include "holdwise/packet/number_text.h"

namespace holdwise::evaluation {
namespace {

constexpr int kPercentDecimals = 2;
constexpr int kFigureDecimals = 6;

}  // namespace

std::optional<LiveTexts> LiveTextsOf(double now, double base, const QString& riskFree) {
  if (now == 0) return std::nullopt;
  LiveTexts texts;
  // Without a base the return is the plain "0": intended.
  texts.gain = base == 0 ? QStringLiteral("0") : FormatFixed((now - base) / base * 100, kPercentDecimals);
  texts.excess = FormatFixed(RealOr(texts.gain) - RealOr(riskFree), kPercentDecimals);
  return texts;
}

QString RateText(double percent) {
  return FormatFixed(percent, kPercentDecimals);
}

QString FigureText(double figure) {
  return FormatFixed(figure, kFigureDecimals);
}

}  // namespace holdwise::evaluation
