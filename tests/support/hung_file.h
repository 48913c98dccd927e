// SPDX-License-Identifier: MIT
#pragma once
#include <fcntl.h>
#include <unistd.h>

#include <QFile>
#include <csignal>

namespace holdwise::test {

/// A file whose opening waits, in every process, until Release: what a network folder that does not answer does to a
/// reader. The system lets readers pass after some time (45 s) all the same.
class HungFile {
 public:
  explicit HungFile(const QString& path) {
    // Readers that wait are announced by this signal, which would end the process.
    (void)std::signal(SIGIO, SIG_IGN);
    descriptor_ = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CLOEXEC);
    isHung_ = descriptor_ >= 0 && ::fcntl(descriptor_, F_SETLEASE, F_WRLCK) == 0;
  }
  ~HungFile() { Release(); }
  HungFile(const HungFile&) = delete;
  HungFile& operator=(const HungFile&) = delete;

  /// False where the file system does not know how: nothing can be tested then.
  [[nodiscard]] bool IsHung() const { return isHung_; }
  void Release() {
    if (descriptor_ < 0) return;
    if (isHung_) (void)::fcntl(descriptor_, F_SETLEASE, F_UNLCK);
    ::close(descriptor_);
    descriptor_ = -1;
  }

 private:
  int descriptor_ = -1;
  bool isHung_ = false;
};

}  // namespace holdwise::test
