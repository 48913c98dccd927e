// SPDX-License-Identifier: MIT
#include "common/grid/cell_geometry.h"

namespace holdwise {

QRect CentredTextBox(const QRect& cell, const QSize& text) {
  const QPoint offset((cell.width() - text.width()) / 2, (cell.height() - text.height()) / 2);
  return {cell.topLeft() + offset, text};
}

QRect LeftTextBox(const QRect& cell, const QSize& text) {
  const QPoint offset(kTextInset, (cell.height() - text.height()) / 2);
  return {cell.topLeft() + offset, text};
}

QRect PictureBox(const QRect& cell, const QSize& picture) {
  const int x = (cell.width() - picture.width()) / 2;
  const int y = (cell.height() - picture.height()) / 2;
  return cell.adjusted(x, y, -x, -y);
}

bool IsClipped(int textWidth, int width) {
  return textWidth + kTextInset > width;
}

}  // namespace holdwise
