// SPDX-License-Identifier: MIT
#pragma once
#include <QElapsedTimer>
#include <QString>
#include <cstdint>
#include <functional>

namespace holdwise {

/// Makes the work folder (0700) or closes an existing one of this user to others. One that is open to others and holds
/// other things than a terminal's is closed only when `mayClose`, asked with the folder, agrees; else Error(Refused).
/// Error(Io) when it cannot be made, is not a folder, belongs to somebody else or is not writable, or when what stands
/// in the place of one of the terminal's files is a pipe, a device or anything else that is no file.
void PrepareWorkFolder(const QString& folder, const std::function<bool(const QString&)>& mayClose);

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
  /// The process that holds it, as it wrote down itself; 0 when that cannot be read. For another process than that one.
  [[nodiscard]] std::int64_t Holder() const;
  /// Does a process hold it? A start that comes at the same moment waits no longer than for a terminal that is ending.
  [[nodiscard]] static bool IsHeld(const QString& folder);

 private:
  QString path_;
  int descriptor_ = -1;
};

/// Patience with a process that has been stopped (by a person's Ctrl-Z or a debugger): five seconds. Any one thread.
class StoppedProcessWatch {
 public:
  /// Asked several times a second: has that process been stopped for so long? Never when it is not there.
  [[nodiscard]] bool IsOver(std::int64_t process);

 private:
  QElapsedTimer stopped_;
};

}  // namespace holdwise
