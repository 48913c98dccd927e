// SPDX-License-Identifier: MIT
#pragma once
#include "holdwise/sdk/database.h"

namespace holdwise {

/// The host's local database; set by the main frame before and released after the shared objects exist. Null otherwise.
/// Not owned. User-interface thread.
extern UserDataServices* FDBServer;
/// The database, or Error(Refused) when no main frame has set it.
[[nodiscard]] UserDataServices& Database();

}  // namespace holdwise
