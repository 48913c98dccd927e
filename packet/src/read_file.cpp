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

QByteArray ReadWholeFile(const QString& path, std::int64_t maxBytes) {
  // Without O_NONBLOCK, opening a pipe would wait for a writer.
  const FileDescriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
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
  if (status.st_size > maxBytes) {
    throw Error(ErrorCategory::Refused, path.toStdString() + "：文件有 " + std::to_string(status.st_size) +
                                            " 字节，最多 " + std::to_string(maxBytes));
  }
  QByteArray bytes(static_cast<qsizetype>(status.st_size), Qt::Uninitialized);
  qsizetype filled = 0;
  while (filled < bytes.size()) {
    const ssize_t count = ::read(file.Get(), bytes.data() + filled, static_cast<std::size_t>(bytes.size() - filled));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw Error(ErrorCategory::Io, SystemErrorText(path, "文件无法读取", errno));
    if (count == 0) break;
    filled += count;
  }
  bytes.truncate(filled);
  return bytes;
}

}  // namespace holdwise
