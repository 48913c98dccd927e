// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

namespace holdwise {

/// Makes sure that the file can serve as settings: one that is damaged (not readable, or holds what no settings file
/// holds) is kept beside it under the name with ".damaged", in the place of an earlier one, and the terminal opens as
/// at the first time. @return what the user has to know; empty when the file is well or not there
[[nodiscard]] QString SetAsideIfDamaged(const QString& path);

}  // namespace holdwise
