// SPDX-License-Identifier: MIT
#pragma once
#include "holdwise/sdk/database.h"

namespace holdwise {

/// Gives a database without one its id (a UUID, in the table holdwise_identity), by which what is kept beside the
/// database knows whose it is. One that cannot be written now gets it at another start. No transaction is open. The
/// thread of `database`.
void GiveIdentity(DatabaseStatements& database);

}  // namespace holdwise
