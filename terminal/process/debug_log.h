// SPDX-License-Identifier: MIT
#pragma once
#include <QFile>
#include <QStringList>
#include <functional>

#include "holdwise/packet/thread_annotations.h"
#include "holdwise/sdk/services.h"

namespace holdwise {

/// The debug log: a file in the work folder and the last lines in memory for the log page. A file that would grow above
/// 1 MiB makes room for a new one; three old ones are kept. An entry is one line: line ends become " | ", characters
/// that are not seen as ControlsShown has them; of more than 65,536 characters the first ones and their number. A line
/// that cannot be written there goes to standard error as well as to memory.
class DebugLog : public DebugServers {
 public:
  static constexpr int kLinesInMemory = 2000;
  static constexpr qint64 kFileBytes = 1 << 20;
  static constexpr int kOldFiles = 3;
  static constexpr qsizetype kLongestEntry = 1 << 16;

  /// @param path log file; its folder exists
  DebugLog(const QString& path, ClockService& clock);

  /// Any thread.
  void WriteLog(const QString& text) override;
  void TellFailure(const QString& text) override;
  void TellOutcome(const QString& text) override;
  void TellOngoing(const QString& text) override;

  /// The lines in memory with their time, oldest first. Any thread.
  [[nodiscard]] QStringList Lines() const;
  /// Called after each line, on the thread that wrote it; must not write to the log. Empty: nobody. Any thread; when it
  /// returns, the earlier listener is not called any more.
  void SetListener(std::function<void()> listener);
  /// The same for what TellFailure is called with.
  void SetFailureListener(std::function<void(const QString&)> listener);
  /// The same for TellOutcome.
  void SetOutcomeListener(std::function<void(const QString&)> listener);
  /// The same for TellOngoing.
  void SetOngoingListener(std::function<void(const QString&)> listener);

 private:
  void MakeRoom() HOLDWISE_REQUIRES(mutex_);

  ClockService& clock_;
  mutable Mutex mutex_;
  QFile file_ HOLDWISE_GUARDED_BY(mutex_);
  QStringList lines_ HOLDWISE_GUARDED_BY(mutex_);
  Mutex listenerMutex_;  ///< apart, so that a listener may read the lines
  std::function<void()> listener_ HOLDWISE_GUARDED_BY(listenerMutex_);
  std::function<void(const QString&)> failureListener_ HOLDWISE_GUARDED_BY(listenerMutex_);
  std::function<void(const QString&)> outcomeListener_ HOLDWISE_GUARDED_BY(listenerMutex_);
  std::function<void(const QString&)> ongoingListener_ HOLDWISE_GUARDED_BY(listenerMutex_);
};

}  // namespace holdwise
