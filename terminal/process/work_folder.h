// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

namespace holdwise {

/// Makes the work folder (0700) or closes an existing one of this user to others. Error(Io) when it cannot be made, is
/// not a folder, belongs to somebody else or is not writable.
void PrepareWorkFolder(const QString& folder);

/// The right to be the one terminal on a work folder. The system gives it back when the process ends, however it ends.
class WorkFolderLock {
 public:
  /// Nothing is held before Acquire.
  explicit WorkFolderLock(const QString& folder);
  ~WorkFolderLock();
  WorkFolderLock(const WorkFolderLock&) = delete;
  WorkFolderLock& operator=(const WorkFolderLock&) = delete;

  /// False when another process holds it; never waits. Error(Io) when the lock file cannot be opened.
  [[nodiscard]] bool Acquire();

 private:
  QString path_;
  int descriptor_ = -1;
};

}  // namespace holdwise
