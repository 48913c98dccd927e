// SPDX-License-Identifier: MIT
#include "database_guard.h"

#include <QCoreApplication>
#include <QFile>
#include <utility>

#include "database/firebird_user_data.h"
#include "database_repair.h"
#include "process/print.h"

namespace holdwise {
namespace {

const QString kSetAside = QStringLiteral("移开数据库文件并恢复备份…");
const QString kQuestionText = QStringLiteral("是否移开现在的数据库文件（改名保留）并恢复备份?\n%1");

const health::Comparison kWrittenAnew{QStringLiteral("启动时两者不同，以数据库里的为准，已重新备份")};

QString TextOf(const std::exception& error) {
  return QString::fromUtf8(error.what());
}

bool IsDamage(const std::exception& error) {
  const auto* known = dynamic_cast<const Error*>(&error);
  return known != nullptr && known->Category() == ErrorCategory::Corrupt;
}

}  // namespace

DatabaseGuard::DatabaseGuard(ProcessParts& process, DatabaseSide& database, WindowSide& window, const FirstLook& look)
    : process_(process),
      database_(database),
      window_(window),
      look_(look),
      backups_(process.Asked().workFolder, process.Asked().database) {}

void DatabaseGuard::DamageMet(const QString& text) {
  QMetaObject::invokeMethod(
      qApp, [this, text] { DamageFound(text); }, Qt::QueuedConnection);
}

int DatabaseGuard::Ask(const QString& title, const QString& text, const QStringList& choices) {
  using Box = MessageBoxService;
  for (;;) {
    const int chosen = window_.Choose(title, text, choices);
    if (chosen < 0 || choices[chosen] != kSetAside ||
        window_.Messages().Vex_MessageBox(kQuestionText.arg(SafeText(backups_)), QStringLiteral("询问"),
                                          Box::kOkAndCancel, Box::kQuestion) == Box::kOk) {
      return chosen;
    }
  }
}

bool DatabaseGuard::Open() {
  bool isRestoreDue = false;
  for (;;) {
    try {
      OpenFile();
      if (isRestoreDue) {
        Restore();
        return true;
      }
      if (Settle()) return true;
      isRestoreDue = true;
    } catch (const std::exception& error) {
      if (IsDamage(error) && HasBackups()) {
        if (!SetAside(TextOf(error))) return false;
        isRestoreDue = true;
        continue;
      }
      const QString text = QStringLiteral("数据库“%1”不能打开。\n%2").arg(process_.Asked().database, TextOf(error));
      constexpr int kAgain = 0;
      if (window_.Choose(QStringLiteral("数据库不能打开"), text, {QStringLiteral("再试"), QStringLiteral("退出")}) !=
          kAgain)
        return false;
    }
  }
}

void DatabaseGuard::TellInBox(const QString& text) {
  window_.Messages().Vex_MessageBox(text, QStringLiteral("Holdwise"), MessageBoxService::kOkButton,
                                    MessageBoxService::kNotice);
}

bool DatabaseGuard::IsCompared() const {
  return !DatabaseTarget::FromText(process_.Asked().database).IsServer();
}

bool DatabaseGuard::HasBackups() const {
  if (process_.Asked().IsOwnDatabase()) return true;
  try {
    return IsCompared() && backups_.NewestUsable();
  } catch (const Error&) {  // nobody can restore from it
    return false;
  }
}

void DatabaseGuard::OpenFile() {
  for (const QString& problem : database_.Open()) process_.Log().WriteLog(problem);
}

void DatabaseGuard::MoveFile() {
  LeaveUnsettled();  // the empty database that follows takes no backup's place, should the restoring fail
  database_.Close();
  const QString name = SetDatabaseAside(process_.Asked().database, process_.Clock().Now());
  process_.Log().WriteLog(QStringLiteral("数据库文件已改名保留为“%1”").arg(name));
}

bool DatabaseGuard::SetAside(const QString& reason) {
  const QString text =
      QStringLiteral("数据库“%1”不能打开。\n%2\n\n%3").arg(process_.Asked().database, reason, SafeText(backups_));
  if (Ask(QStringLiteral("数据库已损坏"), text, {kSetAside}) != 0) return false;
  MoveFile();
  return true;
}

void DatabaseGuard::Restore() {
  try {
    const QString restored = RestoreNewest(database_, backups_);
    comparison_ = {restored.isEmpty() ? QStringLiteral("没有可恢复的备份") : restored};
    process_.Log().WriteLog(comparison_.text);
    if (!restored.isEmpty()) window_.Window().Tell(restored);
  } catch (const Error& error) {
    const QString text = QStringLiteral("备份没有恢复：%1").arg(TextOf(error));
    comparison_ = {text, false};
    process_.Log().WriteLog(text);
    TellInBox(text);
  }
}

QString DatabaseGuard::Doubt() const {
  return isUnsettled_ && !backups_.IsUnsettled() ? QString() : doubt_;
}

health::Comparison DatabaseGuard::Comparison() const {
  if (!IsCompared()) return health::Comparison::OfServer();
  if (!doubt_.isEmpty() && !isDamageTold_) {
    const QString doubt = Doubt();
    return doubt.isEmpty() ? health::Comparison{QStringLiteral("启动时两者不同，现在已经一致")}
                           : health::Comparison{doubt, false};
  }
  return comparison_;
}

bool DatabaseGuard::Settle() {
  comparison_ = {QStringLiteral("启动时：") + look_.Line(), look_.finding == FirstLook::Finding::Sound};
  switch (look_.finding) {
    case FirstLook::Finding::Sound:
      backups_.Settle();
      return true;
    case FirstLook::Finding::Uncompared:
      if (!look_.backupProblem.isEmpty()) process_.Log().TellFailure(look_.backupProblem);
      if (look_.now.portfolios.empty()) return true;
      WriteBackup({QStringLiteral("启动时%1，已重新备份").arg(look_.Line()), look_.backupProblem.isEmpty()});
      return true;
    case FirstLook::Finding::Newer:
      WriteBackup(kWrittenAnew);
      return true;
    case FirstLook::Finding::Differs:
    case FirstLook::Finding::Doubtful:
      break;
  }
  return SettleDifference();
}

bool DatabaseGuard::CanBeLeftToExchangeFiles() const {
  const Options& asked = process_.Asked();
  if (!look_.isFileNew || !look_.now.portfolios.empty() || !asked.IsOwnDatabase()) return false;
  return QFile::exists(asked.workFolder + QStringLiteral("/TZZHMerge.dat")) &&
         QFile::exists(asked.workFolder + QStringLiteral("/TZZHDetail.dat"));
}

bool DatabaseGuard::SettleDifference() {
  const bool isDoubtful = look_.finding == FirstLook::Finding::Doubtful;
  const QString title = isDoubtful ? QStringLiteral("数据库里的组合有疑问") : QStringLiteral("数据库与最近的备份不同");
  doubt_ = title + QStringLiteral("：") + (isDoubtful ? look_.problems.join(QStringLiteral("；")) : look_.Line());
  if (!process_.Asked().IsBatch() && CanBeLeftToExchangeFiles()) {
    // Nothing is there to choose from. Should they bring back something else, the next start asks.
    isLeftToExchangeFiles_ = true;
    LeaveUnsettled();
    isUnsettled_ = true;
    const QString text = QStringLiteral("数据库文件不在原处，已新建；组合从退出时保存的文件读入。");
    process_.Log().WriteLog(text);
    window_.Window().TellOutcome(text);
    return true;
  }
  const QString writer =
      process_.Asked().IsOwnDatabase() ? QStringLiteral("另一个程序") : QStringLiteral("另一个程序或另一个工作目录");
  const QString why =
      isDoubtful
          ? QString()
          : QStringLiteral("终端上次正常退出时两者应当一致：数据库文件损坏了，%1写过它，或那次的备份没有写成。\n\n")
                .arg(writer);
  QStringList choices{QStringLiteral("保留数据库里的")};
  if (look_.backup) choices << kSetAside;
  const int chosen = Ask(title, why + look_.Text(), choices);
  if (chosen < 0) {
    LeaveUnsettled();
    isUnsettled_ = !isDoubtful;
    return true;
  }
  if (chosen > 0) {
    doubt_.clear();
    MoveFile();
    return false;
  }
  backups_.Settle();
  if (isDoubtful) return true;
  doubt_.clear();
  WriteBackup(kWrittenAnew);
  return true;
}

void DatabaseGuard::LeaveUnsettled() {
  try {
    backups_.MarkUnsettled();
  } catch (const Error& error) {
    process_.Log().TellFailure(QStringLiteral("不能记下还没有选择以哪一个为准：%1").arg(TextOf(error)));
  }
}

void DatabaseGuard::WriteBackup(const health::Comparison& told) {
  try {
    const backup::Generation written = backups_.Write(look_.now, process_.Clock().Now());
    process_.Log().WriteLog(QStringLiteral("组合已备份到“%1”").arg(written.path));
    comparison_ = told;
  } catch (const Error& error) {
    const QString text = QStringLiteral("组合没有备份：%1").arg(TextOf(error));
    process_.Log().WriteLog(text);
    process_.Log().TellFailure(text);
  }
}

void DatabaseGuard::DamageFound(const QString& text) {
  if (std::exchange(isDamageTold_, true)) return;
  doubt_ = QStringLiteral("数据库文件已损坏：%1").arg(text);
  isUnsettled_ = false;
  // Views that cannot be read never settle: nobody is to wait for them.
  if (process_.Asked().IsBatch()) QCoreApplication::exit(1);
  if (!HasBackups()) return process_.Log().TellFailure(doubt_);
  const QString whole =
      QStringLiteral(
          "终端运行中发现数据库文件“%1”已损坏（%2）。现在输入的可能保存不了。\n\n%3\n\n移开文件时终端会重新启动。")
          .arg(process_.Asked().database, text, SafeText(backups_));
  if (Ask(QStringLiteral("数据库已损坏"), whole, {kSetAside, QStringLiteral("暂不处理")}) != 0)
    return window_.Window().TellFailure(doubt_);
  LeaveUnsettled();
  wantsRepair_ = true;
  QCoreApplication::exit(0);
}

}  // namespace holdwise
