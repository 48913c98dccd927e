// SPDX-License-Identifier: MIT
#pragma once
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "backup/backup_writer.h"
#include "holdwise/packet/thread_annotations.h"
#include "holdwise/sdk/database.h"

namespace holdwise::backup {

/// Who has changed the database.
enum class ChangedBy {
  User,         ///< the user-interface thread's line of statements
  Calculation,  ///< a session
};

/// Keeps the generations up to date, on a thread of its own with a session of its own: some seconds after a change, at
/// the end, and when the process ends by exit() while it is there. Nothing is written when what a person has entered is
/// as in the newest generation. Functions: user-interface thread, except where said.
class BackupService {
 public:
  struct Times {
    std::chrono::milliseconds untilWritten{10'000};  ///< after the first change since the last writing
    std::chrono::milliseconds untilTriedAgain{60'000};
    std::chrono::milliseconds betweenCaptures{1'000};
  };
  /// Called on the service's thread after each attempt to write.
  using OnState = std::function<void(const BackupState& state)>;
  /// The database is open; it, clock and log must outlive the service. Without any generation one is written as after
  /// a change.
  BackupService(UserDataServices& database, const BackupFolder& folder, ClockService& clock, DebugServers& log,
                OnState onState = {})
      : BackupService(database, folder, clock, log, Times{}, std::move(onState)) {}
  BackupService(UserDataServices& database, const BackupFolder& folder, ClockService& clock, DebugServers& log,
                const Times& times, OnState onState = {});
  /// Writes what is not written yet, and waits for it.
  ~BackupService();
  BackupService(const BackupService&) = delete;
  BackupService& operator=(const BackupService&) = delete;

  /// Before a commit of the user's: what was committed at least a second ago and not written yet is read now, so that a
  /// deletion that follows an entry at once does not keep the entry from its generation. Never throws.
  void BeforeChange();
  /// After a commit that may have changed something. Any thread.
  void Changed(ChangedBy by);
  /// Writes what is not written yet; returns when that was tried, or after `longest`: then false. Any thread but the
  /// service's.
  bool WriteNow(std::chrono::milliseconds longest = std::chrono::minutes(1));
  /// How the generations stand. Any thread.
  [[nodiscard]] BackupState State() const;

 private:
  using Clock = std::chrono::steady_clock;
  void Run();
  /// What one round is to write.
  struct Task {
    std::vector<PortfolioSet> sets;
    bool isRead = false;  ///< and what the database holds now
    unsigned serving = 0;
    bool isLast = false;
  };
  [[nodiscard]] bool IsDue() const HOLDWISE_REQUIRES(mutex_);
  [[nodiscard]] Task WaitForTask();
  /// True when everything was written.
  [[nodiscard]] bool Carry(Task& task);
  void Finish(const Task& task, bool isDone);
  void LookAtFolder();
  [[nodiscard]] PortfolioSet Read();

  UserDataServices& database_;
  const Times times_;
  const BackupFolder folder_;
  const OnState onState_;
  BackupWriter writer_;  ///< the thread's

  mutable Mutex mutex_;
  Signal wake_;
  Signal done_;
  BackupState state_ HOLDWISE_GUARDED_BY(mutex_);
  std::vector<PortfolioSet> captured_ HOLDWISE_GUARDED_BY(mutex_);
  /// None: nothing is waiting.
  std::optional<Clock::time_point> due_ HOLDWISE_GUARDED_BY(mutex_);
  /// When the user's first change since the last reading was.
  std::optional<Clock::time_point> byUser_ HOLDWISE_GUARDED_BY(mutex_);
  unsigned asked_ HOLDWISE_GUARDED_BY(mutex_) = 0;  ///< numbers of WriteNow
  unsigned served_ HOLDWISE_GUARDED_BY(mutex_) = 0;
  bool isEnding_ HOLDWISE_GUARDED_BY(mutex_) = false;

  std::thread thread_;  ///< last: everything above is there while it runs
};

}  // namespace holdwise::backup
