// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>

#include "holdwise/packet/result_set.h"

namespace holdwise {

/// One field as CSV: in quotes when it is empty, begins or ends with a blank, begins with a byte-order mark, or holds a
/// comma, a quote or a line end.
[[nodiscard]] QString CsvField(const QString& text);

/// A result set as CSV: heading row of "name:type" (type one of integer, real, text, datetime), null as an empty
/// unquoted field, an empty text as "", a datetime as "YYYY-MM-DD", "YYYY-MM-DD HH:MM:SS" or with ".mmm" behind.
/// FromCsv reads exactly that back; a bad heading or value is Error(Refused) with line and column, as is text without a
/// heading. ToCsv refuses a set without columns, a real that is not finite and a datetime outside the years 1 to 9999.
[[nodiscard]] QByteArray ResultSetToCsv(const ResultSet& resultSet);
[[nodiscard]] ResultSet ResultSetFromCsv(const QByteArray& utf8);

}  // namespace holdwise
