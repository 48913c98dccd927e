// SPDX-License-Identifier: MIT
#pragma once
#include <cstdint>

#include "holdwise/packet/code_numbers.h"

/// What the values of a portfolio can be at most, wherever they come back from a file.
namespace holdwise {

/// Ids above it would leave the tables without numbers for what comes later.
inline constexpr std::int64_t kLargestId = 2'000'000'000;
/// What the column holds.
inline constexpr std::int64_t kLargestQuantity = 2'147'483'647;
/// Yuan for a share, points of an index.
inline constexpr double kLargestPrice = 1e6;
/// Weights of a portfolio are rounded one by one.
inline constexpr double kLargestWeight = 1.01;
inline constexpr int kLargestStockNumber = 2 * kStockBase - 1;
/// Holdings of one portfolio.
inline constexpr int kMostHoldings = 500;

}  // namespace holdwise
