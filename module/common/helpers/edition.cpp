// SPDX-License-Identifier: MIT
#include "common/helpers/edition.h"

namespace holdwise {
namespace {

QString FirstText(const ResultSet& table, const char* name) {
  const int column = table.FindColumn(name);
  return column < 0 || table.IsEmpty() ? QString() : table.TextAt(0, column);
}

}  // namespace

bool NamesOtherEdition(const ResultSet& table, const QString& edition) {
  const QString madeWith = FirstText(table, "edition");
  return !edition.isEmpty() && !madeWith.isEmpty() && madeWith != edition;
}

QString ProposalsOf(const ResultSet& table) {
  return FirstText(table, "proposals");
}

}  // namespace holdwise
