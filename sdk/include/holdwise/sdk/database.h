// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <cstdint>
#include <memory>
#include <vector>

#include "holdwise/packet/error.h"
#include "holdwise/packet/result_set.h"

namespace holdwise {

/// Statements against the local database. One statement a call, plain text with its literals in place.
/// Values are never coerced silently: a literal that its column cannot hold as it stands (no number, impossible date,
/// fraction into an integer column, text too long) is an Error(Refused) that names it.
/// A failing statement throws Error(Database) with the engine's message, Error(Busy) on a lock conflict, Error(Io) when
/// the file or the connection fails, Error(Refused) for a text that is not whole characters; it has changed nothing
/// then.
class DatabaseStatements {
 public:
  virtual ~DatabaseStatements() = default;
  /// All rows of a select. Column names as the engine gives them, upper case unless quoted. No row: an empty result
  /// with its columns.
  [[nodiscard]] virtual ResultSet Query(const QString& sql) = 0;
  /// First column of the first row, which must be whole numbers, as an integer; -1 when there is no row or it is null.
  [[nodiscard]] virtual std::int64_t Count(const QString& sql) = 0;
  /// First column of the first row; null when there is no row.
  [[nodiscard]] virtual Value Scalar(const QString& sql) = 0;
  /// Runs a statement; 1 on success (also for "SET GENERATOR"), also when no row was concerned.
  virtual int Execute(const QString& sql) = 0;

  /// Begins a transaction; without one each statement is its own. Error(Refused) when one is open.
  virtual void StartTransaction() = 0;
  /// Stores what the transaction did, lastingly. Throws when that fails: then nothing of it is stored and the
  /// transaction has ended. Error(Refused) when none is open.
  virtual void Commit() = 0;
  /// Undoes what the transaction did and ends it. Error(Refused) when none is open.
  virtual void RollBack() = 0;
  /// True between StartTransaction and Commit or RollBack of this line of statements.
  [[nodiscard]] virtual bool InTransaction() const = 0;
};

/// A second line of statements with its own transaction. Destruction rolls back what is open. One thread at a time,
/// which need not be the user-interface thread.
class UserDataSession : public DatabaseStatements {};

/// What the owner of a select knows about it and a host cannot know.
struct StatementAdvice {
  /// With literals in place. Meant are all statements that differ from it only in the values of literals.
  QString statement = {};
  /// Another select that costs the engine less and gives, for every value of the literals, the same columns and rows in
  /// the order asked for. Holds the same literals in the same order. Empty: there is none.
  QString equalForm = {};
  /// The answer depends on nothing but the stored rows (no clock, no generator, no procedure) and is asked for again
  /// and again: while nothing has been written, the rows read before may be given.
  bool mayBeKept = false;
};

/// The host's local database. Calls may come from any thread and run one after the other; transactions belong to the
/// user-interface thread.
class UserDataServices : public DatabaseStatements {
 public:
  /// A further line of statements, owned by the caller; never null. Ends before the host does.
  /// Throws Error(Refused) while the database is not open.
  [[nodiscard]] virtual std::unique_ptr<UserDataSession> OpenSession() = 0;
  /// What a plug-in knows about its statements, handed over once, in Initialize (the one call that is allowed before
  /// the database is open). A host may ignore it. Several plug-ins' advice adds up; the latest on a statement counts.
  /// Error(Refused), and nothing is taken, for what is no select and for an equal form with other literals; a host may
  /// say so only when it opens the database. User-interface thread.
  virtual void Advise(const std::vector<StatementAdvice>& /*advice*/) {}
};

/// Runs a statement that cannot be done without: Error(Database) that names it when the database answers that it did
/// not run it; throws what Execute throws.
inline void MustExecute(DatabaseStatements& database, const QString& statement) {
  if (database.Execute(statement) == 1) return;
  throw Error(ErrorCategory::Database, QStringLiteral("数据库没有执行语句：%1").arg(statement).toStdString());
}

/// A transaction that is rolled back at the end of its scope unless committed. The database must outlive it.
class TransactionScope {
 public:
  /// Throws what StartTransaction throws.
  explicit TransactionScope(DatabaseStatements& database) : database_(database) { database_.StartTransaction(); }
  ~TransactionScope() {
    if (!open_) return;
    try {
      database_.RollBack();
    } catch (...) {  // the engine has already given up the transaction
    }
  }
  TransactionScope(const TransactionScope&) = delete;
  TransactionScope& operator=(const TransactionScope&) = delete;
  /// Once. Throws what Commit of the database throws; the scope has ended its transaction either way.
  void Commit() {
    open_ = false;
    database_.Commit();
  }

 private:
  DatabaseStatements& database_;
  bool open_ = true;
};

}  // namespace holdwise
