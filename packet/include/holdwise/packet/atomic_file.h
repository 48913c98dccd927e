// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <functional>

/// Files that are written or renamed in one step, and what makes them last. Thread-safe for different names.
namespace holdwise {

enum class Durability {
  Replaceable,  ///< atomic, but not forced to the disk: for files that can be made again
  Lasting,      ///< atomic and flushed, file and folder: for what exists only here
};

/// Writes a whole file through a temporary name in the same folder and a rename; mode 0600 unless the file is
/// replaceable data. A failure leaves an earlier file untouched and throws Error(Io), as does a pipe or a device in the
/// file's place.
void WriteFileAtomically(const QString& path, const QByteArray& bytes, Durability durability);

/// Renames a file within its folder in one step, replacing what stands under the new name; Lasting: flushed to the
/// folder before this returns. A failure is Error(Io); unless it is the flush that fails, both names are as they were.
void RenameFileAtomically(const QString& from, const QString& to, Durability durability);

/// Gives a file a further name in its folder, under which it stays as it is when another file takes the first name; a
/// copy where the file system has no such names. Not flushed to the folder. What stands under the name, and a failure:
/// Error(Io).
void AddFileName(const QString& path, const QString& name);

/// For the dated name of a file that is set aside: "yyyyMMdd-HHmmss", with "_2", "_3"... when that is taken already.
[[nodiscard]] QString FreeTimeText(const QDateTime& now, const std::function<bool(const QString& text)>& isTaken);

/// Forces the names of a folder to the disk: what was made, renamed or removed in it lasts. A file system that has no
/// such flush is no failure; a folder that is missing or not readable, and a flush that fails, are Error(Io).
void FlushFolder(const QString& folder);

}  // namespace holdwise
