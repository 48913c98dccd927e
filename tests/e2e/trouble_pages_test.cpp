// SPDX-License-Identifier: MIT
// What the window shows when something stands in the way of the views, and its help: the terminal itself, with its
// event loop, in this process.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QDir>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <functional>
#include <thread>

#include "app/terminal.h"
#include "database/firebird_process.h"
#include "database/firebird_user_data.h"
#include "holdwise/packet/packet_file.h"
#include "parts/terminal_application.h"
#include "process/command_line.h"
#include "temp_database.h"
#include "terminal_process.h"
#include "window/address_bar.h"

namespace holdwise::e2e {
namespace {

/// A sign is looked for every ten seconds.
constexpr int kOneLook = 11'000;

MainWindow* TheWindow() {
  for (QWidget* widget : QApplication::topLevelWidgets())
    if (auto* window = dynamic_cast<MainWindow*>(widget)) return window;
  return nullptr;
}

class TroublePages : public testing::Test {
 protected:
  /// On a thread of its own: the thread sanitizer is blind to what one does that has started a program.
  static void SetUpTestSuite() {
    std::thread([] { (void)SharedMarket(); }).join();
  }
  TroublePages() {
    QDir().mkpath(plugins_);
    qputenv("HOLDWISE_PLUGIN_DIR", plugins_.toUtf8());
  }
  ~TroublePages() override { qunsetenv("HOLDWISE_PLUGIN_DIR"); }

  void PutPlugin(const QString& library) const {
    const QString built = qEnvironmentVariable("HOLDWISE_BIN") + "/../lib/" + library;
    ASSERT_TRUE(QFile::copy(built, plugins_ + '/' + QFileInfo(library).fileName()));
  }
  /// Runs a terminal until `look`, which is called once its first page has been painted, comes back.
  void Run(const QStringList& arguments, const std::function<void(MainWindow&)>& look) {
    ASSERT_TRUE(QDir().mkpath(bench_.Work()));
    const test::TempDatabase made(false);  // which takes a moment, but for the first one
    ASSERT_TRUE(QFile::copy(made.File(), Database()));
    Options options = *ParseCommandLine(QStringList{"holdwise-terminal", "--work", bench_.Work()} + arguments).options;
    options.database = Database();
    Terminal terminal(options, [this] {
      OpenedDatabase opened;
      opened.database = FirebirdUserData::Open(DatabaseTarget::FromText(Database()), test::TempDatabase::LockFolder());
      return opened;
    });
    bool hasLooked = false;
    QTimer::singleShot(0, qApp, [&] {
      MainWindow* window = TheWindow();
      if (window != nullptr && QTest::qWaitForWindowActive(window)) {
        look(*window);
        hasLooked = true;
      }
      QCoreApplication::exit(0);
    });
    EXPECT_EQ(terminal.Run(), 0);
    EXPECT_TRUE(hasLooked);
  }
  [[nodiscard]] QString Database() const { return bench_.Work() + "/holdwise.fdb"; }
  [[nodiscard]] QString Safe() const { return "\n\n已保存的组合不受影响，仍在数据库“" + Database() + "”里。"; }
  [[nodiscard]] QString Reinstall(const QString& usable) const {
    return "\n\n请重新安装终端，它的插件应在目录“" + plugins_ + "”中；然后按“重新检查”。在那之前没有投资组合页面，" +
           usable + "照常可用。";
  }

  /// The page that is shown; null: there is none.
  static NoticePage* Page(MainWindow& window) { return dynamic_cast<NoticePage*>(window.Area().Frame()); }
  /// Its heading and its text; empty when there is none.
  static QString Title(MainWindow& window) { return LabelOf(window, 0); }
  static QString Text(MainWindow& window) { return LabelOf(window, 1); }
  static void ExpectPage(MainWindow& window, const QString& title, const QString& text) {
    EXPECT_EQ(Title(window).toStdString(), title.toStdString());
    EXPECT_EQ(Text(window).toStdString(), text.toStdString());
  }
  static QStringList Buttons(MainWindow& window) {
    QStringList texts;
    if (Page(window) != nullptr)
      for (const QAbstractButton* button : Page(window)->findChildren<QAbstractButton*>())
        if (button->isEnabled() && button->isVisible()) texts << button->text();
    return texts;
  }
  static AddressBar& Tabs(MainWindow& window) {
    for (QWidget* widget : window.findChildren<QWidget*>())
      if (auto* bar = dynamic_cast<AddressBar*>(widget)) return *bar;
    throw std::runtime_error("no tabs");
  }
  static QStringList TabNames(MainWindow& window) { return Tabs(window).accessibleName().section("：", 1).split("、"); }
  static void ClickTab(MainWindow& window, const QString& name) {
    const auto index = static_cast<int>(TabNames(window).indexOf(name));
    ASSERT_GE(index, 0) << name.toStdString();
    QTest::mouseClick(&Tabs(window), Qt::LeftButton, {}, Tabs(window).TabRect(index).center());
  }
  static bool HasHealthSign(const MainWindow& window) { return window.findChild<QToolButton*>("health")->isVisible(); }

  static QString LabelOf(MainWindow& window, int number) {
    if (Page(window) == nullptr) return {};
    const QLabel* label = Page(window)->findChildren<QLabel*>().value(number);
    return label == nullptr ? QString() : label->text();
  }

  Bench bench_;
  const QString plugins_ = bench_.File("plugins");
};

const QStringList kDataButtons{"复制命令(&C)", "试用模拟行情(&D)", "选择数据目录(&O)…", "重新检查(&R)"};
const QString kWaysToData =
    "\n\n第一次使用：按“试用模拟行情”，就在这里生成一份虚构的行情并打开，在其中新建的组合与自己的分开保存。"
    "已有数据目录的，按“选择数据目录…”。两者下次启动仍有效，以后都可以在“文件”菜单里改。\n\n下面两条命令生成一份模拟行"
    "情；自己的日线数据也用第二条命令转换。";

TEST_F(TroublePages, AFirstStartSaysHowToBeginAndThatNothingIsAmiss) {
  Run({}, [this](MainWindow& window) {
    const QString data = bench_.Work() + "/market";
    ExpectPage(window, "没有可用的行情数据",
               "行情数据文件“" + data + "/market.dat”：文件不存在" + kWaysToData + Safe());
    EXPECT_EQ(Buttons(window), kDataButtons);
    const QString commands = Page(window)->findChild<QPlainTextEdit*>()->toPlainText();
    EXPECT_TRUE(commands.contains(Program("holdwise-market") + " simulate")) << commands.toStdString();
    EXPECT_TRUE(commands.contains("--out '" + data + '\'')) << commands.toStdString();
    QTest::qWait(kOneLook);
    EXPECT_FALSE(HasHealthSign(window));
  });
}

TEST_F(TroublePages, ADataFolderOfAnotherFormatIsSaidToBeThat) {
  const QString data = bench_.File("data");
  CopyFolder(bench_.data, data);
  ResultSet market = ReadPacketFile(data + "/market.dat");
  const int column = market.FindColumn("format");
  const std::int64_t format = market.IntegerAt(0, column);
  market.SetInteger(0, column, format + 1);
  WritePacketFile(data + "/market.dat", market, Durability::Replaceable);
  Run({"--data", data}, [&](MainWindow& window) {
    const QString what = QStringLiteral(
                             "行情数据文件“%1/market.dat”：第1行：数据是格式版本%2的，本终端需要版本%3："
                             "请用与本终端一起安装的 holdwise-market 重新生成")
                             .arg(data)
                             .arg(format + 1)
                             .arg(format);
    ExpectPage(window, "没有可用的行情数据", what + kWaysToData + Safe());
    EXPECT_EQ(Buttons(window), kDataButtons);
    EXPECT_TRUE(QTest::qWaitFor([&] { return HasHealthSign(window); }, 2 * kOneLook)) << "which is amiss";
  });
}

TEST_F(TroublePages, WithoutPluginsItSaysSoAndThatItHasLookedAgain) {
  Run({"--data", bench_.data}, [this](MainWindow& window) {
    const QString text = "目录“" + plugins_ + "”中没有插件。" + Reinstall("分时走势") + Safe();
    ExpectPage(window, "没有可用的插件", text);
    EXPECT_EQ(Buttons(window), QStringList{"重新检查(&R)"});
    QTest::keyClick(&window, Qt::Key_R, Qt::AltModifier);
    const auto saysAgain = [&] { return Text(window).endsWith(" 又检查了一次，还是不能用。"); };
    EXPECT_TRUE(QTest::qWaitFor(saysAgain)) << Text(window).toStdString();
    EXPECT_TRUE(Text(window).startsWith(text));
  });
}

/// A sound plug-in beside it has a page of its own, but not the portfolios.
TEST_F(TroublePages, APluginOfAnotherVersionIsSaidThoughAnotherOneRuns) {
  PutPlugin("odd/Odd1.so");
  PutPlugin("examples/OwnStocks.so");
  Run({"--data", bench_.data}, [this](MainWindow& window) {
    const QString what =
        QStringLiteral("插件“Odd1.so”适用于接口版本 %1，本终端的接口版本是 %2：请安装与本终端一起发布的插件。")
            .arg(kSdkVersion + 1)
            .arg(kSdkVersion);
    ExpectPage(window, "没有投资组合插件", what + Reinstall("分时走势和插件“自选行情 1.0”") + Safe());
    EXPECT_EQ(Buttons(window), QStringList{"重新检查(&R)"});
    EXPECT_EQ(TabNames(window), QStringList({"插件问题", "分时走势", "工具条", "自选行情"}));
    ClickTab(window, "自选行情");
    EXPECT_NE(window.Area().Frame(), nullptr);
    EXPECT_EQ(Page(window), nullptr);
  });
}

TEST_F(TroublePages, AFolderOfOtherPluginsAloneIsSaidToo) {
  PutPlugin("examples/OwnStocks.so");
  Run({"--data", bench_.data, "--address", "自选行情"}, [this](MainWindow& window) {
    EXPECT_EQ(Title(window), "没有投资组合插件");
    EXPECT_TRUE(Text(window).startsWith("目录“" + plugins_ + "”中没有投资组合插件。\n"));
  });
}

TEST_F(TroublePages, ThePageIsComeBackToFromTheOthers) {
  Run({"--data", bench_.data}, [](MainWindow& window) {
    const QString text = Text(window);
    ASSERT_FALSE(text.isEmpty());
    ClickTab(window, "分时走势");
    EXPECT_EQ(Page(window), nullptr) << "another page";
    QTest::keyClick(QApplication::focusWidget() == nullptr ? &window : QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_EQ(Text(window), text);
    EXPECT_EQ(Buttons(window), QStringList{"重新检查(&R)"});
    ClickTab(window, "分时走势");
    EXPECT_EQ(Page(window), nullptr);
    ClickTab(window, "插件问题");
    EXPECT_EQ(Text(window), text);
    EXPECT_EQ(Buttons(window), QStringList{"重新检查(&R)"});
  });
  EXPECT_FALSE(Bytes(bench_.Work() + "/settings.ini").contains("address=")) << "nothing to come back to later";
}

/// In the dialog that a key of the window opens; closes it.
void InDialog(MainWindow& window, const std::function<void()>& open, const std::function<void(const QWidget&)>& look) {
  window.activateWindow();  // which nobody does here when a dialog closes
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  bool hasLooked = false;
  QTimer timer;
  timer.callOnTimeout([&] {
    QWidget* dialog = QApplication::activeModalWidget();
    if (dialog == nullptr) return;
    timer.stop();
    look(*dialog);
    hasLooked = true;
    QTest::keyClick(dialog, Qt::Key_Escape);
  });
  timer.start(100);
  open();
  EXPECT_TRUE(QTest::qWaitFor([&] { return hasLooked; }));
}

TEST_F(TroublePages, TheHelpMenusKeysShowTheKeysAndWhatRunsWhere) {
  Run({"--data", bench_.data}, [this](MainWindow& window) {
    InDialog(
        window, [&] { QTest::keyClick(&window, Qt::Key_F1); },
        [](const QWidget& dialog) { EXPECT_EQ(dialog.windowTitle(), "键盘"); });
    const auto openAbout = [&] {
      QTest::keyClick(&window, Qt::Key_H, Qt::AltModifier);
      ASSERT_NE(QApplication::activePopupWidget(), nullptr);
      QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_A);
    };
    InDialog(window, openAbout, [this](const QWidget& dialog) {
      EXPECT_EQ(dialog.windowTitle(), "关于");
      QString said;
      for (const QLabel* label : dialog.findChildren<QLabel*>()) said += label->text();
      EXPECT_TRUE(said.contains("按 MIT 许可证发布")) << said.toStdString();
      const auto* table = dialog.findChild<QTableWidget*>();
      ASSERT_NE(table, nullptr);
      std::map<QString, QString> facts;
      for (int row = 0; row < table->rowCount(); ++row)
        facts[table->item(row, 0)->text()] = table->item(row, 1)->text();
      EXPECT_EQ(facts["消息总线"], "进程内，已连接");
      EXPECT_EQ(facts["数据库"], Database());
      EXPECT_EQ(facts["数据目录"], bench_.data);
      EXPECT_EQ(facts["工作目录"], bench_.Work());
      EXPECT_EQ(facts["设置"], bench_.Work() + "/settings.ini");
      EXPECT_EQ(facts["日志"], bench_.Work() + "/log/terminal.log");
      EXPECT_EQ(facts["备份"], bench_.Work() + "/backups");
    });
  });
}

}  // namespace
}  // namespace holdwise::e2e

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  holdwise::TerminalApplication application(argc, argv);
  testing::InitGoogleTest(&argc, argv);
  const int exitCode = RUN_ALL_TESTS();
  (void)holdwise::ShutdownFirebird();
  return exitCode;
}
