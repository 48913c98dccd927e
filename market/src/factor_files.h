// SPDX-License-Identifier: MIT
#pragma once
#include <map>
#include <string>
#include <vector>

#include "holdwise/market/bar_reader.h"

namespace holdwise {

/// Factors of stocks, by code number.
using FactorTable = std::map<int, FactorSteps>;

/// Reads factors by which bars as traded are adjusted: one file with a code in every line, or a folder of files named
/// after their codes. How a column counts is told by its heading:
///   adj_factor, 复权因子, 后复权因子, hfq_factor, backAdjustFactor, foreAdjustFactor, 前复权因子
///                      cumulative, in force from its date until the next one; prices times factor compare
///   qfq_factor         cumulative; prices divided by it compare
///   factor, 除权因子, event_factor, ex_factor
///                      of an event: prices before its date, times factor, compare with those from it on. A column
///                      "factor" with a value of 1 or more anywhere in the file is cumulative.
/// Several cumulative columns: the first of the list. Errors of a file as a whole: see CsvTable; no such column, or
/// nothing usable: Error(Refused).
/// @param understood receives file and columns, with how they were taken
[[nodiscard]] FactorTable ReadFactors(const QString& place, std::vector<Rejection>& rejections,
                                      std::vector<std::pair<QString, QString>>& understood);

}  // namespace holdwise
