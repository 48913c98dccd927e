// SPDX-License-Identifier: MIT
#pragma once
#include <cstdint>
#include <optional>
#include <vector>

#include "holdwise/market/bar_reader.h"

/// Lines of bars on their way from tables to a security's bars.
namespace holdwise {

/// What a line has beside its close that tells how to adjust it; what comes first in this order is taken.
enum class BarBasis { None, AdjustedClose, PriceFactor, PreviousClose, CumulativeFactor, Change };

/// Small: there are millions of them at once.
struct BarLine {
  std::uint32_t date : 31;
  std::uint32_t isSpecialTreatment : 1;
  std::uint32_t line = 0;  // counted on through all files of a source
  double close = 0;
  double volume = 0;
  double basis = 0;  // NaN = not known on that day
};

/// A file of a source and the number of lines in those before it.
struct LineFile {
  QString path;
  std::uint32_t linesBefore = 0;
};

/// Reads the lines of a table of bars. Not thread-safe.
class BarLineReader {
 public:
  enum class Use { Bar, NoTrade, Later, Rejected };

  BarLineReader(CsvTable& table, const BarRules& rules);
  [[nodiscard]] BarBasis Basis() const { return basis_; }
  [[nodiscard]] bool HasVolumes() const;
  /// The table's current line; what is rejected is recorded with the table. A backward-adjusted one: Error(Refused).
  Use Read(BarLine& line);
  [[nodiscard]] bool WasZeroPrice() const { return wasZeroPrice_; }
  /// Whether the line just read says that its prices are not adjusted.
  [[nodiscard]] bool SaysAsTraded() const;

 private:
  [[nodiscard]] bool IsNoTrade() const;
  [[nodiscard]] bool SaysNothing() const;
  std::optional<QString> CheckPrices(double& close);
  std::optional<QString> CheckVolume(double& volume, double close, bool& isSuspended) const;
  std::optional<QString> ReadBasis(double& basis) const;
  std::optional<QString> CheckDay(int date) const;

  CsvTable& table_;
  BarRules rules_;
  BarBasis basis_;
  bool wasZeroPrice_ = false;
};

/// The lines of one security.
struct BarLines {
  std::vector<BarLine> lines;
  std::vector<std::uint32_t> suspendedDates;
  BarBasis basis = BarBasis::None;
  bool hasVolumes = false;
  int zeroPrices = 0;
  int laterLines = 0;
  bool sayAsTraded = false;
  /// Keeps what a line that has been read says.
  void Add(const BarLine& line, BarLineReader::Use use, const BarLineReader& reader);
};

/// One security's bars of its lines in any order; what is rejected here goes with those in `rejections`, by lines.
[[nodiscard]] BarFile AssembleBars(BarLines lines, const std::vector<LineFile>& files,
                                   std::vector<Rejection> rejections, const BarRules& rules);

}  // namespace holdwise
