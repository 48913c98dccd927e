// SPDX-License-Identifier: MIT
#pragma once
#include <QLockFile>
#include <QString>
#include <memory>

namespace holdwise {

/// Replaces a whole folder at once: everything is written into a hidden folder beside it, and Commit exchanges the two
/// in one step of the file system. Until then, and after a kill at any moment, the old folder is whole; afterwards the
/// new one. What an earlier kill left behind is removed by the next swap of the same folder. Not thread-safe.
class FolderSwap {
 public:
  /// `marker` is a file that every folder of this kind holds, relative to it. Another process at the same folder:
  /// Error(Busy). The folder exists, is not empty and lacks the marker: Error(Refused), so that a mistyped path never
  /// costs anybody else's files. Not writable: Error(Io).
  FolderSwap(const QString& folder, const QString& marker);
  /// Without a Commit the new folder is removed.
  ~FolderSwap();
  FolderSwap(const FolderSwap&) = delete;
  FolderSwap& operator=(const FolderSwap&) = delete;

  /// Absolute path of the empty folder to write into.
  [[nodiscard]] const QString& NewFolder() const noexcept { return newFolder_; }
  /// Absolute path of the folder to be replaced; it need not exist.
  [[nodiscard]] const QString& OldFolder() const noexcept { return folder_; }
  /// Puts the new folder in place and removes the old one. Error(Io) leaves the old one as it was.
  void Commit();

 private:
  QString folder_;
  QString newFolder_;
  std::unique_ptr<QLockFile> lock_;
};

}  // namespace holdwise
