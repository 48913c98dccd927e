// SPDX-License-Identifier: MIT
#pragma once
#include "holdwise/sdk/database.h"
#include "holdwise/sdk/datacenter.h"

namespace holdwise {

/// The data centre's way to a database that is open from the start, which must outlive it.
class LocalDatabaseReader final : public TLocatDBOper {
 public:
  explicit LocalDatabaseReader(DatabaseStatements& database) : database_(database) {}
  void DoQuery(const QString& sql, ResultSet& resultSet) override { resultSet = database_.Query(sql); }

 private:
  DatabaseStatements& database_;
};

}  // namespace holdwise
