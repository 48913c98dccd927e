#include "holdwise/market/market_rules.h"

#include <algorithm>

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

int PriceLimitPercent(std::string_view sixDigits) noexcept {
  const std::string_view board = sixDigits.substr(0, 3);
  return board == "300" || board == "301" || board == "688" ? 20 : 10;
}

int PriceLimitPercent(int codeNumber) noexcept {
  const int board = codeNumber / 1000;
  return board == 1300 || board == 1301 || board == 1688 ? 20 : 10;
}

int CodeNumberOfStock(std::string_view sixDigits) noexcept {
  if (!IsSixDigits(sixDigits)) return 0;
  int number = 1;
  for (const char digit : sixDigits) number = number * 10 + (digit - '0');
  return number;
}

}  // namespace holdwise
