// SPDX-License-Identifier: MIT
#include "common/grid/grid_painter.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPolygon>

#include "common/grid/cell_geometry.h"

namespace holdwise {

const QColor& RowColor(const GridCellPaint& cell, const GridColors& colors) {
  if (cell.isSelected) return colors.selectedRow;
  return cell.row % 2 == 0 ? colors.evenRow : colors.oddRow;
}

const QColor& TextColor(const GridCellPaint& cell, const GridColors& colors) {
  return cell.isSelected ? colors.selectedText : colors.unselectedText;
}

QColor FlashColor(const QColor& row, const QColor& sign) {
  constexpr double kShare = 0.25;
  return MixedColor(row, sign, kShare);
}

void PaintCellBackground(QPainter& painter, const GridCellPaint& cell, const GridColors& colors) {
  painter.fillRect(cell.rect, RowColor(cell, colors));
}

void PaintKeyBar(QPainter& painter, const QRect& cell, const QColor& color) {
  constexpr int kWidth = 3;  // pixels
  constexpr int kInset = 4;  // from the top and the bottom of the row
  painter.fillRect(QRect(cell.left(), cell.top() + kInset, kWidth, cell.height() - 2 * kInset), color);
}

void PaintCellText(QPainter& painter, const GridCellPaint& cell, const QColor& ink, const QString& text,
                   Qt::Alignment horizontal) {
  const bool left = horizontal.testFlag(Qt::AlignLeft);
  const QRect box = left ? cell.rect.adjusted(kTextInset, 0, 0, 0) : cell.rect;
  const QString shown = painter.fontMetrics().elidedText(text.trimmed(), Qt::ElideRight, box.width());
  painter.setPen(ink);
  painter.drawText(box, (left ? Qt::AlignLeft : Qt::AlignHCenter) | Qt::AlignVCenter | Qt::TextSingleLine, shown);
}

void PaintCellMark(QPainter& painter, const GridCellPaint& cell, const GridColors& colors) {
  constexpr int kLeg = 6;  // pixels
  const QPoint corner = cell.rect.topRight();
  painter.setPen(Qt::NoPen);
  painter.setBrush(TextColor(cell, colors));
  painter.drawPolygon(QPolygon({corner - QPoint(kLeg, 0), corner, corner + QPoint(0, kLeg)}));
}

void PaintCellPicture(QPainter& painter, const GridCellPaint& cell, const QPixmap& picture) {
  painter.drawPixmap(PictureBox(cell.rect, picture.size()).topLeft(), picture);
}

}  // namespace holdwise
