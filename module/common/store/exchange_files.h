// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

namespace holdwise {

/// Writes both portfolio tables of Database() to "TZZHDetail.dat" and "TZZHMerge.dat" in the work-data folder, as
/// packet files flushed to the disk. The two always belong together: whatever fails, or whenever the power goes, what
/// is found later is the earlier pair or the new one. A pair that has fewer rows than the earlier one, or rows that a
/// person cannot have entered where the earlier one had none, does not replace it for good: the earlier one gets the
/// names "TZZHDetail.dat.YYYYMMDD-HHMMSS.kept" and "TZZHMerge.dat.….kept" (the ten newest stay), which is written to
/// the debug log and, when the rows are doubtful, told to the user. Nothing is written when the pair belongs to another
/// database ("TZZHOwner.txt" beside it says to which), nor by an empty database when LoadZHFile could not read the pair
/// for a reason that may pass. Never throws; a failure is one line in the debug log. User-interface thread.
void SaveZHFile();

/// Reads the two files into a database without portfolios: the rows with their own ids, figures 0 and unfinished, the
/// generators moved past the ids. All of it or nothing. True only when the files were imported; false when the database
/// holds rows already, there are no files or they belong to another database, and, with one line in the debug log and
/// told to the user, when one of the two is missing or damaged, holds a value that cannot stand in a statement (no
/// plain number, a single quote in a name) or that no person can have entered (out of range, a holding of no
/// portfolio), or the database refuses a row. What could not be imported gets the names
/// "TZZHDetail.dat.YYYYMMDD-HHMMSS.bad" and "TZZHMerge.dat.….bad" (the ten newest stay), because the next SaveZHFile
/// writes a new pair; after a failure that may pass (files that cannot be opened, a full disk, a lock) they stay as
/// they are. Never throws. User-interface thread.
[[nodiscard]] bool LoadZHFile();

/// Why the last LoadZHFile did not read the files though the database's portfolios should be in them, and what became
/// of them, in words for the user; empty when there is nothing to say. User-interface thread.
[[nodiscard]] const QString& ExchangeProblem();

}  // namespace holdwise
