// SPDX-License-Identifier: MIT
#pragma once
#include "incomplete_fixture.h"

namespace holdwise::e2e {

/// A market whose data folder is made again beside or under a terminal.
class OtherData : public Incomplete {
 protected:
  OtherData() { bench_.data = bench_.File("other"); }
  /// The folder as of a day, with 600002's bars of the first two weeks of May or without them.
  void Build(const QString& date, bool isCorrected = false) {
    if (isCorrected) market_.RemoveBars("600002", "2024-05-01", "2024-05-14");
    market_.Build(bench_.data, {"--date", date});
  }
  /// Bought on a day that every folder here has reached.
  [[nodiscard]] QStringList Import() const { return {"--import", bench_.Write("p.csv", TwoPortfolios("2024-05-20"))}; }

  const Market market_;
};

}  // namespace holdwise::e2e
