// SPDX-License-Identifier: MIT
#pragma once
#include <QStringList>
#include <QTemporaryDir>
#include <memory>

#include "database/firebird_user_data.h"

namespace holdwise::test {

/// A real embedded database with the whole schema in a folder of its own; gone with the object. The first one of a
/// process makes the file, further ones copy it (some ms).
class TempDatabase {
 public:
  /// With `opened` false the file is there but nothing is attached.
  explicit TempDatabase(bool opened = true);
  ~TempDatabase();
  TempDatabase(const TempDatabase&) = delete;
  TempDatabase& operator=(const TempDatabase&) = delete;

  [[nodiscard]] FirebirdUserData& Service() { return *service_; }
  /// Path of the database file.
  [[nodiscard]] QString File() const { return folder_.filePath(QStringLiteral("holdwise.fdb")); }
  [[nodiscard]] QString Folder() const { return folder_.path(); }
  /// Detaches, and opens the same file again.
  void Close() { service_.reset(); }
  FirebirdUserData& Open();
  /// A query as lines, one a row: its cells as texts, `separator` between them and `null` for what has no value.
  [[nodiscard]] QStringList Lines(const QString& query, QChar separator = u' ', const QString& null = {});

  /// The folder of the engine's lock files, one a process.
  [[nodiscard]] static QString LockFolder();

 private:
  QTemporaryDir folder_;
  std::unique_ptr<FirebirdUserData> service_;
};

}  // namespace holdwise::test
