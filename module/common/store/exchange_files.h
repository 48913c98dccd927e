// SPDX-License-Identifier: MIT
#pragma once

namespace holdwise {

/// Writes both portfolio tables of Database() to "TZZHDetail.dat" and "TZZHMerge.dat" in the work-data folder, as
/// packet files flushed to the disk. The two always belong together: whatever fails, or whenever the power goes, what
/// is found later is the earlier pair or the new one. Never throws; a failure is one line in the debug log.
/// User-interface thread.
void SaveZHFile();

/// Reads the two files into a database without portfolios: the rows with their own ids, figures 0 and unfinished, the
/// generators moved past the ids. All of it or nothing. True only when the files were imported; false when the database
/// holds rows already or there are no files, and, with one line in the debug log, when one of the two is missing or
/// damaged, holds a value that cannot stand in a statement (no plain number, a single quote in a name) or the database
/// refuses a row. What could not be imported gets the names "TZZHDetail.dat.bad" and "TZZHMerge.dat.bad", because the
/// next SaveZHFile writes a new pair. Never throws. User-interface thread.
[[nodiscard]] bool LoadZHFile();

}  // namespace holdwise
