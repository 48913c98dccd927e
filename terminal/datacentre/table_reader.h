// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <cstdint>
#include <vector>

#include "holdwise/packet/packet_file.h"

namespace holdwise {

/// One packet file of the data folder with the errors its reader reports: every text names the file. Rows count from 1
/// in texts.
class TableReader {
 public:
  /// Reads the file, of which `limits` say what it can hold. NotFound, Io, Corrupt or Refused as the packet reader
  /// finds it; Corrupt when it has no rows and `mayBeEmpty` is false.
  TableReader(const QString& path, const PacketLimits& limits, bool mayBeEmpty = false);

  [[nodiscard]] int RowCount() const { return table_.RowCount(); }
  /// Index of a column of that type whose rows all hold a value (unless `mayBeNull`); else Error(Corrupt).
  [[nodiscard]] int Column(const char* name, ColumnType type, bool mayBeNull = false) const;
  [[nodiscard]] const ResultSet& Table() const { return table_; }
  [[nodiscard]] int IntegerAt(int row, int column) const;
  /// Always finite: the packet reader takes nothing else.
  [[nodiscard]] double RealAt(int row, int column) const { return table_.RealAt(row, column); }
  /// The edition of the data that the file names: letters and digits, at most 64; empty when it names none, as files
  /// made before there was one. Anything else: Error(Refused).
  [[nodiscard]] QString Edition() const;
  /// Error(Refused) when the file names another edition than `edition`. Of none, on either side, nothing is known.
  void RequireEdition(const QString& edition) const;
  /// Throws Error(Refused) about a row.
  [[noreturn]] void Refuse(int row, const QString& reason) const;

 private:
  QString path_;
  ResultSet table_;
};

}  // namespace holdwise
