// SPDX-License-Identifier: MIT
#pragma once
#include <QSettings>

#include "holdwise/sdk/services.h"
#include "process/command_line.h"
#include "process/debug_log.h"

namespace holdwise {

/// The clock of the machine. Any thread.
class SystemClock : public ClockService {
 public:
  [[nodiscard]] QDateTime Now() const override;
};

/// The data folder that a start in this work folder opens when it names none: the one chosen in the window; empty when
/// none was. Changes nothing.
[[nodiscard]] QString RememberedDataFolder(const QString& workFolder);

/// What every other part of the terminal rests on: made first, destroyed last. User-interface thread, but for the log
/// and the clock, which serve any.
class ProcessParts {
 public:
  /// The work folder exists and is locked by this process; the application is a TerminalApplication. From now on the
  /// log takes what Qt remarks and what escapes from event handlers.
  explicit ProcessParts(Options options);
  ~ProcessParts();
  ProcessParts(const ProcessParts&) = delete;
  ProcessParts& operator=(const ProcessParts&) = delete;

  [[nodiscard]] const Options& Asked() const { return options_; }
  /// Another data folder than the one asked for, from now on and, unless a start names one, for the starts to come.
  void UseDataFolder(const QString& folder);
  /// Has anybody ever said which data folder to use?
  [[nodiscard]] bool IsDataChosen() const;
  [[nodiscard]] SystemClock& Clock() { return clock_; }
  [[nodiscard]] DebugLog& Log() { return log_; }
  /// The one settings file, in the work folder.
  [[nodiscard]] QSettings& Settings() { return settings_; }
  /// What became of a settings file that was damaged, for the user; empty when it was well.
  [[nodiscard]] const QString& SettingsProblem() const { return settingsProblem_; }

 private:
  Options options_;
  SystemClock clock_;
  DebugLog log_;
  QString settingsProblem_;
  QSettings settings_;
};

}  // namespace holdwise
