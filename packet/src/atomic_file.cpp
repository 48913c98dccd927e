// SPDX-License-Identifier: MIT
#include "holdwise/packet/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <cerrno>
#include <cstdio>

#include "holdwise/packet/error.h"
#include "read_file.h"

namespace holdwise {
namespace {

constexpr int kNameAttempts = 100;

[[noreturn]] void ThrowWriteError(const QString& path, int errorNumber) {
  throw Error(ErrorCategory::Io, SystemErrorText(path, "文件无法写入", errorNumber));
}

/// A new file under a name of its own in the folder of the target; removed again unless it was renamed.
class TemporaryFile {
 public:
  TemporaryFile(const QString& target, mode_t mode) : target_(target), file_(Create(mode)) {}
  ~TemporaryFile() {
    if (!renamed_) ::unlink(name_.constData());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  void Write(const QByteArray& bytes) const {
    qsizetype written = 0;
    while (written < bytes.size()) {
      const ssize_t count =
          ::write(file_.Get(), bytes.constData() + written, static_cast<std::size_t>(bytes.size() - written));
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) ThrowWriteError(target_, errno);
      written += count;
    }
  }
  void Flush() const {
    if (::fsync(file_.Get()) != 0) ThrowWriteError(target_, errno);
  }
  void Rename() {
    if (!file_.Close()) ThrowWriteError(target_, errno);
    if (std::rename(name_.constData(), QFile::encodeName(target_).constData()) != 0) ThrowWriteError(target_, errno);
    renamed_ = true;
  }

 private:
  int Create(mode_t mode) {
    const QString folder = QFileInfo(target_).path();
    for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
      const QString unique = QString::number(QRandomGenerator::system()->generate64(), 36);
      name_ = QFile::encodeName(folder + QStringLiteral("/.holdwise-") + unique + QStringLiteral(".tmp"));
      const int descriptor = ::open(name_.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
      if (descriptor >= 0) return descriptor;
      if (errno != EEXIST) break;
    }
    ThrowWriteError(target_, errno);
  }

  QString target_;
  QByteArray name_;
  FileDescriptor file_;
  bool renamed_ = false;
};

/// Errors name `path`, what is written.
int OpenFolder(const QString& folder, const QString& path) {
  const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) ThrowWriteError(path, errno);
  return descriptor;
}

/// The folder of a file, opened for the flush before anything is changed, so that afterwards only the flush itself can
/// fail; -1 for replaceable files.
int OpenFolderOf(const QString& path, Durability durability) {
  return durability == Durability::Lasting ? OpenFolder(QFileInfo(path).path(), path) : -1;
}

void FlushOpened(const FileDescriptor& folder, const QString& path) {
  if (folder.IsOpen() && ::fsync(folder.Get()) != 0 && errno != EINVAL) ThrowWriteError(path, errno);
}

/// A rename would put the file in the place of a pipe or a device.
void RequireNoDevice(const QString& path) {
  struct stat status {};
  if (::stat(QFile::encodeName(path).constData(), &status) != 0 || S_ISREG(status.st_mode) || S_ISDIR(status.st_mode))
    return;
  throw Error(ErrorCategory::Io, QStringLiteral("“%1”不是普通文件，没有写").arg(path).toStdString());
}

}  // namespace

void WriteFileAtomically(const QString& path, const QByteArray& bytes, Durability durability) {
  RequireNoDevice(path);
  const bool lasting = durability == Durability::Lasting;
  const FileDescriptor folder(OpenFolderOf(path, durability));
  TemporaryFile file(path, lasting ? 0600 : 0666);
  file.Write(bytes);
  if (lasting) file.Flush();
  file.Rename();
  FlushOpened(folder, path);
}

void RenameFileAtomically(const QString& from, const QString& to, Durability durability) {
  const FileDescriptor folder(OpenFolderOf(to, durability));
  if (std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0) {
    ThrowWriteError(to, errno);
  }
  FlushOpened(folder, to);
}

void AddFileName(const QString& path, const QString& name) {
  if (::link(QFile::encodeName(path).constData(), QFile::encodeName(name).constData()) == 0) return;
  // Not every file system has them; what it says to that differs.
  if (errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS && errno != EMLINK) ThrowWriteError(name, errno);
  if (!QFile::copy(path, name)) ThrowWriteError(name, EIO);
}

QString FreeTimeText(const QDateTime& now, const std::function<bool(const QString& text)>& isTaken) {
  const QString first = now.toString(QStringLiteral("yyyyMMdd-HHmmss"));
  QString text = first;
  for (int number = 2; isTaken(text); ++number) text = first + QStringLiteral("_%1").arg(number);
  return text;
}

void FlushFolder(const QString& folder) {
  FlushOpened(FileDescriptor(OpenFolder(folder, folder)), folder);
}

}  // namespace holdwise
