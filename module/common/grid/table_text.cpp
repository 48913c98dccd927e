// SPDX-License-Identifier: MIT
#include "common/grid/table_text.h"

namespace holdwise {
namespace {

QString LineOf(const GridText& grid, const QStringList& cells) {
  QStringList shown;
  for (int column = 0; column < cells.size(); ++column) {
    if (!grid.hidden[static_cast<std::size_t>(column)]) shown << cells[column].simplified();
  }
  return shown.join(QLatin1Char('\t')) + QLatin1Char('\n');
}

}  // namespace

QString TabSeparated(const GridText& grid) {
  QString text = LineOf(grid, grid.titles);
  for (const QStringList& row : grid.rows) text += LineOf(grid, row);
  return text;
}

}  // namespace holdwise
