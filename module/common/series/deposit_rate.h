// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <optional>

#include "holdwise/sdk/database.h"

namespace holdwise {

/// The bank's one-year time-deposit rate in percent a year, as it is stored; the views take it for the risk-free rate.
/// None when the table has no such rate. What a failing statement throws reaches the caller.
[[nodiscard]] std::optional<double> OneYearDepositRate(DatabaseStatements& database);
/// What a view says of its figures without that rate. Pure.
[[nodiscard]] QString WithoutDepositRate();

}  // namespace holdwise
