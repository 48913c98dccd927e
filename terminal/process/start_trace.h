// SPDX-License-Identifier: MIT
#pragma once

namespace holdwise {

/// Prints "HOLDWISE_FIRST_PAINT_MS" and the milliseconds since the process was started on standard error, for measuring
/// the start, when the environment has HOLDWISE_TRACE_START=1. Any thread.
void TraceFirstPaint();

}  // namespace holdwise
