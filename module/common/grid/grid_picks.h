// SPDX-License-Identifier: MIT
#pragma once
#include <QObject>

#include "common/grid/grid_painter.h"
#include "common/grid/row_picks.h"

namespace holdwise {

class TStringGrid;

/// The rows of a grid that are picked one by one with Ctrl held. Ctrl pressed while none is picked picks the current
/// row, so that Ctrl and a click on another picks both; when it turns out to begin a command (Ctrl+C), that row is let
/// go again. A key that moves the row without Ctrl forgets all of them, as a click without Ctrl does. The keys are seen
/// on their way to the grid, whose presses the owner hands on. The grid lives longer. User-interface thread only.
class GridPicks : public QObject {
 public:
  explicit GridPicks(TStringGrid& grid);
  ~GridPicks() override;

  [[nodiscard]] const RowPicks& Rows() const noexcept { return rows_; }
  [[nodiscard]] bool IsEmpty() const noexcept { return rows_.IsEmpty(); }
  [[nodiscard]] bool IsPicked(int row) const;
  /// Is a picked row one of those that the grid shows?
  [[nodiscard]] bool IsOneShown() const;
  /// How a row stands out: picked or, while none is picked, selected as the grid says.
  [[nodiscard]] bool StandsOut(const GridCellPaint& cell) const;
  void Clear();
  /// A press on the grid: the left button with Ctrl picks the row or lets it go, without Ctrl it forgets all.
  void MouseDown(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, const QPoint& position);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void BeforeKey(int key, Qt::KeyboardModifiers modifiers);
  void KeyDown(int key, Qt::KeyboardModifiers modifiers);
  void Set(const RowPicks& rows);

  TStringGrid& grid_;
  RowPicks rows_;
  bool isProvisional_ = false;  ///< the one row was picked by a Ctrl that is still held, and nothing has followed
};

}  // namespace holdwise
