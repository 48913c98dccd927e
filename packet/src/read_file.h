// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>
#include <cstdint>
#include <string>

namespace holdwise {

/// Whole content of a regular file. Missing: Error(NotFound); unreadable: Error(Io); above `maxBytes`: Error(Refused)
/// before memory is taken for it.
QByteArray ReadWholeFile(const QString& path, std::int64_t maxBytes);

/// Owns a file descriptor.
class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor) noexcept : descriptor_(descriptor) {}
  ~FileDescriptor() { Close(); }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  [[nodiscard]] int Get() const noexcept { return descriptor_; }
  [[nodiscard]] bool IsOpen() const noexcept { return descriptor_ >= 0; }
  /// False when the system reports a late write error.
  bool Close() noexcept;

 private:
  int descriptor_;
};

/// "PATH：" + what + "（reason of the operating system）".
std::string SystemErrorText(const QString& path, const char* what, int errorNumber);

}  // namespace holdwise
