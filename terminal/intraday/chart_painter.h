// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

#include "intraday/chart_layout.h"
#include "intraday/line_colors.h"

class QPainter;

/// Draw what stands around the lines. Stateless; the painter's state is as before afterwards.
namespace holdwise {

/// The grid: rows of prices, half hours, frames.
void PaintGrid(QPainter& painter, const ChartLayout& layout, const PriceScale& scale, const LineColors& colors);
/// Bars in the colours of rises and falls.
void PaintBars(QPainter& painter, std::span<const BarPlace> bars, const LineColors& colors);
/// Prices at the left, percentages at the right (none without a previous close), the most traded in a minute, times
/// below.
void PaintLabels(QPainter& painter, const ChartLayout& layout, const PriceScale& scale, std::int64_t previousClose,
                 std::int64_t mostTraded, const LineColors& colors);
/// A price at a second that no line leads to or from.
void PaintDot(QPainter& painter, const ChartLayout& layout, const PriceScale& scale, int second, double price,
              const LineColors& colors);

/// What the crosshair says.
struct CrossValues {
  int second = 0;
  double price = 0;
  QString text;  ///< all of it in a line
};
/// The crosshair with price, percentage and time on the axes and the whole line at the top.
void PaintCross(QPainter& painter, const ChartLayout& layout, const PriceScale& scale, std::int64_t previousClose,
                const CrossValues& values, const LineColors& colors);

}  // namespace holdwise
