// SPDX-License-Identifier: MIT
#include "holdwise/market/market_rules.h"

#include <algorithm>
#include <string>

namespace holdwise {

bool IsSixDigits(std::string_view code) noexcept {
  return code.size() == 6 && std::all_of(code.begin(), code.end(), [](char c) { return c >= '0' && c <= '9'; });
}

int MarketOfStock(std::string_view sixDigits) noexcept {
  if (!IsSixDigits(sixDigits)) return 0;
  if (sixDigits.starts_with("92")) return 0;  // 92xxxx is the Beijing exchange, 90xxxx Shanghai's B-shares
  switch (sixDigits.front()) {
    case '5':
    case '6':
    case '9':
      return 1;
    case '0':
    case '1':
    case '2':
    case '3':
      return 2;
    default:
      return 0;
  }
}

bool IsAShare(std::string_view sixDigits) noexcept {
  if (MarketOfStock(sixDigits) == 0) return false;
  const std::string_view board = sixDigits.substr(0, 2);
  return board == "60" || board == "68" || board == "00" || board == "30";
}

bool IsStar(std::string_view sixDigits) noexcept {
  return sixDigits.starts_with("688") || sixDigits.starts_with("689");
}

int PriceLimitPercent(std::string_view sixDigits) noexcept {
  const bool isChiNext = sixDigits.starts_with("300") || sixDigits.starts_with("301");
  return isChiNext || IsStar(sixDigits) ? 20 : 10;
}

int PriceLimitPercent(int codeNumber) noexcept {
  const int board = codeNumber / 1000;
  return board == 1300 || board == 1301 || board == 1688 || board == 1689 ? 20 : 10;
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

std::optional<NamedCode> ParseNamedCode(std::string_view text) {
  const auto marketOf = [](std::string_view letters) {
    if (letters == "sh" || letters == "SH") return 1;
    return letters == "sz" || letters == "SZ" ? 2 : 0;
  };
  NamedCode code;
  if (text.size() == 8) {
    code.market = marketOf(text.substr(0, 2));
    text.remove_prefix(2);
  } else if (text.size() == 9 && text[6] == '.') {
    code.market = marketOf(text.substr(7));
    text.remove_suffix(3);
  } else if (text.size() != 6) {
    return std::nullopt;
  } else {
    if (!IsSixDigits(text)) return std::nullopt;
    return NamedCode{std::string(text), 0};
  }
  if (code.market == 0 || !IsSixDigits(text)) return std::nullopt;
  code.digits = text;
  return code;
}

std::optional<std::string> ParseStockCode(std::string_view text) {
  const std::optional<NamedCode> code = ParseNamedCode(text);
  if (!code) return std::nullopt;
  const int market = MarketOfStock(code->digits);
  if (market == 0 || (code->market != 0 && code->market != market)) return std::nullopt;
  if (code->digits.starts_with("399")) return std::nullopt;  // Shenzhen's indices
  return code->digits;
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
