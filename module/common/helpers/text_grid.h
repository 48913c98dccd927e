// SPDX-License-Identifier: MIT
#pragma once
#include <QHash>
#include <QString>
#include <QStringView>
#include <vector>

#include "holdwise/packet/result_set.h"

namespace holdwise {

/// A table of texts whose rows are found by their first cell. A value type without a widget.
class TTextGrid {
 public:
  [[nodiscard]] int RowCount() const noexcept { return static_cast<int>(rows_.size()); }
  [[nodiscard]] int ColCount() const noexcept { return colCount_; }
  /// Empty outside the table.
  [[nodiscard]] QString Cells(int column, int row) const;
  /// The first row with that text in column 0, by hash; -1 when there is none.
  [[nodiscard]] int RowOf(QStringView firstCell) const;
  /// Counts the fillings.
  [[nodiscard]] int Revision() const noexcept { return revision_; }
  /// Replaces everything by the rows of the set, fields as texts in their order.
  void Fill(const ResultSet& table);

 private:
  std::vector<std::vector<QString>> rows_;
  int colCount_ = 0;
  int revision_ = 0;
  QHash<QString, int> rowsByFirstCell_;
};

}  // namespace holdwise
