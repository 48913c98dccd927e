// SPDX-License-Identifier: MIT
#pragma once
#include "process/hand_over.h"
#include "transfer/import.h"

namespace holdwise {

/// The outcome of an import as text for the user, every bad line named, with exit code 0 or 1.
[[nodiscard]] HandOverAnswer AnswerOf(const QString& file, const ImportResult& result);

}  // namespace holdwise
