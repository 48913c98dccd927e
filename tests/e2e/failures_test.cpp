// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include "screen.h"
#include "terminal_process.h"

namespace holdwise::e2e {
namespace {

struct BadOption {
  const char* name;
  QStringList arguments;
  const char* expected;
};

class BadOptionTest : public testing::TestWithParam<BadOption> {};
INSTANTIATE_TEST_SUITE_P(All, BadOptionTest,
                         testing::Values(BadOption{"Unknown", {"--nonsense"}, "nonsense"},
                                         BadOption{"Theme", {"--theme", "blue"}, "blue"},
                                         BadOption{"Bus", {"--bus", "carrier-pigeon"}, "carrier-pigeon"},
                                         BadOption{"NoValue", {"--export"}, "export"},
                                         BadOption{"EmptyValue", {"--work", ""}, "--work"},
                                         BadOption{"LeftOver", {"data"}, "data"}),
                         [](const auto& option) { return option.param.name; });

TEST_P(BadOptionTest, EndsWithTwoAndSaysWhich) {
  const Outcome outcome = RunTerminal(GetParam().arguments);
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(outcome.err.contains(GetParam().expected)) << outcome.err.toStdString();
}

TEST(Options, HelpAndVersionNeedNothing) {
  EXPECT_EQ(RunTerminal({"--help"}).exitCode, 0);
  EXPECT_TRUE(RunTerminal({"--help"}).out.contains("--export"));
  EXPECT_TRUE(RunTerminal({"--version"}).out.contains("1.0.0"));
}

TEST(Options, ANameOfAnotherEncodingIsRefusedAsWhatItIs) {
  const Bench bench;
  // "组合.csv" in GB18030, encoded by Python.
  const Outcome outcome =
      e2e::Run("sh", {"-c", R"sh(exec "$0" --work "$1" --import "$(printf '/\327\351\272\317.csv')")sh",
                      Program("holdwise-terminal"), bench.Work()});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(outcome.err.contains("参数“/组合.csv”不是 UTF-8 编码")) << outcome.err.toStdString();
  EXPECT_FALSE(QDir(bench.Work()).exists());
}

class OtherEncoding : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(All, OtherEncoding,
                         testing::Values("work", "data", "db", "import", "export", "backup", "restore"));

TEST_P(OtherEncoding, IsRefusedInEveryOption) {
  const Bench bench;
  const QString option = QStringLiteral("--%1").arg(GetParam());
  const Outcome outcome = e2e::Run("sh", {"-c", R"sh(exec "$0" "$1" "$2$(printf '/\327\351\272\317')")sh",
                                          Program("holdwise-terminal"), option, bench.File("in")});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(outcome.err.contains("不是 UTF-8 编码")) << outcome.err.toStdString();
  EXPECT_TRUE(outcome.err.contains("组合")) << outcome.err.toStdString();
  EXPECT_FALSE(QDir(bench.File("in")).exists());
}

TEST(Options, ACurrentFolderOfAnotherEncodingIsRefusedWhereAPathBeginsThere) {
  const Bench bench;
  const auto run = [&bench](const QString& work) {
    return e2e::Run("sh", {"-c", R"sh(cd "$1" && mkdir -p "$(printf '\327\351')" && cd "$(printf '\327\351')" &&
                                       exec "$0" --work "$2" --data /nowhere --backup "$1/all.csv")sh",
                           Program("holdwise-terminal"), bench.File(""), work});
  };
  const Outcome relative = run("work");
  EXPECT_EQ(relative.exitCode, 2);
  EXPECT_TRUE(relative.err.contains("不是 UTF-8 编码的目录名")) << relative.err.toStdString();
  // The folder itself does not show here; one of another name would.
  EXPECT_EQ(QDir(bench.File("")).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList());
  EXPECT_EQ(run(bench.Work()).exitCode, 0);
  EXPECT_EQ(e2e::Run("rm", {"-r", bench.File("")}).exitCode, 0);  // nor can it be taken away from here
}

TEST(Options, AWindowNeedsADisplay) {
  const Bench bench;
  const Outcome outcome = RunTerminal(bench.Arguments({}));
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(outcome.err.contains("DISPLAY")) << outcome.err.toStdString();
}

TEST(Options, AnUnknownAddressIsRefused) {
  const Bench bench;
  const Outcome outcome = RunTerminal(bench.Arguments({"--address", "没有", "--export", bench.File("out")}));
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(outcome.err.contains("没有地址“没有”")) << outcome.err.toStdString();
}

TEST(Database, AFileThatIsDeletedWhileTheTerminalRunsIsSaid) {
  const Bench bench;
  RunningTerminal running(bench.Arguments({"--parameter", "Skip风险计量"}));
  ASSERT_TRUE(running.WaitForWindow());
  const auto isSaid = [&] { return Bytes(bench.Work() + "/log/terminal.log").contains("holdwise.fdb 被删除或移走了"); };
  QThread::msleep(500);
  EXPECT_FALSE(isSaid());
  ASSERT_TRUE(QFile::remove(bench.Work() + "/holdwise.fdb"));
  EXPECT_TRUE(Until(isSaid, 10'000));
}

/// Three ways for a work folder to go, and one for the folder of the engine's lock files.
class WorkFolderGoing : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(All, WorkFolderGoing, testing::Values("removed", "moved", "replaced", "lock"));

void TakeAway(const Bench& bench, const std::string& way) {
  if (way == "removed") {
    ASSERT_TRUE(QDir(bench.Work()).removeRecursively());
  } else if (way == "lock") {
    ASSERT_TRUE(QDir(bench.Work() + "/lock").removeRecursively());
  } else {
    ASSERT_TRUE(QDir().rename(bench.Work(), bench.File("away")));
    if (way == "replaced") {
      ASSERT_TRUE(QDir().mkdir(bench.Work()));
    }
  }
}

TEST_P(WorkFolderGoing, IsSaidAtOnceAndTheEndIsOrderly) {
  const std::string way = GetParam();
  const Bench bench;
  ASSERT_EQ(bench.Import().exitCode, 0);
  RunningTerminal running(bench.Arguments({"--parameter", "Skip风险计量"}));
  ASSERT_TRUE(running.WaitForWindow());
  QThread::msleep(500);
  TakeAway(bench, way);
  QString told;
  for (int time = 0; time < 40 && !told.contains("工作目录"); ++time) {
    running.Process().waitForReadyRead(50);
    told += QString::fromUtf8(running.Process().readAllStandardError());
  }
  EXPECT_EQ(told.contains(QStringLiteral("工作目录 %1 被删除或移走了").arg(bench.Work())), way != "lock")
      << told.toStdString();
  EXPECT_GE(running.Signal(SIGTERM), 0);
  EXPECT_EQ(running.Process().exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(running.Process().exitCode(), 0);
  told += QString::fromUtf8(running.Process().readAllStandardError());
  EXPECT_FALSE(told.contains("terminate called")) << told.toStdString();
  EXPECT_EQ(QDir(bench.Work()).exists(), way == "replaced" || way == "lock");
  if (way == "moved") {  // and what was moved away is whole
    ASSERT_TRUE(QDir().rename(bench.File("away"), bench.Work()));
    EXPECT_EQ(bench.Export("2001-strngrd").size(), 2U);
  }
}

TEST(WorkFolderGone, EverythingCanBeWrittenElsewhereFromTheNotice) {
  const Screen screen;
  if (!screen.IsThere()) GTEST_SKIP() << "no Xvfb";
  const Bench bench;
  ASSERT_EQ(bench.Import().exitCode, 0);
  RunningTerminal running(bench.Arguments({}), screen.Environment());
  ASSERT_TRUE(running.WaitForWindow());
  ASSERT_TRUE(QDir(bench.Work()).removeRecursively());
  ASSERT_TRUE(screen.Enter("数据的位置不在了"));
  screen.Keys({"Return"});
  ASSERT_TRUE(screen.Enter("导出组合"));
  screen.Keys({"ctrl+a"});
  screen.Type(bench.File("saved.csv"));
  screen.Keys({"Return"});
  ASSERT_TRUE(Until([&] { return QFileInfo::exists(bench.File("saved.csv")); }, 10'000));
  ASSERT_GE(running.Signal(SIGTERM), 0);
  EXPECT_EQ(running.Process().exitStatus(), QProcess::NormalExit);
  // What was written brings everything back into an empty folder.
  EXPECT_EQ(
      RunTerminal(bench.Arguments({"--restore", bench.File("saved.csv"), "--export", bench.File("out2")})).exitCode, 0);
  EXPECT_EQ(bench.Export("2001-strngrd").size(), 2U);
}

class DataFolder : public testing::Test {
 protected:
  void ExpectRefused(const QString& expected) {
    const Outcome outcome = RunTerminal(bench_.Arguments({"--export", bench_.File("out")}));
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(outcome.err.contains(expected)) << outcome.err.toStdString();
    EXPECT_TRUE(outcome.err.contains("holdwise-market build")) << outcome.err.toStdString();
    EXPECT_FALSE(QFileInfo::exists(bench_.File("out")));

    RunningTerminal window(bench_.Arguments({}));
    EXPECT_TRUE(window.WaitForWindow());
    EXPECT_GE(window.Signal(SIGTERM), 0);
    EXPECT_EQ(window.Process().exitCode(), 0);
  }
  Bench bench_;
};

TEST_F(DataFolder, MissingIsToldWithTheCommandsThatMakeOne) {
  bench_.data = bench_.File("none");
  ExpectRefused("market.dat");
}

TEST_F(DataFolder, EmptyIsTold) {
  bench_.data = bench_.File("empty");
  QDir().mkpath(bench_.data);
  ExpectRefused("market.dat");
}

TEST_F(DataFolder, EveryDamagedFileIsNamed) {
  for (const char* name : {"market.dat", "securities.dat", "trading_dates.dat", "quotes.dat"}) {
    bench_.data = bench_.File(QString("damaged-") + name);
    CopyFolder(SharedMarket().Data(), bench_.data);
    QFile file(bench_.data + '/' + name);
    ASSERT_TRUE(file.resize(file.size() / 2));
    ExpectRefused(name);
  }
}

TEST(Database, DamagedIsToldAndLeftAlone) {
  const Bench bench;
  QDir().mkpath(bench.Work());
  const QByteArray rubbish("this is not a database\n");
  bench.Write("work/holdwise.fdb", rubbish.repeated(1000));
  const Outcome outcome = RunTerminal(bench.Arguments({"--export", bench.File("out")}));
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains("holdwise.fdb")) << outcome.err.toStdString();
  EXPECT_EQ(Bytes(bench.Work() + "/holdwise.fdb"), rubbish.repeated(1000));
}

TEST(Database, CutShortIsTold) {
  const Bench bench;
  ASSERT_EQ(RunTerminal(bench.Arguments({"--export", bench.File("out")})).exitCode, 0);
  QFile file(bench.Work() + "/holdwise.fdb");
  ASSERT_TRUE(file.resize(file.size() / 3));
  const Outcome outcome = RunTerminal(bench.Arguments({"--export", bench.File("out2")}));
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains("holdwise.fdb")) << outcome.err.toStdString();
}

TEST(Database, HeldByAnotherTerminalIsTold) {
  const Bench first;
  const Bench second;
  const QStringList sameFile{"--db", first.File("shared.fdb")};
  RunningTerminal holder(first.Arguments(sameFile));
  ASSERT_TRUE(holder.WaitForWindow());
  const Outcome outcome = RunTerminal(second.Arguments(sameFile + QStringList{"--export", second.File("out")}));
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains("shared.fdb 正被另一个程序使用")) << outcome.err.toStdString();
  EXPECT_EQ(holder.Process().state(), QProcess::Running);
}

TEST(Database, ThatCannotBeOpenedIsTriedAgainWithOneButton) {
  const Screen screen;
  if (!screen.IsThere()) GTEST_SKIP() << "Xvfb";
  const Bench first;
  const Bench second;
  const QStringList sameFile{"--db", first.File("shared.fdb")};
  RunningTerminal holder(first.Arguments(sameFile));
  ASSERT_TRUE(holder.WaitForWindow());
  RunningTerminal waiting(second.Arguments(sameFile), screen.Environment());
  ASSERT_TRUE(screen.Enter("^数据库不能打开$"));
  screen.Keys({"space"});
  ASSERT_TRUE(screen.IsGone("^数据库不能打开$"));
  ASSERT_TRUE(screen.Enter("^数据库不能打开$")) << "still held";
  EXPECT_GE(holder.Signal(SIGTERM), 0);
  screen.Keys({"space"});
  EXPECT_TRUE(waiting.WaitForWindow());
  EXPECT_GE(waiting.Signal(SIGTERM), 0);
  EXPECT_EQ(waiting.Process().exitCode(), 0);
}

TEST(WorkFolder, ThatCannotBeMadeIsTold) {
  const Bench bench;
  const QString file = bench.Write("file", "x");
  for (const QString& work : {file, file + "/work", QString("/proc/work")}) {
    const Outcome outcome = RunTerminal({"--data", bench.data, "--work", work, "--export", bench.File("out")});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(outcome.err.contains(work)) << outcome.err.toStdString();
  }
}

TEST(WorkFolder, ThatHoldsOtherThingsKeepsItsMode) {
  const Bench bench;
  ASSERT_TRUE(QDir().mkpath(bench.Work() + "/photos"));
  const auto open = QFile::permissions(bench.Work()) | QFileDevice::ReadOther | QFileDevice::ExeOther;
  ASSERT_TRUE(QFile::setPermissions(bench.Work(), open));
  const Outcome outcome = RunTerminal(bench.Arguments({"--export", bench.File("out")}));
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains("chmod 700")) << outcome.err.toStdString();
  EXPECT_EQ(QFile::permissions(bench.Work()), open);
  EXPECT_EQ(QDir(bench.Work()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{"photos"});
}

/// Runs a terminal from a text terminal where somebody has typed a line. @return its exit code; `said` is what stood
/// there then
int RunFromTextTerminal(const QStringList& arguments, const QByteArray& line, QByteArray& said) {
  const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
  if (master < 0 || ::grantpt(master) != 0 || ::unlockpt(master) != 0) return -1;
  const QByteArray name = ::ptsname(master);
  QProcess process;
  process.setProcessEnvironment(BareEnvironment());
  process.setChildProcessModifier([&name] {
    const int end = ::open(name.constData(), O_RDWR | O_NOCTTY);
    ::dup2(end, STDIN_FILENO);
    ::dup2(end, STDERR_FILENO);
  });
  if (::write(master, line.constData(), static_cast<std::size_t>(line.size())) != line.size()) return -1;
  process.start(Program("holdwise-terminal"), arguments);
  const bool isFinished = process.waitForFinished(60'000 * kSlowness);
  said.resize(4096);
  said.resize(std::max<ssize_t>(0, ::read(master, said.data(), static_cast<std::size_t>(said.size()))));
  ::close(master);
  return isFinished ? process.exitCode() : -1;
}

TEST(WorkFolder, ThatHoldsOtherThingsIsClosedWhenTheUserAgrees) {
  for (const bool agrees : {false, true}) {
    const Bench bench;
    ASSERT_TRUE(QDir().mkpath(bench.Work() + "/photos"));
    const auto open = QFile::permissions(bench.Work()) | QFileDevice::ReadOther | QFileDevice::ExeOther;
    ASSERT_TRUE(QFile::setPermissions(bench.Work(), open));
    QByteArray said;
    const int exitCode =
        RunFromTextTerminal(bench.Arguments({"--export", bench.File("out")}), agrees ? "y\n" : "n\n", said);
    EXPECT_EQ(exitCode, agrees ? 0 : 1) << said.toStdString();
    EXPECT_TRUE(said.contains("改吗？")) << said.toStdString();
    EXPECT_TRUE(said.contains(bench.Work().toUtf8())) << said.toStdString();
    struct stat mode {};
    ASSERT_EQ(::stat(QFile::encodeName(bench.Work()).constData(), &mode), 0);
    EXPECT_EQ((mode.st_mode & 0777U) == 0700U, agrees);
    EXPECT_TRUE(QFileInfo(bench.Work() + "/photos").isDir());
    EXPECT_EQ(QFile::exists(bench.Work() + "/holdwise.fdb"), agrees);
  }
}

TEST(WorkFolder, APipeInThePlaceOfAFileIsRefusedAtOnce) {
  for (const char* name : {"settings.ini", "log/terminal.log", "terminal.lock", "holdwise.fdb", "holdwise.fdb.open",
                           "holdwise.fdb.checked", "TZZHMerge.dat", "TZZHOwner.txt"}) {
    const Bench bench;
    ASSERT_TRUE(QDir().mkpath(bench.Work() + "/log"));
    bench.Write("work/optional_stocks.txt", "600001\n");
    QFile::remove(bench.Work() + '/' + name);
    ASSERT_EQ(mkfifo(QFile::encodeName(bench.Work() + '/' + name).constData(), 0600), 0);
    const Outcome outcome = e2e::Run(Program("holdwise-terminal"), bench.Arguments({"--export", bench.File("out")}),
                                     BareEnvironment(), 10'000);
    EXPECT_EQ(outcome.exitCode, 1) << name;
    EXPECT_TRUE(outcome.err.contains(name)) << outcome.err.toStdString();
  }
}

TEST(WorkFolder, MayHaveAVeryLongName) {
  const Bench bench;
  const QString work = bench.File(QString(120, 'a') + '/' + QString(120, 'b'));
  const QStringList arguments{"--data", bench.data, "--work", work};
  RunningTerminal running(arguments);
  ASSERT_TRUE(running.WaitForWindow());
  EXPECT_EQ(RunTerminal(arguments + QStringList{"--address", "工具条"}).exitCode, 0);
}

TEST(Plugins, MissingAreTold) {
  const Bench bench;
  QProcessEnvironment environment = BareEnvironment();
  environment.insert("HOLDWISE_PLUGIN_DIR", bench.File("none"));
  const Outcome outcome = RunTerminal(bench.Arguments({"--export", bench.File("out")}), environment);
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains(bench.File("none"))) << outcome.err.toStdString();
}

TEST(Plugins, LibrariesThatAreNoneAreTold) {
  const Bench bench;
  QDir().mkpath(bench.File("plugins"));
  bench.Write("plugins/a.so", "no library");
  // A library without the entry functions.
  ASSERT_TRUE(
      QFile::copy(QFileInfo("/lib/x86_64-linux-gnu/libm.so.6").canonicalFilePath(), bench.File("plugins/b.so")));
  QProcessEnvironment environment = BareEnvironment();
  environment.insert("HOLDWISE_PLUGIN_DIR", bench.File("plugins"));
  const Outcome outcome = RunTerminal(bench.Arguments({"--export", bench.File("out")}), environment);
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains("“a.so”不能装入")) << outcome.err.toStdString();
  EXPECT_TRUE(outcome.err.contains("“b.so”不是本终端的插件")) << outcome.err.toStdString();
}

}  // namespace
}  // namespace holdwise::e2e
