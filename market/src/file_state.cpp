// SPDX-License-Identifier: MIT
#include "holdwise/market/file_state.h"

#include <sys/stat.h>

#include <QFile>
#include <chrono>
#include <cstdlib>

namespace holdwise {
namespace {

std::int64_t Nanoseconds(const timespec& time) {
  constexpr std::int64_t kNanoseconds = 1'000'000'000;
  return time.tv_sec * kNanoseconds + time.tv_nsec;
}

}  // namespace

std::optional<FileState> FileStateOf(const QString& path) {
  struct stat status = {};
  if (::stat(QFile::encodeName(path).constData(), &status) != 0) return std::nullopt;
  return FileState{status.st_dev, status.st_ino, status.st_size, Nanoseconds(status.st_mtim),
                   Nanoseconds(status.st_ctim)};
}

bool HasSettled(const FileState& state) {
  constexpr std::chrono::milliseconds kSeveralTicks{100};
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::abs(now - std::chrono::nanoseconds(state.changedAt)) > kSeveralTicks;
}

}  // namespace holdwise
