// SPDX-License-Identifier: MIT
#pragma once
#include <vector>

#include "common/grid/string_grid.h"
#include "holdwise/packet/result_set.h"

namespace holdwise {

/// Of a portfolio whose risk figures were never calculated the stored zeros are no figures: says so in those columns of
/// its row. `portfolios` has the columns ISFINISHED and ZHBZC. User-interface thread.
void MarkUncalculated(const ResultSet& portfolios, int row, const std::vector<int>& columns, TStringGrid& grid);

}  // namespace holdwise
