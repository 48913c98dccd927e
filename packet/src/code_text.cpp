// SPDX-License-Identifier: MIT
#include "holdwise/packet/code_text.h"

#include <algorithm>

namespace holdwise {
namespace {

struct MarketWord {
  std::string_view small;
  std::string_view capital;
  int market;
  bool standsAlone;  // before the digits without a point
};

constexpr MarketWord kMarketWords[] = {
    {"sh", "SH", 1, true},      {"sz", "SZ", 2, true},      {"bj", "BJ", 3, true},      {"ss", "SS", 1, false},
    {"sse", "SSE", 1, false},   {"szse", "SZSE", 2, false}, {"bse", "BSE", 3, false},   {"shse", "SHSE", 1, false},
    {"bjse", "BJSE", 3, false}, {"xshg", "XSHG", 1, false}, {"xshe", "XSHE", 2, false},
};
constexpr std::size_t kDigits = 6;

const MarketWord* FindWord(std::string_view letters) noexcept {
  const auto* const word = std::find_if(std::begin(kMarketWords), std::end(kMarketWords), [&](const MarketWord& known) {
    return letters == known.small || letters == known.capital;
  });
  return word == std::end(kMarketWords) ? nullptr : word;
}

}  // namespace

bool IsSixDigits(std::string_view code) noexcept {
  return code.size() == kDigits && std::all_of(code.begin(), code.end(), [](char c) { return c >= '0' && c <= '9'; });
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

std::optional<NamedCode> ParseNamedCode(std::string_view text) {
  const auto named = [](std::string_view digits, std::string_view letters, bool hasPoint) -> std::optional<NamedCode> {
    const MarketWord* word = FindWord(letters);
    if (word == nullptr || !IsSixDigits(digits) || !(hasPoint || word->standsAlone)) return std::nullopt;
    return NamedCode{std::string(digits), word->market};
  };
  if (IsSixDigits(text)) return NamedCode{std::string(text), 0};
  if (text.size() < kDigits) return std::nullopt;
  const std::size_t point = text.find('.');
  const std::size_t letters = text.size() - kDigits;
  if (point == std::string_view::npos) return named(text.substr(letters), text.substr(0, letters), false);
  if (point == kDigits) return named(text.substr(0, kDigits), text.substr(kDigits + 1), true);
  return named(text.substr(point + 1), text.substr(0, point), true);
}

std::optional<std::string> ParseStockCode(std::string_view text) {
  const std::optional<NamedCode> code = ParseNamedCode(text);
  if (!code) return std::nullopt;
  const int market = MarketOfStock(code->digits);
  if (market == 0 || (code->market != 0 && code->market != market)) return std::nullopt;
  if (code->digits.starts_with("399")) return std::nullopt;  // Shenzhen's indices
  return code->digits;
}

}  // namespace holdwise
