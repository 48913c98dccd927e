#pragma once
#include <functional>
#include <memory>

#include "holdwise/sdk/database.h"
#include "holdwise/sdk/datacenter.h"

namespace holdwise {

/// The local database, which is opened while everything that can do without it is being made; also the data centre's
/// way to it. User-interface thread.
class DatabaseSide final : public TLocatDBOper {
 public:
  /// Waits for the database that is being opened; throws what opening it threw. Called once.
  using Opener = std::function<std::unique_ptr<UserDataServices>()>;

  explicit DatabaseSide(Opener opener);

  /// Waits for the database; throws what opening it threw.
  void Open();
  /// The service; null before Open.
  [[nodiscard]] const std::unique_ptr<UserDataServices>& UserData() const { return userData_; }
  /// Error(Refused) before Open.
  void DoQuery(const QString& sql, ResultSet& resultSet) override;

 private:
  Opener opener_;
  std::unique_ptr<UserDataServices> userData_;
};

}  // namespace holdwise
