// SPDX-License-Identifier: MIT
#pragma once
#include <QColor>
#include <QPainter>
#include <QPoint>
#include <QPointF>
#include <algorithm>

namespace holdwise {

/// Corners of a rectangle in pixels. Unlike QRect, right and bottom are coordinates of the far edge, not left + width -
/// 1, and the corners may be swapped.
struct TRect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
};

enum TGradientDirection { gdHorizontal, gdVertical };
/// Axes of a chart.
enum TAXIS { V_AXIS, H_AXIS };

/// Fills the pixels left <= x < right, top <= y < bottom with a gradient from the start colour at the left (top) edge
/// to the end colour at the right (bottom) edge. Swapped corners: the colours stay with their corners. The colours'
/// alpha is not used. Nothing is drawn into an empty rectangle.
void GradientFillCanvas(QPainter& canvas, const QColor& start, const QColor& end, const TRect& rectangle,
                        TGradientDirection direction);

/// Draws a one-pixel line with that pen style and colour; the painter keeps the pen.
void DrawLine_(QPainter& canvas, const QPoint& from, const QPoint& to, Qt::PenStyle style, const QColor& color);

/// Is the point inside, all four edges included? The corners may be swapped.
[[nodiscard]] bool PTInRect_(const TRect& rectangle, const QPoint& point);

/// A point of two double-precision coordinates.
[[nodiscard]] inline QPointF DoublePoint(double x, double y) {
  return {x, y};
}

}  // namespace holdwise
