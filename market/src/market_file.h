// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

#include "holdwise/packet/result_set.h"

namespace holdwise {

/// The file that says what a data folder holds.
inline constexpr const char* kMarketFile = "market.dat";

/// Its one row. `currentDate` YYYYMMDD.
[[nodiscard]] ResultSet MarketTable(int currentDate, bool isSimulated, const QString& edition);

/// Throws Error(Refused) when the folder holds data of the other kind: a market of exchanges where a simulated one is
/// to come, or the other way round. A folder without a market, or one that says nothing that can be read, is no such
/// case.
void RefuseOtherKind(const QString& folder, bool isSimulated);

}  // namespace holdwise
