// SPDX-License-Identifier: MIT
#include "common/helpers/drawing.h"

#include <QLinearGradient>

namespace holdwise {

void GradientFillCanvas(QPainter& canvas, const QColor& start, const QColor& end, const TRect& rectangle,
                        TGradientDirection direction) {
  const auto [left, right] = std::minmax(rectangle.left, rectangle.right);
  const auto [top, bottom] = std::minmax(rectangle.top, rectangle.bottom);
  if (left == right || top == bottom) return;
  const bool horizontal = direction == gdHorizontal;
  QLinearGradient gradient(rectangle.left, rectangle.top, horizontal ? rectangle.right : rectangle.left,
                           horizontal ? rectangle.top : rectangle.bottom);
  gradient.setColorAt(0, QColor(start.red(), start.green(), start.blue()));
  gradient.setColorAt(1, QColor(end.red(), end.green(), end.blue()));
  canvas.fillRect(QRect(left, top, right - left, bottom - top), gradient);
}

void DrawLine_(QPainter& canvas, const QPoint& from, const QPoint& to, Qt::PenStyle style, const QColor& color) {
  canvas.setPen(QPen(color, 1, style));
  canvas.drawLine(from, to);
}

bool PTInRect_(const TRect& rectangle, const QPoint& point) {
  const auto [left, right] = std::minmax(rectangle.left, rectangle.right);
  const auto [top, bottom] = std::minmax(rectangle.top, rectangle.bottom);
  return point.x() >= left && point.x() <= right && point.y() >= top && point.y() <= bottom;
}

}  // namespace holdwise
