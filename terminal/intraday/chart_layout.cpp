// SPDX-License-Identifier: MIT
#include "intraday/chart_layout.h"

#include <algorithm>

namespace holdwise {
namespace {

constexpr double kVolumeShare = 0.24;
constexpr double kLabelGap = 6;
constexpr int kMostRows = 4;
constexpr double kLinesARow = 2.5;

/// As many lines of the grid as have room, none of them less than a hundredth apart.
int RowsFor(double height, double lineHeight, double reach) {
  const double byHeight = height / 2 / (lineHeight * kLinesARow);
  return static_cast<int>(std::clamp(std::min(byHeight, reach), 1.0, static_cast<double>(kMostRows)));
}

}  // namespace

ChartLayout LayOut(const QSizeF& size, double labelWidth, double lineHeight, const PriceScale& scale) {
  ChartLayout layout;
  const double side = labelWidth + 2 * kLabelGap;
  const double top = lineHeight / 2 + 1;
  layout.plot = QRectF(side, top, std::max(0.0, size.width() - 2 * side),
                       std::max(0.0, size.height() - top - lineHeight - kLabelGap));
  const double gap = std::min(lineHeight, layout.plot.height() / 4);
  const double volumes = layout.plot.height() * kVolumeShare;
  layout.prices = layout.plot.adjusted(0, 0, 0, -volumes - gap);
  layout.volumes = QRectF(layout.plot.left(), layout.plot.bottom() - volumes, layout.plot.width(), volumes);
  layout.rows = RowsFor(layout.prices.height(), lineHeight, scale.reach);
  return layout;
}

double ChartLayout::YOf(double price, const PriceScale& scale) const {
  return prices.top() + (scale.High() - price) / (2 * scale.reach) * prices.height();
}

double ChartLayout::PriceAtRow(int row, const PriceScale& scale) const {
  return scale.middle + scale.reach * row / rows;
}

std::vector<RowLabel> RowLabels(const ChartLayout& layout, const PriceScale& scale, std::int64_t previousClose) {
  std::vector<RowLabel> labels;
  for (int row = -layout.rows; row <= layout.rows; ++row) {
    const double price = layout.PriceAtRow(row, scale);
    const QString percent = previousClose > 0 ? PercentText(PercentOf(price, previousClose)) : QString();
    labels.push_back({layout.YOf(price, scale), PriceText(price), percent, row});
  }
  return labels;
}

PlotRange PriceRange(const ChartLayout& layout, const PriceScale& scale) {
  if (layout.prices.height() <= 0) return {scale.Low(), scale.High()};
  return {scale.High() - 2 * scale.reach * layout.plot.height() / layout.prices.height(), scale.High()};
}

std::vector<BarPlace> BarsIn(const ChartLayout& layout, std::span<const MinuteBar> bars) {
  constexpr int kMinuteSeconds = 60;
  constexpr double kWidestGap = 2;
  std::vector<BarPlace> places;
  const double width = layout.plot.width() * kMinuteSeconds / kDaySeconds;
  const double gap = std::min(width / 4, kWidestGap);
  const auto most = static_cast<double>(MostTraded(bars));
  for (const MinuteBar& bar : bars) {
    if (bar.volume <= 0) continue;
    const double height = std::max(static_cast<double>(bar.volume) / most * layout.volumes.height(), 1.0);
    const double left = layout.Axis().XOf(bar.minute * kMinuteSeconds) + gap / 2;
    places.push_back(
        {{left, layout.volumes.bottom() - height, std::max(width - gap, 1.0), height}, bar.close < bar.before});
  }
  return places;
}

}  // namespace holdwise
