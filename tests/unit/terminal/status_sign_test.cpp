// SPDX-License-Identifier: MIT
// What the status bar tells beside prices and indices: signs that can be asked, and passing messages.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QStatusBar>
#include <QTest>
#include <QToolButton>
#include <initializer_list>

#include "scripted_host.h"
#include "theme/theme_services.h"
#include "window/main_window.h"

namespace holdwise {
namespace {

class StatusSigns : public testing::Test {
 protected:
  [[nodiscard]] WindowActions Actions() {
    WindowActions actions;
    actions.showHealth = [this] { ++shown; };
    return actions;
  }
  int shown = 0;
  ScriptedDebug log;
  ThemeServices theme{ThemeKind::Dark, log};
  MainWindow window{theme, Actions()};
};

TEST_F(StatusSigns, TellsInTheStatusBarWhileTheQuotesAreNotFollowed) {
  window.show();
  const auto told = [this] {
    QStringList hints;
    for (const auto* sign : window.statusBar()->findChildren<QToolButton*>())
      if (sign->isVisible() && sign->text() == "行情没有更新") hints.append(sign->toolTip());
    return hints;
  };
  EXPECT_EQ(told(), QStringList());
  window.SetQuotesProblem("日期不同");
  EXPECT_EQ(told(), QStringList{"日期不同<br>单击打开“状态”"});
  window.SetQuotesProblem({});
  EXPECT_EQ(told(), QStringList());
}

TEST_F(StatusSigns, ASignInTheStatusBarOpensWhatExplainsIt) {
  window.show();
  window.ShowTheme();
  window.SetQuotesProblem("日期不同");
  window.SetDataNotices({"a"});
  window.SetHealthProblems({"磁盘：满了", "备份：没有写"});
  window.SetQuotes("行情 11:30:00 · 2 分钟前", "价格 2 分钟没有变动");
  const auto sign = [this](const char* name) { return window.findChild<QToolButton*>(name); };
  int expected = 0;
  for (const char* name : {"quotesProblem", "dataNotices", "health", "quotes"}) {
    ASSERT_NE(sign(name), nullptr) << name;
    EXPECT_TRUE(sign(name)->isVisible()) << name;
    EXPECT_EQ(sign(name)->cursor().shape(), Qt::PointingHandCursor) << name;
    EXPECT_TRUE(sign(name)->focusPolicy() & Qt::TabFocus) << name;
    EXPECT_TRUE(sign(name)->toolTip().endsWith("单击打开“状态”")) << name;
    EXPECT_EQ(sign(name)->accessibleName(), sign(name)->text());
    EXPECT_FALSE(sign(name)->accessibleDescription().isEmpty());
    QTest::mouseClick(sign(name), Qt::LeftButton);
    EXPECT_EQ(shown, ++expected) << name;
    for (const auto key : {Qt::Key_Return, Qt::Key_Space}) {
      QTest::keyClick(sign(name), key);
      EXPECT_EQ(shown, ++expected) << name;
    }
  }
  QApplication::setActiveWindow(&window);
  sign("quotesProblem")->setFocus(Qt::TabFocusReason);
  QTest::keyClick(sign("quotesProblem"), Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), sign("dataNotices"));
  window.SetQuotes("行情 11:32:00 · 0 秒前", {});
  EXPECT_NE(sign("quotes")->cursor().shape(), Qt::PointingHandCursor);
  EXPECT_EQ(sign("quotes")->focusPolicy(), Qt::NoFocus);
  QTest::mouseClick(sign("quotes"), Qt::LeftButton);
  EXPECT_EQ(shown, expected) << "prices as they should be have nothing to explain";
  window.SetOngoing("正在导出…", {});
  QTest::mouseClick(sign("health"), Qt::LeftButton);
  EXPECT_EQ(shown, expected) << "as the menu that offers the same";
  window.SetOngoing({}, {});
  QTest::mouseClick(sign("health"), Qt::LeftButton);
  EXPECT_EQ(shown, expected + 1);
}

TEST_F(StatusSigns, TabComesToTheBarAfterThePage) {
  QWidget page;
  QLineEdit first(&page);
  QLineEdit second(&page);
  window.show();
  window.SetDataNotices({"a"});
  window.SetQuotes("行情 11:30:00 · 2 分钟前", "价格 2 分钟没有变动");
  window.Area().ShowFrame(&page);
  QApplication::setActiveWindow(&window);
  window.Area().setFocus();
  const auto* sign = window.findChild<QToolButton*>("dataNotices");
  const auto* quotes = window.findChild<QToolButton*>("quotes");
  for (const QWidget* expected : std::initializer_list<const QWidget*>{&first, &second, sign, quotes}) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), expected);
  }
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
  EXPECT_EQ(QApplication::focusWidget(), sign);
  window.Area().ShowFrame(nullptr);
  page.setParent(nullptr);
}

TEST_F(StatusSigns, WhatGoesOnIsToldUntilItHasEnded) {
  window.TellOngoing("正在计算，按 Esc 可取消");
  EXPECT_EQ(window.statusBar()->currentMessage(), "正在计算，按 Esc 可取消");
  window.TellOngoing({});
  EXPECT_EQ(window.statusBar()->currentMessage(), "");
  window.TellOngoing("正在计算，按 Esc 可取消");
  window.TellFailure("风险计算未完成");
  window.TellOngoing({});
  EXPECT_EQ(window.statusBar()->currentMessage(), "风险计算未完成") << "what was told since stays";
}

TEST_F(StatusSigns, TellsInTheStatusBarWhatOfTheDataIsNotUsed) {
  window.show();
  const auto told = [this] {
    for (const auto* sign : window.findChildren<QToolButton*>())
      if (sign->isVisible() && sign->text() == "数据有2处未采用") return sign->toolTip();
    return QString();
  };
  EXPECT_EQ(told(), QString());
  window.SetDataNotices({"accounts.dat <坏>", "自选股"});
  EXPECT_EQ(told(), "accounts.dat &lt;坏&gt;<br>自选股<br>单击打开“状态”");
  window.SetDataNotices({});
  EXPECT_EQ(told(), QString());
}

TEST_F(StatusSigns, TellsInTheStatusBarWhatWasNotDone) {
  window.TellFailure("磁盘空间不足");
  EXPECT_EQ(window.statusBar()->currentMessage(), "没有完成：磁盘空间不足");
  window.TellOutcome("已删除");
  EXPECT_EQ(window.statusBar()->currentMessage(), "已删除");
}

}  // namespace
}  // namespace holdwise
