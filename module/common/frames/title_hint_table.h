// SPDX-License-Identifier: MIT
#pragma once
#include "common/frames/title_hints.h"

/// The rows of the table, a function for each view.
namespace holdwise {

[[nodiscard]] ViewHints AllocationHints();
[[nodiscard]] ViewHints EditorHints();
[[nodiscard]] ViewHints PerformanceHints();
[[nodiscard]] ViewHints RiskHints();
[[nodiscard]] ViewHints StressHints();
[[nodiscard]] ViewHints EvaluationHints();
[[nodiscard]] ViewHints DecompositionHints();

}  // namespace holdwise
