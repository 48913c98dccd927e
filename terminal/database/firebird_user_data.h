// SPDX-License-Identifier: MIT
#pragma once
#include <QDateTime>
#include <QString>
#include <memory>

#include "holdwise/packet/error.h"
#include "holdwise/sdk/database.h"

namespace holdwise {

/// Where the database is.
struct DatabaseTarget {
  /// A plain path opens the file with the embedded engine, in this process, without a server. "host:/path",
  /// "host/port:/path" and "inet://host/path" go to a Firebird server.
  QString text;
  /// For a server only; ignored by the embedded engine, where the file's mode is the protection.
  QString user;
  QString password;

  /// The target with user and password from the environment, HOLDWISE_DB_USER and HOLDWISE_DB_PASSWORD.
  [[nodiscard]] static DatabaseTarget FromText(const QString& text);
  [[nodiscard]] bool IsServer() const;
};

/// The local database service on Firebird. Statements that differ only in their literals are kept prepared and the
/// literals bound, after a check that the column can hold them as they stand. Literals inside expressions, function
/// calls, select lists and blocks are left to the engine.
/// Integers, dates and numbers stored with an unfitting literal are Error(Refused); a text that is longer than the
/// column it is compared with simply matches nothing. Any thread may call; calls run one after the other. Lock
/// conflicts are Error(Busy): at once with the embedded engine, whose transactions all belong to this object and could
/// not end while it waits, after 10 s with a server. A lost connection to a server is Error(Io) for what was under way
/// in it; the next read or start of a transaction makes it again.
class FirebirdUserData final : public UserDataServices {
 public:
  /// Opens the database; a missing embedded file is created (mode 0600), an older schema is brought up to date file by
  /// file, each in one transaction. `lockFolder` goes to PrepareFirebirdProcess.
  /// Error(Busy): another program holds the file. Error(Io): folder missing, file or folder cannot be written, server
  /// cannot be reached. Error(Corrupt): the file is damaged or no database. Error(Refused): the schema is newer than
  /// this program, or the server turns the user away. After one of these nothing has been changed.
  [[nodiscard]] static std::unique_ptr<FirebirdUserData> Open(const DatabaseTarget& target, const QString& lockFolder);
  /// Reads all of a database that is not open: a file in a process of its own. Error as from Open; NotFound when the
  /// file is not there.
  static void Check(const DatabaseTarget& target, const QString& lockFolder);
  /// A file's database as it is: not made, brought up to date, marked as open or checked. For looking at one that Check
  /// has found whole; a statement about what an older schema has not is an Error. Error(Busy): another program holds
  /// it.
  [[nodiscard]] static std::unique_ptr<FirebirdUserData> OpenAsItIs(const QString& file, const QString& lockFolder);
  /// The file whose date is that of the last such reading of a database file, also of Open's; may be missing.
  [[nodiscard]] static QString CheckRecordOf(const QString& file);
  /// Rolls back what is open and detaches. Sessions still alive keep the file attached until they end.
  ~FirebirdUserData() override;

  /// Had the program that had the file open before closed it? True for a new file and for a server.
  [[nodiscard]] bool WasClosed() const;

  [[nodiscard]] ResultSet Query(const QString& sql) override;
  [[nodiscard]] std::int64_t Count(const QString& sql) override;
  [[nodiscard]] Value Scalar(const QString& sql) override;
  int Execute(const QString& sql) override;
  void StartTransaction() override;
  void Commit() override;
  void RollBack() override;
  [[nodiscard]] bool InTransaction() const override;
  [[nodiscard]] std::unique_ptr<UserDataSession> OpenSession() override;
  /// Equal forms are prepared in place of what they are equal to; answers are kept with the embedded engine only, whose
  /// one writer is this object. Any thread.
  void Advise(const std::vector<StatementAdvice>& advice) override;

 private:
  class Implementation;
  explicit FirebirdUserData(std::unique_ptr<Implementation> implementation);
  std::unique_ptr<Implementation> implementation_;
};

/// Renames the file of a database that nobody has open to "<file>.YYYYMMDD-HHMMSS.damaged", never over another file,
/// and takes away its mark of not having been closed and the record of its last check. A file that is not there is no
/// failure. @return the new name Error(Io): nothing has changed.
QString SetDatabaseAside(const QString& file, const QDateTime& now);

}  // namespace holdwise
