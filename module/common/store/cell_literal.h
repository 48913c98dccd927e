// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <string>

#include "holdwise/packet/result_set.h"

/// Cells of tables that came from files, as they may stand in a statement. A cell that cannot be what is asked for is
/// refused in one way: Error(Refused) with its row (from 1), column and value. Rows and columns count from 0. Pure
/// functions, any thread.
namespace holdwise::sql {

/// Refuses the cell. `why` follows the column's name in the message; by default that the value, or a missing one, is
/// not valid.
[[noreturn]] void RefuseCell(const ResultSet& table, int row, int column, const QString& why = {});

/// A number, UTF-8: the digits of a whole number, the shortest text of a real, a text that is a number as it stands.
/// Empty for null and for an empty text.
[[nodiscard]] std::string NumberIfAny(const ResultSet& table, int row, int column);
/// The same, but null and an empty text are refused.
[[nodiscard]] std::string NumberLiteral(const ResultSet& table, int row, int column);
/// A whole number of 64 bits, UTF-8; a text as it stands, a real that is whole in digits. Null is refused.
[[nodiscard]] std::string IntegerLiteral(const ResultSet& table, int row, int column);
/// A date and time between quotes; null, or a column of another type, is refused.
[[nodiscard]] QString DateTimeLiteral(const ResultSet& table, int row, int column);
/// The text of the cell, to be put between quotes by the statement itself: one that holds a quote or a zero byte, and
/// so would end it, is refused. Null is an empty text.
[[nodiscard]] QString QuotableText(const ResultSet& table, int row, int column);

}  // namespace holdwise::sql
