// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <map>

namespace holdwise {

/// Closes of an index (points) by date (YYYYMMDD), as the statistics of a data folder have them: the days of their
/// window, never empty. `indexNumber` is 1, 399001 or 399300. Reads the file anew each time. Throws an Error whose text
/// names the file: NotFound, Io, Corrupt (damaged, wrong columns), Refused (no daily row of the index, a close not
/// above zero, a date that is no weekday or not above the one before, another edition than the folder's market.dat).
/// Any thread.
[[nodiscard]] std::map<int, double> ReadIndexCloses(const QString& dataFolder, int indexNumber);

}  // namespace holdwise
