// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

#include "holdwise/packet/error.h"

/// What is known of an embedded database file before the engine touches it.
namespace holdwise::firebird {

/// Empty when the file looks like a database whose pages are all there and each in its place, otherwise what is wrong
/// (Chinese). Reads the heads of 4,096 pages at most, spread evenly. Throws Error(Io) when the file cannot be read.
[[nodiscard]] QString HeaderProblem(const QString& file);

/// The file whose presence says that the database was not closed.
[[nodiscard]] QString MarkerOf(const QString& file);

/// Error(Busy) that tells the user what to do about a file that another program has open.
[[nodiscard]] Error HeldByAnother(const QString& file);

/// Error(Corrupt) that says why, and what to do about it.
[[nodiscard]] Error Damaged(const QString& file, const QString& reason);

/// Lets a process of its own read the whole database and the engine check it. Returns true when all is well;
/// Error(Corrupt) when not or when the engine crashed over it, Error(TimedOut) when the check was not completed (it was
/// killed or took longer than `longestMilliseconds`: that says nothing of the file), Error(Busy) when another program
/// holds the file. Without the helper program nothing is checked and false is returned.
bool CheckInHelper(const QString& file, const QString& lockFolder, int longestMilliseconds);

/// How long a check of the file may take on the slowest disk.
[[nodiscard]] int LongestCheckMilliseconds(const QString& file);

/// The file whose date says when CheckInHelper last read a whole database.
[[nodiscard]] QString CheckRecordOf(const QString& file);

/// Exit codes of the helper program.
enum HelperResult : int { kHelperGood = 0, kHelperDamaged = 1, kHelperBusy = 2, kHelperIo = 3, kHelperRefused = 4 };

}  // namespace holdwise::firebird
