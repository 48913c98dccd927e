// SPDX-License-Identifier: MIT
#include "kept_files.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include "holdwise/packet/error.h"

namespace holdwise {

void KeepOtherFiles(const QString& oldFolder, const QString& newFolder,
                    const std::function<bool(const QString& name)>& isOurs) {
  QDirIterator files(oldFolder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    const QString path = files.next();
    const QString name = QDir(oldFolder).relativeFilePath(path);
    const QString kept = newFolder + u'/' + name;
    if (isOurs(name) || QFileInfo::exists(kept)) continue;
    if (!QDir().mkpath(QFileInfo(kept).path()) || !QFile::copy(path, kept)) {
      throw Error(ErrorCategory::Io, "无法复制文件：" + path.toStdString());
    }
  }
}

}  // namespace holdwise
