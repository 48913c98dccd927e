#pragma once

namespace holdwise {

/// Marks the shared objects as out of date: close prices and deviations are read again when a view next asks, portfolio
/// values and the stress test at once. What a failing query throws reaches the caller. User-interface thread.
void ReCalc();

}  // namespace holdwise
