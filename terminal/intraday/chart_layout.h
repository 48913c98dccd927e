// SPDX-License-Identifier: MIT
#pragma once
#include <QRectF>
#include <QSizeF>

#include "intraday/price_scale.h"
#include "intraday/trading_day.h"

/// Where the parts of the day's picture stand, in points of its widget. Pure; any thread.
namespace holdwise {

struct ChartLayout {
  QRectF plot;     ///< lines and bars
  QRectF prices;   ///< upper part of the plot
  QRectF volumes;  ///< lower part of the plot
  int rows = 0;    ///< lines of the grid above the middle, and below it

  [[nodiscard]] DayAxis Axis() const { return {plot.left(), plot.width()}; }
  [[nodiscard]] double YOf(double price, const PriceScale& scale) const;
  /// The price that stands at the row: `rows` at the top, 0 in the middle, -`rows` at the bottom.
  [[nodiscard]] double PriceAtRow(int row, const PriceScale& scale) const;
};
/// @param labelWidth of a price at the left, of a percentage at the right
/// @param lineHeight of a line of text; below the plot stands one
/// A size that is too small gives a plot without width or height.
[[nodiscard]] ChartLayout LayOut(const QSizeF& size, double labelWidth, double lineHeight, const PriceScale& scale);

/// What stands beside a row of the grid.
struct RowLabel {
  double y = 0;
  QString price;
  QString percent;  ///< change against the previous close; empty without one
  int row = 0;      ///< as for PriceAtRow
};
/// From the lowest row to the highest.
[[nodiscard]] std::vector<RowLabel> RowLabels(const ChartLayout& layout, const PriceScale& scale,
                                              std::int64_t previousClose);

/// The scale of a whole plot whose upper part, the prices, has the scale `scale`.
struct PlotRange {
  double low = 0;
  double high = 0;
};
[[nodiscard]] PlotRange PriceRange(const ChartLayout& layout, const PriceScale& scale);

/// A minute's bar.
struct BarPlace {
  QRectF rectangle;
  bool isFall = false;  ///< the minute closed below the one before
};
/// The bars of minutes in which something was traded, as high as the lower part where most was. A gap of a quarter of
/// the minute's width, at most two points, stands between two. None is narrower or lower than a point.
[[nodiscard]] std::vector<BarPlace> BarsIn(const ChartLayout& layout, std::span<const MinuteBar> bars);

}  // namespace holdwise
