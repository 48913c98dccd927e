// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <cstdint>
#include <optional>

/// What tells, without reading it, whether a file is still as it was. Thread-safe.
namespace holdwise {

struct FileState {
  std::uint64_t device = 0;
  std::uint64_t number = 0;  ///< a file put in place by a rename is another one
  std::int64_t bytes = 0;
  std::int64_t writtenAt = 0;  ///< nanoseconds since 1970; programs may set it
  std::int64_t changedAt = 0;  ///< the same of anything about the file; set by the system alone
  bool operator==(const FileState&) const = default;
};

/// Of a file or of what a link leads to; none when there is nothing.
[[nodiscard]] std::optional<FileState> FileStateOf(const QString& path);

/// Whether the file has not been touched for some time: a clock that ticks a few hundred times a second does not tell
/// two changes within one tick apart, so what has just changed may change again unseen.
[[nodiscard]] bool HasSettled(const FileState& state);

}  // namespace holdwise
