// SPDX-License-Identifier: MIT
#pragma once
#include <cstddef>

#include "process/hand_over.h"
#include "transfer/import.h"

namespace holdwise {

inline constexpr std::size_t kMostProblemsNamed = 100;

/// The outcome of an import as text for the user, the first 100 problems named, with exit code 0 or 1.
[[nodiscard]] HandOverAnswer AnswerOf(const QString& file, const ImportResult& result);

}  // namespace holdwise
