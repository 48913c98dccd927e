// SPDX-License-Identifier: MIT
#include "common/frames/uncalculated.h"

namespace holdwise {

void MarkUncalculated(const ResultSet& portfolios, int row, const std::vector<int>& columns, TStringGrid& grid) {
  const int finished = portfolios.Column("ISFINISHED");
  const bool isFinished = portfolios.IsNull(row, finished) || portfolios.IntegerAt(row, finished) != 0;
  if (isFinished || !portfolios.IsNull(row, portfolios.Column("ZHBZC"))) return;
  for (const int column : columns) grid.SetNoFigure({column, row}, QStringLiteral("还没有计算过"));
}

}  // namespace holdwise
