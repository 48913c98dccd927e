// SPDX-License-Identifier: MIT
#include "process/demo_folder.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

#include "holdwise/packet/error.h"
#include "process/work_folder.h"

namespace holdwise {
namespace {

const QString kChosen = QStringLiteral("chosen");
const QString kOwnData = QStringLiteral("ownData");
const QString kOwnDatabase = QStringLiteral("ownDatabase");

QString MarkOf(const QString& demo) {
  return demo + QStringLiteral("/demo.ini");
}

void Store(QSettings& mark) {
  mark.sync();
  if (mark.status() == QSettings::NoError) return;
  throw Error(
      ErrorCategory::Io,
      QStringLiteral("文件“%1”不能写入，请检查磁盘空间和权限，或删除它后再试").arg(mark.fileName()).toStdString());
}

}  // namespace

DemoFolder::DemoFolder(const QString& ownFolder) : ownFolder_(ownFolder), path_(ownFolder + QStringLiteral("/demo")) {}

QString DemoFolder::OwnFolderOf(const QString& workFolder) {
  const QString around = QFileInfo(workFolder).path();
  // A copy of it that stands elsewhere is a work folder like any other.
  const bool isDemo = DemoFolder(around).Path() == workFolder && QFileInfo(MarkOf(workFolder)).isFile() &&
                      QFileInfo(around + QStringLiteral("/terminal.lock")).isFile();
  return isDemo ? around : QString();
}

bool DemoFolder::IsMade() const {
  return QFileInfo(Market() + QStringLiteral("/market.dat")).isFile();
}

bool DemoFolder::IsChosen() const {
  const QString mark = MarkOf(path_);
  return QFileInfo(mark).isFile() && QSettings(mark, QSettings::IniFormat).value(kChosen).toBool();
}

void DemoFolder::Choose(const Options& own) const {
  QDir().mkpath(path_);
  QSettings mark(MarkOf(path_), QSettings::IniFormat);
  mark.setValue(kChosen, true);
  mark.setValue(kOwnData, own.command.dataFolder);
  mark.setValue(kOwnDatabase, own.command.database);
  Store(mark);
}

void DemoFolder::Leave() const {
  QSettings mark(MarkOf(path_), QSettings::IniFormat);
  mark.setValue(kChosen, false);
  Store(mark);
}

Options DemoFolder::WayBack() const {
  const QSettings mark(MarkOf(path_), QSettings::IniFormat);
  Options options;
  options.workFolder = ownFolder_;
  options.command.dataFolder = mark.value(kOwnData).toString();
  options.command.database = mark.value(kOwnDatabase).toString();
  return options;
}

Options DemoFolder::WayThere() const {
  Options options;
  options.workFolder = path_;
  return options;
}

void TurnToDemo(Options& options) {
  options.ownFolder = DemoFolder::OwnFolderOf(options.workFolder);
  const Command& command = options.command;
  const bool isNamed = !command.dataFolder.isEmpty() || !options.database.isEmpty();
  if (options.IsDemo() || isNamed || options.IsBatch() || !command.check.isEmpty()) return;
  const DemoFolder demo(options.workFolder);
  if (!demo.IsChosen() || !demo.IsMade() || WorkFolderLock::IsHeld(options.workFolder)) return;
  options.ownFolder = options.workFolder;
  options.workFolder = demo.Path();
  options.dataFolder = demo.Market();
}

}  // namespace holdwise
