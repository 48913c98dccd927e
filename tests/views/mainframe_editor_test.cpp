// SPDX-License-Identifier: MIT
// The timer's branch for the portfolio editor: unsaved portfolios are the ones that count.
#include <gtest/gtest.h>

#include <QTest>
#include <algorithm>

#include "common/store/database.h"
#include "view_bench.h"

namespace holdwise::test {
namespace {

constexpr int kEditor = 1002;
constexpr int kPerformance = 2001;

const QString kAll = QStringLiteral("select Count(*) from alg_commain");
const QString kSaved = QStringLiteral("select Count(*) from alg_commain where SAVEFLAG = 1");
const QString kUnsaved = QStringLiteral("select Count(*) from alg_commain where SAVEFLAG <> 1");
const QString kProcedure = QStringLiteral("execute procedure INITFIRSTCALC('2024-05-29')");

class EditorTimer : public testing::Test {
 protected:
  /// Goes to the node while the timer of the start still waits, and returns what it asks of a database with so many
  /// portfolios.
  std::vector<QString> LogOfTheTimer(int node, int saved, int unsaved) {
    bench.OpenMainFrame();
    bench.ClickNode(node);
    FakeUserData& fake = bench.host.fakeUserData;
    fake.SetNumber(kAll, saved + unsaved);
    fake.SetNumber(kSaved, saved);
    fake.SetNumber(kUnsaved, unsaved);
    fake.SetNumber(QStringLiteral("select Count(ID) from alg_commain where isFinished = 0"), 0);
    fake.ClearLog();
    FDBServer = &fake;
    const auto hasBegun = [&] { return Has(fake.Log(), kAll); };
    EXPECT_TRUE(QTest::qWaitFor(hasBegun, 30000));
    FDBServer = &bench.database.Service();
    return fake.Log();
  }
  static bool Has(const std::vector<QString>& log, const QString& statement) {
    return std::find(log.begin(), log.end(), statement) != log.end();
  }
  ViewBench bench;
};

TEST_F(EditorTimer, UnsavedPortfoliosBringTheProcedureUp) {
  const std::vector<QString> log = LogOfTheTimer(kEditor, 0, 1);
  const auto asked = std::find(log.begin(), log.end(), kUnsaved);
  ASSERT_NE(asked, log.end());
  EXPECT_NE(std::find(asked, log.end(), kProcedure), log.end()) << "after the question";
  EXPECT_FALSE(Has(log, kSaved));
}

TEST_F(EditorTimer, SavedPortfoliosAloneDoNot) {
  const std::vector<QString> log = LogOfTheTimer(kEditor, 3, 0);
  EXPECT_TRUE(Has(log, kUnsaved));
  EXPECT_FALSE(Has(log, kSaved));
  EXPECT_FALSE(Has(log, kProcedure));
}

TEST_F(EditorTimer, WithoutPortfoliosNothingElseIsAsked) {
  const std::vector<QString> log = LogOfTheTimer(kEditor, 0, 0);
  EXPECT_FALSE(Has(log, kUnsaved));
  EXPECT_FALSE(Has(log, kProcedure));
}

TEST_F(EditorTimer, EveryOtherViewCountsTheSavedOnes) {
  const std::vector<QString> log = LogOfTheTimer(kPerformance, 0, 2);
  EXPECT_TRUE(Has(log, kSaved));
  EXPECT_FALSE(Has(log, kUnsaved));
  EXPECT_FALSE(Has(log, kProcedure));
}

}  // namespace
}  // namespace holdwise::test
