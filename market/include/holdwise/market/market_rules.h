#pragma once
#include <string_view>

/// Rules of the Shanghai and Shenzhen exchanges that follow from a security's six digits. Pure and thread-safe.
namespace holdwise {

/// Shanghai Composite, Shenzhen Component, CSI 300: the numbers under which the three indices are stored.
inline constexpr int kIndexNumbers[] = {1, 399001, 399300};

/// True for exactly six ASCII digits.
[[nodiscard]] bool IsSixDigits(std::string_view code) noexcept;
/// 1 Shanghai, 2 Shenzhen; 0 for codes of neither (Beijing, over the counter) and for anything that is not six digits.
[[nodiscard]] int MarketOfStock(std::string_view sixDigits) noexcept;
/// A-shares are the listed shares quoted in yuan; B-shares (900xxx, 200xxx), funds and bonds are not.
[[nodiscard]] bool IsAShare(std::string_view sixDigits) noexcept;
/// Daily price limit as a whole percentage of the previous close: 20 for ChiNext (300, 301) and STAR (688), else 10.
[[nodiscard]] int PriceLimitPercent(std::string_view sixDigits) noexcept;
/// The same by code number (1600000 for 600000). For anything that is no stock's code number: 10.
[[nodiscard]] int PriceLimitPercent(int codeNumber) noexcept;
/// Code number of a stock: 1600000 for "600000". 0 when the text is not six digits.
[[nodiscard]] int CodeNumberOfStock(std::string_view sixDigits) noexcept;

}  // namespace holdwise
