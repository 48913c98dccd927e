// SPDX-License-Identifier: MIT
#include "common/grid/operation_picture.h"

#include <QLineF>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <functional>

namespace holdwise {
namespace {

constexpr int kSize = 20;
constexpr qreal kStroke = 1.5;

// Readable on the grid's background in both themes, as no key of the colour table is meant for pictures.
struct Tones {
  QColor normal;
  QColor pressed;
};
constexpr Tones kGrey{{130, 140, 152}, {98, 108, 120}};  // red and green tell of prices
constexpr Tones kBlue{{70, 140, 220}, {44, 104, 176}};
constexpr Tones kAmber{{208, 140, 40}, {166, 104, 20}};

QPainterPath Through(const QPolygonF& points) {
  QPainterPath path;
  path.addPolygon(points);
  return path;
}

QPixmap Painted(const Tones& tones, bool isPressed, const std::function<void(QPainter& painter)>& paint) {
  QPixmap picture(kSize, kSize);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor color = isPressed ? tones.pressed : tones.normal;
  painter.setPen(QPen(color, kStroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  if (isPressed) painter.setBrush(color);
  paint(painter);
  return picture;
}

/// What is drawn from here on is cut out of what is filled.
void CutOut(QPainter& painter, bool isPressed) {
  if (isPressed) painter.setCompositionMode(QPainter::CompositionMode_Clear);
}

}  // namespace

QPixmap SavePicture(bool isPressed) {
  return Painted(kBlue, isPressed, [&](QPainter& painter) {
    painter.drawPath(Through({{{3.5, 3.5}, {13.5, 3.5}, {16.5, 6.5}, {16.5, 16.5}, {3.5, 16.5}, {3.5, 3.5}}}));
    CutOut(painter, isPressed);
    painter.drawPath(Through({{{6.5, 3.75}, {6.5, 7.5}, {12.5, 7.5}, {12.5, 3.75}}}));
    painter.drawPath(Through({{{6, 16.25}, {6, 11.5}, {14, 11.5}, {14, 16.25}}}));
  });
}

QPixmap DeletePicture(bool isPressed) {
  return Painted(kGrey, isPressed, [&](QPainter& painter) {
    const QBrush body = painter.brush();
    painter.setBrush(Qt::NoBrush);
    painter.drawLine(QLineF(3, 5, 17, 5));
    painter.drawPath(Through({{{7.5, 4.5}, {7.5, 2.5}, {12.5, 2.5}, {12.5, 4.5}}}));
    painter.setBrush(body);
    painter.drawPath(Through({{{4.75, 7}, {5.5, 17}, {14.5, 17}, {15.25, 7}}}));
    CutOut(painter, isPressed);
    for (const qreal x : {8.25, 11.75}) painter.drawLine(QLineF(x, 9.5, x, 14));
  });
}

QPixmap ModifyPicture(bool isPressed) {
  return Painted(kAmber, isPressed, [&](QPainter& painter) {
    painter.drawPath(Through({{{3.5, 16.5}, {4.5, 12.5}, {13.5, 3.5}, {16.5, 6.5}, {7.5, 15.5}, {3.5, 16.5}}}));
    CutOut(painter, isPressed);
    painter.drawLine(QLineF(11.5, 5.5, 14.5, 8.5));
  });
}

}  // namespace holdwise
