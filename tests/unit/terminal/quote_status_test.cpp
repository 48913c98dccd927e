// SPDX-License-Identifier: MIT
#include "parts/quote_status.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <memory>

#include "bus/embedded_market.h"
#include "bus/simulation_file.h"
#include "market_data_fixture.h"
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
  const auto second = [](int hour, int minute, int more) { return hour * 3600 + minute * 60 + more; };
  const int morning = second(11, 29, 0), open = second(9, 30, 0), again = second(13, 0, 0);
  const Case cases[] = {
      {{At(11, 29, 3), At(11, 29, 0), date, false, morning + 3, {}}, "行情 11:29:00 · 3 秒前", ""},
      {{At(11, 29, 0), At(11, 29, 1), date, false, morning, {}}, "行情 11:29:01 · 0 秒前", ""},
      {{At(11, 28, 59), At(11, 28, 0), date, false, morning - 1, {}}, "行情 11:28:00 · 59 秒前", ""},
      {{At(11, 29, 0), At(11, 28, 0), date, false, morning, {}},
       "行情 11:28:00 · 1 分钟前",
       "价格 1 分钟没有变动，行情可能断了"},
      {{At(14, 30, 0), At(11, 30, 0), date, false, second(14, 30, 0), {}},
       "行情 11:30:00 · 3 小时前",
       "价格 1 小时没有变动，行情可能断了"},
      {{At(11, 29, 3), At(11, 29, 0), date, false, morning + 3, "文件不在"}, "行情 11:29:00 · 3 秒前", "文件不在"},
      {{At(10, 0, 0), {}, date, false, second(10, 0, 0), {}}, "行情日期 2024-05-29 · 还没有新价格", ""},
      // The first minute after a pause: nothing can have come in it.
      {{At(9, 30, 1), At(9, 0, 0), date, false, open + 1, {}}, "行情 09:00:00 · 30 分钟前", ""},
      {{At(13, 0, 59), At(11, 30, 0), date, false, again + 59, {}}, "行情 11:30:00 · 1 小时前", ""},
      {{At(13, 1, 0), At(11, 30, 0), date, false, again + 60, {}},
       "行情 11:30:00 · 1 小时前",
       "价格 1 分钟没有变动，行情可能断了"},
      // Pauses, told as they are and not as a fault.
      {{At(9, 29, 59), At(9, 0, 0), date, false, open - 1, {}}, "行情日期 2024-05-29 · 未开市，9:30 开市", ""},
      {{At(12, 30, 0), At(11, 30, 0), date, false, second(12, 30, 0), {}},
       "行情日期 2024-05-29 · 午间休市，13:00 开市",
       ""},
      {{At(15, 0, 0), At(15, 0, 0), date, false, second(15, 0, 0), {}}, "行情日期 2024-05-29 · 已收盘", ""},
      {{At(12, 30, 0), At(11, 30, 0), date, false, {}, {}}, "行情日期 2024-05-29 · 不是今天的行情", ""},
      {{At(12, 30, 0), At(11, 30, 0), date, false, {}, "文件不在"}, "行情日期 2024-05-29 · 不是今天的行情", "文件不在"},
      // 2024-05-29 is a Wednesday: at the next opening there can have been newer prices, over a weekend not.
      {{At(9, 29, 59).addDays(1), At(11, 30, 0), date, false, {}, {}}, "行情日期 2024-05-29 · 不是今天的行情", ""},
      {{At(9, 30, 0).addDays(1), At(11, 30, 0), date, false, {}, {}},
       "行情日期 2024-05-29 · 不是今天的行情",
       "如果之后开过市，数据还没有更新"},
      {{At(9, 29, 59).addDays(5), {}, "2024-05-31", false, {}, {}}, "行情日期 2024-05-31 · 不是今天的行情", ""},
      {{At(9, 30, 0).addDays(5), {}, "2024-05-31", false, {}, {}},
       "行情日期 2024-05-31 · 不是今天的行情",
       "如果之后开过市，数据还没有更新"},
      {{At(9, 30, 0).addDays(5), {}, "2024-05-31", false, {}, "文件不在"},
       "行情日期 2024-05-31 · 不是今天的行情",
       "文件不在"},
      // A simulated market has a time of its own.
      {{At(3, 0, 1), At(3, 0, 0), date, true, second(10, 15, 30), {}}, "行情 10:15:30 · 1 秒前", ""},
      {{At(3, 0, 0), At(3, 0, 0), date, true, second(11, 42, 7), {}}, "行情 11:42:07 · 午间休市，13:00 开市", ""},
      {{At(3, 0, 0), At(3, 0, 0), date, true, second(15, 4, 0), {}}, "行情 15:04:00 · 已收盘，稍后重新开市", ""},
      {{At(3, 0, 0), {}, date, true, {}, {}}, "行情日期 2024-05-29 · 还没有新价格", ""},
      {{At(3, 5, 0), At(3, 0, 0), date, true, second(10, 15, 30), {}},
       "行情 10:15:30 · 5 分钟前",
       "价格 5 分钟没有变动，行情可能断了"},
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
  [[nodiscard]] QToolButton& Quotes() {
    return *window_.statusBar()->findChild<QToolButton*>(QStringLiteral("quotes"));
  }
  [[nodiscard]] QLabel& Label(const char* name) {
    return *window_.statusBar()->findChild<QLabel*>(QString::fromLatin1(name));
  }
  ScriptedDebug log_;
  ThemeServices theme_{ThemeKind::Dark, log_};
  MainWindow window_{theme_, {}};
};

TEST_F(StatusBarTest, TheLineOfThePricesIsAmberWithItsReason) {
  const QColor amber = theme_.Colors().ColorOf(QStringLiteral("Qm_KlineYellowColor"));
  const auto ground = [&] { return Quotes().grab().toImage().pixelColor(1, 1); };
  window_.SetQuotes(QStringLiteral("行情 11:30:00 · 3 秒前"), {});
  EXPECT_EQ(Quotes().text(), QStringLiteral("行情 11:30:00 · 3 秒前"));
  EXPECT_NE(ground(), amber);
  window_.SetQuotes(QStringLiteral("行情 11:30:00 · 2 分钟前"), QStringLiteral("<行情>文件不在"));
  EXPECT_EQ(Quotes().text(), QStringLiteral("行情 11:30:00 · 2 分钟前：<行情>文件不在"));
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

/// A simulated market whose day has come so far.
class SimulatedStatusTest : public MarketDataTest {
 protected:
  QToolButton& ShownAt(double secondOfDay) {
    const QString stateFile = folder_.File(QStringLiteral("simulation.state"));
    status_.reset();
    market_.reset();  // keeps how far its own day has come
    WriteSimulation(stateFile, SimulationIdentity(data_), {secondOfDay, 0, {}});
    market_ = std::make_unique<EmbeddedMarket>(data_, log_, SimulationSetting{1, stateFile});
    market_->Connect();
    status_ = std::make_unique<QuoteStatus>(data_, *market_, clock_, window_);
    return *window_.statusBar()->findChild<QToolButton*>(QStringLiteral("quotes"));
  }
  ThemeServices theme_{ThemeKind::Dark, log_};
  MainWindow window_{theme_, {}};
  std::unique_ptr<EmbeddedMarket> market_;
  std::unique_ptr<QuoteStatus> status_;
};

TEST_F(SimulatedStatusTest, SaysWhyThePricesOfItsDayStandStill) {
  folder_.WriteMarket(20240529, true);
  Load();
  const struct {
    double secondOfDay;
    const char* text;
  } cases[] = {{11.75 * 3600, "行情 11:45:00 · 午间休市，13:00 开市"},
               {15 * 3600 + 60, "行情 15:01:00 · 已收盘，稍后重新开市"}};
  for (const auto& [secondOfDay, text] : cases) {
    const QToolButton& quotes = ShownAt(secondOfDay);
    EXPECT_EQ(quotes.text(), QString::fromUtf8(text));
    EXPECT_FALSE(quotes.autoFillBackground()) << "no fault";
  }
}

}  // namespace
}  // namespace holdwise
