// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <map>
#include <vector>

#include "holdwise/market/file_state.h"

namespace holdwise {

/// Notices when files, or the CSV files of folders, have changed and stand still again. From its making on SIGINT and
/// SIGTERM do not end the process but the waiting. One at a time; not thread-safe.
class InputWatch {
 public:
  /// Knows the files as they stand now. Empty places are left out.
  explicit InputWatch(const std::vector<QString>& places);
  /// Waits until something differs from what was known and has not changed for a second more, and knows that then;
  /// false when the process has been asked to end. A new file, or one that ended with a line break before, is being
  /// written until it does: said on standard error once and waited for.
  [[nodiscard]] bool WaitForChange();

 private:
  struct File {
    FileState state;
    bool endsWithLine;
    bool operator==(const File&) const = default;
  };
  using Files = std::map<QString, File>;

  /// @param last what was seen before: what has not changed is not opened
  [[nodiscard]] Files Look(const Files& last) const;
  /// A changed file of which the last line is not there yet; empty when there is none.
  [[nodiscard]] QString Unfinished(const Files& now) const;

  std::vector<QString> places_;
  Files known_;
};

}  // namespace holdwise
