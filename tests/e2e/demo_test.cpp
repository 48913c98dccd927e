// SPDX-License-Identifier: MIT
// From the user's own data to the simulated market that is tried out, back again, and to another data folder.
#include <sys/stat.h>

#include <QDir>
#include <QSettings>
#include <csignal>
#include <optional>

#include "holdwise/packet/packet_file.h"
#include "window_fixture.h"

namespace holdwise::e2e {
namespace {

class Demo : public Window {
 protected:
  void SetUp() override {
    Window::SetUp();
    if (IsSkipped()) return;
    // A work folder is the user's alone; a test that begins with what stands in one has to make it.
    ASSERT_TRUE(QDir().mkpath(bench_.Work()));
    ASSERT_TRUE(QFile::setPermissions(bench_.Work(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
  }
  [[nodiscard]] QString Folder() const { return bench_.Work() + "/demo"; }
  /// The market that the button would make takes ten times as long.
  void MakeDemo() const {
    ASSERT_TRUE(QDir().mkpath(Folder()));
    SharedMarket().Build(Folder() + "/market", {"--simulated"});
  }
  void Start(const QStringList& arguments) {
    terminal_.emplace(arguments, screen_.Environment());
    ASSERT_TRUE(terminal_->WaitForWindow());
  }
  [[nodiscard]] QStringList Bare() const { return {"--work", bench_.Work()}; }
  /// Chooses in the file menu by its letter.
  void FileMenu(const char* letter) const {
    screen_.Keys({"alt+f"});
    QThread::msleep(300);
    screen_.Keys({letter});
  }
  void GoToDemo() const {
    ASSERT_TRUE(screen_.Enter("^Holdwise$"));
    FileMenu("d");
    ASSERT_TRUE(screen_.Enter("^Holdwise — 模拟行情$"));
    ASSERT_TRUE(Answers(Folder()));
  }
  void GoBack() const {
    ASSERT_TRUE(screen_.Enter("^Holdwise — 模拟行情$"));
    FileMenu("b");
    ASSERT_TRUE(screen_.Enter("^Holdwise$"));
    ASSERT_TRUE(Answers(bench_.Work()));
  }
  /// In the dialog that is open.
  void ChooseFolder(const QString& folder) const {
    ASSERT_TRUE(screen_.Enter("^选择数据目录$"));
    screen_.Type(folder);
    screen_.Keys({"Return"});
  }
  /// A terminal runs on that work folder and takes commands.
  [[nodiscard]] static bool Answers(const QString& work) {
    return Until([&] { return QFile::exists(work + "/terminal.socket"); }, 30'000);
  }
  /// The names of all portfolios in a work folder's database, whether a terminal runs there or not.
  [[nodiscard]] QStringList Portfolios(const QString& work) const {
    const QString file = bench_.File("all.csv");
    QFile::remove(file);
    const Outcome outcome = RunTerminal({"--work", work, "--backup", file});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    const QByteArray text = Bytes(file);
    QStringList names;
    for (const char* name : {"甲", "乙", "丙"})
      if (text.contains('\n' + QByteArray(name) + ',')) names << name;
    return names;
  }
  [[nodiscard]] QString CommandLine() {
    const QString process = QString::number(terminal_->Process().processId());
    return QString::fromUtf8(Bytes("/proc/" + process + "/cmdline").replace('\0', ' ')).trimmed();
  }
  [[nodiscard]] QByteArray Log() const { return Bytes(bench_.Work() + "/log/terminal.log"); }

  std::optional<RunningTerminal> terminal_;
};

/// What is entered in one is not in the other's list, and is there again when one comes back.
TEST_F(Demo, PortfoliosOfTheDemoAndOnesOwnStayApart) {
  ASSERT_NO_FATAL_FAILURE(MakeDemo());
  ASSERT_EQ(bench_.Import().exitCode, 0);
  ASSERT_NO_FATAL_FAILURE(Start(bench_.Arguments({"--parameter", "Skip组合表现"})));
  ASSERT_NO_FATAL_FAILURE(GoToDemo());
  // Who names the work folder alone means the window that is open.
  const Outcome imported = RunTerminal(Bare() + QStringList{"--import", bench_.Write("one.csv", OneMore())});
  EXPECT_EQ(imported.exitCode, 0) << imported.err.toStdString();
  EXPECT_TRUE(imported.out.contains("这里是试用的模拟行情")) << imported.out.toStdString();
  EXPECT_EQ(Portfolios(Folder()), QStringList{"丙"});
  EXPECT_EQ(Portfolios(bench_.Work()), QStringList({"甲", "乙"})) << "at rest, while the demo runs";
  // The calculation of what has come takes the keys while it lasts.
  QThread::msleep(2000);
  EXPECT_TRUE(screen_.IsGone("^投资组合$"));
  ASSERT_NO_FATAL_FAILURE(GoBack());
  EXPECT_EQ(CommandLine(), "holdwise-terminal --work " + bench_.Work() + " --data " + bench_.data);
  const auto rows = bench_.Export("2001-strngrd");
  ASSERT_EQ(rows.size(), 2U) << "the list that is shown";
  for (const QStringList& row : rows) EXPECT_FALSE(row.contains("丙"));
  ASSERT_NO_FATAL_FAILURE(GoToDemo());
  EXPECT_EQ(Portfolios(Folder()), QStringList{"丙"});
  for (const char* name : {"backups", "TZZHMerge.dat", "TZZHDetail.dat", "ticks.dat", "holdwise.fdb"})
    EXPECT_TRUE(QFile::exists(Folder() + '/' + name)) << name;
  EXPECT_GE(terminal_->Signal(SIGTERM), 0);
  EXPECT_EQ(Portfolios(bench_.Work()), QStringList({"甲", "乙"}));
}

/// The one that was left open; a batch and a start that names its data mean the user's own.
TEST_F(Demo, TheNextStartOpensWhatWasOpenedLast) {
  ASSERT_NO_FATAL_FAILURE(MakeDemo());
  ASSERT_NO_FATAL_FAILURE(Start(bench_.Arguments({"--theme", "light"})));
  ASSERT_NO_FATAL_FAILURE(GoToDemo());
  EXPECT_GE(terminal_->Signal(SIGTERM), 0);
  EXPECT_EQ(QSettings(Folder() + "/settings.ini", QSettings::IniFormat).value("theme").toString(), "light");
  for (const QString& work : {Folder(), bench_.Work()}) {
    const Outcome checked = RunTerminal({"--work", work, "--check"});
    EXPECT_TRUE(checked.out.contains("数据库：" + work + "/holdwise.fdb")) << checked.out.toStdString();
    EXPECT_EQ(checked.err.contains("--work '" + Folder() + '\''), work != Folder()) << checked.err.toStdString();
    EXPECT_TRUE(checked.out.contains(work + "/market")) << checked.out.toStdString();
  }
  ASSERT_NO_FATAL_FAILURE(Start(bench_.Arguments({})));
  EXPECT_TRUE(screen_.Enter("^Holdwise$"));
  EXPECT_EQ(RunTerminal(Bare() + QStringList{"--address", "日志"}).exitCode, 0) << "the one that runs";
  EXPECT_TRUE(screen_.IsGone("模拟行情"));
  EXPECT_GE(terminal_->Signal(SIGTERM), 0);
  ASSERT_NO_FATAL_FAILURE(Start(Bare()));
  ASSERT_NO_FATAL_FAILURE(GoBack());
  EXPECT_EQ(CommandLine(), "holdwise-terminal --work " + bench_.Work() + " --data " + bench_.data)
      << "as it was opened before";
  EXPECT_GE(terminal_->Signal(SIGTERM), 0);
  ASSERT_NO_FATAL_FAILURE(Start(Bare()));
  EXPECT_TRUE(screen_.Enter("^Holdwise$"));
}

TEST_F(Demo, AFolderChosenInTheMenuTakesThePlaceOfTheOpenOne) {
  const QString other = bench_.File("other");
  SharedMarket().Build(other, {"--date", "2024-05-30"});
  ASSERT_EQ(bench_.Import(TwoPortfolios("2024-05-20")).exitCode, 0);
  ASSERT_NO_FATAL_FAILURE(Start(bench_.Arguments({"--parameter", "Skip组合表现"})));
  ASSERT_TRUE(screen_.Enter("^Holdwise$"));
  FileMenu("o");
  ASSERT_NO_FATAL_FAILURE(ChooseFolder(other));
  EXPECT_TRUE(LogSays(("已换到数据目录“" + other + "”").toUtf8()));
  const Outcome checked = RunTerminal(Bare() + QStringList{"--check"});
  EXPECT_TRUE(checked.out.contains("2024-05-30")) << checked.out.toStdString();
  EXPECT_EQ(Portfolios(bench_.Work()), QStringList({"甲", "乙"}));
  EXPECT_GE(terminal_->Signal(SIGTERM), 0);
  const QSettings settings(bench_.Work() + "/settings.ini", QSettings::IniFormat);
  EXPECT_EQ(settings.value("data").toString(), other);
  EXPECT_EQ(settings.value("view").toString(), "组合表现") << "at the same place";
}

TEST_F(Demo, AFolderChosenInTheDemoOpensOnesOwnPortfoliosWithIt) {
  ASSERT_NO_FATAL_FAILURE(MakeDemo());
  const QString other = bench_.File("other");
  SharedMarket().Build(other, {"--date", "2024-05-30"});
  ASSERT_EQ(bench_.Import(TwoPortfolios("2024-05-20")).exitCode, 0);
  ASSERT_NO_FATAL_FAILURE(Start(bench_.Arguments({})));
  ASSERT_NO_FATAL_FAILURE(GoToDemo());
  FileMenu("o");
  ASSERT_NO_FATAL_FAILURE(ChooseFolder(other));
  ASSERT_TRUE(screen_.Enter("^Holdwise$"));
  EXPECT_EQ(CommandLine(), "holdwise-terminal --work " + bench_.Work() + " --data " + other);
  EXPECT_GE(terminal_->Signal(SIGTERM), 0);
  EXPECT_EQ(QSettings(bench_.Work() + "/settings.ini", QSettings::IniFormat).value("data").toString(), other);
  EXPECT_EQ(Portfolios(bench_.Work()), QStringList({"甲", "乙"}));
}

/// With its reason, and what is open stays; nobody waits for a pipe when there is no window any more.
TEST_F(Demo, ADemoThatCannotBeEnteredIsSaidBeforeItIsLeftFor) {
  ASSERT_NO_FATAL_FAILURE(MakeDemo());
  const QByteArray settings = QFile::encodeName(Folder() + "/settings.ini");
  ASSERT_EQ(::mkfifo(settings.constData(), 0600), 0);
  ASSERT_NO_FATAL_FAILURE(Start(bench_.Arguments({})));
  ASSERT_TRUE(screen_.Enter("^Holdwise$"));
  FileMenu("d");
  ASSERT_TRUE(screen_.Enter("^模拟行情$"));
  screen_.Keys({"Escape"});
  EXPECT_FALSE(QFile::exists(Folder() + "/demo.ini"));
  ASSERT_TRUE(QFile::remove(QString::fromUtf8(settings)));
  ASSERT_NO_FATAL_FAILURE(GoToDemo());
}

/// What is open on one's own data meanwhile comes to the front, whichever data it has.
TEST_F(Demo, TheWayBackReachesATerminalThatWasStartedWithOtherData) {
  ASSERT_NO_FATAL_FAILURE(MakeDemo());
  const QString other = bench_.File("other");
  CopyFolder(bench_.data, other);
  ASSERT_NO_FATAL_FAILURE(Start(bench_.Arguments({})));
  ASSERT_NO_FATAL_FAILURE(GoToDemo());
  RunningTerminal own(Bare() + QStringList{"--data", other}, screen_.Environment());
  ASSERT_TRUE(own.WaitForWindow());
  ASSERT_TRUE(screen_.Enter("^Holdwise — 模拟行情$"));
  FileMenu("b");
  EXPECT_TRUE(IsGone(*terminal_));
  EXPECT_EQ(terminal_->Process().exitCode(), 0) << terminal_->Process().readAllStandardError().toStdString();
  EXPECT_EQ(own.Process().state(), QProcess::Running);
}

/// Of another version, of none, or the demo's own: said, and what is open stays.
TEST_F(Demo, AFolderThatCannotBeUsedIsRefusedAndNothingChanges) {
  ASSERT_NO_FATAL_FAILURE(MakeDemo());
  const QString later = bench_.File("later"), empty = bench_.File("empty");
  CopyFolder(bench_.data, later);
  ResultSet market = ReadPacketFile(later + "/market.dat");
  const int column = market.FindColumn("format");
  market.SetInteger(0, column, market.IntegerAt(0, column) + 1);
  WritePacketFile(later + "/market.dat", market, Durability::Replaceable);
  ASSERT_TRUE(QDir().mkpath(empty));
  ASSERT_NO_FATAL_FAILURE(Start(bench_.Arguments({})));
  const auto refuse = [&](const QString& folder, const char* reason) {
    FileMenu("o");
    ASSERT_NO_FATAL_FAILURE(ChooseFolder(folder));
    EXPECT_TRUE(LogSays(("目录“" + folder + "”不能用，什么都没有改变").toUtf8()));
    EXPECT_TRUE(Log().contains(reason)) << Log().toStdString();
    ASSERT_TRUE(screen_.Enter("^选择数据目录$")) << "which says so";
    screen_.Keys({"Escape"});
    ASSERT_TRUE(screen_.Enter("^Holdwise$"));
  };
  ASSERT_TRUE(screen_.Enter("^Holdwise$"));
  ASSERT_NO_FATAL_FAILURE(refuse(later, "本终端需要版本"));
  ASSERT_NO_FATAL_FAILURE(refuse(empty, "文件不存在"));
  ASSERT_NO_FATAL_FAILURE(refuse(Folder() + "/market", "这是试用的模拟行情"));
  EXPECT_EQ(bench_.Import().exitCode, 0) << "with the data folder that it was started with";
  EXPECT_GE(terminal_->Signal(SIGTERM), 0);
  EXPECT_FALSE(QSettings(bench_.Work() + "/settings.ini", QSettings::IniFormat).contains("data"));
}

TEST_F(Demo, AHalfEnteredPortfolioIsAskedAboutBeforeItIsLeft) {
  constexpr int kNameX = 380, kNameY = 124;
  ASSERT_NO_FATAL_FAILURE(MakeDemo());
  ASSERT_NO_FATAL_FAILURE(Start(bench_.Arguments({"--parameter", "Skip自选配置"})));
  ASSERT_TRUE(screen_.Enter("^Holdwise$"));
  screen_.Click(Geometry("X") + kNameX, Geometry("Y") + kNameY);
  screen_.Type("half");
  const auto ask = [this](const char* letter) {
    FileMenu(letter);
    ASSERT_TRUE(screen_.Enter("^询问$"));
  };
  ASSERT_NO_FATAL_FAILURE(ask("d"));
  screen_.Keys({"Return"});
  EXPECT_TRUE(screen_.IsGone("^询问$"));
  EXPECT_FALSE(QFile::exists(Folder() + "/demo.ini")) << "the answer that keeps it is the nearest";
  ASSERT_TRUE(screen_.Enter("^Holdwise$"));
  FileMenu("o");
  const QString other = bench_.File("other");
  CopyFolder(bench_.data, other);
  ASSERT_NO_FATAL_FAILURE(ChooseFolder(other));
  ASSERT_TRUE(screen_.Enter("^询问$"));
  screen_.Keys({"Return"});
  EXPECT_TRUE(screen_.IsGone("^询问$"));
  EXPECT_FALSE(Log().contains("已换到数据目录"));
  ASSERT_TRUE(screen_.Enter("^Holdwise$"));
  ASSERT_NO_FATAL_FAILURE(ask("d"));
  screen_.Keys({"Tab", "Return"});
  EXPECT_TRUE(screen_.Enter("^Holdwise — 模拟行情$"));
}

/// Made while one goes on with one's own; what has been entered meanwhile is asked about before it opens.
TEST_F(Demo, TheMenuMakesOneWhereThereIsNone) {
  constexpr int kNameX = 380, kNameY = 124;
  ASSERT_NO_FATAL_FAILURE(Start(bench_.Arguments({"--parameter", "Skip自选配置"})));
  ASSERT_TRUE(screen_.Enter("^Holdwise$"));
  FileMenu("d");
  ASSERT_TRUE(Until([this] { return !QDir(bench_.Work()).entryList({"demo-*"}, QDir::Dirs).isEmpty(); }, 10'000));
  screen_.Click(Geometry("X") + kNameX, Geometry("Y") + kNameY);
  screen_.Type("half");
  ASSERT_TRUE(Until([this] { return QFile::exists(Folder() + "/market/market.dat"); }, 180'000));
  ASSERT_TRUE(screen_.Enter("^询问$"));
  screen_.Keys({"Return"});
  EXPECT_TRUE(screen_.IsGone("^询问$"));
  EXPECT_FALSE(QFile::exists(Folder() + "/demo.ini"));
  EXPECT_EQ(QDir(bench_.Work()).entryList({"demo-*"}), QStringList());
  ASSERT_TRUE(screen_.Enter("^Holdwise$"));
  FileMenu("d");
  ASSERT_TRUE(screen_.Enter("^询问$"));
  screen_.Keys({"Tab", "Return"});
  EXPECT_TRUE(screen_.Enter("^Holdwise — 模拟行情$"));
}

/// As another version of the terminal leaves it: made anew in its place, with the portfolios that are there.
TEST_F(Demo, ADemoThatCannotBeUsedIsMadeAnew) {
  ASSERT_NO_FATAL_FAILURE(MakeDemo());
  ASSERT_NO_FATAL_FAILURE(Start(bench_.Arguments({})));
  ASSERT_NO_FATAL_FAILURE(GoToDemo());
  ASSERT_EQ(RunTerminal({"--work", Folder(), "--import", bench_.Write("one.csv", OneMore())}).exitCode, 0);
  EXPECT_GE(terminal_->Signal(SIGTERM), 0);
  (void)bench_.Write("work/demo/market/market.dat", "no data");
  ASSERT_NO_FATAL_FAILURE(Start(Bare()));
  ASSERT_TRUE(screen_.Enter("^Holdwise$"));
  EXPECT_TRUE(Bytes(Folder() + "/log/terminal.log").contains("没有可用的行情数据"));
  screen_.Keys({"alt+d"});
  EXPECT_TRUE(Until([this] { return Bytes(Folder() + "/market/market.dat").size() > 100; }, 180'000));
  EXPECT_TRUE(screen_.Enter("^Holdwise — 模拟行情$"));
  EXPECT_EQ(QDir(Folder()).entryList({"demo-*"}), QStringList()) << "the former one is gone";
  EXPECT_EQ(Portfolios(Folder()), QStringList{"丙"});
}

/// As an earlier terminal left it: a simulated market beside the user's own portfolios, in their database.
TEST_F(Demo, AMarketThatWasMadeBesideOnesOwnPortfoliosOpensWithThem) {
  const QString market = bench_.Work() + "/market";
  SharedMarket().Build(market, {"--simulated"});
  bench_.data = market;
  ASSERT_EQ(bench_.Import().exitCode, 0);
  QSettings(bench_.Work() + "/settings.ini", QSettings::IniFormat).setValue("data", market);
  ASSERT_NO_FATAL_FAILURE(Start(Bare()));
  ASSERT_TRUE(screen_.Enter("^Holdwise — 模拟行情$"));
  EXPECT_EQ(Portfolios(bench_.Work()), QStringList({"甲", "乙"}));
  EXPECT_FALSE(QFile::exists(Folder()));
}

}  // namespace
}  // namespace holdwise::e2e
