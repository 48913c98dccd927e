// SPDX-License-Identifier: MIT
#include "stock_count.h"

#include <algorithm>
#include <array>

#include "holdwise/packet/number_text.h"

namespace holdwise::allocation {
namespace {

constexpr int kMostCharacters = 8;
constexpr double kTooMuch = 100'000;

bool IsDigit(QChar key) {
  return key >= u'0' && key <= u'9';
}

}  // namespace

int StockCountBy(const QStringList& table, double capital) {
  int count = 0;
  for (const QString& entry : table) {
    const auto comma = entry.indexOf(QLatin1Char(','));
    count = comma < 0 ? 0 : static_cast<int>(IntegerOr(QStringView(entry).left(comma)));
    const double limit = comma < 0 ? 0 : RealOr(QStringView(entry).mid(comma + 1));
    if (limit >= capital) break;
  }
  return count;
}

int FixedStockCount(double capital) {
  constexpr int kFirst = 2;
  constexpr std::array kLimits = {10, 20, 30, 50, 60, 80, 90, 100};
  const auto covering = std::find_if(kLimits.begin(), kLimits.end(), [&](int limit) { return capital <= limit; });
  return kFirst + static_cast<int>(covering - kLimits.begin());
}

bool IsCapitalKey(QChar key, qsizetype length, int caret) {
  constexpr qsizetype kMostTyped = 4;
  if (key == u'\b') return true;
  if (length > kMostTyped) return false;  // Enter too: intended
  if (key == u'.' || key == u'\r') return true;
  return IsDigit(key) && (key != u'0' || caret != 0);
}

bool IsCapital(const QString& text) {
  const bool isPlain = std::all_of(text.begin(), text.end(), [](QChar key) { return key == u'.' || IsDigit(key); });
  const auto number = ParseReal(text);
  return isPlain && text.size() <= kMostCharacters && number && *number > 0 && *number < kTooMuch;
}

}  // namespace holdwise::allocation
