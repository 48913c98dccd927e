// SPDX-License-Identifier: MIT
#pragma once
#include "common/frames/column_table.h"
#include "holdwise/packet/result_set.h"

/// The rows of the stock pool list. User-interface thread: the host is asked for names and figures.
namespace holdwise::pool {

enum Column : int { kCode, kName, kDate, kEstimate, kPreviousClose, kEarnings, kNetAssets };

[[nodiscard]] const ColumnTable& PoolTable();
/// One row a security. What the host has no account figures of shows the first four columns only. A pool that lacks a
/// column is Error(NotFound), an estimate that is no number Error(Refused); the grid is as before then.
void ShowPool(const ResultSet& securities, TStringGrid& grid);

}  // namespace holdwise::pool
