// SPDX-License-Identifier: MIT
#pragma once
#include <QColor>
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

#include "common/frames/entry_bar.h"
#include "common/frames/frame_part.h"
#include "common/grid/grid_picks.h"
#include "common/grid/string_grid.h"
#include "views/zxpz/holding_row.h"

class QLabel;
class QPushButton;

namespace holdwise {

class HeaderStrip;

/// The edit box over a cell: keeps Tab for its key handler.
class TRzEdit : public EntryField {
  Q_OBJECT
 public:
  using EntryField::EntryField;

  /// The focus has gone elsewhere.
  std::function<void()> OnExit;

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
};

/// The portfolio being built: a grid of its stocks under a title strip, buy price and quantity typed into an edit box
/// over their cells; below the grid the delete button and what it says about picking rows. Rows picked with Ctrl held
/// are known by identity. Whoever adds stops at kMostHoldings; SetRows and AddRow themselves have no limit. While the
/// edit box has the focus the host's keyboard capture is off. What an event throws goes to the debug log.
/// User-interface thread only.
class HoldingsEditor : public FramePart {
 public:
  explicit HoldingsEditor(QWidget* parent);

  TStringGrid* StringGrid3;
  TRzEdit* FInplaceEdit;  ///< a child of the grid's viewport, hidden while no cell is edited
  QPushButton* btnDel;

  /// True when there is NO holding, the opposite of what the name says: intended.
  [[nodiscard]] bool GetIshaveData() const;
  /// The holdings in grid order, none when the grid is empty. What stands in an open edit box is not in them before
  /// FInplaceEditExit.
  [[nodiscard]] std::vector<HoldingRow> Rows() const;
  /// Replaces all rows, forgets the picked ones and closes the edit box without its text. No rows: one empty row stays.
  void SetRows(const std::vector<HoldingRow>& rows);
  void ClearRows() { SetRows({}); }
  /// Puts a row behind the last one, in the place of the empty one of an empty grid.
  void AddRow(const HoldingRow& row);

  /// Makes it the edit cell and runs ShowEditor.
  void EditCell(int column, int row);
  /// Opens the edit box over the edit cell with the cell's text, all of it selected, and the focus. Nothing when there
  /// is no holding.
  void ShowEditor();
  /// Gives the host its keyboard capture back; the text of an open edit box goes into its cell. The box stays.
  void FInplaceEditExit();
  /// Closes the edit box; nothing is written to the grid. Its focus goes to the grid.
  void UpdateEditor();
  /// The cell being edited; none while the edit box is closed.
  [[nodiscard]] const GridCell& EditedCell() const noexcept { return edited_; }

  /// The delete button: deletes the picked rows or, when none is picked, the selected ones; closes the edit box.
  void Label5Click();
  /// Adds the holdings of the clipboard's text behind those there are, a missing price at the stock's current one. One
  /// message names what was refused.
  void PasteHoldings();
  /// Gives each column a quarter of the grid's width.
  void CalGridWidth();
  /// Captions over the four columns; a "\r" in them breaks the line, and the strip gets the height for it.
  void SetTitles(const QStringList& four);

  [[nodiscard]] const RowPicks& PickedRows() const noexcept { return picks_.Rows(); }

  void ApplyTheme() override;
  void Fit() override;

 private:
  void InitGrid();
  void InitEditor();
  bool FInplaceEditKeyDown(int key, Qt::KeyboardModifiers modifiers);
  bool FInplaceEditKeyPress(QChar key);
  void StringGrid3MouseDown(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, const QPoint& position);
  void StringGrid3KeyDown(int key, Qt::KeyboardModifiers modifiers);
  void StringGrid3DrawCell(QPainter& painter, const GridCellPaint& cell) const;
  /// Commits, goes to another cell and opens the edit box there, with the host's capture off.
  void MoveTo(const GridCell& cell);
  void Commit();
  void PlaceEditor();

  HeaderStrip* header_;
  QLabel* hint_;
  QColor boxColor_;
  GridPicks picks_;
  GridCell edited_;
};

}  // namespace holdwise
