// SPDX-License-Identifier: MIT
#pragma once

namespace holdwise {

/// Puts the calling thread a little behind the others of the machine: on two cores a thread that reads files during the
/// start would otherwise keep the window system's server waiting, and with it the window. Threads started by this one
/// inherit it. Never fails; without the right to it nothing changes.
void StepBehindTheWindow();

}  // namespace holdwise
