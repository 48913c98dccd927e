// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "holdwise/packet/packet_file.h"
#include "holdwise/packet/result_set.h"

/// What the targets share.
namespace holdwise::fuzz {

class BrokenProperty : public std::logic_error {
 public:
  using std::logic_error::logic_error;
};

/// Throws BrokenProperty naming the property unless it holds.
inline void Require(bool holds, const char* property) {
  if (!holds) throw BrokenProperty(property);
}

/// The input as Qt's bytes, without a copy; valid as long as the input.
[[nodiscard]] QByteArray Raw(std::string_view input);
[[nodiscard]] std::string_view View(const QByteArray& bytes);

/// Small enough for a fuzzer to reach, and to keep an input from taking much memory.
inline constexpr PacketLimits kSmallLimits = {.compressedBytes = 1 << 16,
                                              .contentBytes = 1 << 20,
                                              .columns = 64,
                                              .rows = 1 << 14,
                                              .nameBytes = 128,
                                              .textBytes = 1 << 14,
                                              .memoryBytes = 16 << 20};

/// A set that a reader accepted: every cell has a text, and the set comes back equal from a packet and, where it can be
/// written as CSV, from CSV.
void CheckAccepted(const ResultSet& resultSet);

/// A valid UTF-8 text in GB18030, when it can be written so and the result does not pass for UTF-8.
[[nodiscard]] std::optional<QByteArray> ToGb18030(const QByteArray& utf8);

/// A file in memory for readers that want a path.
class MemoryFile {
 public:
  explicit MemoryFile(std::string_view content);
  ~MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  [[nodiscard]] QString Path() const;

 private:
  int descriptor_;
};

}  // namespace holdwise::fuzz
