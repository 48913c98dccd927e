// SPDX-License-Identifier: MIT
#pragma once
#include <cstdint>
#include <string_view>

#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/code_text.h"

/// Rules of the Shanghai and Shenzhen exchanges that follow from a security's six digits. Pure and thread-safe.
namespace holdwise {

/// Of the STAR market: 688, and 689 for depositary receipts.
[[nodiscard]] bool IsStar(std::string_view sixDigits) noexcept;
/// Of ChiNext: 300, 301, 302.
[[nodiscard]] bool IsChiNext(std::string_view sixDigits) noexcept;
/// Daily price limit as a whole percentage of the previous close: 20 for ChiNext and STAR, else 10, of a stock under
/// special treatment (ST) 5.
[[nodiscard]] int PriceLimitPercent(std::string_view sixDigits, bool isSpecialTreatment = false) noexcept;
/// The same by code number (1600000 for 600000). For anything that is no stock's code number: 10.
[[nodiscard]] int PriceLimitPercent(int codeNumber, bool isSpecialTreatment = false) noexcept;
/// The lowest and the highest price of a day, in cents.
struct PriceLimits {
  std::int64_t lower = 0;
  std::int64_t upper = 0;
};
/// As the exchanges state them: previous close x (1 +- percent / 100), rounded half up to the tick of 0.01; the lower
/// one at least one cent. `previousClose` in cents, above 0.
[[nodiscard]] PriceLimits LimitsAround(std::int64_t previousClose, int percent) noexcept;
/// Whether a code number is a stock's and not an index's.
[[nodiscard]] constexpr bool IsStockNumber(int codeNumber) noexcept {
  return codeNumber >= kStockBase;
}
/// Code number of a stock: 1600000 for "600000". 0 when the text is not six digits.
[[nodiscard]] int CodeNumberOfStock(std::string_view sixDigits) noexcept;

/// Number of the index meant by "1", "399001", "399300" or by a code with its market (sh000001, 000300.SH, 399300.SZ);
/// 0 for anything else. Bare 000001 and 000300 count only where nothing but an index can be meant.
[[nodiscard]] int ParseIndexNumber(std::string_view text, bool onlyIndicesAreMeant);

}  // namespace holdwise
