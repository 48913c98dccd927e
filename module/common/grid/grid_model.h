// SPDX-License-Identifier: MIT
#pragma once
#include <QAbstractTableModel>
#include <QStringList>
#include <vector>

namespace holdwise {

/// Texts of a string grid. At least one row and one column always exist: an empty grid is one whose cell (0, 0) is
/// empty. Cells are addressed (column, row), both from 0. A cell outside the table reads as the empty text; writing
/// there is ignored. User-interface thread only.
class GridModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  explicit GridModel(QObject* parent = nullptr);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

  [[nodiscard]] const QString& Text(int column, int row) const;
  /// Announces a change at once, or at the end of the open batch. An equal text is no change.
  void SetText(int column, int row, const QString& text);
  /// Counts below 1 are taken as 1. New cells are empty; what is cut off is forgotten.
  void SetRowCount(int rows);
  void SetColumnCount(int columns);
  void ClearTexts();

  /// Between the two calls changed texts are collected and announced as one range. Batches nest.
  void BeginBatch();
  void EndBatch();

 private:
  void MarkChanged(int column, int row);
  void Announce();

  std::vector<QStringList> rows_;
  int columns_ = 1;
  int batchDepth_ = 0;
  /// Changed range not yet announced; empty while left > right.
  int left_ = 0;
  int right_ = -1;
  int top_ = 0;
  int bottom_ = -1;
};

}  // namespace holdwise
