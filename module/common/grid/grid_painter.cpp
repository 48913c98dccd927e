// SPDX-License-Identifier: MIT
#include "common/grid/grid_painter.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPolygon>

#include "common/grid/cell_geometry.h"

namespace holdwise {

void PaintCellBackground(QPainter& painter, const GridCellPaint& cell, const GridColors& colors) {
  const QColor& alternating = cell.row % 2 == 0 ? colors.evenRow : colors.oddRow;
  painter.fillRect(cell.rect, cell.isSelected ? colors.selectedRow : alternating);
}

void PaintCellText(QPainter& painter, const GridCellPaint& cell, const GridColors& colors, const QString& text,
                   Qt::Alignment horizontal) {
  const bool left = horizontal.testFlag(Qt::AlignLeft);
  const QRect box = left ? cell.rect.adjusted(kTextInset, 0, 0, 0) : cell.rect;
  const QString shown = painter.fontMetrics().elidedText(text.trimmed(), Qt::ElideRight, box.width());
  painter.setPen(cell.isSelected ? colors.selectedText : colors.unselectedText);
  painter.drawText(box, (left ? Qt::AlignLeft : Qt::AlignHCenter) | Qt::AlignVCenter | Qt::TextSingleLine, shown);
}

void PaintCellMark(QPainter& painter, const GridCellPaint& cell, const GridColors& colors) {
  constexpr int kLeg = 6;  // pixels
  const QPoint corner = cell.rect.topRight();
  painter.setPen(Qt::NoPen);
  painter.setBrush(cell.isSelected ? colors.selectedText : colors.unselectedText);
  painter.drawPolygon(QPolygon({corner - QPoint(kLeg, 0), corner, corner + QPoint(0, kLeg)}));
}

void PaintCellPicture(QPainter& painter, const GridCellPaint& cell, const QPixmap& picture) {
  painter.drawPixmap(PictureBox(cell.rect, picture.size()).topLeft(), picture);
}

}  // namespace holdwise
