// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "holdwise/sdk/database.h"

namespace holdwise {

/// A local database that only knows the answers it was given, by exact statement text. Any thread.
class FakeUserData final : public UserDataServices {
 public:
  /// Answer of Query, and by its first cell of Count and Scalar.
  void SetResult(const QString& sql, ResultSet result);
  /// A result of one row and one integer column.
  void SetNumber(const QString& sql, std::int64_t number);
  /// The next statement that begins so throws this error once.
  void FailNext(const QString& beginning, const Error& error);
  /// Everything asked or executed, in order; transactions as "start", "commit", "rollback", with "session " before them
  /// when they came through a session.
  [[nodiscard]] std::vector<QString> Log() const;
  void ClearLog();
  /// How many of the reads came through a session.
  [[nodiscard]] int SessionReads() const;

  /// A statement without an answer is Error(Database).
  [[nodiscard]] ResultSet Query(const QString& sql) override;
  [[nodiscard]] std::int64_t Count(const QString& sql) override;
  [[nodiscard]] Value Scalar(const QString& sql) override;
  /// Only recorded; always 1 unless told to fail.
  int Execute(const QString& sql) override;
  void StartTransaction() override;
  void Commit() override;
  void RollBack() override;
  [[nodiscard]] bool InTransaction() const override;
  [[nodiscard]] std::unique_ptr<UserDataSession> OpenSession() override;
  void Advise(const std::vector<StatementAdvice>& given) override { advice.push_back(given); }
  std::vector<std::vector<StatementAdvice>> advice;  ///< one entry a call

 private:
  friend class FakeSession;
  void Record(const QString& text);
  /// Itself, with the read of a session counted.
  [[nodiscard]] FakeUserData& ForSession();
  /// Records a statement and throws what was set for it.
  void Enter(const QString& sql);

  mutable std::mutex lock_;
  std::map<QString, ResultSet> results_;
  std::vector<std::pair<QString, Error>> failures_;
  std::vector<QString> log_;
  int sessionReads_ = 0;
  bool inTransaction_ = false;
};

/// Rows of text cells turned into a result set. Every column has one type; an empty cell is null.
struct ColumnSpec {
  std::string name;
  ColumnType type = ColumnType::Integer;
};
[[nodiscard]] ResultSet TableOf(const std::vector<ColumnSpec>& columns, const std::vector<std::vector<QString>>& rows);

}  // namespace holdwise
