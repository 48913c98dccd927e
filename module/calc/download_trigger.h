// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

namespace holdwise {

/// Prepares the database for a new calculation and, when portfolios are unfinished, shows the calculation dialog until
/// it is done; with none unfinished the preparation is rolled back. A failure, also one inside the dialog, is one line
/// in the debug log and the routine returns normally; only a session that cannot be opened throws. Blocks its caller
/// while the dialog is open; called again meanwhile, it does nothing. User-interface thread.
/// Portfolios that stayed incomplete when they were tried on the host's current date, because a file (also one of the
/// reference files) was missing or damaged, do not bring the dialog up by themselves again, unless what was there could
/// not be stored, for want of space or because of a lock; one that was finished and is marked unfinished since does.
/// One that the user closes before the end is said to the host's user and in the log.
/// @return false when there is something to calculate but not now, because the database's own line of statements is in
/// a transaction of somebody else's (who waits for an answer, perhaps), or may be, because a dialog is open that the
/// calculation's would cover: to be called again
bool DownData();

/// Why the last calculation could not begin or end, for the user to read (the reference file that is missing or
/// damaged, the dialog that was closed); empty when it could. User-interface thread.
[[nodiscard]] QString CalculationProblem();

/// As if nothing had been tried: for a host that loads the module anew. User-interface thread.
void ForgetCalculations();

/// They do from now on, once: data may have come back. User-interface thread.
void RetryIncomplete();

}  // namespace holdwise
