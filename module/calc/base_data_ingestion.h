// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <functional>

#include "holdwise/sdk/database.h"

namespace holdwise::calc {

/// How a base-data file is treated. Its remote name decides.
struct BaseDataFamily {
  bool is250 = false;    ///< replaces all rows of its securities
  bool is20 = false;     ///< replaces the rows of 20 to 2 trading days back
  bool isIndex = false;  ///< holds the three indices; each row names its own
  bool isToday = false;  ///< adds to what is stored
};
/// By the parts of the name that tell a family, wherever they stand in it; a name without any of them is of none: it
/// replaces nothing. Pure.
[[nodiscard]] BaseDataFamily ClassifyBaseData(const QString& remoteName);

/// The trading date that many trading days back, YYYYMMDD.
using ForwardDate = std::function<int(int)>;

/// Writes the rows of one base-data file into the statistics, in one transaction: old rows removed as the family wants,
/// last-day marks cleared, the file's rows added, and each series (rows with the same code and, as text, the same
/// hqtype, standing together) trimmed to the file's start date. `code`: the file's security; the index file's rows name
/// their own.
/// Fields that are empty have the defaults 0 and 0.00. A field that is missing, that is no plain number, or that is
/// empty where it goes into a condition (hqtype; hqdate of a last day in the today family): an Error naming it. So are
/// rows of another security (index file: than the three), a type that is none of the three, a date that the calendar
/// does not have (0 is none where a window may have none), two rows of one code, type and date, a negative close, a day
/// on a Saturday or Sunday, and a series whose dates do not ascend or whose rows name different windows.
/// `edition`: that of the data the file is to belong to, kept with its security; empty = not known, what is kept stays.
/// A file that names another one: Error(Refused).
/// Whatever throws, the database is as it was before. No rows: removals and last-day marks happen all the same;
/// intended.
void IngestBaseData(DatabaseStatements& database, const ResultSet& rows, const BaseDataFamily& family,
                    const QString& code, const ForwardDate& forwardDate, const QString& edition = {});

}  // namespace holdwise::calc
