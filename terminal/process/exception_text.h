// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

namespace holdwise {

/// What the exception that is being handled says of itself; a plug-in may throw anything. Only inside a handler.
[[nodiscard]] QString TextOfCurrentException();

}  // namespace holdwise
