// SPDX-License-Identifier: MIT
#pragma once
#include <QTableView>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "common/grid/grid_painter.h"
#include "common/grid/row_picks.h"
#include "holdwise/sdk/catalogue.h"

class QLabel;
class QMenu;

namespace holdwise {

class CellFlash;
class GridModel;

/// A cell by column and row; (-1, -1) = none.
struct GridCell {
  int column = -1;
  int row = -1;
  [[nodiscard]] bool IsNone() const noexcept { return column < 0 && row < 0; }
  bool operator==(const GridCell&) const = default;
};

/// Rows from top to bottom, both included; none when the bottom is above the top.
struct GridRange {
  int top = 0;
  int bottom = -1;
  [[nodiscard]] int Count() const noexcept { return bottom - top + 1; }
  [[nodiscard]] bool Contains(int row) const noexcept { return top <= row && row <= bottom; }
  bool operator==(const GridRange&) const = default;
};

/// The one grid of all views: texts in columns and rows, whole-row selection, no headers and no lines, a vertical
/// scroll bar only. There is always at least one row; the grid counts as empty while its cell (0, 0) is empty, and then
/// draws nothing. Ctrl+C copies the rows that stand out, Ctrl+Shift+C the whole table, the context menu either or a
/// cell. User-interface thread only.
class TStringGrid : public QTableView {
  Q_OBJECT
 public:
  static constexpr int kDefaultRowHeight = 26;  ///< pixels
  static constexpr int kWholeText = -1;         ///< no limit on the decimals that are drawn

  /// `unit` and `name` tell the grid in the debug log; the name is also its objectName and its name in ToGridText. What
  /// the hooks below throw while the grid handles an event goes to the debug log.
  TStringGrid(QString unit, const QString& name, QWidget* parent = nullptr);
  ~TStringGrid() override;

  /// The unit that the grid was given.
  [[nodiscard]] const QString& Unit() const noexcept { return unit_; }

  [[nodiscard]] int ColCount() const;
  [[nodiscard]] int RowCount() const;
  void SetColCount(int columns);
  /// A count below 1 leaves one row. New rows are empty; a current row that is cut off moves to the last one.
  void SetRowCount(int rows);
  /// Text of a cell; empty outside the grid.
  [[nodiscard]] const QString& Cells(int column, int row) const;
  void SetCells(int column, int row, const QString& text);
  [[nodiscard]] bool IsEmpty() const { return Cells(0, 0).isEmpty(); }

  /// What tells a row from all others, wherever it moves; 0 when there is no such row.
  [[nodiscard]] RowId IdOf(int row) const;
  /// Takes so many rows out, from that one on; the only row that is left is emptied instead. All rows are shown then,
  /// and the row number that was current stays so while there is one. Nothing for a row that there is not.
  void DeleteRow(int row, int count);
  /// Height of all shown rows, pixels; kDefaultRowHeight at first.
  void SetDefaultRowHeight(int pixels);
  /// 0 for a row that is not shown or not there.
  [[nodiscard]] int RowHeight(int row) const;
  /// Gives the rows for which it is false the height 0: they cannot be selected. Their texts stay where they are.
  /// Another number of rows shows all of them.
  void ShowRows(const std::function<bool(int row)>& isShown);
  /// The first row whose height is above 0; -1 when there is none.
  [[nodiscard]] int GetVisualTopRow() const;

  /// The current row; never -1. 0 while no row is shown.
  [[nodiscard]] int Row() const;
  /// Makes a row current as a click on it does: OnSelectCell is asked first and may refuse. False when refused or when
  /// there is no such cell or its row is not shown.
  bool SelectCell(int column, int row);
  /// Scrolls so far that the row is in view; nothing for one that is not shown.
  void BringIntoView(int row);
  /// Called before the current row changes, also when the row is the current one already. False refuses.
  std::function<bool(int column, int row)> OnSelectCell;

  /// Lets Shift and dragging select several rows. Only the current one is selected otherwise.
  void SetRangeSelect(bool isOn) { isRangeSelect_ = isOn; }
  /// From the row where the selecting began to the current one; rows between them that are not shown count with it.
  /// None while no row is shown.
  [[nodiscard]] GridRange Selection() const;

  /// Cell at a position of the viewport; none outside the cells.
  [[nodiscard]] GridCell MouseToCell(const QPoint& position) const;
  /// Rectangle of a cell in viewport pixels; empty when there is no such cell or it is scrolled out of view.
  [[nodiscard]] QRect CellRect(int column, int row) const;
  void RedrawCell(const GridCell& cell);
  /// Width of the cell area, without the scroll bar.
  [[nodiscard]] int ClientWidth() const { return viewport()->width(); }

  /// One width a column, pixels; negative counts as 0.
  void SetColWidths(const std::vector<int>& widths);
  [[nodiscard]] int ColWidth(int column) const { return columnWidth(column); }
  /// Columns that carry keys: never shown, never selected, marked in ToGridText.
  void SetHiddenColumns(const std::vector<int>& columns);
  /// Titles by column, for header strips and ToGridText; hidden columns have none.
  void SetTitles(const QStringList& titles) { titles_ = titles; }

  /// Texts are centred unless a column says Qt::AlignLeft.
  void SetColumnAlignment(int column, Qt::Alignment alignment);
  [[nodiscard]] Qt::Alignment ColumnAlignment(int column) const;
  /// Numbers of the column are drawn with that many decimals (0 to 12), its other texts as they stand; the cells keep
  /// their texts. kWholeText takes the limit away.
  void SetColumnDecimals(int column, int decimals);
  /// The column's fractions are drawn, copied and given to a host in percent with two decimals, what is no number as 0:
  /// its title says percent. The cells keep their texts.
  void SetColumnPercent(int column, bool isOn);
  /// The column's numbers tell of rises and falls: where the colours tell these apart, they are drawn in them, what
  /// rises with a "+". The cells keep their texts.
  void SetColumnSigned(int column, bool isOn);
  /// The column's numbers are prices, or rest on them: where the colours tell rises from falls, a cell whose number
  /// changes in front of the user is lit for a moment.
  void SetColumnPrice(int column, bool isOn);
  /// What has to be known of a cell's figure: a small mark in its corner, the remark under the mouse. The cell keeps
  /// its text. Empty takes it away, as ClearStrnGrd does from every cell.
  void SetRemark(const GridCell& cell, const QString& remark);
  [[nodiscard]] QString RemarkOf(const GridCell& cell) const;
  /// A remark on a cell whose text is no figure: a dash is drawn in its place.
  void SetNoFigure(const GridCell& cell, const QString& remark);
  void ClearRemarks();
  /// Colours of the rows and of the area beside and below them.
  void SetColors(const GridColors& colors);
  [[nodiscard]] const GridColors& Colors() const noexcept { return colors_; }
  /// Replaces the drawing of a cell (background and text); not called while the grid is empty.
  std::function<void(QPainter& painter, const GridCellPaint& cell)> OnDrawCell;
  /// The drawing that OnDrawCell replaces.
  void DrawDefaultCell(QPainter& painter, const GridCellPaint& cell) const { DrawCellIn(painter, cell, colors_); }
  /// The same in other colours than the grid's.
  void DrawCellIn(QPainter& painter, const GridCellPaint& cell, const GridColors& colors) const;
  /// Leaves the bottom pixels blank that are too few for a row.
  void SetWholeRows(bool whole);
  /// A quiet text in the middle of the grid while it is empty or none of its rows is shown; none when empty.
  void SetEmptyText(const QString& text);

  /// The part of a cell's rectangle in which its text is drawn: the last column may reach beyond the right edge.
  [[nodiscard]] QRect ShownPart(QRect cell) const;
  /// Box of a cell's trimmed text as drawn, in viewport pixels; not limited to the cell.
  [[nodiscard]] QRect TextBox(const GridCell& cell) const;
  [[nodiscard]] int TextWidth(const GridCell& cell) const;
  /// The text of a cell that shows only a part of it, because its column is narrow or draws fewer decimals; empty for
  /// any other cell.
  [[nodiscard]] QString ClippedText(const GridCell& cell) const;
  /// The hand cursor of links; false = the default cursor.
  void SetHandCursor(bool hand);
  /// Shows a text as it stands at the mouse pointer, until the mouse moves on; the empty text takes a shown one away.
  void ShowHint(const QString& text);
  using Hint = std::function<QString(const GridCell& cell, const QPoint& position)>;
  /// Shows what the cell at a viewport position has to say: its remark, else the hint of `other`, or, without one, the
  /// whole of a text that is cut off.
  void ShowHintAt(const QPoint& position, const Hint& other = {});

  /// All texts with the titles, in the unit that the titles say; no rows while the grid is empty.
  [[nodiscard]] GridText ToGridText() const;
  [[nodiscard]] GridModel& Model() const { return *model_; }
  /// Puts the shown columns of the shown rows with their titles on the clipboard, tab-separated. Texts are copied whole
  /// and in the unit that their titles say, also those that are drawn with fewer decimals or a "+". An empty grid
  /// leaves the clipboard alone.
  void CopyTable() const;
  /// The same of the rows that stand out: under their titles, without which nobody who pastes them knows a price from a
  /// quantity.
  void CopyRows() const;
  void CopyCell(const GridCell& cell) const;
  /// Does a row stand out? Unset: when it is selected.
  std::function<bool(int row)> IsRowChosen;
  /// Is the current row one that is shown, with texts? What is done to "the row" can be done then.
  [[nodiscard]] bool HasRow() const { return !IsEmpty() && RowHeight(Row()) > 0; }
  /// Adds entries to the context menu that is about to be shown; the menu goes when it closes. A row under the mouse
  /// that did not stand out has become current by then.
  std::function<void(QMenu& menu)> OnContextMenu;

  /// Mouse events, positions in viewport pixels. OnMouseDown comes after the row under the mouse has become current; a
  /// double click is two presses and then, with the left button, OnDoubleClick.
  std::function<void(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, const QPoint& position)> OnMouseDown;
  /// In the place of ShowHintAt.
  std::function<void(const QPoint& position)> OnMouseMove;
  std::function<void(const QPoint& position)> OnMouseUp;
  std::function<void(const QPoint& position)> OnDoubleClick;
  /// A key, after the grid has moved its row for the keys that do so.
  std::function<void(int key, Qt::KeyboardModifiers modifiers)> OnKeyDown;
  /// The cell area became wider or narrower.
  std::function<void(int width)> OnClientWidthChanged;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void updateGeometries() override;
  bool viewportEvent(QEvent* event) override;

 private:
  void UpdateEmptyText();
  [[nodiscard]] bool StandsOut(int row) const { return IsRowChosen ? IsRowChosen(row) : Selection().Contains(row); }
  void FillMenu(QMenu& menu, const GridCell& cell);
  /// A row's texts as they leave the grid.
  [[nodiscard]] QStringList TextsOf(int row) const;
  struct DrawnCell {
    QString text;
    int sign = 0;  ///< above 0 for a figure that is drawn as a rise, below for a fall, 0 for any other text
  };
  [[nodiscard]] DrawnCell Drawn(const GridCell& cell, const GridColors& colors) const;
  /// The drawn text without the "+" of what rises.
  [[nodiscard]] QString UnsignedText(const GridCell& cell) const;
  void NotePrice(int column, int row, const QString& text);
  /// The cell's own text, but of a fraction whose title says percent the percents.
  [[nodiscard]] QString TextInItsUnit(const GridCell& cell) const;
  void Guarded(const std::function<void()>& body) const;
  [[nodiscard]] int RowForKey(int key) const;
  void MakeCurrent(int column, int row);
  bool GoTo(int column, int row, bool extends);

  QString unit_;
  GridModel* model_;
  QLabel* emptyText_;
  GridColors colors_;
  QStringList titles_;
  std::vector<int> leftColumns_;
  std::map<int, int> decimals_;  ///< by column
  std::set<int> percents_;       ///< columns of fractions that are drawn in percent
  std::set<int> signed_;         ///< columns of rises and falls
  std::set<int> prices_;         ///< columns whose changes are lit
  std::unique_ptr<CellFlash> flash_;
  std::map<std::pair<int, int>, QString> remarks_;  ///< by column and row
  std::set<std::pair<int, int>> noFigures_;         ///< likewise
  int rowHeight_ = kDefaultRowHeight;
  bool isRangeSelect_ = false;
  bool isDragging_ = false;
  QPersistentModelIndex anchor_;  ///< where the selecting began; invalid: the current row
  int lastClientWidth_ = -1;
  bool wasEmpty_ = true;
  bool isWholeRows_ = false;
  bool isInGeometry_ = false;
};

/// Collects the text changes of its scope into one announcement.
class GridBatch {
 public:
  explicit GridBatch(TStringGrid& grid);
  ~GridBatch();
  GridBatch(const GridBatch&) = delete;
  GridBatch& operator=(const GridBatch&) = delete;

 private:
  GridModel& model_;
};

/// Empties every cell and takes all rows but the one that always stays; the first row becomes current.
void ClearStrnGrd(TStringGrid& grid);

}  // namespace holdwise
