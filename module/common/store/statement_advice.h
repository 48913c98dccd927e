// SPDX-License-Identifier: MIT
#pragma once
#include <vector>

#include "holdwise/sdk/database.h"

namespace holdwise::sql {

/// What the host may know of this module's statements, for UserDataServices::Advise.
[[nodiscard]] std::vector<StatementAdvice> Advice();

}  // namespace holdwise::sql
