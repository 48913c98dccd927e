// SPDX-License-Identifier: MIT
#include "transfer/view_exporter.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QShortcut>
#include <QTemporaryDir>
#include <QTest>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <tuple>
#include <vector>

#include "fake_views.h"

namespace holdwise {
namespace {

QByteArray ContentOf(const QString& path) {
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
  return file.readAll();
}

/// How often and with what an export of the views into a folder ended: "done", the problem, "|", what is lacking.
QStringList Export(FakeViews& views, const QString& folder, const std::vector<ViewInput>& inputs = {},
                   std::optional<int> settleMilliseconds = {}, bool isSimulated = false) {
  QWidget picture;
  picture.resize(30, 20);
  const auto exporter = settleMilliseconds ? std::make_unique<ViewExporter>(views, picture, *settleMilliseconds)
                                           : std::make_unique<ViewExporter>(views, picture);
  QStringList ends;
  exporter->OnDone = [&ends](const QString& problem, const QString& lacking) {
    ends.append("done" + problem + '|' + lacking);
  };
  exporter->Start(folder, inputs, isSimulated);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !ends.isEmpty(); }, 30000));
  return ends;
}

TEST(ViewExporterTest, VisitsEveryViewAndPortfolio) {
  const QTemporaryDir folder;
  FakeViews views;
  const QStringList done = Export(views, folder.filePath("deep/out"));
  ASSERT_EQ(done.size(), 1);
  EXPECT_EQ(done.first(), "done|");
  const QDir out(folder.filePath("deep/out"));
  EXPECT_EQ(out.entryList(QDir::Files, QDir::Name),
            QStringList({"1-g_1.csv", "1.png", "2-g_1-11.csv", "2-g_1-12.csv", "2-g_1.csv", "2.png"}));
  EXPECT_EQ(ContentOf(out.filePath("1-g_1.csv")), "t\n1\n");
  EXPECT_EQ(ContentOf(out.filePath("2-g_1-12.csv")), "t\n2-12\n");
  EXPECT_EQ(views.Current(), 2);
}

TEST(ViewExporterTest, EachViewStandsInTheEndWhereTheUserHadGotTo) {
  const std::map<int, QByteArray> before{{1, "of one"}, {2, "of two"}};
  const QTemporaryDir folder;
  FakeViews views;
  EXPECT_EQ(Export(views, folder.path()), QStringList{"done|"});
  EXPECT_EQ(views.place, before);
  EXPECT_EQ(views.put.last(), 2) << "after it is shown again";
  FakeViews withInputs;
  withInputs.inputs = {{"i", "0"}};
  withInputs.isRestoring = [] { return true; };
  EXPECT_EQ(Export(withInputs, folder.path(), {{2, "i", "5"}}), QStringList{"done|"});
  EXPECT_EQ(withInputs.place, before) << "also where setting an input back loses it";
}

TEST(ViewExporterTest, WindowsBesideTheViewsAreWrittenWhenTheyHaveSettled) {
  const QTemporaryDir folder;
  FakeViews views;
  views.windows = {"Pool", "Other"};
  EXPECT_EQ(Export(views, folder.path()), QStringList{"done|"});
  for (const char* name : {"Pool", "Other"}) {
    EXPECT_EQ(ContentOf(folder.filePath(QString(name) + "-list.csv")), "t\nsettled\n");
    EXPECT_EQ(QImage(folder.filePath(QString(name) + ".png")).size(), QSize(10, 10));
  }
}

TEST(ViewExporterTest, AWindowThatCannotBeMadeOrNeverSettlesIsAProblem) {
  const QTemporaryDir folder;
  FakeViews views;
  views.windows = {"unmakeable"};
  EXPECT_EQ(Export(views, folder.path()), QStringList{"done窗口“unmakeable”不能打开。|"});
  FakeViews slow;
  slow.windows = {"Pool"};
  slow.windowLooks = 1'000'000;
  EXPECT_TRUE(Export(slow, folder.path(), {}, 500).first().startsWith("done窗口“Pool” 在 0 秒内没有进展"));
  EXPECT_FALSE(QFile::exists(folder.filePath("Pool.png")));
}

TEST(ViewExporterTest, ASimulatedMarketIsSaidBesideTheTables) {
  const QTemporaryDir folder;
  FakeViews views;
  EXPECT_EQ(Export(views, folder.path(), {}, {}, true), QStringList{"done|"});
  const QString note = folder.filePath("模拟行情.txt");
  EXPECT_TRUE(ContentOf(note).contains("虚构"));
  EXPECT_EQ(Export(views, folder.path()), QStringList{"done|"});
  EXPECT_FALSE(QFile::exists(note));
}

TEST(ViewExporterTest, TablesOfAnEarlierExportGoOtherFilesStay) {
  const QTemporaryDir folder;
  for (const char* name :
       {"1-g_1-13.csv", "3-g_1.csv", "2-other.csv", "2024-g_1-notes.csv", "g_1.csv", "2-g_1-11.txt"}) {
    QFile file(folder.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  }
  FakeViews views;
  const QStringList done = Export(views, folder.path());
  ASSERT_EQ(done.size(), 1);
  EXPECT_EQ(done.first(), "done|");
  EXPECT_EQ(QDir(folder.path()).entryList({"*.csv", "*.txt"}, QDir::Files, QDir::Name),
            QStringList({"1-g_1.csv", "2-g_1-11.csv", "2-g_1-11.txt", "2-g_1-12.csv", "2-g_1.csv", "2-other.csv",
                         "2024-g_1-notes.csv", "g_1.csv"}));
}

TEST(ViewExporterTest, SetsInputsOneAfterTheOtherBeforeTheirViewIsWritten) {
  const QTemporaryDir folder;
  FakeViews views;
  const QStringList done = Export(views, folder.path(), {{2, "index", "7"}, {2, "move", "-10"}});
  ASSERT_EQ(done.size(), 1);
  EXPECT_EQ(done.first(), "done|");
  EXPECT_EQ(ContentOf(folder.filePath("1-g_1.csv")), "t\n1\n");
  EXPECT_EQ(ContentOf(folder.filePath("2-g_1.csv")), "t\n2 index=7 move=-10\n");
}

TEST(ViewExporterTest, AViewWhoseInputIsSetComesFirstSoThatAllFollowIt) {
  const QTemporaryDir folder;
  FakeViews views;
  ASSERT_EQ(Export(views, folder.path()), QStringList{"done|"});
  EXPECT_EQ(views.shown, QList<int>({1, 2, 2})) << "and back to the one that was shown";
  views.shown.clear();
  ASSERT_EQ(Export(views, folder.path(), {{2, "move", "-10"}}), QStringList{"done|"});
  EXPECT_EQ(views.shown, QList<int>({2, 1, 2}));
}

TEST(ViewExporterTest, TheInputsAreWrittenAsTheyAreInForceAndAreAfterwardsWhatTheyWere) {
  const QTemporaryDir folder;
  FakeViews views;
  views.inputs = {{"index", "1", "参考指数", "1"}, {"move", "5", {}, "4"}, {"other", "x"}};
  views.isRestoring = [&views] { return views.set.size() > 2; };
  ASSERT_EQ(Export(views, folder.path(), {{2, "index", "7"}, {2, "move", "-10"}}), QStringList{"done|"});
  EXPECT_EQ(ContentOf(folder.filePath("2-inputs.csv")),
            QString("输入项,控件,值\n参考指数,index,7\nmove,move,-10\nother,other,x\n").toUtf8());
  EXPECT_FALSE(QFile::exists(folder.filePath("1-inputs.csv"))) << "that view has none";
  EXPECT_EQ(views.set, QStringList({"index=7", "move=-10", "index=1", "move=4", "move~5"}));
  EXPECT_EQ(views.inputs[1].inForce, "4");
  views.set.clear();
  ASSERT_EQ(Export(views, folder.path()), QStringList{"done|"});
  EXPECT_TRUE(views.set.isEmpty()) << "nothing was changed";
  EXPECT_TRUE(ContentOf(folder.filePath("2-inputs.csv")).contains("move,move,4"));
}

TEST(ViewExporterTest, WhatWasTypedOrChosenAndNotAppliedStaysSo) {
  const QTemporaryDir folder;
  FakeViews views;
  views.inputs = {{"move", "bad", {}, "4"}};
  views.isRestoring = [&views] { return views.set.size() > 1; };
  EXPECT_EQ(Export(views, folder.path()), QStringList{"done|"});
  EXPECT_TRUE(ContentOf(folder.filePath("2-inputs.csv")).contains("move,move,4")) << "what the figures rest on";
  ASSERT_EQ(Export(views, folder.path(), {{2, "move", "-10"}}), QStringList{"done|"});
  EXPECT_EQ(views.set, QStringList({"move=-10", "move=4", "move~bad"}));
  views.inputs = {{"index", "7", {}, "1"}, {"move", "0", {}, "20"}};
  views.set.clear();
  ASSERT_EQ(Export(views, folder.path(), {{2, "move", "-10"}}), QStringList{"done|"});
  EXPECT_EQ(views.set, QStringList({"move=-10", "index=1", "move=20", "index~7", "move~0"}));
}

TEST(ViewExporterTest, ARefusedInputLeavesOutItsViewWithItsOldTablesAndWritesTheOthers) {
  const QTemporaryDir folder;
  FakeViews views;
  views.inputs = {{"move", "5"}, {"more", "6"}};
  ASSERT_EQ(Export(views, folder.path()), QStringList{"done|"});
  for (const char* name : {"2-notes.csv", "2-notes.png"}) {
    QFile file(folder.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  }
  views.incomplete = {"a: x"};
  views.set.clear();
  const QStringList done = Export(views, folder.path(), {{2, "move", "bad"}, {2, "more", "7"}});
  EXPECT_EQ(done, QStringList{"done视图“two”没有导出：no|a: x"});
  EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files, QDir::Name),
            QStringList({"1-g_1.csv", "1.png", "2-notes.csv", "2-notes.png"}));
  EXPECT_EQ(views.set, QStringList{"move=bad"}) << "its other inputs are not set";
}

TEST(ViewExporterTest, ARefusedInputOrOneOfNoViewIsAProblem) {
  for (const auto& [view, value, wanted] :
       {std::tuple{2, "bad", "视图“two”没有导出：no"}, std::tuple{3, "7", "没有编号为 3 的视图"}}) {
    const QTemporaryDir folder;
    FakeViews views;
    const QStringList done = Export(views, folder.path(), {{view, "move", value}});
    ASSERT_EQ(done.size(), 1);
    EXPECT_TRUE(done.first().contains(QString::fromUtf8(wanted))) << done.first().toStdString();
    EXPECT_EQ(QFile::exists(folder.filePath("2.png")), view == 3);
    EXPECT_TRUE(QFile::exists(folder.filePath("1.png")));
  }
}

TEST(ViewExporterTest, NamesAViewThatCannotBeShown) {
  const QTemporaryDir folder;
  FakeViews views;
  views.unshowable = 2;
  const QStringList done = Export(views, folder.path());
  ASSERT_EQ(done.size(), 1);
  EXPECT_TRUE(done.first().contains("two"));
}

TEST(ViewExporterTest, GivesUpOnlyWhenNothingMoves) {
  for (const bool isMoving : {true, false}) {
    const QTemporaryDir folder;
    FakeViews views;
    views.looksOfOne = 40;  // two seconds
    views.isMoving = isMoving;
    const QStringList done = Export(views, folder.path(), {}, 1000);
    ASSERT_EQ(done.size(), 1);
    EXPECT_EQ(done.first() == "done|", isMoving) << done.first().toStdString();
    EXPECT_EQ(done.first().contains("“one”"), !isMoving) << done.first().toStdString();
  }
}

TEST(ViewExporterTest, GivenUpItEndsSoonWhereItBegan) {
  const QTemporaryDir folder;
  FakeViews views;
  views.looksOfOne = 1'000'000;
  QWidget picture;
  ViewExporter exporter(views, picture);
  QStringList ends;
  exporter.OnDone = [&ends](const QString& problem, const QString& /*lacking*/) { ends.append(problem); };
  exporter.Start(folder.path());
  ASSERT_TRUE(QTest::qWaitFor([&views] { return views.Current() == 1; }));
  exporter.GiveUp();
  ASSERT_TRUE(QTest::qWaitFor([&ends] { return !ends.isEmpty(); }, 1000));
  QTest::qWait(200);
  EXPECT_EQ(ends, QStringList(QStringLiteral("已取消，目录“%1”中的文件不全。").arg(folder.path())));
  EXPECT_EQ(views.shown, QList<int>({1, 2}));
}

TEST(ViewExporterTest, MouseAndKeysReachOnlyWhatIsSparedMeanwhile) {
  const QTemporaryDir folder;
  QWidget window;
  auto* picture = new QWidget(&window);
  auto* inside = new QPushButton(picture);
  auto* beside = new QPushButton(&window);
  auto* spared = new QWidget(&window);
  auto* cancel = new QPushButton(spared);
  auto* viewsKey = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return), picture);
  auto* windowsKey = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q), &window);
  QStringList used;
  QObject::connect(inside, &QPushButton::clicked, [&used] { used << "inside"; });
  QObject::connect(beside, &QPushButton::clicked, [&used] { used << "beside"; });
  QObject::connect(cancel, &QPushButton::clicked, [&used] { used << "cancel"; });
  QObject::connect(viewsKey, &QShortcut::activated, [&used] { used << "view's key"; });
  QObject::connect(windowsKey, &QShortcut::activated, [&used] { used << "window's key"; });
  window.show();
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  const auto useAll = [&] {
    used.clear();
    for (QPushButton* button : {inside, beside, cancel}) QTest::mouseClick(button, Qt::LeftButton);
    QTest::keyClick(&window, Qt::Key_Return, Qt::ControlModifier);
    QTest::keyClick(&window, Qt::Key_Q, Qt::ControlModifier);
    return used;
  };
  const QStringList all{"inside", "beside", "cancel", "view's key", "window's key"};
  EXPECT_EQ(useAll(), all);
  FakeViews views;
  views.looksOfOne = 1'000'000;
  {
    ViewExporter exporter(views, *picture);
    bool isDone = false;
    exporter.OnDone = [&isDone](const QString&, const QString&) { isDone = true; };
    exporter.Spare(*spared);
    exporter.Start(folder.path());
    EXPECT_EQ(useAll(), QStringList({"cancel", "window's key"}));
    exporter.GiveUp();
    ASSERT_TRUE(QTest::qWaitFor([&isDone] { return isDone; }));
  }
  EXPECT_EQ(useAll(), all);
}

TEST(ViewExporterTest, SaysWhatIsMissing) {
  const QTemporaryDir folder;
  FakeViews views;
  views.incomplete = {"a: x", "b: y"};
  const QStringList done = Export(views, folder.path());
  ASSERT_EQ(done.size(), 1);
  EXPECT_EQ(done, QStringList{"done|a: x\nb: y"});
  EXPECT_TRUE(QFile::exists(folder.filePath("2-g_1-12.csv")));
}

TEST(ViewExporterTest, SaysWhenTheFiguresAreNotTheLatest) {
  const QTemporaryDir folder;
  FakeViews views;
  views.shortcoming = "old";
  const QStringList done = Export(views, folder.path());
  ASSERT_EQ(done.size(), 1);
  EXPECT_EQ(done, QStringList{"done|old"});
  EXPECT_TRUE(QFile::exists(folder.filePath("2-g_1-12.csv"))) << "everything is written all the same";
}

}  // namespace
}  // namespace holdwise
