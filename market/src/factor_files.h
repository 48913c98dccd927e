// SPDX-License-Identifier: MIT
#pragma once
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "holdwise/market/bar_reader.h"
#include "holdwise/market/file_state.h"
#include "kept.h"

namespace holdwise {

/// Of one stock, as BarRules has them.
struct StockFactors {
  FactorSteps steps;
  int from = 0;  ///< of cumulative factors the first date, before which nothing is known; 0 = all events are there
  bool operator==(const StockFactors&) const = default;
};
/// By code number.
using FactorTable = std::map<int, StockFactors>;

/// One file's, as they stand in it.
struct FactorFile;
using KeptFactorFiles = Kept<FileState, FactorFile>;

/// Reads factors by which bars as traded are adjusted: one file with a code in every line, or a folder of files named
/// after their codes. How a column counts is told by its heading:
///   adj_factor, 复权因子, 后复权因子, hfq_factor, backAdjustFactor, foreAdjustFactor, 前复权因子
///                      cumulative, in force from its date until the next one; prices times factor compare
///   qfq_factor         cumulative; prices divided by it compare
///   除权因子, event_factor, ex_factor
///                      of an event: prices before its date, times factor, compare with those from it on
///   factor             told by the values of all files together: cumulative when most rows repeat the one of a few
///   days
///                      before (a row a day), of an event when there are single rows and all are below 1
/// Several columns: the first of the list. Error(Refused) when a factor of an event is above 1 or stands in a row a
/// day, when the values of `factor` tell neither, when there is no such column, or nothing usable. Errors of a file as
/// a whole: see CsvTable.
/// @param understood receives file and columns, with how they were taken
/// @param kept files read before; afterwards those read now
[[nodiscard]] FactorTable ReadFactors(const QString& place, std::vector<Rejection>& rejections,
                                      std::vector<std::pair<QString, QString>>& understood, KeptFactorFiles& kept);

}  // namespace holdwise
