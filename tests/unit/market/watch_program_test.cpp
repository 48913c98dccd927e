// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <signal.h>

#include <QElapsedTimer>
#include <QThread>

#include "holdwise/packet/packet_file.h"
#include "market_files.h"
#include "market_program.h"

namespace holdwise {
namespace {

using test::MarketFiles;

class Watch : public testing::Test {
 protected:
  void SetUp() override {
    files_.WriteMarket("date,close\n2024-01-02,10\n2024-01-03,11\n");
    files_.Write(QStringLiteral("bars/600519.csv"), "date,close\n2024-01-02,10\n2024-01-03,11\n");
    process_.start(Program(), BuildArguments(files_.Path(QString()), files_.Path(QStringLiteral("out")))
                                  << QStringLiteral("--watch"));
    ASSERT_TRUE(process_.waitForStarted());
    ASSERT_TRUE(BecomesTrue([this] { return QFileInfo::exists(Market()); }));
  }
  void TearDown() override {
    if (process_.state() == QProcess::NotRunning) return;
    process_.kill();
    process_.waitForFinished();
  }

  template <typename Condition>
  static bool BecomesTrue(const Condition& condition, int milliseconds = 20000) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
      if (timer.elapsed() > milliseconds) return false;
      QThread::msleep(20);
    }
    return true;
  }
  [[nodiscard]] QString Market() const { return files_.Path(QStringLiteral("out/market.dat")); }
  [[nodiscard]] std::int64_t CurrentDate() const { return ReadPacketFile(Market()).IntegerAt(0, 0); }
  void WriteIndices(const QByteArray& bars) {
    for (const char* name : {"indices/1.csv", "indices/399001.csv", "indices/399300.csv"}) {
      files_.Write(QString::fromUtf8(name), bars);
    }
  }

  MarketFiles files_;
  QProcess process_;
};

TEST_F(Watch, ANewDayInTheFilesIsANewDataFolder) {
  EXPECT_EQ(CurrentDate(), 20240103);
  const QByteArray bars = "date,close\n2024-01-02,10\n2024-01-03,11\n2024-01-04,12\n";
  WriteIndices(bars);
  files_.Write(QStringLiteral("bars/600519.csv"), bars);
  ASSERT_TRUE(BecomesTrue([this] { return CurrentDate() == 20240104; }));
  const Result once = RunProgram(BuildArguments(files_.Path(QString()), files_.Path(QStringLiteral("once"))));
  ASSERT_EQ(once.exitCode, 0);
  EXPECT_EQ(Contents(files_.Path(QStringLiteral("out"))), Contents(files_.Path(QStringLiteral("once"))));

  QElapsedTimer timer;
  timer.start();
  ::kill(static_cast<pid_t>(process_.processId()), SIGTERM);
  ASSERT_TRUE(process_.waitForFinished(3000)) << timer.elapsed();
  EXPECT_EQ(process_.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(process_.exitCode(), 0);
}

TEST_F(Watch, AFileThatIsBeingWrittenIsWaitedFor) {
  const QByteArray lines = "date,close\n2024-01-02,10\n2024-01-03,11\n2024-01-04,12\n2024-01-05,13\n";
  // The three indices byte for byte, a new state every tenth of a second: nothing is built meanwhile.
  QElapsedTimer sinceLast;
  sinceLast.start();
  for (qsizetype length = lines.size() / 2; length < lines.size(); length += 4) {
    WriteIndices(lines.first(length));
    if (sinceLast.restart() > 800) GTEST_SKIP() << "the machine is too busy for a test of pauses";
    EXPECT_EQ(CurrentDate(), 20240103) << length;
    QThread::msleep(100);
  }
  WriteIndices(lines);
  ASSERT_TRUE(BecomesTrue([this] { return CurrentDate() != 20240103; }));
  EXPECT_EQ(CurrentDate(), 20240105);
}

TEST_F(Watch, SomethingWrongLeavesTheFolderAsItIs) {
  const auto before = Contents(files_.Path(QStringLiteral("out")));
  QFile::remove(files_.Path(QStringLiteral("indices/399001.csv")));
  QByteArray error;
  ASSERT_TRUE(BecomesTrue([&] {
    process_.waitForReadyRead(10);
    error += process_.readAllStandardError();
    return error.contains("数据目录没有改动");
  })) << error.constData();
  EXPECT_TRUE(error.contains("缺少指数行情 深证成指")) << error.constData();
  EXPECT_EQ(Contents(files_.Path(QStringLiteral("out"))), before);
  EXPECT_EQ(process_.state(), QProcess::Running);
  WriteIndices("date,close\n2024-01-03,11\n2024-01-04,12\n");
  EXPECT_TRUE(BecomesTrue([this] { return CurrentDate() == 20240104; }));
}

TEST_F(Watch, ALastLineWithoutItsBreakIsWaitedFor) {
  // 13.75 cut short is a price too.
  const QByteArray lines = "date,close\n2024-01-02,10\n2024-01-03,11\n2024-01-04,13.75\n";
  WriteIndices(lines.chopped(3));
  QByteArray error;
  ASSERT_TRUE(BecomesTrue([&] {
    process_.waitForReadyRead(10);
    error += process_.readAllStandardError();
    return error.contains("像是还没写完");
  })) << error.constData();
  EXPECT_EQ(CurrentDate(), 20240103);
  WriteIndices(lines);
  EXPECT_TRUE(BecomesTrue([this] { return CurrentDate() == 20240104; }));
}

TEST(WatchFromTheStart, AnErrorOfTheFirstBuildIsWaitedOut) {
  const MarketFiles files;
  files.WriteMarket("date,close\n2024-01-02,10\n2024-01-03,11\n");
  files.Write(QStringLiteral("bars/600519.csv"), "date,close\n2024-01-02,10\n2024-01-03,11\n");
  const QString index = files.Path(QStringLiteral("indices/1.csv"));
  ASSERT_TRUE(QFile::rename(index, files.Path(QStringLiteral("kept.csv"))));
  QProcess process;
  process.start(Program(), BuildArguments(files.Path(QString()), files.Path(QStringLiteral("out")))
                               << QStringLiteral("--watch"));
  QByteArray error;
  QElapsedTimer timer;
  timer.start();
  while (!error.contains("数据目录没有改动") && timer.elapsed() < 20000) {
    process.waitForReadyRead(10);
    error += process.readAllStandardError();
  }
  EXPECT_TRUE(error.contains("缺少指数行情 上证指数")) << error.constData();
  EXPECT_EQ(process.state(), QProcess::Running);
  ASSERT_TRUE(QFile::rename(files.Path(QStringLiteral("kept.csv")), index));
  const QString market = files.Path(QStringLiteral("out/market.dat"));
  while (!QFileInfo::exists(market) && timer.elapsed() < 40000) process.waitForFinished(20);
  EXPECT_TRUE(QFileInfo::exists(market));
  process.kill();
  process.waitForFinished();
}

}  // namespace
}  // namespace holdwise
