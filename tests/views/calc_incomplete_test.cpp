// SPDX-License-Identifier: MIT
// What stays incomplete, and when it is calculated again.
#include "calc_trigger_fixture.h"
#include "common/store/database.h"
#include "common/store/incomplete_portfolios.h"
#include "holdwise/packet/dates.h"

namespace holdwise {
namespace {

TEST_F(Trigger, WhatStaysIncompleteBringsTheDialogUpOnceUntilDataComesBack) {
  Run("delete from alg_commain where ID = 3");
  int shown = 0;
  bool hasStock = false;
  const auto trigger = [&] {
    WhenShown([&] {
      ++shown;
      if (hasStock) {
        FinishBase();
      } else {
        FinishBaseBut000001();
      }
      FinishRates();
      FinishEstimates();
    });
    DownData();
  };
  const auto incomplete = [] { return LinesOf(IncompletePortfolios(Database())); };
  const QStringList lines{QStringLiteral("p1：stock(000001)没有统计数据")};
  for (int change = 0; change < 3; ++change) {
    trigger();
    EXPECT_EQ(shown, 1) << "change of view " << change;
    EXPECT_EQ(incomplete(), lines);
  }
  // A new portfolio is calculated as ever, and with it what is incomplete.
  AddPortfolio(4, 0);
  AddHolding(5, 4, 1600000);
  trigger();
  EXPECT_EQ(shown, 2);
  EXPECT_EQ(incomplete(), lines);
  hasStock = true;
  trigger();
  EXPECT_EQ(shown, 2);
  RetryIncomplete();
  trigger();
  EXPECT_EQ(shown, 3);
  EXPECT_EQ(incomplete(), QStringList());
  RetryIncomplete();
  trigger();
  EXPECT_EQ(shown, 3);
  EXPECT_TRUE(host_.debug.Lines().empty());
}

TEST_F(Trigger, WithoutTheOneYearRateFiguresAreAskedForAgainWhenDataComesBack) {
  Run("delete from alg_commain where ID = 3");
  int shown = 0;
  const auto trigger = [&](const char* term) {
    WhenShown([&, term] {
      ++shown;
      FinishBase();
      RateDown()->ReceiveStream(kRatesFile, RateData("1.5", term));
      FinishEstimates();
    });
    DownData();
  };
  // Portfolio 2 is 600000 alone, 0.03 and -0.01: mean 0.01, variance 0.0008; Sharpe (0.01 - rf) / sqrt(0.0008).
  const auto sharpe = [this] { return Rows("select cast(SHARP as numeric(18,9)) from alg_commain where ID = 2"); };
  for (int change = 0; change < 3; ++change) {
    trigger("三个月");
    EXPECT_EQ(shown, 1) << "change of view " << change;
    const QString lack = QStringLiteral("：没有一年期定期存款利率，Alpha、夏普和特雷诺指数按无风险利率 0 计算");
    EXPECT_EQ(LinesOf(IncompletePortfolios(Database())), (QStringList{"p2" + lack, "p1" + lack}));
  }
  EXPECT_EQ(sharpe(), QStringList{"0.353553391"});
  EXPECT_EQ(Rows("select ISFINISHED,LACKING from alg_commain order by ID"), (QStringList{"1|1", "1|1"}));
  RetryIncomplete();
  trigger("一年");
  EXPECT_EQ(shown, 2);
  EXPECT_EQ(LinesOf(IncompletePortfolios(Database())), QStringList());
  RetryIncomplete();
  trigger("一年");
  EXPECT_EQ(shown, 2);
  EXPECT_EQ(sharpe(), QStringList{"0.35143207"}) << "1.5 percent a year is 0.00006 a day";
}

/// Once for each edition, whatever it leaves behind.
TEST_F(Trigger, AnotherEditionOfTheDataIsCalculatedOnce) {
  Run("delete from alg_commain where ID = 3");
  int shown = 0;
  bool hasStock = true;
  const auto triggerAs = [&](const char* edition) {
    host_.dataCenter.dataEdition = QString::fromLatin1(edition);
    WhenShown([&] {
      ++shown;
      if (hasStock) return FinishAll();
      FinishBaseBut000001();
      FinishRates();
      FinishEstimates();
    });
    DownData();
  };
  const auto editions = [this] { return Rows("select ID,EDITION,ISFINISHED,LACKING from alg_commain order by ID"); };
  triggerAs("a1");
  triggerAs("a1");
  EXPECT_EQ(shown, 1);
  EXPECT_EQ(editions(), (QStringList{"1|a1|1|0", "2|a1|1|0"}));
  hasStock = false;
  for (int change = 0; change < 3; ++change) {
    triggerAs("b2");
    EXPECT_EQ(shown, 2) << "change of view " << change;
    EXPECT_EQ(editions(), (QStringList{"1|b2|1|1", "2|b2|1|0"}));
    EXPECT_EQ(LinesOf(IncompletePortfolios(Database())),
              QStringList{QStringLiteral("p1：stock(000001)的统计数据没有随当前数据更新")});
  }
  hasStock = true;
  RetryIncomplete();
  triggerAs("b2");
  triggerAs("b2");
  EXPECT_EQ(shown, 3);
  EXPECT_EQ(editions(), (QStringList{"1|b2|1|0", "2|b2|1|0"}));
  triggerAs("");
  EXPECT_EQ(shown, 3) << "not known is not another one";
  EXPECT_TRUE(host_.debug.Lines().empty());
}

/// The data centre stands at a day, the files are of a later or an earlier one.
TEST_F(Trigger, FilesOfAnotherDateAreCalculatedOnceAndSaid) {
  Run("delete from alg_commain where ID = 3");
  for (const auto& [day, said] : {std::pair(20240528, "上证指数的统计数据已到 2024-05-29"),
                                  std::pair(20240530, "上证指数的统计数据只到 2024-05-29")}) {
    RetryIncomplete();
    Run("update alg_commain set ISFINISHED = 0");
    host_.dataCenter.tradingDates = {day};
    host_.dataCenter.currentDateText = QString::fromStdString(DateText(day));
    int shown = 0;
    for (int change = 0; change < 3; ++change) {
      WhenShown([&] {
        ++shown;
        FinishAll();
      });
      DownData();
      EXPECT_EQ(shown, 1) << day << " change of view " << change;
      const QStringList lines = LinesOf(IncompletePortfolios(Database()));
      ASSERT_EQ(lines.size(), 2) << day;
      for (const QString& line : lines) EXPECT_TRUE(line.contains(QString::fromUtf8(said))) << line.toStdString();
    }
  }
  EXPECT_TRUE(host_.debug.Lines().empty());
}

TEST_F(Trigger, WithoutTheIndexTheDialogComesUpOnceUntilDataComesBack) {
  Run("delete from alg_commain where ID = 3");
  Run("update alg_commain set FC = 0.5, ISFINISHED = 1, CALCDATE = 20240528 where ID = 2");
  int shown = 0;
  const auto trigger = [&](bool hasIndex) {
    WhenShown([&, hasIndex] {
      ++shown;
      if (hasIndex) {
        FinishBase();
      } else {
        Base()->ReceiveStream(StockFile("000001"), BaseData({{"0", "20240528", "0.01"}, {"0", "20240529", "0"}}));
        Base()->ReceiveStream(StockFile("600000"), BaseData({{"0", "20240528", "0.03"}, {"0", "20240529", "-0.01"}}));
        Base()->Fail(kIndexFile, 1);
      }
      FinishRates();
      FinishEstimates();
    });
    DownData();
  };
  for (int change = 0; change < 3; ++change) {
    trigger(false);
    EXPECT_EQ(shown, 1) << "change of view " << change;
    EXPECT_EQ(Rows("select ID,FC,ISFINISHED from alg_commain order by ID"), (QStringList{"1|0|0", "2|0.5|0"}));
  }
  EXPECT_EQ(LinesOf(IncompletePortfolios(Database())),
            (QStringList{QStringLiteral("p2：上证指数没有统计数据"), QStringLiteral("p1：上证指数没有统计数据")}));
  RetryIncomplete();
  trigger(true);
  EXPECT_EQ(shown, 2);
  EXPECT_EQ(LinesOf(IncompletePortfolios(Database())), QStringList());
  EXPECT_EQ(Unfinished(), QStringList());
}

TEST_F(Trigger, AReferenceFileThatIsMissingOrDamagedBringsTheDialogUpOnceUntilDataComesBack) {
  Run("delete from alg_commain where ID = 3");
  const std::vector<std::function<void()>> faults = {
      [&] { RateDown()->Fail(kRatesFile, 1); },
      [&] { EstimateDown()->Fail(kEstimatesFile, 1); },
      [&] { RateDown()->ReceiveStream(kRatesFile, "damaged"); },
      [&] { EstimateDown()->ReceiveStream(kEstimatesFile, "damaged"); },
  };
  for (const auto& fault : faults) {
    RetryIncomplete();
    int shown = 0;
    for (int change = 0; change < 3; ++change) {
      WhenShown([&] {
        ++shown;
        fault();
      });
      DownData();
      EXPECT_EQ(shown, 1) << "change of view " << change;
    }
    EXPECT_EQ(Unfinished(), (QStringList{"1", "2"}));
  }
  // A new portfolio is one more reason to try.
  AddPortfolio(4, 0);
  AddHolding(5, 4, 1600000);
  WhenShown([&] { FinishAll(); });
  DownData();
  EXPECT_EQ(Unfinished(), QStringList());
}

TEST_F(Trigger, APortfolioWithoutAnyReturnYetStaysUnfinishedAndIsTriedOnce) {
  Run("delete from alg_commain where ID <> 2");
  Run("update alg_commain set FC = 0.5 where ID = 2");
  ResultSet firstDay = DecodePacket(BaseData({{"0", "20240529", "0"}}));
  firstDay.SetReal(0, firstDay.Column("oldcloseprice"), 0);
  int shown = 0;
  for (int change = 0; change < 3; ++change) {
    WhenShown([&] {
      ++shown;
      Base()->ReceiveStream(StockFile("600000"), EncodePacket(firstDay));
      Base()->ReceiveStream(kIndexFile, IndexData());
      FinishRates();
      FinishEstimates();
    });
    DownData();
    EXPECT_EQ(shown, 1) << "change of view " << change;
  }
  EXPECT_EQ(Rows("select FC,ISFINISHED from alg_commain"), QStringList{"0.5|0"});
  EXPECT_EQ(LinesOf(IncompletePortfolios(Database())), QStringList{QStringLiteral("p2：stock(600000)还没有日收益率")});
}

}  // namespace
}  // namespace holdwise
