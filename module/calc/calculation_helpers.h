// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <vector>

#include "holdwise/sdk/database.h"

/// Codes and dates of the calculation. Some do not agree with the routines of the same name in common/; that is
/// intended.
namespace holdwise::calc {

/// The trading date `n` >= 1 trading days before today, counting today when it is a trading day. `tradingDates`:
/// YYYYMMDD, most recent first; `today`: YYYYMMDD. Outside the list: a range error, Error(Refused).
[[nodiscard]] int GetForwardDate(const std::vector<int>& tradingDates, int today, int n);
/// The code without its leading market digit "1". An empty code is a range error, Error(Refused).
[[nodiscard]] QString GetCodeCNum(const QString& code);
/// A code that begins with "0" with a "1" behind it (behind, not before: intended), every other code as it is.
[[nodiscard]] QString GetCodeNum(const QString& code);
/// "YYYY-M-D" without leading zeros for 19000101 to 20991231, else "1900-01-01".
[[nodiscard]] QString IntDateToStrDate(int date);
/// Latest daily row of a security, of all securities for an empty code, as YYYYMMDD; -1 when there is none. A code that
/// is no whole number is Error(Refused).
[[nodiscard]] std::int64_t GetMaxHqDate(DatabaseStatements& database, const QString& code);

}  // namespace holdwise::calc
