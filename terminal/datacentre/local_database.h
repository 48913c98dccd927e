#pragma once
#include "holdwise/sdk/database.h"
#include "holdwise/sdk/datacenter.h"

namespace holdwise {

/// The data centre's way to the local database: the same statements as the user-data service, which must outlive it.
class LocalDatabaseReader final : public TLocatDBOper {
 public:
  explicit LocalDatabaseReader(DatabaseStatements& database) : database_(database) {}
  void DoQuery(const QString& sql, ResultSet& resultSet) override { resultSet = database_.Query(sql); }

 private:
  DatabaseStatements& database_;
};

}  // namespace holdwise
