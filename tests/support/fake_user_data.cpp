// SPDX-License-Identifier: MIT
#include "fake_user_data.h"

#include <algorithm>

#include "holdwise/packet/number_text.h"

namespace holdwise {

/// A session keeps its own transaction state and shares answers and log.
class FakeSession final : public UserDataSession {
 public:
  explicit FakeSession(FakeUserData& owner) : owner_(owner) {}
  ~FakeSession() override {
    if (inTransaction_) owner_.Record(QStringLiteral("session rollback"));
  }
  ResultSet Query(const QString& sql) override { return owner_.ForSession().Query(sql); }
  std::int64_t Count(const QString& sql) override { return owner_.ForSession().Count(sql); }
  Value Scalar(const QString& sql) override { return owner_.ForSession().Scalar(sql); }
  int Execute(const QString& sql) override { return owner_.Execute(sql); }
  void StartTransaction() override { Change(true, "session start"); }
  void Commit() override { Change(false, "session commit"); }
  void RollBack() override { Change(false, "session rollback"); }
  bool InTransaction() const override { return inTransaction_; }

 private:
  void Change(bool open, const char* text) {
    if (inTransaction_ == open) throw Error(ErrorCategory::Refused, "transaction state");
    inTransaction_ = open;
    owner_.Record(QString::fromLatin1(text));
  }

  FakeUserData& owner_;
  bool inTransaction_ = false;
};

FakeUserData& FakeUserData::ForSession() {
  const std::lock_guard guard(lock_);
  ++sessionReads_;
  return *this;
}

int FakeUserData::SessionReads() const {
  const std::lock_guard guard(lock_);
  return sessionReads_;
}

void FakeUserData::SetResult(const QString& sql, ResultSet result) {
  const std::lock_guard guard(lock_);
  results_[sql] = std::move(result);
}

void FakeUserData::SetNumber(const QString& sql, std::int64_t number) {
  SetResult(sql, TableOf({{"VALUE", ColumnType::Integer}}, {{QString::number(number)}}));
}

void FakeUserData::FailNext(const QString& beginning, const Error& error) {
  const std::lock_guard guard(lock_);
  failures_.emplace_back(beginning, error);
}

std::vector<QString> FakeUserData::Log() const {
  const std::lock_guard guard(lock_);
  return log_;
}

void FakeUserData::ClearLog() {
  const std::lock_guard guard(lock_);
  log_.clear();
}

void FakeUserData::Record(const QString& text) {
  const std::lock_guard guard(lock_);
  log_.push_back(text);
}

void FakeUserData::Enter(const QString& sql) {
  Record(sql);
  const std::lock_guard guard(lock_);
  const auto failure =
      std::find_if(failures_.begin(), failures_.end(), [&](const auto& entry) { return sql.startsWith(entry.first); });
  if (failure == failures_.end()) return;
  const Error error = failure->second;
  failures_.erase(failure);
  throw error;
}

ResultSet FakeUserData::Query(const QString& sql) {
  Enter(sql);
  const std::lock_guard guard(lock_);
  const auto found = results_.find(sql);
  if (found == results_.end()) throw Error(ErrorCategory::Database, "no answer set for: " + sql.toStdString());
  return found->second;
}

Value FakeUserData::Scalar(const QString& sql) {
  const ResultSet rows = Query(sql);
  return rows.IsEmpty() ? Value() : rows.ValueAt(0, 0);
}

std::int64_t FakeUserData::Count(const QString& sql) {
  const ResultSet rows = Query(sql);
  return rows.IsEmpty() || rows.IsNull(0, 0) ? -1 : rows.IntegerAt(0, 0);
}

int FakeUserData::Execute(const QString& sql) {
  Enter(sql);
  return 1;
}

void FakeUserData::StartTransaction() {
  Enter(QStringLiteral("start"));
  if (inTransaction_) throw Error(ErrorCategory::Refused, "a transaction is open");
  inTransaction_ = true;
}

void FakeUserData::Commit() {
  if (!inTransaction_) throw Error(ErrorCategory::Refused, "no transaction is open");
  inTransaction_ = false;
  Enter(QStringLiteral("commit"));
}

void FakeUserData::RollBack() {
  if (!inTransaction_) throw Error(ErrorCategory::Refused, "no transaction is open");
  inTransaction_ = false;
  Enter(QStringLiteral("rollback"));
}

bool FakeUserData::InTransaction() const {
  return inTransaction_;
}

std::unique_ptr<UserDataSession> FakeUserData::OpenSession() {
  return std::make_unique<FakeSession>(*this);
}

ResultSet TableOf(const std::vector<ColumnSpec>& columns, const std::vector<std::vector<QString>>& rows) {
  ResultSet table;
  for (const ColumnSpec& column : columns) table.AddColumn(column.name, column.type);
  for (const std::vector<QString>& cells : rows) {
    const int row = table.AppendRow();
    for (int column = 0; column < table.ColumnCount(); ++column) {
      const QString& cell = cells.at(static_cast<std::size_t>(column));
      if (cell.isEmpty()) continue;
      switch (table.TypeOf(column)) {
        case ColumnType::Integer:
          table.SetInteger(row, column, ParseInteger(cell).value());
          break;
        case ColumnType::Real:
          table.SetReal(row, column, ParseReal(cell).value());
          break;
        case ColumnType::Text:
          table.SetText(row, column, cell);
          break;
        case ColumnType::DateTime:
          table.SetDateTime(row, column, ParseInteger(cell).value());
          break;
      }
    }
  }
  return table;
}

}  // namespace holdwise
