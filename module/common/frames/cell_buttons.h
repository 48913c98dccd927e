// SPDX-License-Identifier: MIT
#pragma once
#include <QPixmap>
#include <QString>
#include <functional>
#include <vector>

#include "common/grid/string_grid.h"

namespace holdwise {

/// Pictures that act as buttons in the cells of one column, side by side in equal parts of the cell. The grid outlives
/// it; the owner hands the grid's mouse events and drawing on. User-interface thread only.
class CellButtons {
 public:
  struct Button {
    QPixmap normal;
    QPixmap pressed;  ///< of the same size, for the row whose button is held down
    QString hint;     ///< empty for none
    /// The button of that row was pressed. The pressed picture shows, and no other press counts, until it returns. May
    /// run events and may delete the view.
    std::function<void(int row)> onPress;
  };
  CellButtons(TStringGrid& grid, int column, std::vector<Button> buttons)
      : grid_(grid), column_(column), buttons_(std::move(buttons)) {}

  /// Draws the pictures over the cell when it is one of the column.
  void Draw(QPainter& painter, const GridCellPaint& cell) const;
  /// Over a picture the hand cursor shows, anywhere else the default cursor. @return the hint of the button there
  QString MouseMove(const QPoint& position);
  /// A press where the mouse has moved last; only the left button counts.
  void MouseDown(Qt::MouseButton button);
  /// Takes the pressed picture away when the mouse is let go over a cell.
  void MouseUp(const QPoint& position);

 private:
  struct Place {
    int button = -1;  ///< -1 for none
    int row = -1;
  };
  [[nodiscard]] QRect PartOf(const QRect& cell, int button) const;
  [[nodiscard]] Place PlaceAt(const QPoint& position) const;

  TStringGrid& grid_;
  int column_;
  std::vector<Button> buttons_;
  Place hovered_;
  Place pressed_;
  bool isBusy_ = false;
};

}  // namespace holdwise
