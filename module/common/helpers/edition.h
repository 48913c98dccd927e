// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

#include "holdwise/packet/result_set.h"

namespace holdwise {

/// Does the table of a downloaded file name, in the column "edition" of its first row, another edition of the data than
/// this one? A file need not name any, and an empty `edition` is not known: false. Pure.
[[nodiscard]] bool NamesOtherEdition(const ResultSet& table, const QString& edition);

/// The fingerprint of the proposals that the table is one file of, from the column "proposals" of its first row; empty
/// when it names none. Pure.
[[nodiscard]] QString ProposalsOf(const ResultSet& table);

}  // namespace holdwise
