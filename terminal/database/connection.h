// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "database/engine/firebird_client.h"
#include "database/engine/kept_answers.h"
#include "database/engine/statement_cache.h"
#include "database/statements/statement_advice.h"
#include "disk_space.h"
#include "holdwise/packet/result_set.h"
#include "holdwise/packet/thread_annotations.h"

namespace holdwise::firebird {

/// One attachment with its prepared statements, shared by the service and its sessions. Thread-safe: every call holds
/// the one lock for its whole run. A lost connection to a server is made again by the next read or start of a
/// transaction; transactions that were open are lost with it, and every further statement in them is an Error.
class Connection {
 public:
  /// Where the database stands: a folder and a marker for the embedded engine, a way to attach for a server.
  struct Place {
    QString folder = {};  ///< must have bytesToChange free before a change
    /// Removed after a clean detach, unless damage was met or another file stands in the place; empty: there is none.
    QString markerFile = {};
    std::int64_t bytesToChange = kBytesToChange;
    QString file = {};  ///< must be where it was when the connection was made before a change
    std::function<Handle<Firebird::IAttachment>()> attachAgain = {};  ///< when the connection is lost
    [[nodiscard]] bool IsEmbedded() const { return !folder.isEmpty(); }
  };
  Connection(Handle<Firebird::IAttachment> attachment, Place place);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  static constexpr int kAllRows = std::numeric_limits<int>::max();
  /// `own` is the caller's open transaction, or null: then the statement is its own transaction.
  [[nodiscard]] ResultSet Query(Transaction* own, const QString& sql, int maxRows) HOLDWISE_EXCLUDES(mutex_);
  void Execute(Transaction* own, const QString& sql) HOLDWISE_EXCLUDES(mutex_);
  [[nodiscard]] std::unique_ptr<Transaction> Start() HOLDWISE_EXCLUDES(mutex_);
  void Commit(std::unique_ptr<Transaction> transaction) HOLDWISE_EXCLUDES(mutex_);
  void RollBack(std::unique_ptr<Transaction> transaction) HOLDWISE_EXCLUDES(mutex_);
  /// See AdvisedStatements::Take.
  void Advise(const std::vector<StatementAdvice>& advice) HOLDWISE_EXCLUDES(mutex_);

 private:
  /// A statement ready to run: from the cache, or made for this one run.
  struct Ready {
    PreparedStatement* statement = nullptr;
    std::unique_ptr<PreparedStatement> once;
  };
  [[nodiscard]] Ready Prepare(Transaction& transaction, std::string_view sql) HOLDWISE_REQUIRES(mutex_);
  /// Prepares the text for statements of the shape at hand.
  PreparedStatement& PrepareForm(Transaction& transaction, std::string_view form) HOLDWISE_REQUIRES(mutex_);
  [[nodiscard]] PreparedStatement* PrepareShape(Transaction& transaction, std::string_view sql)
      HOLDWISE_REQUIRES(mutex_);
  /// Of Query.
  [[nodiscard]] ResultSet Read(Transaction* own, const QString& sql, int maxRows) HOLDWISE_REQUIRES(mutex_);
  [[nodiscard]] Transaction& Reading() HOLDWISE_REQUIRES(mutex_);
  template <typename Action>
  auto OnLiveConnection(Action action) HOLDWISE_REQUIRES(mutex_);
  [[nodiscard]] std::unique_ptr<Transaction> StartChange() HOLDWISE_REQUIRES(mutex_);
  [[nodiscard]] bool IsFileThere() const;
  /// Runs it under the lock; damage that it meets is kept in mind.
  template <typename Action>
  auto Noted(Action action) HOLDWISE_EXCLUDES(mutex_);
  void RequireFile() const;
  void ReadShape(const QString& sql) HOLDWISE_REQUIRES(mutex_);

  const Place place_;
  const std::pair<std::uint64_t, std::uint64_t> fileNumber_;  ///< device and number of the file; 0 and 0: none
  Mutex mutex_;
  bool isDamaged_ HOLDWISE_GUARDED_BY(mutex_) = false;
  Status status_ HOLDWISE_GUARDED_BY(mutex_);
  Handle<Firebird::IAttachment> attachment_ HOLDWISE_GUARDED_BY(mutex_);
  std::unique_ptr<Transaction> reading_ HOLDWISE_GUARDED_BY(mutex_);
  StatementCache cache_ HOLDWISE_GUARDED_BY(mutex_);
  AdvisedStatements advised_ HOLDWISE_GUARDED_BY(mutex_);
  KeptAnswers kept_ HOLDWISE_GUARDED_BY(mutex_);
  std::string text_ HOLDWISE_GUARDED_BY(mutex_);
  StatementShape shape_ HOLDWISE_GUARDED_BY(mutex_);
};

}  // namespace holdwise::firebird
