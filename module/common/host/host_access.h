// SPDX-License-Identifier: MIT
#pragma once
#include "holdwise/sdk/host.h"

namespace holdwise {

/// The host handed over at load. Set once by Initialize before anything else of the module runs; cleared by Finalize.
/// Calling ModuleHost() without one is a programming error (asserts).
Host& ModuleHost();
void SetModuleHost(Host* host);

}  // namespace holdwise
