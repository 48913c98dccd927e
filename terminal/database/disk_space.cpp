// SPDX-License-Identifier: MIT
#include "disk_space.h"

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <cerrno>

#include "holdwise/packet/error.h"

namespace holdwise::firebird {

namespace {

[[noreturn]] void ThrowFull(const QString& folder, std::int64_t needed) {
  throw Error(ErrorCategory::Io,
              QStringLiteral("磁盘空间不足：文件夹 %1 所在的磁盘至少需要 %2 MB 可用空间，请清理磁盘后再试")
                  .arg(folder)
                  .arg((needed - 1) / (1 << 20) + 1)
                  .toStdString());
}

}  // namespace

void RequireSpace(const QString& folder, std::int64_t bytes) {
  struct statvfs status = {};
  if (::statvfs(QFile::encodeName(folder).constData(), &status) != 0) return;
  if (status.f_blocks == 0) return;  // some network and virtual file systems do not count
  const auto blocks = static_cast<std::uint64_t>(bytes) / status.f_frsize;
  if (status.f_bavail < blocks) ThrowFull(folder, bytes);
}

void ReserveLockFiles(const QString& folder) {
  for (const QFileInfo& info : QDir(folder).entryInfoList({QStringLiteral("fb*")}, QDir::Files | QDir::NoSymLinks)) {
    const int descriptor = ::open(QFile::encodeName(info.filePath()).constData(), O_RDWR | O_CLOEXEC);
    if (descriptor < 0) continue;
    // Not posix_fallocate: without the file system's help it writes into the blocks, which the engine is using.
    const bool full =
        info.size() > 0 && ::fallocate(descriptor, 0, 0, info.size()) != 0 && (errno == ENOSPC || errno == EDQUOT);
    ::close(descriptor);
    if (full) ThrowFull(folder, kBytesToOpen);
  }
}

}  // namespace holdwise::firebird
