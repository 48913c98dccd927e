// SPDX-License-Identifier: MIT
#include "backup/backup_service.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QThread>
#include <atomic>
#include <thread>
#include <utility>

#include "backup_fixture.h"

namespace holdwise::backup {
namespace {

using std::chrono::milliseconds;

constexpr BackupService::Times kSoon{
    .untilWritten = milliseconds(30), .untilTriedAgain = milliseconds(30), .betweenCaptures = milliseconds(0)};
constexpr BackupService::Times kNever{.untilWritten = std::chrono::hours(1),
                                      .untilTriedAgain = std::chrono::hours(1),
                                      .betweenCaptures = milliseconds(0)};
constexpr int kLongestMilliseconds = 10'000;

class BackupServiceTest : public BackupTest {
 protected:
  std::unique_ptr<BackupService> Start(const BackupService::Times& times, BackupService::OnState onState = {}) {
    return StartOn(temp_.Service(), times, std::move(onState));
  }
  std::unique_ptr<BackupService> StartOn(UserDataServices& database, const BackupService::Times& times,
                                         BackupService::OnState onState = {}) {
    return std::make_unique<BackupService>(database, folder_, clock_, log_, times, std::move(onState));
  }
  template <typename Condition>
  static bool Until(const Condition& condition) {
    QElapsedTimer time;
    time.start();
    while (!condition() && time.elapsed() < kLongestMilliseconds) QThread::msleep(5);
    return condition();
  }
  [[nodiscard]] std::size_t Count() const { return folder_.List().size(); }

  QTemporaryDir work_;
  BackupFolder folder_{work_.path()};
  ScriptedClock clock_;
  ScriptedDebug log_;
};

TEST_F(BackupServiceTest, AChangeIsWrittenSoonAndNothingElse) {
  AddThree();
  const auto service = Start(kSoon);
  ASSERT_TRUE(Until([&] { return Count() == 1; }));
  EXPECT_EQ(LoadPortfolioFile(folder_.Newest()->path), Now());
  Do(QStringLiteral("update alg_commain set SAVEFLAG=1"));
  service->Changed(ChangedBy::User);
  ASSERT_TRUE(Until([&] { return Count() == 2; }));
  EXPECT_EQ(LoadPortfolioFile(folder_.Newest()->path), Now());
  Do(QStringLiteral("update alg_commain set FC=3"));
  service->Changed(ChangedBy::Calculation);
  service->WriteNow();
  EXPECT_EQ(Count(), 2U);
  EXPECT_EQ(service->State().newest->portfolios, 3);
  EXPECT_EQ(service->State().problem, QString());
}

TEST_F(BackupServiceTest, TheEndWritesWhatIsWaiting) {
  {
    const auto service = Start(kNever);
    AddThree();
    service->Changed(ChangedBy::User);
    EXPECT_EQ(Count(), 0U);
  }
  ASSERT_EQ(Count(), 1U);
  EXPECT_EQ(LoadPortfolioFile(folder_.Newest()->path), Now());
}

TEST_F(BackupServiceTest, AFolderWithoutGenerationsGetsItsFirst) {
  AddThree();
  Start(kNever).reset();
  EXPECT_EQ(Count(), 1U);
  Do(QStringLiteral("delete from alg_comdetail where MAINID=1"));
  Do(QStringLiteral("delete from alg_commain where ID=1"));
  // Nobody has said that anything was changed: it is not this program's doing.
  Start(kNever).reset();
  EXPECT_EQ(Count(), 1U);
}

TEST_F(BackupServiceTest, AnEntryThatIsDeletedAtOnceIsInAGeneration) {
  AddThree();
  const auto service = Start(kNever);
  service->WriteNow();
  Add(QStringLiteral("新的"), 5);
  service->Changed(ChangedBy::User);
  const PortfolioSet withEntry = Now();
  service->BeforeChange();
  Do(QStringLiteral("delete from alg_comdetail where MAINID=4"));
  Do(QStringLiteral("delete from alg_commain where ID=4"));
  service->Changed(ChangedBy::User);
  service->WriteNow();
  const std::vector<Generation> generations = folder_.List();
  ASSERT_EQ(generations.size(), 3U);
  EXPECT_EQ(generations[0].portfolios, 3);
  EXPECT_EQ(LoadPortfolioFile(generations[1].path), withEntry);
}

TEST_F(BackupServiceTest, WhatCouldNotBeWrittenIsToldAndTriedAgain) {
  AddThree();
  QFile inTheWay(folder_.Path());
  ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
  std::atomic<int> told = 0;
  const auto service = Start(kSoon, [&told](const BackupState& state) {
    if (!state.problem.isEmpty()) ++told;
  });
  service->Changed(ChangedBy::User);
  ASSERT_TRUE(Until([&] { return told > 1; }));
  EXPECT_FALSE(service->State().problem.isEmpty());
  ASSERT_TRUE(inTheWay.remove());
  ASSERT_TRUE(Until([&] { return service->State().newest.has_value(); }));
  EXPECT_TRUE(Until([&] { return service->State().problem.isEmpty(); }));
}

TEST_F(BackupServiceTest, AReadingThatFailsIsToldAndTriedAgain) {
  AddThree();
  const auto service = StartOn(database_, kNever);
  database_.plan.FailCall(0);
  service->WriteNow();
  EXPECT_TRUE(service->State().problem.contains(QStringLiteral("injected failure")));
  EXPECT_EQ(Count(), 0U);
  service->WriteNow();
  EXPECT_EQ(service->State().problem, QString());
  EXPECT_EQ(Count(), 1U);
}

TEST_F(BackupServiceTest, ManyChangesFromTwoSidesLoseNothing) {
  const auto service = Start(kSoon);
  std::thread calculation([&] {
    for (int round = 0; round < 200; ++round) {
      const auto session = temp_.Service().OpenSession();
      MustExecute(*session, QStringLiteral("update alg_commain set FC=%1").arg(round));
      service->Changed(ChangedBy::Calculation);
    }
  });
  for (int round = 0; round < 40; ++round) {
    service->BeforeChange();
    Add(QStringLiteral("组合%1").arg(round), 3);
    service->Changed(ChangedBy::User);
  }
  calculation.join();
  service->WriteNow();
  EXPECT_EQ(LoadPortfolioFile(folder_.Newest()->path), Now());
  EXPECT_EQ(Now().portfolios.size(), 40U);
}

}  // namespace
}  // namespace holdwise::backup
