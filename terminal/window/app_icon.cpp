// SPDX-License-Identifier: MIT
#include "window/app_icon.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace holdwise {
namespace {

constexpr qreal kUnits = 64;

/// Three holdings of growing size on a dark ground, and the line of what they are worth.
QPixmap Picture(int size) {
  QPixmap picture(size, size);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(size / kUnits, size / kUnits);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0x1f3a5f));
  painter.drawRoundedRect(QRectF(2, 2, 60, 60), 13, 13);
  painter.setBrush(QColor(0x62b0ff));
  for (const QRectF& bar : {QRectF(13, 38, 9, 14), QRectF(27.5, 31, 9, 21), QRectF(42, 24, 9, 28)})
    painter.drawRoundedRect(bar, 1.5, 1.5);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(QColor(0xf2bd62), 4.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  QPainterPath line({12, 29});
  for (const QPointF& point : {QPointF(25, 21), QPointF(36, 25), QPointF(52, 11)}) line.lineTo(point);
  painter.drawPath(line);
  return picture;
}

}  // namespace

QIcon AppIcon() {
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 128}) icon.addPixmap(Picture(size));
  return icon;
}

}  // namespace holdwise
