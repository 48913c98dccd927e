// SPDX-License-Identifier: MIT
#pragma once
#include <string>

namespace holdwise {

/// What an error number of the operating system means to the user, in Chinese where it is something to act on (no
/// space, no right, nothing there), else in the system's own words.
[[nodiscard]] std::string SystemReason(int errorNumber);

}  // namespace holdwise
