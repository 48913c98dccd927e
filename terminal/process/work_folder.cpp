// SPDX-License-Identifier: MIT
#include "process/work_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <cerrno>

#include "holdwise/packet/error.h"
#include "holdwise/packet/system_error.h"

namespace holdwise {
namespace {

[[noreturn]] void Fail(const QString& folder, const QString& reason) {
  throw Error(
      ErrorCategory::Io,
      QStringLiteral("工作目录“%1”不能使用：%2。可用 --work 指定另一个目录。").arg(folder, reason).toStdString());
}

QString LastReason() {
  return QString::fromStdString(holdwise::SystemReason(errno));
}

}  // namespace

void PrepareWorkFolder(const QString& folder) {
  QDir().mkpath(folder);
  const QByteArray path = QFile::encodeName(folder);
  struct stat status {};
  if (stat(path.constData(), &status) != 0) Fail(folder, LastReason());
  if (!S_ISDIR(status.st_mode)) Fail(folder, QStringLiteral("它不是目录"));
  // A shared folder such as /tmp must not be taken away from others.
  if (status.st_uid != geteuid() || (status.st_mode & S_ISVTX) != 0) Fail(folder, QStringLiteral("它不属于当前用户"));
  if ((status.st_mode & 0777) != 0700 && chmod(path.constData(), 0700) != 0) Fail(folder, LastReason());
  if (access(path.constData(), R_OK | W_OK | X_OK) != 0) Fail(folder, LastReason());
}

WorkFolderLock::WorkFolderLock(const QString& folder) : path_(folder + QStringLiteral("/terminal.lock")) {}

WorkFolderLock::~WorkFolderLock() {
  if (descriptor_ >= 0) close(descriptor_);
}

bool WorkFolderLock::Acquire() {
  if (descriptor_ < 0)
    descriptor_ = open(QFile::encodeName(path_).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (descriptor_ < 0) Fail(QFileInfo(path_).path(), LastReason());
  if (flock(descriptor_, LOCK_EX | LOCK_NB) == 0) return true;
  if (errno != EWOULDBLOCK) Fail(QFileInfo(path_).path(), LastReason());
  return false;
}

}  // namespace holdwise
