// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include <QFile>
#include <QThread>

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
  /// Of the data folder on that work folder, into `out` of this bench.
  [[nodiscard]] Outcome ExportIn(const Bench& work, const QStringList& more = {}) const {
    return RunTerminal(QStringList{"--data", bench_.data, "--work", work.Work(), "--export", bench_.File("out")} +
                       more);
  }
  [[nodiscard]] Outcome Export(const QStringList& more = {}) const { return ExportIn(bench_, more); }
  /// What a terminal that runs on that work folder exports once its figures are whole again.
  [[nodiscard]] Outcome ExportWhenWhole(const Bench& work) const {
    Outcome outcome = ExportIn(work);
    for (int time = 0; time < 20 && outcome.exitCode != 0; ++time) {
      QThread::msleep(1000);
      outcome = ExportIn(work);
    }
    return outcome;
  }
  [[nodiscard]] QStringList Import() const { return {"--import", bench_.Write("p.csv", TwoPortfolios())}; }
  [[nodiscard]] std::vector<QStringList> Risk() const { return ReadCsv(bench_.File("out/2002-strngrd.csv")); }
  /// The figures of a terminal that never lacked anything, and never knew other data.
  static std::vector<QStringList> WholeRisk(const QString& data = SharedMarket().Data()) {
    Bench whole;
    whole.data = data;
    const Outcome outcome = whole.Import();
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    return ReadCsv(whole.File("out/2002-strngrd.csv"));
  }

  Bench bench_;
};

}  // namespace holdwise::e2e
