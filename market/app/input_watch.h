// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <cstdint>
#include <map>
#include <vector>

namespace holdwise {

/// Notices when files, or the CSV files of folders, have changed and stand still again. From its making on SIGINT and
/// SIGTERM do not end the process but the waiting. One at a time; not thread-safe.
class InputWatch {
 public:
  /// Knows the files as they stand now. Empty places are left out.
  explicit InputWatch(const std::vector<QString>& places);
  /// Waits until something differs from what was known and has not changed for a second more, and knows that then;
  /// false when the process has been asked to end.
  [[nodiscard]] bool WaitForChange();

 private:
  struct File {
    std::uint64_t number;  // a file put in place by a rename is another one
    std::int64_t bytes;
    std::int64_t changedAt;  // nanoseconds
    bool operator==(const File&) const = default;
  };
  using Files = std::map<QString, File>;

  [[nodiscard]] Files Look() const;

  std::vector<QString> places_;
  Files known_;
};

}  // namespace holdwise
