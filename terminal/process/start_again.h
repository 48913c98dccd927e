// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>

#include "process/command_line.h"

namespace holdwise {

/// Starts the program anew in this process's place; comes back only when that fails. What this start was asked to do
/// beside going to an address is done already.
void StartAgain(const Options& options);

/// Starts the program anew in this process's place, without a plug-in that has thrown while its library was loaded: the
/// process's loader stays locked then for all threads but the caller's, which may hold nothing that has to be written.
/// Before the event loop runs nothing has been done yet, and all that was asked for is asked for again.
/// @param file name in the folder of plug-ins
[[noreturn]] void StartAgainWithout(const QString& file, const Options& options);

/// Names of the plug-ins that such starts go without.
[[nodiscard]] QStringList PluginsLeftOut();

}  // namespace holdwise
