// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include <QFile>

#include "terminal_process.h"

namespace holdwise::e2e {

/// A file of the data folder that is missing at the first calculation, and is there again later.
class Incomplete : public testing::Test {
 protected:
  Incomplete() {
    bench_.data = bench_.File("data");
    CopyFolder(SharedMarket().Data(), bench_.data);
  }
  [[nodiscard]] QString PathOf(const char* name) const { return bench_.data + "/QMTL/TZZH/Day250/" + name; }
  void TakeAway(const char* name) { ASSERT_TRUE(QFile::rename(PathOf(name), PathOf(name) + ".away")); }
  void PutBack(const char* name) { ASSERT_TRUE(QFile::rename(PathOf(name) + ".away", PathOf(name))); }
  [[nodiscard]] Outcome Export(const QStringList& more = {}) const {
    return RunTerminal(bench_.Arguments(QStringList{"--export", bench_.File("out")} + more));
  }
  [[nodiscard]] QStringList Import() const { return {"--import", bench_.Write("p.csv", TwoPortfolios())}; }
  [[nodiscard]] std::vector<QStringList> Risk() const { return ReadCsv(bench_.File("out/2002-strngrd.csv")); }
  /// The figures of a terminal that never lacked anything, and never knew other data.
  static std::vector<QStringList> WholeRisk(const QString& data = SharedMarket().Data()) {
    Bench whole;
    whole.data = data;
    const Outcome outcome = RunTerminal(
        whole.Arguments({"--import", whole.Write("p.csv", TwoPortfolios()), "--export", whole.File("out")}));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    return ReadCsv(whole.File("out/2002-strngrd.csv"));
  }

  Bench bench_;
};

}  // namespace holdwise::e2e
