// SPDX-License-Identifier: MIT
#include "read_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <cerrno>
#include <utility>

#include "holdwise/packet/error.h"
#include "holdwise/packet/system_error.h"

namespace holdwise {

bool FileDescriptor::Close() noexcept {
  const int descriptor = std::exchange(descriptor_, -1);
  return descriptor < 0 || ::close(descriptor) == 0;
}

std::string SystemErrorText(const QString& path, const char* what, int errorNumber) {
  return path.toStdString() + "：" + what + "（" + SystemReason(errorNumber) + "）";
}

FileDescriptor OpenRegularFile(const QString& path, std::int64_t& bytes) {
  // Without O_NONBLOCK, opening a pipe would wait for a writer.
  FileDescriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file.IsOpen()) {
    if (errno == ENOENT) throw Error(ErrorCategory::NotFound, path.toStdString() + "：文件不存在");
    throw Error(errno == ENOTDIR ? ErrorCategory::NotFound : ErrorCategory::Io,
                SystemErrorText(path, errno == ENOTDIR ? "文件不存在" : "文件无法读取", errno));
  }
  struct stat status = {};
  if (::fstat(file.Get(), &status) != 0) {
    throw Error(ErrorCategory::Io, SystemErrorText(path, "文件无法读取", errno));
  }
  if (!S_ISREG(status.st_mode)) throw Error(ErrorCategory::Io, path.toStdString() + "：不是普通文件，无法读取");
  bytes = status.st_size;
  return file;
}

std::int64_t ReadSome(const FileDescriptor& file, const QString& path, char* to, std::int64_t most) {
  for (;;) {
    const ssize_t count = ::read(file.Get(), to, static_cast<std::size_t>(most));
    if (count >= 0) return count;
    if (errno != EINTR) throw Error(ErrorCategory::Io, SystemErrorText(path, "文件无法读取", errno));
  }
}

QByteArray ReadWholeFile(const QString& path, std::int64_t maxBytes) {
  std::int64_t size = 0;
  const FileDescriptor file = OpenRegularFile(path, size);
  if (size > maxBytes) {
    throw Error(ErrorCategory::Refused,
                path.toStdString() + "：文件有 " + std::to_string(size) + " 字节，最多 " + std::to_string(maxBytes));
  }
  QByteArray bytes(size, Qt::Uninitialized);
  qsizetype filled = 0;
  while (filled < bytes.size()) {
    const std::int64_t count = ReadSome(file, path, bytes.data() + filled, bytes.size() - filled);
    if (count == 0) break;
    filled += count;
  }
  bytes.truncate(filled);
  return bytes;
}

}  // namespace holdwise
