// SPDX-License-Identifier: MIT
#include "process/demo_folder.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

#include "holdwise/packet/error.h"
#include "process/print.h"
#include "process/settings_file.h"
#include "process/work_folder.h"

namespace holdwise {
namespace {

const QString kChosen = QStringLiteral("chosen");
const QString kOwnData = QStringLiteral("ownData");
const QString kOwnDatabase = QStringLiteral("ownDatabase");

QString MarkOf(const QString& demo) {
  return demo + QStringLiteral("/demo.ini");
}

/// A pipe in its place would be waited for, and something huge be read as a whole, before there is a window.
bool IsReadable(const QString& mark) {
  constexpr qint64 kMostBytes = 1 << 16;
  const QFileInfo file(mark);
  return file.isFile() && file.size() <= kMostBytes;
}

[[noreturn]] void FailToWrite(const QString& mark) {
  throw Error(ErrorCategory::Io,
              QStringLiteral("文件“%1”不能写入，请检查磁盘空间和权限，或删除它后再试").arg(mark).toStdString());
}

/// Nobody who could be asked sits at a terminal that leaves for another folder.
void RequireUsable(const QString& workFolder) {
  PrepareWorkFolder(workFolder, [](const QString&) { return false; });
}

bool StoreLeft(const QString& mark) {
  // What cannot be taken away would be waited for.
  const QFileInfo lock(mark + QStringLiteral(".lock"));
  if (lock.exists() && !lock.isFile()) return false;
  QSettings settings(mark, QSettings::IniFormat);
  settings.setValue(kChosen, false);
  settings.sync();
  return settings.status() == QSettings::NoError;
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
  return IsReadable(mark) && QSettings(mark, QSettings::IniFormat).value(kChosen).toBool();
}

void DemoFolder::Choose(const Options& own) const {
  RequireUsable(path_);
  const QString path = MarkOf(path_);
  (void)SetAsideIfDamaged(path);
  QSettings mark(path, QSettings::IniFormat);
  mark.setValue(kChosen, true);
  mark.setValue(kOwnData, own.command.dataFolder);
  mark.setValue(kOwnDatabase, own.command.database);
  mark.sync();
  if (mark.status() != QSettings::NoError) FailToWrite(path);
}

void DemoFolder::Leave() const {
  const QString mark = MarkOf(path_);
  if (IsReadable(mark) && StoreLeft(mark)) return;
  // A full disk must not keep anybody in the demo.
  QFile::remove(mark);
  if (IsChosen()) FailToWrite(mark);
}

Options DemoFolder::WayBack() const {
  RequireUsable(ownFolder_);
  Options options;
  options.workFolder = ownFolder_;
  const QString path = MarkOf(path_);
  if (!IsReadable(path) || WorkFolderLock::IsHeld(ownFolder_)) return options;
  const QSettings mark(path, QSettings::IniFormat);
  options.command.dataFolder = mark.value(kOwnData).toString();
  options.command.database = mark.value(kOwnDatabase).toString();
  return options;
}

Options DemoFolder::WayThere() const {
  RequireUsable(path_);
  Options options;
  options.workFolder = path_;
  return options;
}

void TurnToDemo(Options& options) {
  options.ownFolder = DemoFolder::OwnFolderOf(options.workFolder);
  const Command& command = options.command;
  const bool isNamed = !command.dataFolder.isEmpty() || !options.database.isEmpty();
  if (options.IsDemo() || isNamed) return;
  const DemoFolder demo(options.workFolder);
  if (!demo.IsChosen() || !demo.IsMade() || WorkFolderLock::IsHeld(options.workFolder)) return;
  if (options.IsBatch() || !command.check.isEmpty()) {
    return PrintError(
        QStringLiteral("这里是自己的数据。上次打开的是试用的模拟行情，要用它请写 --work '%1'。").arg(demo.Path()));
  }
  try {
    RequireUsable(demo.Path());
  } catch (const Error& error) {
    return PrintError(
        QStringLiteral("没有打开试用的模拟行情，打开的是自己的数据。%1").arg(QString::fromUtf8(error.what())));
  }
  options.ownFolder = options.workFolder;
  options.workFolder = demo.Path();
  options.dataFolder = demo.Market();
}

}  // namespace holdwise
