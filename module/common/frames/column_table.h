// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <vector>

#include "common/grid/string_grid.h"

namespace holdwise {

/// One column of a grid.
struct Column {
  QString title{};         ///< above the column; none for a hidden one
  int extra = 0;           ///< pixels beside the equal share, may be negative
  bool takesRest = false;  ///< gets the pixels that the equal shares leave over
  bool isLeft = false;     ///< texts at the left edge instead of the middle
  bool isHidden = false;   ///< carries a key or an input; never shown, width 0
  bool isLink = false;     ///< its text opens the row's security, whose code stands in the first link column
  bool isSigned = false;   ///< its numbers are rises and falls
  bool isPrice = false;    ///< its numbers follow the prices
  bool isPercent = false;  ///< its cells are fractions, drawn, copied and exported in percent
  int decimals = TStringGrid::kWholeText;  ///< numbers are drawn with so many; the cell keeps its text
};
/// The columns of a grid, said once. Hidden ones stand behind the shown ones.
using ColumnTable = std::vector<Column>;

/// Titles of the shown columns.
[[nodiscard]] QStringList TitlesOf(const ColumnTable& table);
/// Widths of all columns for a client width of 0 or more, pixels: an equal share of it for each shown column, with its
/// additions. Narrow clients give negative widths where an addition is negative. Pure.
[[nodiscard]] std::vector<int> WidthsOf(const ColumnTable& table, int clientWidth);
/// Places of the columns whose texts are links.
[[nodiscard]] std::vector<int> LinkColumnsOf(const ColumnTable& table);
/// Gives a grid these columns: count, titles, hidden ones, alignments, what its numbers are and how they are drawn.
void ApplyColumns(const ColumnTable& table, TStringGrid& grid);

}  // namespace holdwise
