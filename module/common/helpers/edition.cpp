// SPDX-License-Identifier: MIT
#include "common/helpers/edition.h"

namespace holdwise {

bool NamesOtherEdition(const ResultSet& table, const QString& edition) {
  const int column = table.FindColumn("edition");
  if (column < 0 || table.IsEmpty() || edition.isEmpty()) return false;
  const QString madeWith = table.TextAt(0, column);
  return !madeWith.isEmpty() && madeWith != edition;
}

}  // namespace holdwise
