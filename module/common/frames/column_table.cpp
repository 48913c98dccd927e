// SPDX-License-Identifier: MIT
#include "common/frames/column_table.h"

#include <algorithm>

namespace holdwise {

QStringList TitlesOf(const ColumnTable& table) {
  QStringList titles;
  for (const Column& column : table) {
    if (!column.isHidden) titles << column.title;
  }
  return titles;
}

std::vector<int> WidthsOf(const ColumnTable& table, int clientWidth) {
  const auto shown = std::count_if(table.begin(), table.end(), [](const Column& column) { return !column.isHidden; });
  const int divisor = std::max(static_cast<int>(shown), 1);
  std::vector<int> widths;
  for (const Column& column : table) {
    const int rest = column.takesRest ? clientWidth % divisor : 0;
    widths.push_back(column.isHidden ? 0 : clientWidth / divisor + column.extra + rest);
  }
  return widths;
}

std::vector<int> LinkColumnsOf(const ColumnTable& table) {
  std::vector<int> links;
  for (std::size_t place = 0; place < table.size(); ++place) {
    if (table[place].isLink) links.push_back(static_cast<int>(place));
  }
  return links;
}

void ApplyColumns(const ColumnTable& table, TStringGrid& grid) {
  std::vector<int> hidden;
  grid.SetColCount(static_cast<int>(table.size()));
  grid.SetTitles(TitlesOf(table));
  for (int place = 0; place < static_cast<int>(table.size()); ++place) {
    const Column& column = table[static_cast<std::size_t>(place)];
    if (column.isHidden) hidden.push_back(place);
    grid.SetColumnAlignment(place, column.isLeft ? Qt::AlignLeft : Qt::AlignHCenter);
    grid.SetColumnDecimals(place, column.decimals);
    grid.SetColumnPercent(place, column.isPercent);
    grid.SetColumnSigned(place, column.isSigned);
    grid.SetColumnPrice(place, column.isPrice);
  }
  grid.SetHiddenColumns(hidden);
}

}  // namespace holdwise
