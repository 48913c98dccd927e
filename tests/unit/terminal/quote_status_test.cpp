// SPDX-License-Identifier: MIT
#include "parts/quote_status.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include "scripted_host.h"

namespace holdwise {
namespace {

QDateTime At(int hour, int minute, int second) {
  return {QDate(2024, 5, 29), QTime(hour, minute, second)};
}

TEST(QuoteWordsTest, SayTimeAndAgeAndWhyPricesStandStill) {
  struct Case {
    QuoteFacts facts;
    const char *text, *reason;
  };
  const QString date = QStringLiteral("2024-05-29");
  const Case cases[] = {
      {{At(11, 30, 3), At(11, 30, 0), date, true, {}}, "行情 11:30:00 · 3 秒前", ""},
      {{At(11, 30, 0), At(11, 30, 1), date, true, {}}, "行情 11:30:01 · 0 秒前", ""},
      {{At(11, 30, 59), At(11, 30, 0), date, true, {}}, "行情 11:30:00 · 59 秒前", ""},
      {{At(11, 31, 0), At(11, 30, 0), date, true, {}}, "行情 11:30:00 · 1 分钟前", "价格 1 分钟没有变动，行情可能断了"},
      {{At(14, 30, 0), At(11, 30, 0), date, true, {}}, "行情 11:30:00 · 3 小时前", "价格 3 小时没有变动，行情可能断了"},
      {{At(11, 30, 3), At(11, 30, 0), date, true, "文件不在"}, "行情 11:30:00 · 3 秒前", "文件不在"},
      {{At(12, 30, 0), At(11, 30, 0), date, false, {}}, "行情日期 2024-05-29 · 休市", ""},
      {{At(10, 0, 0), {}, date, true, {}}, "行情日期 2024-05-29 · 还没有新价格", ""},
  };
  for (const Case& one : cases) {
    const QuoteWords words = WordsOf(one.facts);
    EXPECT_EQ(words.text, QString::fromUtf8(one.text));
    EXPECT_EQ(words.reason, QString::fromUtf8(one.reason)) << one.text;
  }
}

class StatusBarTest : public testing::Test {
 protected:
  StatusBarTest() { window_.show(); }
  [[nodiscard]] QLabel& Label(const char* name) {
    return *window_.statusBar()->findChild<QLabel*>(QString::fromLatin1(name));
  }
  ScriptedDebug log_;
  ThemeServices theme_{ThemeKind::Dark, log_};
  MainWindow window_{theme_, {}};
};

TEST_F(StatusBarTest, TheLineOfThePricesIsAmberWithItsReason) {
  const QColor amber = theme_.Colors().ColorOf(QStringLiteral("Qm_KlineYellowColor"));
  const auto ground = [&] { return Label("quotes").grab().toImage().pixelColor(1, 1); };
  window_.SetQuotes(QStringLiteral("行情 11:30:00 · 3 秒前"), {});
  EXPECT_EQ(Label("quotes").text(), QStringLiteral("行情 11:30:00 · 3 秒前"));
  EXPECT_NE(ground(), amber);
  window_.SetQuotes(QStringLiteral("行情 11:30:00 · 2 分钟前"), QStringLiteral("<行情>文件不在"));
  EXPECT_EQ(Label("quotes").text(), QStringLiteral("行情 11:30:00 · 2 分钟前：<行情>文件不在"));
  EXPECT_EQ(ground(), amber);
  window_.SetQuotes(QStringLiteral("行情 11:32:00 · 0 秒前"), {});
  EXPECT_NE(ground(), amber);
}

// 3030 after 3000 is 1 percent up, 9900 after 10000 1 percent down.
TEST_F(StatusBarTest, TheIndicesHaveLevelAndChange) {
  window_.SetIndices(
      {{QStringLiteral("上证"), 3030, 3000}, {QStringLiteral("深成"), 9900, 10000}, {QStringLiteral("沪深300"), 0, 0}});
  EXPECT_TRUE(Label("index0").text().contains(QStringLiteral("上证 3030.00"))) << Label("index0").text().toStdString();
  EXPECT_TRUE(Label("index0").text().contains(QStringLiteral("+1.00%")));
  EXPECT_TRUE(Label("index1").text().contains(QStringLiteral("-1.00%")));
  EXPECT_EQ(Label("index2").text(), QStringLiteral("沪深300 —"));
}

TEST_F(StatusBarTest, WhatIsIncompleteIsListedByAClick) {
  auto* sign = window_.statusBar()->findChild<QToolButton*>(QStringLiteral("incomplete"));
  ASSERT_NE(sign, nullptr);
  EXPECT_FALSE(sign->isVisible());
  window_.SetIncomplete({QStringLiteral("甲：没有计算"), QStringLiteral("乙：没有现价")});
  EXPECT_TRUE(sign->isVisible());
  EXPECT_EQ(sign->text(), QStringLiteral("2 项数据不完整"));
  QString shown;
  QTimer::singleShot(50, qApp, [&shown] {
    QWidget* report = QApplication::activeModalWidget();
    ASSERT_NE(report, nullptr);
    shown = report->findChild<QPlainTextEdit*>()->toPlainText();
    report->close();
  });
  QTest::mouseClick(sign, Qt::LeftButton);
  EXPECT_EQ(shown, QStringLiteral("甲：没有计算\n乙：没有现价"));
  window_.SetIncomplete({});
  EXPECT_FALSE(sign->isVisible());
}

}  // namespace
}  // namespace holdwise
