// SPDX-License-Identifier: MIT
#pragma once
#include <QRect>
#include <array>
#include <functional>
#include <vector>

#include "common/charts/step_chart.h"
#include "common/charts/value_axis.h"

namespace holdwise {

/// Sizes of texts as they will be drawn, pixels.
struct ChartTextSizes {
  int captionHeight = 0;
  int lineHeight = 0;
  std::function<int(const QString&)> captionWidth;
  std::function<int(const QString&)> lineWidth;
  std::function<int(const QString&)> tickWidth;
};

/// Where a bar and its texts stand. Bar and value never touch, and no bar touches another one's value.
struct BarPlaces {
  QRect bar;    ///< empty in an empty chart
  QRect value;  ///< of the value's text, centred above (a negative bar: below) the bar
  QRect name;   ///< of the term's name, below the plot; empty when there is no room
};

struct StepPlaces {
  QRect area;
  QRect caption;
  QRect formula;
  QRect plot;     ///< from the first grid line's end to the last one's
  int zeroY = 0;  ///< row of the zero line, one pixel high
  std::vector<AxisTick> ticks;
  std::array<BarPlaces, kBarsOfAStep> bars;  ///< total, left part, right part
};

struct StepChartPlaces {
  std::array<StepPlaces, kSteps> steps;
  QRect subject;  ///< empty when there is no room
  QRect note;     ///< empty without one

  /// The first bar that holds the point, its edges included, counted total, left part, right part of the first step and
  /// so on; -1 for none.
  [[nodiscard]] int BarAt(const QPoint& point) const;
};

/// "回报率■ = 无风险回报率■ + 超额回报率■": every term with the sign that its colour replaces.
inline constexpr char16_t kLegendSign = u'■';
[[nodiscard]] QString FormulaOf(const ChartStep& step);

/// The values that the bars of a step are sized by: a part that is exactly 0 counts as 0.001, the total as the sum of
/// the parts after that.
struct BarValues {
  double total = 0;
  double left = 0;
  double right = 0;
};
[[nodiscard]] BarValues SizingValuesOf(const ChartStep& step);

/// Everything's place inside an area, whole pixels. Caption and formula stand beside the bars where it is wide, above
/// them where it is narrow; each step has a scale of its own. Areas too small for anything give empty rectangles.
[[nodiscard]] StepChartPlaces PlacesOf(const StepChart& chart, const QRect& whole, const ChartTextSizes& sizes);

}  // namespace holdwise
