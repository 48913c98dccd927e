// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>
#include <map>

#include "holdwise/packet/result_set.h"

/// What tells the contents of files apart. Pure, any thread.
namespace holdwise {

/// Of a table: of the columns' names and types and of the values; null counts as 0 or an empty text.
[[nodiscard]] QByteArray DigestOf(const ResultSet& table);
/// Of several tables, by the names of their files: 64 letters and digits.
[[nodiscard]] QString FingerprintOf(const std::map<QString, QByteArray>& digests);

}  // namespace holdwise
