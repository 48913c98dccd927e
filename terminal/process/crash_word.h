// SPDX-License-Identifier: MIT
#pragma once

namespace holdwise {

/// From now on a fault that ends the process (the database's engine may meet one in a damaged file) says on standard
/// error what to do next; then the process ends by the fault's signal as before. Handlers of others, a sanitizer's say,
/// stay. In main.
void InstallCrashWord();

}  // namespace holdwise
