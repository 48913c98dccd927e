// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <cstdint>
#include <map>

namespace holdwise {

/// What tells one state of a file or folder from another: equal for two looks between which nothing happened to it. A
/// file that takes another's place differs from it even with the same bytes.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t number = 0;  ///< 0 = not there, or not to be looked at
  std::int64_t bytes = 0;
  std::int64_t changedNanoseconds = 0;
  bool operator==(const FileIdentity&) const = default;
  [[nodiscard]] bool Exists() const { return number != 0; }
};
/// Links are followed.
[[nodiscard]] FileIdentity IdentityOf(const QString& path);

/// The folders below a folder, as they were at the last look: files that come, go or are replaced in one of them change
/// it. Files of the folder itself do not count, nor do files that are written in place. One look costs one system call
/// a folder while nothing changes; of a folder with more than a few hundred folders below it the first count. Not
/// thread-safe.
class SubfolderState {
 public:
  explicit SubfolderState(QString root) : root_(std::move(root)) { (void)Look(); }
  /// Looks again. True when the root is another folder than before, or anything below it changed.
  bool Look();

 private:
  struct Folder {
    FileIdentity identity;
    std::map<QString, Folder> children;
  };
  bool LookAt(const QString& path, Folder& folder, int depth);
  static bool ListChildren(const QString& path, Folder& folder);

  QString root_;
  Folder state_;
  int looked_ = 0;
};

}  // namespace holdwise
