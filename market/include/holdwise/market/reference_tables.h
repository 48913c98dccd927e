// SPDX-License-Identifier: MIT
#pragma once
#include <vector>

#include "holdwise/market/reference_files.h"
#include "holdwise/packet/result_set.h"

/// The data folder's tables, made of what the reference files hold. Thread-safe.
namespace holdwise {

/// One row a security, in the order given.
[[nodiscard]] ResultSet SecuritiesTable(const std::vector<Security>& securities);
/// One row a date, YYYYMMDD, in the order given.
[[nodiscard]] ResultSet TradingDatesTable(const std::vector<int>& dates);
/// `madeOn` YYYYMMDD stands in the record-keeping columns. No rates: a table without rows.
[[nodiscard]] ResultSet InterestRateTable(const DepositRates& rates, int madeOn);
/// Adds a text column "edition" that holds `edition` in the first row and null in the others: the data that the file
/// was made with. Nothing to name in a table without rows.
void NameEdition(ResultSet& table, const QString& edition);
/// The same with "proposals": the fingerprint of the proposals that the file is one of.
void NameProposals(ResultSet& table, const QString& proposals);
/// One row a stock, every figure times 10000, in the order given.
[[nodiscard]] ResultSet AccountsTable(const std::vector<Account>& accounts);
/// No values: a table without rows, which readers take as "nothing new".
[[nodiscard]] ResultSet EstimateTable(const std::vector<EstimateValue>& values);

}  // namespace holdwise
