// SPDX-License-Identifier: MIT
#include "holdwise/market/market_rules.h"

#include <algorithm>
#include <string>

namespace holdwise {
namespace {

constexpr int MainBoardLimit(bool isSpecialTreatment) {
  return isSpecialTreatment ? 5 : 10;
}

}  // namespace

bool IsStar(std::string_view sixDigits) noexcept {
  return sixDigits.starts_with("688") || sixDigits.starts_with("689");
}

bool IsChiNext(std::string_view sixDigits) noexcept {
  return sixDigits.starts_with("300") || sixDigits.starts_with("301") || sixDigits.starts_with("302");
}

int PriceLimitPercent(std::string_view sixDigits, bool isSpecialTreatment) noexcept {
  return IsChiNext(sixDigits) || IsStar(sixDigits) ? 20 : MainBoardLimit(isSpecialTreatment);
}

int PriceLimitPercent(int codeNumber, bool isSpecialTreatment) noexcept {
  const int board = codeNumber / 1000;
  return (board >= 1300 && board <= 1302) || board == 1688 || board == 1689 ? 20 : MainBoardLimit(isSpecialTreatment);
}

PriceLimits LimitsAround(std::int64_t previousClose, int percent) noexcept {
  return {std::max<std::int64_t>(1, (previousClose * (100 - percent) + 50) / 100),
          (previousClose * (100 + percent) + 50) / 100};
}

int CodeNumberOfStock(std::string_view sixDigits) noexcept {
  if (!IsSixDigits(sixDigits)) return 0;
  int number = 1;
  for (const char digit : sixDigits) number = number * 10 + (digit - '0');
  return number;
}

int ParseIndexNumber(std::string_view text, bool onlyIndicesAreMeant) {
  constexpr int kCsi300 = kIndexNumbers[2];
  if (text == "1") return kCompositeIndex;
  const std::optional<NamedCode> code = ParseNamedCode(text);
  if (!code) return 0;
  const bool isShanghai = code->market == 1 || (code->market == 0 && onlyIndicesAreMeant);
  if (isShanghai && code->digits == "000001") return kCompositeIndex;
  if (isShanghai && code->digits == "000300") return kCsi300;  // Shanghai's own code of it
  if (code->market == 1) return 0;
  const int number = std::stoi(code->digits);
  return number != kCompositeIndex && IsIndexNumber(number) ? number : 0;
}

}  // namespace holdwise
