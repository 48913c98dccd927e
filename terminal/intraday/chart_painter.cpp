// SPDX-License-Identifier: MIT
#include "intraday/chart_painter.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>

namespace holdwise {
namespace {

constexpr int kHalfHour = 1800, kHour = 3600;
constexpr double kGap = 6;
constexpr double kDotRadius = 3;

/// Times under the plot; 11:30 and 13:00 share a place.
QString TimeLabel(int second) {
  return second == kMorningSeconds ? QStringLiteral("11:30/13:00") : TimeText(second);
}

/// A text beside the plot, in the middle of its height at y.
void PaintBeside(QPainter& painter, const ChartLayout& layout, double y, const QString& text, bool isLeft) {
  const double height = painter.fontMetrics().height();
  const double width = layout.plot.left() - kGap;
  const QRectF place(isLeft ? 0 : layout.plot.right() + kGap, y - height / 2, width, height);
  painter.drawText(place, static_cast<int>(isLeft ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter, text);
}

/// The same in a box of its own.
void PaintBox(QPainter& painter, const QRectF& place, const QString& text, const LineColors& colors) {
  painter.fillRect(place, colors.border);
  painter.setPen(colors.text);
  painter.drawText(place, Qt::AlignCenter, text);
}

/// Centred under x, moved so that it stays above `left` and below `right`.
QRectF Under(const ChartLayout& layout, double x, double width, double height) {
  const double left = std::clamp(x - width / 2, 0.0, std::max(0.0, layout.plot.right() + layout.plot.left() - width));
  return {left, layout.plot.bottom() + 2, width, height};
}

}  // namespace

void PaintGrid(QPainter& painter, const ChartLayout& layout, const PriceScale& scale, const LineColors& colors) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setPen(QPen(colors.grid, 1));
  for (int row = 1 - layout.rows; row < layout.rows; ++row) {
    const double y = layout.YOf(layout.PriceAtRow(row, scale), scale);
    painter.drawLine(QLineF(layout.plot.left(), y, layout.plot.right(), y));
  }
  for (int second = kHalfHour; second < kDaySeconds; second += kHalfHour) {
    const double x = layout.Axis().XOf(second);
    painter.setPen(QPen(second == kMorningSeconds ? colors.border : colors.grid, 1));
    painter.drawLine(QLineF(x, layout.prices.top(), x, layout.prices.bottom()));
    painter.drawLine(QLineF(x, layout.volumes.top(), x, layout.volumes.bottom()));
  }
  painter.setPen(QPen(colors.border, 1));
  painter.drawRect(layout.prices);
  painter.drawRect(layout.volumes);
  painter.restore();
}

void PaintBars(QPainter& painter, std::span<const BarPlace> bars, const LineColors& colors) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, false);
  for (const BarPlace& bar : bars) painter.fillRect(bar.rectangle, bar.isFall ? colors.fall : colors.rise);
  painter.restore();
}

void PaintLabels(QPainter& painter, const ChartLayout& layout, const PriceScale& scale, std::int64_t previousClose,
                 std::int64_t mostTraded, const LineColors& colors) {
  painter.save();
  for (const RowLabel& label : RowLabels(layout, scale, previousClose)) {
    painter.setPen(previousClose > 0 ? ChangeColor(colors, label.row) : colors.text);
    PaintBeside(painter, layout, label.y, label.price, true);
    PaintBeside(painter, layout, label.y, label.percent, false);
  }
  painter.setPen(colors.text);
  const double height = painter.fontMetrics().height();
  if (mostTraded > 1)
    PaintBeside(painter, layout, layout.volumes.top() + height / 2, VolumeText(mostTraded).section(u' ', 0, 0), true);
  PaintBeside(painter, layout, layout.volumes.bottom() - height / 2,
              mostTraded > 1 ? VolumeText(mostTraded).section(u' ', 1) : QStringLiteral("成交量"), true);
  for (int second = 0; second <= kDaySeconds; second += kHour) {
    const QString label = TimeLabel(second);
    const double width = painter.fontMetrics().horizontalAdvance(label) + 2;
    painter.drawText(Under(layout, layout.Axis().XOf(second), width, height), Qt::AlignCenter, label);
  }
  painter.restore();
}

void PaintDot(QPainter& painter, const ChartLayout& layout, const PriceScale& scale, int second, double price,
              const LineColors& colors) {
  painter.save();
  painter.setPen(Qt::NoPen);
  painter.setBrush(colors.price);
  painter.drawEllipse(QPointF(layout.Axis().XOf(second), layout.YOf(price, scale)), kDotRadius, kDotRadius);
  painter.restore();
}

void PaintCross(QPainter& painter, const ChartLayout& layout, const PriceScale& scale, std::int64_t previousClose,
                const CrossValues& values, const LineColors& colors) {
  painter.save();
  const double x = layout.Axis().XOf(values.second), y = layout.YOf(values.price, scale);
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setPen(QPen(colors.text, 1, Qt::DotLine));
  painter.drawLine(QLineF(x, layout.plot.top(), x, layout.plot.bottom()));
  painter.drawLine(QLineF(layout.plot.left(), y, layout.plot.right(), y));
  const QFontMetricsF metrics(painter.font());
  const double height = metrics.height(), side = layout.plot.left() - 2;
  PaintBox(painter, {0, y - height / 2, side, height}, PriceText(values.price), colors);
  if (previousClose > 0)
    PaintBox(painter, {layout.plot.right() + 2, y - height / 2, side, height},
             PercentText(PercentOf(values.price, previousClose)), colors);
  const QString time = TimeText(values.second, true);
  PaintBox(painter, Under(layout, x, metrics.horizontalAdvance(time) + 2 * kGap, height), time, colors);
  const double width = std::min(metrics.horizontalAdvance(values.text) + 2 * kGap, layout.plot.width());
  // On the side where the crosshair is not.
  const double left = x < layout.plot.center().x() ? layout.plot.right() - width - 1 : layout.plot.left() + 1;
  PaintBox(painter, {left, layout.plot.top() + 1, width, height + 2}, values.text, colors);
  painter.restore();
}

}  // namespace holdwise
