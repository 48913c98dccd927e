#pragma once
#include <QString>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "database/firebird_client.h"
#include "database/statement_cache.h"
#include "holdwise/packet/result_set.h"

namespace holdwise::firebird {

/// One attachment with its prepared statements, shared by the service and its sessions. Thread-safe: every call holds
/// the one lock for its whole run.
class Connection {
 public:
  /// `markerFile`, when not empty, is removed after a clean detach.
  Connection(Handle<Firebird::IAttachment> attachment, bool embedded, QString markerFile);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// `own` is the caller's open transaction, or null: then the statement is its own transaction.
  [[nodiscard]] ResultSet Query(Transaction* own, const QString& sql, int maxRows);
  void Execute(Transaction* own, const QString& sql);
  [[nodiscard]] std::unique_ptr<Transaction> Start();
  void Commit(std::unique_ptr<Transaction> transaction);
  void RollBack(std::unique_ptr<Transaction> transaction);

 private:
  /// A statement ready to run: from the cache, or made for this one run.
  struct Ready {
    PreparedStatement* statement = nullptr;
    std::unique_ptr<PreparedStatement> once;
  };
  [[nodiscard]] Ready Prepare(Transaction& transaction, std::string_view sql);
  [[nodiscard]] PreparedStatement* PrepareShape(Transaction& transaction, std::string_view sql);
  [[nodiscard]] Transaction& Reading();
  [[nodiscard]] Transaction::Mode ChangeMode() const;
  void ReadShape(const QString& sql);

  std::mutex mutex_;
  Status status_;
  Handle<Firebird::IAttachment> attachment_;
  const bool embedded_;
  const QString markerFile_;
  std::unique_ptr<Transaction> reading_;
  StatementCache cache_;
  std::string text_;
  StatementShape shape_;
};

}  // namespace holdwise::firebird
