// SPDX-License-Identifier: MIT
#include "theme_pictures.h"

#include <QHash>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

namespace holdwise {
namespace {

using PaintFunction = void (*)(QPainter& painter, const QRectF& area, ThemeKind kind);

void PaintStrip(QPainter& painter, const QRectF& area, ThemeKind kind, const QColor& top, const QColor& bottom) {
  QLinearGradient gradient(area.topLeft(), area.bottomLeft());
  gradient.setColorAt(0, top);
  gradient.setColorAt(1, bottom);
  painter.fillRect(area, gradient);
  painter.fillRect(QRectF(area.left(), area.bottom() - 1, area.width(), 1), ThemeColorOf(kind, "KTR_BorderColor"));
}

void PaintTitleStrip(QPainter& painter, const QRectF& area, ThemeKind kind) {
  const QColor ground = ThemeColorOf(kind, "ktr_gridtitlebk");
  PaintStrip(painter, area, kind, kind == ThemeKind::Dark ? ground.lighter(108) : ground.lighter(103), ground);
}

void PaintGridTitle(QPainter& painter, const QRectF& area, ThemeKind kind) {
  const QColor ground = ThemeColorOf(kind, "ktr_gridtitlebk");
  PaintStrip(painter, area, kind, ground, ground);
}

/// The largest square in the middle of the area, a little inset; buttons are drawn in its coordinates 0..1.
void EnterButtonSquare(QPainter& painter, const QRectF& area) {
  const qreal side = std::min(area.width(), area.height());
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(area.center());
  painter.scale(side, side);
  painter.translate(-0.5, -0.5);
}

void PaintButtonGround(QPainter& painter, const QColor& fill, const QColor& border) {
  painter.setPen(QPen(border, 0.06));
  painter.setBrush(fill);
  painter.drawRoundedRect(QRectF(0.06, 0.06, 0.88, 0.88), 0.18, 0.18);
}

/// An arrow into a tray.
void PaintSaveSign(QPainter& painter, const QColor& ink) {
  painter.setPen(QPen(ink, 0.1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  painter.drawLine(QPointF(0.5, 0.22), QPointF(0.5, 0.56));
  painter.drawPolyline(QPolygonF{QPointF(0.35, 0.43), QPointF(0.5, 0.58), QPointF(0.65, 0.43)});
  painter.drawPolyline(QPolygonF{QPointF(0.24, 0.6), QPointF(0.24, 0.76), QPointF(0.76, 0.76), QPointF(0.76, 0.6)});
}

void PaintSave(QPainter& painter, const QRectF& area, ThemeKind kind) {
  EnterButtonSquare(painter, area);
  const QColor ink = ThemeColorOf(kind, "Grid_ClickTxtColor");
  PaintButtonGround(painter, ThemeColorOf(kind, "ktr_gridtitlebk"), ThemeColorOf(kind, "QM_EditFrameColor"));
  PaintSaveSign(painter, ink);
}

void PaintSaveHover(QPainter& painter, const QRectF& area, ThemeKind kind) {
  EnterButtonSquare(painter, area);
  const QColor ground = ThemeColorOf(kind, "Grid_ClickTxtColor");
  PaintButtonGround(painter, ground, ground);
  PaintSaveSign(painter, ThemeColorOf(kind, "Qm_BGCorlor"));
}

PaintFunction FindPainter(const QString& key) {
  static const QHash<QString, PaintFunction> painters{{QStringLiteral("Grid_TitleUpBg"), PaintTitleStrip},
                                                      {QStringLiteral("GridTitle"), PaintGridTitle},
                                                      {QStringLiteral("Qm_SaveBgPic"), PaintSave},
                                                      {QStringLiteral("Qm_SaveMovePic"), PaintSaveHover}};
  return painters.value(key, nullptr);
}

}  // namespace

QPixmap PaintThemePicture(ThemeKind kind, const QString& key, const QSize& size) {
  const PaintFunction paint = FindPainter(key);
  if (paint == nullptr || size.isEmpty()) return {};
  QPixmap picture(size);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  paint(painter, QRectF(QPointF(0, 0), QSizeF(size)), kind);
  return picture;
}

}  // namespace holdwise
