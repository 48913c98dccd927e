// SPDX-License-Identifier: MIT
#pragma once
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include "database/firebird_user_data.h"

namespace holdwise::test {

/// A real Firebird server of this process's own: free port on 127.0.0.1, its own configuration and users.
class FirebirdServer {
 public:
  /// The server's program: HOLDWISE_FIREBIRD_SERVER, where `test` puts it, or the system's. Empty when there is none.
  [[nodiscard]] static QString Program();

  /// Runs when this returns. Throws std::runtime_error when it cannot be started.
  FirebirdServer();
  ~FirebirdServer();
  FirebirdServer(const FirebirdServer&) = delete;
  FirebirdServer& operator=(const FirebirdServer&) = delete;

  /// A database on this server, with the name and password of a user who may do everything.
  [[nodiscard]] DatabaseTarget Target(const QString& name) const;
  void Start();
  /// Without any farewell.
  void Kill();

 private:
  [[nodiscard]] QString Path(const QString& name) const { return folder_.filePath(name); }
  void WriteConfiguration() const;
  void MakeUser() const;

  QTemporaryDir folder_;
  quint16 port_ = 0;
  QProcess process_;
};

}  // namespace holdwise::test
