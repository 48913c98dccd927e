// SPDX-License-Identifier: MIT
#include "database/database_identity.h"

#include <QUuid>

namespace holdwise {

void GiveIdentity(DatabaseStatements& database) {
  try {
    if (database.Count(QStringLiteral("select count(*) from holdwise_identity")) != 0) return;
    database.Execute(QStringLiteral("insert into holdwise_identity (ID) values ('%1')")
                         .arg(QUuid::createUuid().toString(QUuid::WithoutBraces)));
  } catch (const Error&) {  // without an id it is nobody's rival
  }
}

}  // namespace holdwise
