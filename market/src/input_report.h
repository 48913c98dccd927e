// SPDX-License-Identifier: MIT
#pragma once
#include <array>
#include <span>
#include <vector>

#include "bar_folder.h"
#include "holdwise/market/bar_reader.h"

namespace holdwise {

/// What was understood of the files, for the person who gave them. Not thread-safe.
class InputReport {
 public:
  /// @param understood as CsvTable::Understood; files beside each other of which the same was understood are one line
  void AddFile(const QString& path, const QString& understood);
  /// @param lastDate the market's last trading date
  void AddStock(const StockFile& stock, const BarFile& file, int lastDate);

  /// What is odd about indices or dates.
  void AddDoubt(const QString& doubt);

  /// Chinese lines: files with their columns, then what the bars are like.
  [[nodiscard]] std::vector<QString> Understood(std::span<const int> tradingDates) const;
  /// The part of it that matters after every build: how bars were adjusted, what is missing.
  [[nodiscard]] std::vector<QString> Brief() const;
  /// Chinese: that bars look as traded, and what to do about it; none when they do not.
  [[nodiscard]] std::vector<QString> Advice() const;

 private:
  struct Files {
    QString first;
    QString understood;
    int count = 0;
  };
  /// How many there are of a kind, and one of them.
  struct Some {
    int count = 0;
    QString example;
    void Add(const QString& text);
    [[nodiscard]] QString Text() const;
  };

  std::vector<Files> files_;
  std::array<int, kAdjustments> adjusted_{};
  int stocks_ = 0;
  int firstDate_ = 0;
  int lastDate_ = 0;
  std::int64_t suspendedDays_ = 0;
  int zeroPrices_ = 0;
  Some gaps_;
  Some stale_;
  Some still_;
  Some doubted_;
  std::int64_t doubts_ = 0;
  Some oddReferences_;
};

}  // namespace holdwise
