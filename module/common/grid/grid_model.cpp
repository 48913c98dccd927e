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
  rows_.push_back(EmptyRow(columns_));
}

int GridModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int GridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || role != Qt::DisplayRole) return {};
  return Text(index.column(), index.row());
}

const QString& GridModel::Text(int column, int row) const {
  static const QString none;
  if (row < 0 || row >= rowCount() || column < 0 || column >= columns_) return none;
  return rows_[static_cast<size_t>(row)][column];
}

void GridModel::SetText(int column, int row, const QString& text) {
  if (row < 0 || row >= rowCount() || column < 0 || column >= columns_) return;
  QString& cell = rows_[static_cast<size_t>(row)][column];
  if (cell == text) return;
  cell = text;
  MarkChanged(column, row);
}

void GridModel::SetRowCount(int rows) {
  const int wanted = std::max(rows, 1);
  const int present = rowCount();
  if (wanted > present) {
    beginInsertRows({}, present, wanted - 1);
    rows_.resize(static_cast<size_t>(wanted), EmptyRow(columns_));
    endInsertRows();
  } else if (wanted < present) {
    beginRemoveRows({}, wanted, present - 1);
    rows_.resize(static_cast<size_t>(wanted));
    endRemoveRows();
  }
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
  for (QStringList& row : rows_) row.resize(wanted);
  grows ? endInsertColumns() : endRemoveColumns();
}

void GridModel::ClearTexts() {
  BeginBatch();
  for (int row = 0; row < rowCount(); ++row) {
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
  const int bottom = std::min(bottom_, rowCount() - 1);
  const int left = left_;
  const int top = top_;
  left_ = top_ = 0;
  right_ = bottom_ = -1;
  if (left <= right && top <= bottom) Q_EMIT dataChanged(index(top, left), index(bottom, right), {Qt::DisplayRole});
}

}  // namespace holdwise
