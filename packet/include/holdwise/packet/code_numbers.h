// SPDX-License-Identifier: MIT
#pragma once

/// How securities are numbered wherever a number stands for one: data folder, database, services.
namespace holdwise {

/// A stock's code number is this plus its six digits: 1600000 for 600000, 1000001 for 000001.
inline constexpr int kStockBase = 1'000'000;
/// The Shanghai Composite.
inline constexpr int kCompositeIndex = 1;
/// Shanghai Composite, Shenzhen Component, CSI 300.
inline constexpr int kIndexNumbers[] = {kCompositeIndex, 399001, 399300};
inline constexpr int kIndexCount = 3;
/// Their names as shown, UTF-8.
inline constexpr const char* kIndexNames[kIndexCount] = {"上证指数", "深证成指", "沪深300"};

/// Place of an index in kIndexNumbers, -1 when the number is no index.
[[nodiscard]] constexpr int IndexPlace(int codeNumber) noexcept {
  for (int place = 0; place < kIndexCount; ++place) {
    if (kIndexNumbers[place] == codeNumber) return place;
  }
  return -1;
}
[[nodiscard]] constexpr bool IsIndexNumber(int codeNumber) noexcept {
  return IndexPlace(codeNumber) >= 0;
}

}  // namespace holdwise
