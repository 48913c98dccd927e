// SPDX-License-Identifier: MIT
#include "grid_model.h"

#include <algorithm>

namespace holdwise {
namespace {

QStringList EmptyRow(int columns) {
  return QStringList(columns, QString());
}

}  // namespace

GridModel::GridModel(QObject* parent) : QAbstractTableModel(parent) {
  rows_.push_back({++lastId_, EmptyRow(columns_)});
}

int GridModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid()) return 0;
  return isNarrowed_ ? static_cast<int>(shown_.size()) : RowCount();
}

int GridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || role != Qt::DisplayRole) return {};
  return Text(index.column(), RowAt(index.row()));
}

const QString& GridModel::Text(int column, int row) const {
  static const QString none;
  if (row < 0 || row >= RowCount() || column < 0 || column >= columns_) return none;
  return rows_[static_cast<size_t>(row)].cells[column];
}

void GridModel::SetText(int column, int row, const QString& text) {
  if (row < 0 || row >= RowCount() || column < 0 || column >= columns_) return;
  QString& cell = rows_[static_cast<size_t>(row)].cells[column];
  if (cell == text) return;
  cell = text;
  MarkChanged(column, row);
}

void GridModel::SetRowCount(int rows) {
  const int wanted = std::max(rows, 1);
  const int present = RowCount();
  if (wanted != present) ShowRows([](int) { return true; });
  if (wanted > present) {
    beginInsertRows({}, present, wanted - 1);
    while (RowCount() < wanted) rows_.push_back({++lastId_, EmptyRow(columns_)});
    endInsertRows();
  } else if (wanted < present) {
    beginRemoveRows({}, wanted, present - 1);
    rows_.resize(static_cast<size_t>(wanted));
    endRemoveRows();
  }
}

void GridModel::RemoveRow(int row) {
  ShowRows([](int) { return true; });
  beginRemoveRows({}, row, row);
  rows_.erase(rows_.begin() + row);
  endRemoveRows();
}

void GridModel::ShowRows(const std::function<bool(int row)>& isShown) {
  std::vector<int> shown;
  for (int row = 0; row < RowCount(); ++row) {
    if (isShown(row)) shown.push_back(row);
  }
  const bool isNarrowed = static_cast<int>(shown.size()) < RowCount();
  if (isNarrowed == isNarrowed_ && (!isNarrowed || shown == shown_)) return;
  ReplaceShown(std::move(shown), isNarrowed);
}

/// Rows go and come in one range each: a reset of the model would take the widths of the columns away, and one step a
/// row costs a view too much.
void GridModel::ReplaceShown(std::vector<int> shown, bool isNarrowed) {
  if (rowCount() > 0) {
    beginRemoveRows({}, 0, rowCount() - 1);
    shown_.clear();
    isNarrowed_ = true;
    endRemoveRows();
  }
  const int count = isNarrowed ? static_cast<int>(shown.size()) : RowCount();
  if (count > 0) beginInsertRows({}, 0, count - 1);
  shown_ = isNarrowed ? std::move(shown) : std::vector<int>();
  isNarrowed_ = isNarrowed;
  if (count > 0) endInsertRows();
}

bool GridModel::IsShown(int row) const {
  return PlaceOf(row) >= 0;
}

int GridModel::PlaceOf(int row) const {
  if (row < 0 || row >= RowCount()) return -1;
  if (!isNarrowed_) return row;
  const auto found = std::lower_bound(shown_.begin(), shown_.end(), row);
  return found != shown_.end() && *found == row ? static_cast<int>(found - shown_.begin()) : -1;
}

int GridModel::RowAt(int place) const {
  if (place < 0 || !isNarrowed_) return place;
  return place < static_cast<int>(shown_.size()) ? shown_[static_cast<size_t>(place)] : RowCount();
}

void GridModel::SetColumnCount(int columns) {
  const int wanted = std::max(columns, 1);
  if (wanted > columns_) {
    beginInsertColumns({}, columns_, wanted - 1);
  } else if (wanted < columns_) {
    beginRemoveColumns({}, wanted, columns_ - 1);
  } else {
    return;
  }
  const bool grows = wanted > columns_;
  columns_ = wanted;
  for (Line& row : rows_) row.cells.resize(wanted);
  grows ? endInsertColumns() : endRemoveColumns();
}

void GridModel::ClearTexts() {
  BeginBatch();
  for (int row = 0; row < RowCount(); ++row) {
    for (int column = 0; column < columns_; ++column) SetText(column, row, {});
  }
  EndBatch();
}

void GridModel::BeginBatch() {
  ++batchDepth_;
}

void GridModel::EndBatch() {
  if (--batchDepth_ == 0) Announce();
}

void GridModel::MarkChanged(int column, int row) {
  if (left_ > right_) {
    left_ = right_ = column;
    top_ = bottom_ = row;
  } else {
    left_ = std::min(left_, column);
    right_ = std::max(right_, column);
    top_ = std::min(top_, row);
    bottom_ = std::max(bottom_, row);
  }
  if (batchDepth_ == 0) Announce();
}

void GridModel::Announce() {
  // The table may have shrunk since the change was noted.
  const int right = std::min(right_, columns_ - 1);
  int bottom = std::min(bottom_, RowCount() - 1);
  const int left = left_;
  int top = top_;
  if (isNarrowed_) {
    top = static_cast<int>(std::lower_bound(shown_.begin(), shown_.end(), top) - shown_.begin());
    bottom = static_cast<int>(std::upper_bound(shown_.begin(), shown_.end(), bottom) - shown_.begin()) - 1;
  }
  left_ = top_ = 0;
  right_ = bottom_ = -1;
  if (left <= right && top <= bottom) Q_EMIT dataChanged(index(top, left), index(bottom, right), {Qt::DisplayRole});
}

}  // namespace holdwise
