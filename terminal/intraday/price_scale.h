// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <cstdint>
#include <span>
#include <vector>

#include "intraday/ticks.h"

/// Prices in hundredths, as in ticks.h. Pure; any thread.
namespace holdwise {

/// The scale of prices: as far above the middle as below it.
struct PriceScale {
  double middle = 0;
  double reach = 0;  ///< above 0
  [[nodiscard]] double Low() const { return middle - reach; }
  [[nodiscard]] double High() const { return middle + reach; }
};
/// Holds all prices, the averages, `known` prices without a place in time (below 1: none) and, as its middle, the
/// previous close (without one, 0: the first price), with a twentieth of room at both ends and never less than half a
/// percent or two hundredths either way.
[[nodiscard]] PriceScale ScaleFor(std::span<const Tick> ticks, std::span<const AveragePoint> averages,
                                  std::int64_t previousClose, std::span<const std::int64_t> known = {});

/// Change against the previous close in percent; 0 without one.
[[nodiscard]] double PercentOf(double price, std::int64_t previousClose);
/// "+1.25%", "-0.40%", "0.00%".
[[nodiscard]] QString PercentText(double percent);
/// "12.34" of 1234.
[[nodiscard]] QString PriceText(double price);
/// Shares as people read them: "860 股", "1.25 万股", "3.40 亿股". Unknown (below 0): "—".
[[nodiscard]] QString VolumeText(std::int64_t shares);
/// Hundredths of a yuan: "860.00 元", "1.25 万元", "3.40 亿元". Unknown (below 0): "—".
[[nodiscard]] QString AmountText(std::int64_t hundredths);

/// Highest volume of a minute, at least 1: the end of the bars' scale.
[[nodiscard]] std::int64_t MostTraded(std::span<const MinuteBar> bars);

}  // namespace holdwise
