// SPDX-License-Identifier: MIT
#pragma once
#include <QColor>
#include <QFont>

#include "common/charts/step_chart.h"
#include "common/charts/step_chart_places.h"
#include "holdwise/sdk/theme.h"

class QPainter;

namespace holdwise {

/// What a step chart is painted with.
struct StepChartPalette {
  QColor background;
  QColor plot;   ///< behind the bars
  QColor title;  ///< of all texts
  QColor axis;
  QColor gridLine;
  QColor zeroLine;
  QColor border;  ///< between the steps
  QColor yellow;
  QColor red;
  QColor blue;

  [[nodiscard]] const QColor& Of(ChartColor color) const;
  bool operator==(const StepChartPalette&) const = default;
};
/// The palette of the current theme, read in one go.
[[nodiscard]] StepChartPalette ReadStepChartPalette(const IColorSet& colors);

/// Sizes of the chart's texts in the design font. User-interface thread.
[[nodiscard]] ChartTextSizes StepChartTextSizes();

/// Paints a chart where `places` says; what lies between is background. Keeps nothing; the painter's state is as
/// before.
void PaintStepChart(QPainter& painter, const StepChart& chart, const StepChartPlaces& places, const QRect& area,
                    const StepChartPalette& palette);

}  // namespace holdwise
