// SPDX-License-Identifier: MIT
#include "process/work_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <algorithm>
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

/// Empty, or with something in it that only a terminal has made.
bool IsOurs(const QString& folder) {
  const QDir place(folder);
  const QStringList marks{QStringLiteral("terminal.lock"), QStringLiteral("holdwise.fdb"),
                          QStringLiteral("TZZHMerge.dat"), QStringLiteral("optional_stocks.txt"),
                          QStringLiteral("market/market.dat")};
  const auto isThere = [&place](const QString& name) { return place.exists(name); };
  return place.isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot) ||
         std::any_of(marks.begin(), marks.end(), isThere);
}

QString LockOf(const QString& folder) {
  return folder + QStringLiteral("/terminal.lock");
}

/// Opening a pipe would wait for its other end, without a word and before there is a window.
void RequireFiles(const QString& folder) {
  for (const char* name : {"settings.ini", "settings.ini.lock", "log/terminal.log", "terminal.lock",
                           "optional_stocks.txt", "holdwise.fdb", "holdwise.fdb.open", "holdwise.fdb.checked",
                           "TZZHMerge.dat", "TZZHDetail.dat", "TZZHOwner.txt", "demo.ini", "demo.ini.lock"}) {
    const QString path = folder + QLatin1Char('/') + QLatin1String(name);
    struct stat status {};
    if (stat(QFile::encodeName(path).constData(), &status) == 0 && !S_ISREG(status.st_mode))
      Fail(folder, QStringLiteral("其中的“%1”不是普通文件，请移走它").arg(QLatin1String(name)));
  }
}

}  // namespace

void PrepareWorkFolder(const QString& folder, const std::function<bool(const QString&)>& mayClose) {
  QDir().mkpath(folder);
  const QByteArray path = QFile::encodeName(folder);
  struct stat status {};
  if (stat(path.constData(), &status) != 0) Fail(folder, LastReason());
  if (!S_ISDIR(status.st_mode)) Fail(folder, QStringLiteral("它不是目录"));
  // A shared folder such as /tmp must not be taken away from others.
  if (status.st_uid != geteuid() || (status.st_mode & S_ISVTX) != 0) Fail(folder, QStringLiteral("它不属于当前用户"));
  if ((status.st_mode & 0777) != 0700) {
    if (!IsOurs(folder) && !mayClose(folder)) {
      throw Error(ErrorCategory::Refused,
                  QStringLiteral("目录“%1”里有别的东西，又对其他用户开放，没有把它当作工作目录。要用它，请先执行 "
                                 "chmod 700；或用 --work 指定另一个目录。")
                      .arg(folder)
                      .toStdString());
    }
    if (chmod(path.constData(), 0700) != 0) Fail(folder, LastReason());
  }
  if (access(path.constData(), R_OK | W_OK | X_OK) != 0) Fail(folder, LastReason());
  RequireFiles(folder);
}

WorkFolderLock::WorkFolderLock(const QString& folder) : path_(LockOf(folder)) {}

WorkFolderLock::~WorkFolderLock() {
  if (descriptor_ >= 0) close(descriptor_);
}

bool WorkFolderLock::Acquire() {
  if (descriptor_ < 0)
    descriptor_ = open(QFile::encodeName(path_).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (descriptor_ < 0) Fail(QFileInfo(path_).path(), LastReason());
  if (flock(descriptor_, LOCK_EX | LOCK_NB) == 0) {
    const QByteArray own = QByteArray::number(static_cast<qint64>(getpid()));
    // Only for messages about this process: a disk that does not take it stops nobody.
    if (ftruncate(descriptor_, 0) == 0)
      (void)!pwrite(descriptor_, own.constData(), static_cast<std::size_t>(own.size()), 0);
    return true;
  }
  if (errno != EWOULDBLOCK) Fail(QFileInfo(path_).path(), LastReason());
  return false;
}

std::int64_t WorkFolderLock::Holder() const {
  QFile file(path_);
  if (!file.open(QIODevice::ReadOnly)) return 0;
  constexpr qint64 kLongestNumber = 20;
  return file.read(kLongestNumber).toLongLong();
}

bool WorkFolderLock::IsHeld(const QString& folder) {
  // A pipe in its place must not be waited for.
  const int descriptor = open(QFile::encodeName(LockOf(folder)).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return false;
  // Shared, so that two who only look do not see each other.
  const bool isHeld = flock(descriptor, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  close(descriptor);
  return isHeld;
}

bool StoppedProcessWatch::IsOver(std::int64_t process) {
  constexpr qint64 kPatienceMilliseconds = 5000;
  QFile file(QStringLiteral("/proc/%1/stat").arg(process));
  const QByteArray status = process > 0 && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  // The state stands behind the name, which is in brackets and may hold any character.
  const char state = status.mid(status.lastIndexOf(')') + 2, 1).append(' ').at(0);
  if (state != 'T' && state != 't') {
    stopped_.invalidate();
    return false;
  }
  if (!stopped_.isValid()) stopped_.start();
  return stopped_.hasExpired(kPatienceMilliseconds);
}

}  // namespace holdwise
