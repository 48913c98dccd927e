// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

#include "holdwise/sdk/database.h"

namespace holdwise {

/// Makes an unsaved copy of a portfolio, to be edited; the portfolio stays as it is. The copy has what it holds, the
/// day and the prices at which that was bought, and no figures yet. Its name is the portfolio's with "-副本", then
/// "-副本2" and so on until no portfolio has it, without single quotes and within 40 characters.
/// @return the copy's name; empty when no portfolio has that id. What a failing statement throws reaches the caller,
/// and nothing is stored then. No transaction may be open; user-interface thread.
[[nodiscard]] QString CopyToEditor(DatabaseStatements& database, std::int64_t portfolioId);

}  // namespace holdwise
