// SPDX-License-Identifier: MIT
#include "window/ongoing_work.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <memory>

#include "close_button.h"
#include "scripted_host.h"
#include "theme/theme_services.h"
#include "window/main_window.h"

namespace holdwise {
namespace {

class OngoingWorkTest : public testing::Test {
 protected:
  OngoingWorkTest() {
    window_.SetPortfolioActionsEnabled(true);
    window_.show();
    window_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
  }
  [[nodiscard]] WindowActions Actions() {
    WindowActions actions;
    actions.importPortfolios = [this] { ++imports_; };
    actions.takeNewDay = [this] { ++newDays_; };
    return actions;
  }
  void Begin() {
    work_ = std::make_unique<OngoingWork>(window_, QStringLiteral("正在试验"));
    work_->OnGivenUp = [this] { ++givenUp_; };
  }
  /// Texts of what the menus offer, those in them included.
  [[nodiscard]] QStringList Offered() const {
    QStringList texts;
    for (const QAction* menu : window_.menuBar()->actions()) {
      for (const QAction* action : menu->menu()->actions())
        if (action->isEnabled() && !action->isSeparator()) texts << action->text();
    }
    return texts;
  }
  [[nodiscard]] QString Sign() const {
    const auto* label = window_.statusBar()->findChild<QLabel*>("ongoing");
    return label->isVisible() ? label->text() : QString();
  }
  /// The user closes the window by its title's button.
  void ClickClose() { ClickCloseOf(window_); }
  /// Answers the question that `close` brings, before which something may happen.
  void Close(bool isAgreed, const std::function<void()>& before = {}) {
    Answer([this] { ClickClose(); }, isAgreed, before);
  }
  static void Answer(const std::function<void()>& close, bool isAgreed, const std::function<void()>& before = {}) {
    QTimer::singleShot(100, qApp, [isAgreed, before] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      EXPECT_EQ(box->text(), QStringLiteral("正在试验。放弃并关闭吗？"));
      if (before) before();
      if (!isAgreed) return box->reject();
      for (QAbstractButton* button : box->buttons())
        if (button->text() == QStringLiteral("确定")) button->click();
    });
    close();
    QCoreApplication::processEvents();
  }

  int imports_ = 0;
  int newDays_ = 0;
  int givenUp_ = 0;
  ScriptedDebug log_;
  ThemeServices theme_{ThemeKind::Dark, log_};
  MainWindow window_{theme_, Actions()};
  std::unique_ptr<OngoingWork> work_;
};

TEST_F(OngoingWorkTest, TheMenusOfferNothingButLeavingUntilItEnds) {
  window_.OfferNewDay(QStringLiteral("新的一天(&N)"), {});
  auto* newDay = window_.statusBar()->findChild<QPushButton*>("newDay");
  const QStringList before = Offered();
  EXPECT_EQ(before.size(), 13);
  QTest::keyClick(&window_, Qt::Key_O, Qt::ControlModifier);
  EXPECT_EQ(imports_, 1);
  Begin();
  EXPECT_EQ(Sign(), QStringLiteral("正在试验…"));
  EXPECT_EQ(Offered(), QStringList{QStringLiteral("退出(&X)")});
  QTest::keyClick(&window_, Qt::Key_O, Qt::ControlModifier);
  QTest::keyClick(&window_, Qt::Key_N, Qt::AltModifier);
  QTest::mouseClick(newDay, Qt::LeftButton);
  EXPECT_EQ(imports_, 1);
  EXPECT_EQ(newDays_, 0);
  work_.reset();
  EXPECT_EQ(Sign(), QString());
  EXPECT_FALSE(window_.CancelButton().isVisible());
  EXPECT_EQ(Offered(), before);
  QTest::keyClick(&window_, Qt::Key_O, Qt::ControlModifier);
  QTest::mouseClick(newDay, Qt::LeftButton);
  EXPECT_EQ(imports_, 2);
  EXPECT_EQ(newDays_, 1);
}

TEST_F(OngoingWorkTest, APageThatGoesMeanwhileTakesItsCommandsAlong) {
  Begin();
  window_.SetPortfolioActionsEnabled(true);
  EXPECT_EQ(Offered().size(), 1);
  window_.SetPortfolioActionsEnabled(false);
  work_.reset();
  EXPECT_EQ(Offered().size(), 11) << "all but import and export";
}

TEST_F(OngoingWorkTest, IsGivenUpOnceByItsButtonOrEscape) {
  Begin();
  EXPECT_TRUE(window_.CancelButton().isVisible());
  QTest::mouseClick(&window_.CancelButton(), Qt::LeftButton);
  EXPECT_EQ(givenUp_, 1);
  QTest::keyClick(&window_, Qt::Key_Escape);
  EXPECT_EQ(givenUp_, 1);
  work_.reset();
  Begin();
  QTest::keyClick(&window_, Qt::Key_Escape);
  EXPECT_EQ(givenUp_, 2);
  EXPECT_TRUE(window_.isVisible());
}

TEST_F(OngoingWorkTest, ClosingTheWindowAsksAndWaitsForTheEnd) {
  Begin();
  Close(false);
  EXPECT_EQ(givenUp_, 0);
  EXPECT_TRUE(window_.isVisible());
  Close(true);
  EXPECT_EQ(givenUp_, 1);
  EXPECT_TRUE(window_.isVisible()) << "it has not ended yet";
  work_.reset();
  EXPECT_TRUE(QTest::qWaitFor([this] { return !window_.isVisible(); }));
}

TEST_F(OngoingWorkTest, LeavingByTheMenuAsks) {
  Begin();
  Answer([this] { QTest::keyClick(&window_, Qt::Key_Q, Qt::ControlModifier); }, false);
  EXPECT_EQ(givenUp_, 0);
  EXPECT_TRUE(window_.isVisible());
}

/// Whoever closes it has asked the user already.
TEST_F(OngoingWorkTest, ACloseThatComesOutOfTheProgramAsksNothingAndWaitsForTheEnd) {
  Begin();
  QStringList asked;
  QTimer::singleShot(100, qApp, [&asked] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr) return;
    asked << box->text();
    box->reject();
  });
  EXPECT_FALSE(window_.close());
  QTest::qWait(200);
  EXPECT_EQ(asked, QStringList());
  EXPECT_EQ(givenUp_, 1);
  EXPECT_TRUE(window_.isVisible()) << "it has not ended yet";
  work_.reset();
  EXPECT_TRUE(QTest::qWaitFor([this] { return !window_.isVisible(); }));
}

TEST_F(OngoingWorkTest, MayEndWhileTheQuestionStands) {
  Begin();
  Close(false, [this] { work_.reset(); });
  EXPECT_TRUE(window_.isVisible());
  Begin();
  Close(true, [this] { work_.reset(); });
  EXPECT_FALSE(window_.isVisible());
  EXPECT_EQ(givenUp_, 0);
}

TEST(FileMenuTest, TheFileMenuLeadsToTheDemoOrBackAndToADataFolder) {
  ScriptedDebug log;
  const ThemeServices theme(ThemeKind::Dark, log);
  WindowActions actions;
  QStringList done;
  actions.chooseDataFolder = [&done] { done << "folder"; };
  actions.switchDemo = [&done] { done << "demo"; };
  MainWindow window(theme, actions);
  const auto trigger = [&window](const QString& text) {
    const QList<QAction*> offered = window.menuBar()->actions().constFirst()->menu()->actions();
    const auto action = std::find_if(offered.begin(), offered.end(), [&](QAction* one) { return one->text() == text; });
    if (action != offered.end()) (*action)->trigger();
    return action != offered.end();
  };
  EXPECT_TRUE(trigger("选择数据目录(&O)…"));
  EXPECT_TRUE(trigger("试用模拟行情(&D)"));
  EXPECT_FALSE(trigger("回到自己的数据(&B)"));
  window.SetDemo(true);
  EXPECT_TRUE(trigger("选择数据目录(&O)…"));
  EXPECT_FALSE(trigger("试用模拟行情(&D)"));
  EXPECT_TRUE(trigger("回到自己的数据(&B)"));
  EXPECT_EQ(done, QStringList({"folder", "demo", "folder", "demo"}));
}

}  // namespace
}  // namespace holdwise
