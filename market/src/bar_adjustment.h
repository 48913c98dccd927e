// SPDX-License-Identifier: MIT
#pragma once
#include <span>
#include <vector>

#include "bar_lines.h"

/// Bars as traded made comparable, and what looks as if they were not. The formulas stand at ReadBars. Pure.
namespace holdwise {

/// Forward-adjusts `bars`, which hold the closes of the source's lines (ascending by date, one each).
Adjustment AdjustForward(const BarLines& source, const BarRules& rules, std::vector<Bar>& bars);

/// What is doubtful about adjusted bars: moves beyond the board's limit, changes that contradict the closes, previous
/// closes that bridge days without a bar or are above the close before, bars left as they stand against what their
/// previous closes say. Chinese texts, with date and size.
[[nodiscard]] std::vector<QString> DoubtsAbout(std::span<const Bar> bars, const BarLines& source, Adjustment adjustment,
                                               const BarRules& rules);

}  // namespace holdwise
