// SPDX-License-Identifier: MIT
#include "common/grid/delete_picture.h"

#include <QLineF>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>

namespace holdwise {
namespace {

constexpr int kSize = 20;
constexpr qreal kStroke = 1.5;
// Readable on the grid's background in both themes, as no key of the colour table is meant for pictures.
constexpr QColor kNormal(222, 92, 84);
constexpr QColor kPressed(176, 60, 54);

QPainterPath Through(const QPolygonF& points) {
  QPainterPath path;
  path.addPolygon(points);
  return path;
}

}  // namespace

QPixmap DeletePicture(bool isPressed) {
  QPixmap picture(kSize, kSize);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor color = isPressed ? kPressed : kNormal;
  painter.setPen(QPen(color, kStroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawLine(QLineF(3, 5, 17, 5));
  painter.drawPath(Through({{{7.5, 4.5}, {7.5, 2.5}, {12.5, 2.5}, {12.5, 4.5}}}));
  if (isPressed) painter.setBrush(color);
  painter.drawPath(Through({{{4.75, 7}, {5.5, 17}, {14.5, 17}, {15.25, 7}}}));
  // The ribs are cut out of the filled bin.
  if (isPressed) painter.setCompositionMode(QPainter::CompositionMode_Clear);
  for (const qreal x : {8.25, 11.75}) painter.drawLine(QLineF(x, 9.5, x, 14));
  return picture;
}

}  // namespace holdwise
