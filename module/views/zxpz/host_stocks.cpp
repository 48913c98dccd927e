// SPDX-License-Identifier: MIT
#include "host_stocks.h"

#include "common/host/codes.h"
#include "common/host/host_access.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {

std::optional<KnownStock> FindStock(const QString& sixDigits) {
  const CodeNumServices& codes = ModuleHost().CodeNums();
  const QString number = GetCodeNum(sixDigits);
  const bool isShanghai = codes.IsShanghaiStock(number);
  if (!isShanghai && !codes.IsShenzhenStock(number)) return std::nullopt;
  return KnownStock{codes.NameOf(number), isShanghai};
}

QString CurrentPriceText(const QString& sixDigits) {
  constexpr int kDecimals = 2;
  const auto number = static_cast<int>(IntegerOr(GetCodeNum(sixDigits)));
  const auto price = static_cast<float>(ModuleHost().DataCenter().StockNowData(number).currentPrice);
  return FormatFixed(price, kDecimals);
}

}  // namespace holdwise
