// SPDX-License-Identifier: MIT
#include "host_stocks.h"

#include "common/host/codes.h"
#include "common/host/host_access.h"
#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {

std::optional<KnownStock> FindStock(const QString& sixDigits) {
  const CodeNumServices& codes = ModuleHost().CodeNums();
  const QString number = GetCodeNum(sixDigits);
  const bool isShanghai = codes.IsShanghaiStock(number);
  if (!isShanghai && !codes.IsShenzhenStock(number)) return std::nullopt;
  return KnownStock{codes.NameOf(number), isShanghai};
}

QStringList ReadingsOf(const QString& sixDigits) {
  return ModuleHost().CodeNums().InitialsOf(CodeNumberOf(sixDigits)).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QString CurrentPriceText(const QString& sixDigits) {
  constexpr int kDecimals = 2;
  const auto price = static_cast<float>(ModuleHost().DataCenter().StockNowData(CodeNumberOf(sixDigits)).currentPrice);
  return FormatFixed(price, kDecimals);
}

QString IndexCloseText() {
  constexpr int kDecimals = 2;
  return FormatFixed(static_cast<float>(ModuleHost().DataCenter().IndexNowData(kCompositeIndex).currentPrice),
                     kDecimals);
}

}  // namespace holdwise
