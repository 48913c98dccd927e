// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

namespace holdwise {

/// Settles what the engine takes from the process: its lock files go to `privateFolder` (made with mode 0700; the
/// engine's own folder belongs to whichever user started it first and shuts the others out), ISC_USER and ISC_PASSWORD
/// are removed from the environment, LC_CTYPE becomes a UTF-8 one (in the environment too) unless it is one already,
/// and the engine is told not to shut down on SIGINT or SIGTERM. Call it in main before other threads use the locale or
/// the environment and before the first FirebirdUserData::Open; the first call of a process counts, later ones do
/// nothing. Throws Error(Io) when the folder cannot be made or written. Signals: attaching installs handlers of the
/// engine for SIGINT and SIGTERM. Open puts back whatever handlers the process had, so an application may install its
/// own before or after. Engine threads block all signals.
void PrepareFirebirdProcess(const QString& privateFolder);
/// Do the engine's lock files still have their folder? Without it neither a detachment nor the engine's end can be had:
/// the engine throws where nobody can catch. Any thread.
[[nodiscard]] bool IsFirebirdFolderThere();
/// Ends the engine's threads. Call once before leaving main, after the last FirebirdUserData and session are gone;
/// nothing can be opened afterwards. False when the folder of its lock files is gone: the engine is left as it is (what
/// was committed is on the disk), and the process must leave by _exit.
[[nodiscard]] bool ShutdownFirebird();

}  // namespace holdwise
