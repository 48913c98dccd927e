// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>
#include <cstdint>
#include <string>
#include <utility>

namespace holdwise {

/// Whole content of a regular file. Missing: Error(NotFound); unreadable: Error(Io); above `maxBytes`: Error(Refused)
/// before memory is taken for it.
QByteArray ReadWholeFile(const QString& path, std::int64_t maxBytes);

/// Owns a file descriptor.
class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor) noexcept : descriptor_(descriptor) {}
  ~FileDescriptor() { Close(); }
  FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  [[nodiscard]] int Get() const noexcept { return descriptor_; }
  [[nodiscard]] bool IsOpen() const noexcept { return descriptor_ >= 0; }
  /// False when the system reports a late write error.
  bool Close() noexcept;

 private:
  int descriptor_;
};

/// Opens a regular file. Missing: Error(NotFound); unreadable, or another kind of file: Error(Io).
FileDescriptor OpenRegularFile(const QString& path, std::int64_t& bytes);
/// Reads at most so many bytes; 0 at the end. Error(Io).
std::int64_t ReadSome(const FileDescriptor& file, const QString& path, char* to, std::int64_t most);

/// "PATH：" + what + "（reason of the operating system）".
std::string SystemErrorText(const QString& path, const char* what, int errorNumber);

}  // namespace holdwise
