// SPDX-License-Identifier: MIT
#pragma once
#include <optional>
#include <string>
#include <string_view>

/// Codes of securities as people and programs write them. The one place that reads one. Pure and thread-safe.
namespace holdwise {

/// True for exactly six ASCII digits.
[[nodiscard]] bool IsSixDigits(std::string_view code) noexcept;
/// 1 Shanghai, 2 Shenzhen; 0 for codes of neither (Beijing, over the counter) and for anything that is not six digits.
[[nodiscard]] int MarketOfStock(std::string_view sixDigits) noexcept;
/// A-shares are the listed shares quoted in yuan; B-shares (900xxx, 200xxx), funds and bonds are not.
[[nodiscard]] bool IsAShare(std::string_view sixDigits) noexcept;

/// Six digits and the market written beside them.
struct NamedCode {
  std::string digits;
  int market = 0;  ///< 1 Shanghai, 2 Shenzhen, 3 Beijing, 0 not said
  bool operator==(const NamedCode&) const = default;
};
/// Reads "600519", "sh600519", "sh.600519", "600519.SH" and the like: the market in letters that are all small or all
/// capital (SH, SS, SSE, SHSE, XSHG; SZ, SZSE, XSHE; BJ, BSE, BJSE), before the digits or behind them, with a point
/// between; before them sh, sz and bj also without one. None for anything else; whether market and digits agree is not
/// asked.
[[nodiscard]] std::optional<NamedCode> ParseNamedCode(std::string_view text);
/// Six digits of the stock (fund, bond) meant by such a text; none when it is none of Shanghai or Shenzhen, when it is
/// one of Shenzhen's indices, or when the market beside the digits is the other one (sh000001 is the Shanghai
/// Composite, not stock 000001).
[[nodiscard]] std::optional<std::string> ParseStockCode(std::string_view text);

}  // namespace holdwise
