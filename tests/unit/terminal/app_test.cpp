// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTranslator>

#include "app/command_runner.h"
#include "holdwise/packet/error.h"
#include "pages/address_registry.h"
#include "parts/terminal_application.h"
#include "process/command_line.h"
#include "scripted_host.h"
#include "theme/theme_services.h"
#include "transfer/import_report.h"
#include "window/work_area.h"

namespace holdwise {
namespace {

class RecordingLog : public DebugServers {
 public:
  void WriteLog(const QString& text) override { lines.append(text); }
  QStringList lines;
};

// --- Qt's own texts ---

TEST(Translation, EntriesAndDialogsSpeakChinese) {
  TerminalApplication::Translate();
  auto* translator = qApp->findChild<QTranslator*>();
  ASSERT_NE(translator, nullptr);
  QLineEdit entry;
  const std::unique_ptr<QMenu> menu(entry.createStandardContextMenu());
  QStringList texts;
  for (const QAction* action : menu->actions()) texts << action->text().section(QLatin1Char('\t'), 0, 0);
  texts.removeAll(QString());
  EXPECT_EQ(texts, QStringList({"撤消(&U)", "重做(&R)", "剪切(&T)", "复制(&C)", "粘贴(&P)", "删除", "全选"}));
  const QDialogButtonBox buttons(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  EXPECT_EQ(buttons.button(QDialogButtonBox::Ok)->text(), "确定");
  EXPECT_EQ(buttons.button(QDialogButtonBox::Cancel)->text(), "取消");
  delete translator;
}

TEST(Translation, WithoutTheFileThereIsOnlyAMessage) {
  static QStringList messages;
  const auto before =
      qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) { messages << text; });
  TerminalApplication::Translate(QStringLiteral("/none"));
  qInstallMessageHandler(before);
  ASSERT_EQ(messages.size(), 1);
  EXPECT_TRUE(messages[0].contains("/none/qtbase_zh_CN.qm")) << messages[0].toStdString();
  EXPECT_EQ(qApp->findChild<QTranslator*>(), nullptr);
}

// --- command line ---

TEST(CommandLine, PathsBecomeAbsolute) {
  const ParsedCommandLine parsed =
      ParseCommandLine({"holdwise-terminal", "--work", "w/", "--import", "p.csv", "--export", "/out/../o"});
  ASSERT_TRUE(parsed.options.has_value()) << parsed.text.toStdString();
  EXPECT_EQ(parsed.options->workFolder, QDir::currentPath() + "/w");
  EXPECT_EQ(parsed.options->dataFolder, QDir::currentPath() + "/w/market");
  EXPECT_EQ(parsed.options->command.importFile, QDir::currentPath() + "/p.csv");
  EXPECT_EQ(parsed.options->command.exportFolder, "/o");
  EXPECT_TRUE(parsed.options->IsBatch());
}

TEST(CommandLine, ImportAloneIsNoBatch) {
  const ParsedCommandLine parsed = ParseCommandLine({"holdwise-terminal", "--import", "p.csv"});
  ASSERT_TRUE(parsed.options.has_value());
  EXPECT_FALSE(parsed.options->IsBatch());
}

TEST(CommandLine, AnImportMayBeNamedAndLeaveOutWhatItCannotHold) {
  const ParsedCommandLine parsed =
      ParseCommandLine({"holdwise-terminal", "--import", "p.csv", "--import-as", "长线", "--skip-unknown"});
  ASSERT_TRUE(parsed.options.has_value()) << parsed.text.toStdString();
  EXPECT_EQ(parsed.options->command.importAs, "长线");
  EXPECT_EQ(parsed.options->command.skipUnknown, "1");
  for (const QStringList& alone : {QStringList{"--import-as", "长线"}, QStringList{"--skip-unknown"}}) {
    const ParsedCommandLine refused = ParseCommandLine(QStringList{"holdwise-terminal"} + alone);
    EXPECT_FALSE(refused.options.has_value());
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_TRUE(refused.text.contains("请同时用 --import 指定文件")) << refused.text.toStdString();
  }
}

TEST(CommandLine, AMissingValueIsNamed) {
  for (const char* option : {"--data", "--work", "--db", "--bus", "--theme", "--address", "--parameter", "--import",
                             "--export", "--stress", "--stress-index"}) {
    const ParsedCommandLine parsed = ParseCommandLine({"holdwise-terminal", option});
    EXPECT_FALSE(parsed.options.has_value());
    EXPECT_EQ(parsed.exitCode, 2);
    EXPECT_TRUE(parsed.text.startsWith(QStringLiteral("holdwise-terminal：选项 %1 后面没有值。\n").arg(option)))
        << parsed.text.toStdString();
  }
}

TEST(CommandLine, TheSimulatedMarketHasASpeed) {
  const ParsedCommandLine plain = ParseCommandLine({"holdwise-terminal"});
  ASSERT_TRUE(plain.options.has_value());
  EXPECT_EQ(plain.options->simulationSpeed, 1);
  const ParsedCommandLine fast = ParseCommandLine({"holdwise-terminal", "--speed", "600"});
  ASSERT_TRUE(fast.options.has_value()) << fast.text.toStdString();
  EXPECT_EQ(fast.options->simulationSpeed, 600);
  for (const char* bad : {"0", "601", "-1", "1.5", "fast"}) {
    const ParsedCommandLine parsed = ParseCommandLine({"holdwise-terminal", "--speed", bad});
    EXPECT_FALSE(parsed.options.has_value()) << bad;
    EXPECT_EQ(parsed.exitCode, 2);
    EXPECT_TRUE(parsed.text.contains("--speed 要是 1 到 600 的整数")) << parsed.text.toStdString();
  }
}

TEST(CommandLine, TheStressTestIsSetForAnExport) {
  const ParsedCommandLine parsed =
      ParseCommandLine({"holdwise-terminal", "--stress", "-12.5", "--export", "o", "--stress-index", "399300"});
  ASSERT_TRUE(parsed.options.has_value()) << parsed.text.toStdString();
  EXPECT_EQ(parsed.options->command.stress, "-12.5");
  EXPECT_EQ(parsed.options->command.stressIndex, "399300");
}

TEST(CommandLine, AStressTestThatCannotBeIsRefusedAtOnce) {
  const auto textOf = [](const QStringList& more) {
    const ParsedCommandLine parsed = ParseCommandLine(QStringList{"holdwise-terminal"} + more);
    EXPECT_FALSE(parsed.options.has_value());
    EXPECT_EQ(parsed.exitCode, 2);
    return parsed.text;
  };
  for (const char* bad : {"ten", "1e2", "+5", "-", ".", "1.2.3", "5%", "1 ", "5\n", "1234567890123"}) {
    const QString text = textOf({"--export", "o", "--stress", bad});
    EXPECT_TRUE(text.contains(QStringLiteral("--stress 要是百分数，例如 -10 或 5.5，不能是“%1”").arg(bad))) << bad;
  }
  for (const char* bad : {"2", "000300", "SH", "01"}) {
    const QString text = textOf({"--export", "o", "--stress-index", bad});
    EXPECT_TRUE(text.contains(QStringLiteral("只能是 1、399001 或 399300，不能是“%1”").arg(bad))) << bad;
  }
  EXPECT_TRUE(textOf({"--stress", "5"}).contains("--export"));
  EXPECT_TRUE(textOf({"--stress-index", "1"}).contains("--export"));
  for (const char* bad : {"ten", "0", "0.00", "-5", "+5", "1e3", "100000", "5 ", "1.2.3", "."}) {
    EXPECT_TRUE(textOf({"--export", "o", "--capital", bad}).contains("--capital 要是大于 0、小于 100000 的数")) << bad;
  }
  EXPECT_TRUE(textOf({"--capital", "5"}).contains("--export"));
  EXPECT_TRUE(textOf({"--stress", "", "--export", "o"}).contains("--stress 的值为空"));
}

TEST(CommandLine, AnotherBusIsRefusedWhateverRuns) {
  const ParsedCommandLine parsed = ParseCommandLine({"holdwise-terminal", "--bus", "nats://host"});
  EXPECT_FALSE(parsed.options.has_value());
  EXPECT_EQ(parsed.exitCode, 2);
  EXPECT_TRUE(parsed.text.contains("--bus 只能是 inproc，不能是“nats://host”")) << parsed.text.toStdString();
}

TEST(CommandLine, ARunningTerminalKeepsItsDataAndDatabase) {
  const QTemporaryDir folder;
  ASSERT_TRUE(QDir(folder.path()).mkdir("data"));
  ASSERT_TRUE(QFile::link(folder.filePath("data"), folder.filePath("link")));
  const ParsedCommandLine parsed = ParseCommandLine({"holdwise-terminal", "--data", folder.filePath("data") + "/"});
  ASSERT_TRUE(parsed.options.has_value());
  EXPECT_EQ(parsed.options->command.dataFolder, folder.filePath("data"));
  Options running = *parsed.options;
  running.database = "host:/p.fdb";
  EXPECT_EQ(ConflictOf(parsed.options->command, running), "");
  EXPECT_EQ(ConflictOf(Command(), running), "") << "a command that asks for none";
  Command command;
  command.dataFolder = folder.filePath("link");
  command.database = "host:/p.fdb";
  EXPECT_EQ(ConflictOf(command, running), "") << "the same folder by another name";
  command.database = "host:/q.fdb";
  EXPECT_TRUE(ConflictOf(command, running).contains("数据库“host:/p.fdb”，不是“host:/q.fdb”"));
  command.dataFolder = folder.filePath("other");
  EXPECT_TRUE(ConflictOf(command, running).contains("，不是“" + folder.filePath("other") + "”"));
}

TEST(CommandLine, CommandsSurviveTheHandOver) {
  Command command;
  command.theme = ThemeKind::Light;
  command.address = "投资组合";
  command.parameter = "Skip\"组合\n表现";
  command.importFile = "/a b/ü.csv";
  command.exportFolder = "/o";
  command.dataFolder = "/d";
  command.database = "host:/p.fdb";
  command.stress = "-10";
  command.stressIndex = "399001";
  command.capital = "12.5";
  command.backupFile = "/b.csv";
  command.restoreFile = "/r.csv";
  command.importAs = "长线";
  command.skipUnknown = "1";
  const QByteArray json = command.ToJson();
  EXPECT_FALSE(json.contains('\n'));
  const std::optional<Command> back = Command::FromJson(json);
  ASSERT_TRUE(back.has_value());
  EXPECT_EQ(back->theme, ThemeKind::Light);
  EXPECT_EQ(back->address, command.address);
  EXPECT_EQ(back->parameter, command.parameter);
  EXPECT_EQ(back->importFile, command.importFile);
  EXPECT_EQ(back->exportFolder, command.exportFolder);
  EXPECT_EQ(back->dataFolder, command.dataFolder);
  EXPECT_EQ(back->database, command.database);
  EXPECT_EQ(back->stress, command.stress);
  EXPECT_EQ(back->stressIndex, command.stressIndex);
  EXPECT_EQ(back->capital, command.capital);
  EXPECT_EQ(back->backupFile, command.backupFile);
  EXPECT_EQ(back->restoreFile, command.restoreFile);
  EXPECT_EQ(back->importAs, command.importAs);
  EXPECT_EQ(back->skipUnknown, command.skipUnknown);
  EXPECT_FALSE(Command::FromJson("[]").has_value());
  EXPECT_FALSE(Command::FromJson("rubbish").has_value());
}

// --- addresses ---

class RecordingItem : public TAddressItem {
 public:
  RecordingItem(const QString& name, std::uint16_t number, QStringList& record, bool isListed = true)
      : TAddressItem(name, number, QString(), false, isListed), record_(record) {}
  void EnterAddress(const QString& parameter) override {
    Record("enter " + Name() + ' ' + parameter);
    if (parameter == "throw") throw std::runtime_error("broken");
  }
  void LeaveAddress() override { Record("leave " + Name()); }
  [[nodiscard]] bool GetIsWorkState() const override { return false; }
  void ChangeColorTheme() override { Record("theme " + Name()); }
  bool throwsAnything = false;

 private:
  void Record(const QString& what) {
    record_.append(what);
    if (throwsAnything) throw 1;
  }
  QStringList& record_;
};

class AddressTest : public testing::Test {
 protected:
  std::shared_ptr<RecordingItem> Add(const QString& name, std::uint16_t number, bool isListed = true) {
    auto item = std::make_shared<RecordingItem>(name, number, record_, isListed);
    registry_.RegisterAddressItem(item);
    return item;
  }
  RecordingLog log_;
  QStringList record_;
  AddressRegistry registry_{log_};
};

TEST_F(AddressTest, AreListedByNumber) {
  Add("last", 65535);
  Add("first", 1);
  Add("hidden", 3, false);
  Add("second", 3);
  EXPECT_EQ(registry_.ListedNames(), QStringList({"first", "second", "last"}));
  EXPECT_THROW(Add("first", 9), Error);
  EXPECT_THROW(registry_.RegisterAddressItem(nullptr), Error);
}

TEST_F(AddressTest, GoingElsewhereLeavesGoingAgainDoesNot) {
  Add("a", 1);
  Add("b", 2);
  EXPECT_TRUE(registry_.GotoAddress("a", "1"));
  EXPECT_TRUE(registry_.GotoAddress("a", "2"));
  EXPECT_TRUE(registry_.GotoAddress("b", ""));
  EXPECT_FALSE(registry_.GotoAddress("c", ""));
  EXPECT_EQ(record_, QStringList({"enter a 1", "enter a 2", "leave a", "enter b "}));
  EXPECT_EQ(registry_.Current()->Name(), "b");
  EXPECT_EQ(registry_.Parameter(), "");
  registry_.GotoAddress("a", "3");
  registry_.GotoAddress("c", "4");
  EXPECT_EQ(registry_.Parameter(), "3");
}

TEST_F(AddressTest, UnregisteringLeavesTheEnteredItem) {
  const auto a = Add("a", 1);
  registry_.GotoAddress("a", "");
  registry_.UnregisterAddressItem(a);
  registry_.UnregisterAddressItem(a);
  EXPECT_EQ(record_.last(), "leave a");
  EXPECT_EQ(registry_.Current(), nullptr);
  EXPECT_EQ(registry_.Find("a"), nullptr);
  EXPECT_EQ(a.use_count(), 1);
}

TEST_F(AddressTest, AnItemThatThrowsIsLoggedAndTheOthersGoOn) {
  Add("a", 1);
  Add("b", 2);
  EXPECT_TRUE(registry_.GotoAddress("a", "throw"));
  ASSERT_EQ(log_.lines.size(), 1);
  EXPECT_TRUE(log_.lines[0].contains("broken"));
  EXPECT_TRUE(registry_.GotoAddress("b", ""));
  registry_.ChangeColorTheme();
  EXPECT_EQ(record_.mid(record_.size() - 2), QStringList({"theme a", "theme b"}));
  Add("c", 3)->throwsAnything = true;
  EXPECT_TRUE(registry_.GotoAddress("c", ""));
  registry_.ChangeColorTheme();
  EXPECT_TRUE(registry_.GotoAddress("b", ""));
  EXPECT_EQ(record_.mid(record_.size() - 4), QStringList({"theme b", "theme c", "leave c", "enter b "}));
  EXPECT_EQ(log_.lines.size(), 4);
}

// --- commands ---

TEST(CommandRunnerTest, CarriesOutOneAfterTheOtherInOrder) {
  QStringList record;
  HandOverServer::Answer pendingExport;
  CommandTargets targets;
  targets.setTheme = [&](ThemeKind kind) { record.append("theme " + ThemeKindName(kind)); };
  targets.goTo = [&](const QString& address, const QString& parameter) {
    record.append("go " + address + ' ' + parameter);
    return address != "none";
  };
  targets.importPortfolios = [&](const Command& command) {
    record.append("import " + command.importFile);
    return HandOverAnswer{command.importFile, command.importFile == "bad" ? 1 : 0};
  };
  targets.exportViews = [&](const Command& command, const HandOverServer::Answer& answer) {
    record.append("export " + command.exportFolder);
    pendingExport = answer;
  };
  targets.raise = [&] { record.append("raise"); };
  CommandRunner runner(targets);
  EXPECT_TRUE(runner.IsIdle());
  const auto answer = [&record](const HandOverAnswer& given) {
    record.append(QString("answer %1 %2").arg(given.exitCode).arg(given.text));
  };
  runner.Run({ThemeKind::Light, "a", "p", "good", "out", {}, {}}, answer);
  runner.Run({{}, "none", {}, {}, {}, {}, {}}, answer);
  runner.Run({{}, {}, {}, "bad", "out", {}, {}}, answer);
  EXPECT_FALSE(runner.IsIdle()) << "they wait";
  runner.Run({{}, {}, "Skip", {}, {}, {}, {}}, answer);
  EXPECT_TRUE(record.isEmpty());
  QCoreApplication::processEvents();
  QTest::qWait(10);
  EXPECT_EQ(record, QStringList({"theme light", "go a p", "import good", "export out"}));
  EXPECT_FALSE(runner.IsIdle());
  record.clear();
  pendingExport({"done", 0});
  QTest::qWait(10);
  EXPECT_TRUE(runner.IsIdle());
  EXPECT_EQ(record, QStringList({"answer 0 good\ndone", "go none ", "answer 2 没有地址“none”。", "import bad",
                                 "answer 1 bad", "go  Skip", "raise", "answer 0 "}))
      << "a parameter alone goes to the views";
}

TEST(CommandRunnerTest, RestoresBeforeItImportsAndBacksUpWhatIsThereThen) {
  QStringList record;
  CommandTargets targets;
  const auto step = [&record](const QString& what) {
    return [&record, what](const QString& file) {
      record.append(what + file);
      return HandOverAnswer{what, file == "bad" ? 1 : 0};
    };
  };
  targets.restorePortfolios = step("restore ");
  targets.importPortfolios = [&step](const Command& command) { return step("import ")(command.importFile); };
  targets.backUpPortfolios = step("backup ");
  targets.raise = [] {};
  CommandRunner runner(targets);
  Command command;
  command.restoreFile = "r";
  command.importFile = "i";
  command.backupFile = "b";
  QStringList answers;
  const auto answer = [&answers](const HandOverAnswer& given) { answers.append(given.text); };
  runner.Run(command, answer);
  QTest::qWait(10);
  EXPECT_EQ(record, QStringList({"restore r", "import i", "backup b"}));
  EXPECT_EQ(answers, QStringList("restore \nimport \nbackup "));
  record.clear();
  command.importFile = "bad";
  runner.Run(command, answer);
  QTest::qWait(10);
  EXPECT_EQ(record, QStringList({"restore r", "import bad"}));
}

TEST(ImportReport, NamesEveryBadLine) {
  ImportResult result;
  result.problems = {{0, "whole"}, {3, "three"}, {7, "seven"}};
  const HandOverAnswer refused = AnswerOf("p.csv", result);
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_EQ(refused.text, "“p.csv”没有导入，共有 3 处问题：\nwhole\n第 3 行：three\n第 7 行：seven");
  ImportResult cancelled;
  cancelled.cancelled = true;
  EXPECT_EQ(AnswerOf("p.csv", cancelled).exitCode, 1);
  ImportResult good;
  good.portfolios = 2;
  good.holdings = 5;
  good.warnings = {"warning"};
  EXPECT_EQ(AnswerOf("p.csv", good).exitCode, 0);
  EXPECT_EQ(AnswerOf("p.csv", good).text, "已导入 2 个组合，5 条持仓。\nwarning");
}

}  // namespace
}  // namespace holdwise
