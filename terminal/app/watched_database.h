// SPDX-License-Identifier: MIT
#pragma once
#include <functional>
#include <memory>

#include "holdwise/sdk/database.h"

namespace holdwise {

/// A database, and its sessions, that tell of a damaged file which a statement has met.
class WatchedDatabase final : public UserDataServices {
 public:
  /// Called with what the engine said, on the thread of the statement, before the error reaches its caller.
  using DamageListener = std::function<void(const QString& text)>;
  /// Both not empty.
  WatchedDatabase(std::unique_ptr<UserDataServices> inner, DamageListener onDamage);

  [[nodiscard]] ResultSet Query(const QString& sql) override;
  [[nodiscard]] std::int64_t Count(const QString& sql) override;
  [[nodiscard]] Value Scalar(const QString& sql) override;
  int Execute(const QString& sql) override;
  void StartTransaction() override;
  void Commit() override;
  void RollBack() override;
  [[nodiscard]] bool InTransaction() const override { return inner_->InTransaction(); }
  [[nodiscard]] std::unique_ptr<UserDataSession> OpenSession() override;
  void Advise(const std::vector<StatementAdvice>& advice) override { inner_->Advise(advice); }

 private:
  std::unique_ptr<UserDataServices> inner_;
  DamageListener onDamage_;
};

}  // namespace holdwise
