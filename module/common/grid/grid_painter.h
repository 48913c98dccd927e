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

/// The background of a cell's row, and the colour of its texts.
[[nodiscard]] const QColor& RowColor(const GridCellPaint& cell, const GridColors& colors);
[[nodiscard]] const QColor& TextColor(const GridCellPaint& cell, const GridColors& colors);
/// A row's background while a figure on it has just risen or fallen: a quarter of the colour of that.
[[nodiscard]] QColor FlashColor(const QColor& row, const QColor& sign);
/// Fills a cell with the background of its row.
void PaintCellBackground(QPainter& painter, const GridCellPaint& cell, const GridColors& colors);
/// Draws the trimmed text on one line, vertically in the middle; left-aligned texts keep their inset. A text that does
/// not fit ends in an ellipsis.
void PaintCellText(QPainter& painter, const GridCellPaint& cell, const QColor& ink, const QString& text,
                   Qt::Alignment horizontal);
/// Draws the sign of the row that the keys act on: a bar at the left edge of its first cell.
void PaintKeyBar(QPainter& painter, const QRect& cell, const QColor& color);
/// Draws the small mark of a cell with a remark into its upper right corner, in the colour of its text.
void PaintCellMark(QPainter& painter, const GridCellPaint& cell, const GridColors& colors);
/// Draws a picture in the middle of the cell in its own size. Its corner is transparent.
void PaintCellPicture(QPainter& painter, const GridCellPaint& cell, const QPixmap& picture);

}  // namespace holdwise
