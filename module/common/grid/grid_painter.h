// SPDX-License-Identifier: MIT
#pragma once
#include <QPixmap>
#include <QRect>
#include <QString>

#include "common/host/theme_colors.h"

class QPainter;

namespace holdwise {

/// One cell about to be drawn, in viewport pixels.
struct GridCellPaint {
  int column = 0;
  int row = 0;
  QRect rect;
  bool isSelected = false;
};

/// Fills a cell with the background of its row.
void PaintCellBackground(QPainter& painter, const GridCellPaint& cell, const GridColors& colors);
/// Draws the trimmed text on one line, vertically in the middle; left-aligned texts keep their inset. A text that does
/// not fit ends in an ellipsis.
void PaintCellText(QPainter& painter, const GridCellPaint& cell, const GridColors& colors, const QString& text,
                   Qt::Alignment horizontal);
/// Draws the small mark of a cell with a remark into its upper right corner, in the colour of its text.
void PaintCellMark(QPainter& painter, const GridCellPaint& cell, const GridColors& colors);
/// Draws a picture in the middle of the cell in its own size. Its corner is transparent.
void PaintCellPicture(QPainter& painter, const GridCellPaint& cell, const QPixmap& picture);

}  // namespace holdwise
