// SPDX-License-Identifier: MIT
#pragma once
#include <QPixmap>
#include <QString>
#include <functional>
#include <vector>

#include "common/grid/string_grid.h"

namespace holdwise {

/// Pictures that act as buttons in the cells of one column, side by side. The grid outlives it; the owner hands the
/// grid's mouse events and drawing on. User-interface thread only.
class CellButtons {
 public:
  struct Button {
    QPixmap normal;
    QPixmap pressed;  ///< of the same size, for the row whose button is held down
    QString hint;     ///< empty for none
    /// The button of that row was pressed. The pressed picture shows, and no other press counts, until it returns. May
    /// run events and may delete the view.
    std::function<void(int row)> onPress;
    /// The pressed picture stays until the mouse is let go, unless the handler has called Release.
    bool staysPressed = false;
  };
  enum class Places {
    EqualParts,  ///< each in the middle of its part of the cell
    FromLeft     ///< 2 pixels from the cell's edges and from each other; right and bottom edges count as inside
  };
  CellButtons(TStringGrid& grid, int column, std::vector<Button> buttons, Places places = Places::EqualParts)
      : grid_(grid), column_(column), buttons_(std::move(buttons)), places_(places) {}

  /// Other pictures for a button, of the size of the ones before; the cells are to be drawn again.
  void SetPictures(int button, const QPixmap& normal, const QPixmap& pressed);
  /// Draws the pictures over the cell when it is one of the column.
  void Draw(QPainter& painter, const GridCellPaint& cell) const;
  /// Over a picture the hand cursor shows, anywhere else the default cursor. @return the hint of the button there
  QString MouseMove(const QPoint& position);
  /// A press where the mouse has moved last; only the left button counts.
  void MouseDown(Qt::MouseButton button);
  /// Takes the pressed picture away when the mouse is let go over a cell, unless a press is still being handled.
  void MouseUp(const QPoint& position);
  /// Takes the pressed picture away.
  void Release();

 private:
  struct Place {
    int button = -1;  ///< -1 for none
    int row = -1;
  };
  [[nodiscard]] QRect PartOf(const QRect& cell, int button) const;
  /// Where the mouse is over the button.
  [[nodiscard]] QRect AreaOf(const QRect& cell, int button) const;
  [[nodiscard]] Place PlaceAt(const QPoint& position) const;

  TStringGrid& grid_;
  int column_;
  std::vector<Button> buttons_;
  Places places_;
  Place hovered_;
  Place pressed_;
  bool isBusy_ = false;
};

}  // namespace holdwise
