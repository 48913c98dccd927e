#pragma once

namespace holdwise {

/// A stock's code number is this plus its six digits.
inline constexpr int kStockBase = 1'000'000;
inline constexpr int kCompositeIndex = 1;
inline constexpr int kIndexNumbers[] = {kCompositeIndex, 399001, 399300};
inline constexpr char kOptionalStockGroup[] = "OptionalStock";

/// Place of an index in kIndexNumbers, -1 when the number is no index.
[[nodiscard]] constexpr int IndexPlace(int codeNumber) {
  for (int place = 0; place < 3; ++place) {
    if (kIndexNumbers[place] == codeNumber) return place;
  }
  return -1;
}
[[nodiscard]] constexpr bool IsIndexNumber(int codeNumber) {
  return IndexPlace(codeNumber) >= 0;
}

}  // namespace holdwise
