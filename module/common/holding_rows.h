#pragma once
#include <QString>
#include <functional>

#include "common/name_value_list.h"
#include "holdwise/packet/result_set.h"

/// What the series objects share in walking rows of holdings.
namespace holdwise {

/// The cell as a number; 0 for null and for text that is no number.
[[nodiscard]] double NumberAt(const ResultSet& rows, int row, int column);

/// Adds up term(row) over consecutive rows with the same MAINID and stores each sum under that id, shortest decimal
/// text. No rows: nothing is stored.
void StoreSumsByPortfolio(const ResultSet& holdings, const std::function<double(int row)>& term, TNameValueList& sums);

}  // namespace holdwise
