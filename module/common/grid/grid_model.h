// SPDX-License-Identifier: MIT
#pragma once
#include <QAbstractTableModel>
#include <QStringList>
#include <functional>
#include <vector>

#include "common/grid/row_picks.h"

namespace holdwise {

/// Texts of a string grid. At least one row and one column always exist: an empty grid is one whose cell (0, 0) is
/// empty. Cells are addressed (column, row), both from 0. A cell outside the table reads as the empty text; writing
/// there is ignored. Views see the shown rows only, and number them without gaps. User-interface thread only.
class GridModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  explicit GridModel(QObject* parent = nullptr);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

  /// All rows, shown or not.
  [[nodiscard]] int RowCount() const { return static_cast<int>(rows_.size()); }
  [[nodiscard]] const QString& Text(int column, int row) const;
  /// All texts of a row, which must be there.
  [[nodiscard]] const QStringList& TextsOf(int row) const { return rows_[static_cast<size_t>(row)].cells; }
  /// Announces a change at once, or at the end of the open batch. An equal text is no change.
  void SetText(int column, int row, const QString& text);
  /// Counts below 1 are taken as 1. New cells are empty; what is cut off is forgotten. Another count shows all rows.
  void SetRowCount(int rows);
  /// Takes a row out of several. All rows are shown then. There must be such a row, and another.
  void RemoveRow(int row);
  void SetColumnCount(int columns);
  void ClearTexts();
  /// Identity of a row of the table.
  [[nodiscard]] RowId IdOf(int row) const { return rows_[static_cast<size_t>(row)].id; }

  /// Shows those rows, by their numbers in the table.
  void ShowRows(const std::function<bool(int row)>& isShown);
  [[nodiscard]] bool IsShown(int row) const;
  /// A row's place among the shown ones, -1 for one that is not; and back, the number of rows for a place behind the
  /// last.
  [[nodiscard]] int PlaceOf(int row) const;
  [[nodiscard]] int RowAt(int place) const;

  /// Between the two calls changed texts are collected and announced as one range. Batches nest.
  void BeginBatch();
  void EndBatch();

 private:
  struct Line {
    RowId id = 0;
    QStringList cells;
  };

  void MarkChanged(int column, int row);
  void Announce();
  void ReplaceShown(std::vector<int> shown, bool isNarrowed);

  std::vector<Line> rows_;
  RowId lastId_ = 0;
  bool isNarrowed_ = false;
  std::vector<int> shown_;  ///< rows by place, ascending; used while narrowed
  int columns_ = 1;
  int batchDepth_ = 0;
  /// Changed range not yet announced; empty while left > right.
  int left_ = 0;
  int right_ = -1;
  int top_ = 0;
  int bottom_ = -1;
};

}  // namespace holdwise
