// SPDX-License-Identifier: MIT
#include "parts/process_parts.h"

#include <QDir>
#include <utility>

#include "parts/terminal_application.h"
#include "process/settings_file.h"

namespace holdwise {
namespace {

TerminalApplication& Application() {
  return *static_cast<TerminalApplication*>(QCoreApplication::instance());
}

QString MadeLogFolder(const QString& workFolder) {
  QString folder = workFolder + QStringLiteral("/log");
  QDir().mkpath(folder);
  return folder;
}

}  // namespace

QString RememberedDataFolder(const QString& workFolder) {
  return RememberedDataFolder(QSettings(SettingsFileOf(workFolder), QSettings::IniFormat));
}

QDateTime SystemClock::Now() const {
  return QDateTime::currentDateTime();
}

ProcessParts::ProcessParts(Options options)
    : options_(std::move(options)),
      log_(MadeLogFolder(options_.workFolder) + QStringLiteral("/terminal.log"), clock_),
      settingsProblem_(SetAsideIfDamaged(SettingsFileOf(options_.workFolder))),
      settings_(SettingsFileOf(options_.workFolder), QSettings::IniFormat) {
  Application().SetLog(&log_);
  const QString remembered = RememberedDataFolder(settings_);
  const bool isRestored = options_.command.dataFolder.isEmpty() && !options_.IsBatch() && !remembered.isEmpty();
  if (isRestored) options_.dataFolder = remembered;
  if (!settingsProblem_.isEmpty()) log_.WriteLog(settingsProblem_);
}

void ProcessParts::UseDataFolder(const QString& folder) {
  options_.dataFolder = folder;
  // A start that is repeated has it too.
  if (!options_.command.dataFolder.isEmpty()) options_.command.dataFolder = folder;
  RememberDataFolder(settings_, folder);
}

bool ProcessParts::IsDataChosen() const {
  return !options_.command.dataFolder.isEmpty() || !RememberedDataFolder(settings_).isEmpty();
}

ProcessParts::~ProcessParts() {
  Application().SetLog(nullptr);
}

}  // namespace holdwise
