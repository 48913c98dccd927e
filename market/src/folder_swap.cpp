// SPDX-License-Identifier: MIT
#include "holdwise/market/folder_swap.h"

#include <fcntl.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstdio>
#include <string>

#include "holdwise/packet/error.h"
#include "holdwise/packet/system_error.h"

namespace holdwise {
namespace {

[[noreturn]] void Fail(ErrorCategory category, const QString& text, const QString& path) {
  throw Error(category, (text + QStringLiteral("：") + path).toStdString());
}

[[noreturn]] void FailWithErrno(const QString& text, const QString& path) {
  const QString reason = QString::fromStdString(SystemReason(errno));
  Fail(ErrorCategory::Io, text + QStringLiteral("（%1）").arg(reason), path);
}

// A link to a folder stays a link: what is replaced is the folder behind it.
QString Resolved(const QString& folder) {
  const QString path = QDir::cleanPath(QDir(folder).absolutePath());
  const QString target = QFileInfo(path).canonicalFilePath();
  return target.isEmpty() ? path : target;
}

}  // namespace

FolderSwap::FolderSwap(const QString& folder, const QString& marker) : folder_(Resolved(folder)) {
  const QFileInfo info(folder_);
  const QString parent = info.absolutePath();
  if (info.fileName().isEmpty()) Fail(ErrorCategory::Refused, QStringLiteral("不能替换此目录"), folder_);
  if (info.exists() && !info.isDir()) Fail(ErrorCategory::Refused, QStringLiteral("输出位置已有同名文件"), folder_);
  const bool isEmpty = !info.exists() || QDir(folder_).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
  if (!isEmpty && !QFileInfo::exists(folder_ + u'/' + marker)) {
    Fail(ErrorCategory::Refused, QStringLiteral("输出目录里有别的文件，未作改动"), folder_);
  }
  if (!QDir().mkpath(parent)) Fail(ErrorCategory::Io, QStringLiteral("无法建立目录"), parent);

  lock_ = std::make_unique<QLockFile>(parent + QStringLiteral("/.%1.lock").arg(info.fileName()));
  lock_->setStaleLockTime(0);  // held as long as its process lives
  // A process that was killed while it wrote its lock file leaves one without its number, which never looks stale;
  // whether somebody still holds it, the system knows.
  if (!lock_->tryLock() && !(lock_->removeStaleLockFile() && lock_->tryLock())) {
    if (lock_->error() == QLockFile::LockFailedError) {
      Fail(ErrorCategory::Busy, QStringLiteral("另一个进程正在写此目录"), folder_);
    }
    Fail(ErrorCategory::Io, QStringLiteral("无法写入目录"), parent);
  }
  newFolder_ = parent + QStringLiteral("/.%1.new").arg(info.fileName());
  if (!QDir(newFolder_).removeRecursively() || !QDir().mkpath(newFolder_)) {
    Fail(ErrorCategory::Io, QStringLiteral("无法建立目录"), newFolder_);
  }
}

FolderSwap::~FolderSwap() {
  QDir(newFolder_).removeRecursively();
}

void FolderSwap::Commit() {
  const QByteArray from = QFile::encodeName(newFolder_);
  const QByteArray to = QFile::encodeName(folder_);
  if (!QFileInfo::exists(folder_)) {
    if (::rename(from.constData(), to.constData()) != 0) FailWithErrno(QStringLiteral("无法放置新目录"), folder_);
  } else if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_EXCHANGE) != 0) {
    // File systems without the exchange leave a moment in which neither is in place.
    const QByteArray aside = from + ".old";
    if ((errno != EINVAL && errno != ENOSYS) || ::rename(to.constData(), aside.constData()) != 0) {
      FailWithErrno(QStringLiteral("无法替换目录"), folder_);
    }
    if (::rename(from.constData(), to.constData()) != 0) {
      const int number = errno;
      ::rename(aside.constData(), to.constData());
      errno = number;
      FailWithErrno(QStringLiteral("无法替换目录"), folder_);
    }
    QDir(newFolder_ + QStringLiteral(".old")).removeRecursively();
  }
  QDir(newFolder_).removeRecursively();
}

}  // namespace holdwise
