#pragma once

namespace holdwise {

/// Marks the shared series as out of date: the close prices are read again when a view next asks, the portfolio values
/// at once. What a failing query throws reaches the caller. User-interface thread.
void ReCalc();

}  // namespace holdwise
