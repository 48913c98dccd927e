// SPDX-License-Identifier: MIT
#pragma once
#include <optional>

#include "backup/backup_folder.h"
#include "holdwise/sdk/services.h"

namespace holdwise::backup {

/// How the generations stand.
struct BackupState {
  std::optional<Generation> newest;
  /// Why the latest change is in no generation (Chinese); empty when it is, or will be in some seconds.
  QString problem;
  bool isLost = false;  ///< nor is it in a file beside the generations
};

/// Writes a set as a new generation when it differs from the newest one. One thread at a time.
class BackupWriter {
 public:
  BackupWriter(BackupFolder folder, ClockService& clock, DebugServers& log)
      : folder_(std::move(folder)), clock_(clock), log_(log) {}

  /// What has come of one set.
  enum class Outcome {
    Done,      ///< written, or alike the newest generation, or empty while there is none
    Doubtful,  ///< has problems (ProblemsOf), or may be damage: written beside the generations, for a person to look at
    Failed,    ///< not written; trying again may help
  };
  /// While the folder is unsettled, a set other than the newest generation's may be damage; one alike settles it. Never
  /// throws; what went wrong is in State().problem and the log.
  Outcome Write(const PortfolioSet& set);
  /// The set could not be read; never throws.
  void CouldNotRead(const QString& reason);

  [[nodiscard]] const BackupState& State() const { return state_; }

 private:
  /// Reads the folder's newest generation, once. Never throws.
  void Look();
  [[nodiscard]] QStringList DoubtsAbout(const PortfolioSet& set) const;
  Outcome WriteGeneration(const PortfolioSet& set);
  Outcome WriteDoubtful(const PortfolioSet& set, const QStringList& problems);
  void Report(const QString& problem, bool isLost);

  BackupFolder folder_;
  ClockService& clock_;
  DebugServers& log_;
  BackupState state_;
  bool hasLooked_ = false;
  std::optional<PortfolioSet> last_;  ///< of the newest generation that can be read
  bool isLastNewest_ = false;         ///< and there is none newer that cannot
  std::optional<PortfolioSet> lastDoubtful_;
  QString doubt_;  ///< what was said of that
};

}  // namespace holdwise::backup
