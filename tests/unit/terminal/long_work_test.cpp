// SPDX-License-Identifier: MIT
#include "window/long_work.h"

#include <gtest/gtest.h>

#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>
#include <QTimer>
#include <functional>

#include "close_button.h"
#include "scripted_host.h"
#include "theme/theme_services.h"
#include "window/main_window.h"

namespace holdwise {
namespace {

/// A window with work of a thousand steps of a millisecond in it.
class LongWorkTest : public testing::Test {
 protected:
  LongWorkTest() {
    window_.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window_));
  }
  int Run(const std::function<void(int step)>& during) {
    LongWork work(window_, QStringLiteral("正在试验"));
    for (int step = 0; step < 1000; ++step) {
      if (!work.Step(step, 1000)) return step;
      during(step);
      QTest::qSleep(1);
    }
    return 1000;
  }
  [[nodiscard]] QProgressBar& Bar() { return *window_.statusBar()->findChild<QProgressBar*>(); }

  ScriptedDebug log_;
  ThemeServices theme_{ThemeKind::Dark, log_};
  MainWindow window_{theme_, {}};
};

TEST_F(LongWorkTest, IsShownWithAButtonThatGivesItUp) {
  int clicks = 0;
  QPushButton other(&window_);
  other.setGeometry(10, 100, 80, 30);
  other.show();
  QObject::connect(&other, &QPushButton::clicked, [&clicks] { ++clicks; });
  const int done = Run([&](int step) {
    if (step == 200) {
      EXPECT_TRUE(Bar().isVisible());
      EXPECT_GT(Bar().value(), 100);
      QTest::mouseClick(&other, Qt::LeftButton);
    }
    if (step == 300) QTest::mouseClick(&window_.CancelButton(), Qt::LeftButton);
  });
  EXPECT_GE(done, 300);
  EXPECT_LE(done, 302);
  EXPECT_EQ(clicks, 0) << "nothing else is used meanwhile";
  EXPECT_FALSE(Bar().isVisible());
  EXPECT_FALSE(window_.CancelButton().isVisible());
  QTest::mouseClick(&other, Qt::LeftButton);
  EXPECT_EQ(clicks, 1);
}

TEST_F(LongWorkTest, TimersWaitForItsEnd) {
  QTimer timer;
  int fired = 0;
  timer.callOnTimeout([&fired] { ++fired; });
  timer.setSingleShot(true);
  timer.start(10);
  EXPECT_EQ(Run([](int) {}), 1000);
  EXPECT_EQ(fired, 0);
  EXPECT_TRUE(QTest::qWaitFor([&] { return fired == 1; }));
}

TEST_F(LongWorkTest, ClosingTheWindowAsksFirst) {
  for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Tab}) {
    bool isAsked = false;
    const int done = Run([&](int step) {
      if (step != 100) return;
      QTimer::singleShot(100, qApp, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        isAsked = box->text().contains(QStringLiteral("正在试验。放弃并关闭吗？"));
        if (key == Qt::Key_Escape) return box->reject();
        for (QAbstractButton* button : box->buttons())
          if (button->text() == QStringLiteral("确定")) button->click();
      });
      ClickCloseOf(window_);
    });
    EXPECT_TRUE(isAsked);
    EXPECT_EQ(done, key == Qt::Key_Escape ? 1000 : 101);
    QCoreApplication::processEvents();
    EXPECT_EQ(window_.isVisible(), key == Qt::Key_Escape);
  }
}

}  // namespace
}  // namespace holdwise
