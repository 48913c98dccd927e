// SPDX-License-Identifier: MIT
#pragma once
#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

#include "holdwise/sdk/database.h"
#include "holdwise/sdk/datacenter.h"

namespace holdwise {

/// Told about changes of the database. Either may be empty; neither may throw.
struct ChangeListener {
  /// Before the user-interface thread's line of statements stores something. On that thread.
  std::function<void()> beforeChange;
  /// After something may have been stored, by that line or by a session. Any thread.
  std::function<void(bool isSession)> changed;
};

/// The local database for those who are made before it is open: the plug-ins are loaded and the data centre is filled
/// while the engine is still opening its file. Until then every statement is Error(Refused); what is advised meanwhile
/// is handed on with opening. Open and Advise: user-interface thread; the rest as UserDataServices, for other threads
/// from Open on.
class DatabaseSide final : public UserDataServices, public TLocatDBOper {
 public:
  /// Waits for the database that is being opened, not null; throws what opening it threw. Called once an Open.
  using Opener = std::function<std::unique_ptr<UserDataServices>()>;

  /// Called with what the engine said when a statement has met a damaged file, on the thread of the statement, before
  /// the error reaches its caller.
  using DamageListener = std::function<void(const QString& text)>;
  explicit DatabaseSide(Opener opener, DamageListener onDamage = {});

  /// Waits for the database; throws what opening it threw. Returns why advice was refused, one text for each that was:
  /// the database is open all the same. May be called again after a failure and after Close.
  [[nodiscard]] QStringList Open();
  /// Detaches; nobody uses the database.
  void Close() { userData_.reset(); }

  [[nodiscard]] ResultSet Query(const QString& sql) override;
  [[nodiscard]] std::int64_t Count(const QString& sql) override;
  [[nodiscard]] Value Scalar(const QString& sql) override;
  int Execute(const QString& sql) override;
  void StartTransaction() override;
  void Commit() override;
  void RollBack() override;
  [[nodiscard]] bool InTransaction() const override { return userData_ != nullptr && userData_->InTransaction(); }
  [[nodiscard]] std::unique_ptr<UserDataSession> OpenSession() override;
  void Advise(const std::vector<StatementAdvice>& advice) override;
  /// After Open, while no other thread has a session; empty ones end it.
  void SetChangeListener(ChangeListener listener) { listener_ = std::move(listener); }
  void DoQuery(const QString& sql, ResultSet& resultSet) override { resultSet = Query(sql); }

 private:
  [[nodiscard]] UserDataServices& Opened();

  Opener opener_;
  DamageListener onDamage_;
  std::unique_ptr<UserDataServices> userData_;
  ChangeListener listener_;
  std::vector<std::vector<StatementAdvice>> advice_;  ///< for each opening
};

}  // namespace holdwise
