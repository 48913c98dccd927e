// SPDX-License-Identifier: MIT
// Which figures are asked for again.
#include "figures_fixture.h"

using namespace holdwise;
using namespace holdwise::test;

namespace {

TEST_F(Figures, WhatLacksSomethingIsAskedForAgainUntilItIsThere) {
  AddIndexDays({0.01, -0.01, 0.03});
  AddDay(1600000, 1, 0.01);
  AddRate("0");
  AddPortfolio();
  AddHolding(1600000, "0.5");
  AddHolding(1000001, "0.5");
  Run();
  EXPECT_EQ(UnfinishedOn("2026-01-03"), 1);
  ReloadIndex();
  Run();
  EXPECT_EQ(UnfinishedOn("2026-01-03"), 1);
  AddDay(1000001, 1, 0.02);
  Run();
  EXPECT_EQ(UnfinishedOn("2026-01-03"), 0);
}

TEST_F(Figures, OtherPortfoliosStayAsTheyAre) {
  AddIndexDays({0.01, -0.01});
  AddPortfolio();
  Service().Execute(InsertPortfolio(2, QStringLiteral("乙")));
  Run();
  EXPECT_EQ(Service().Count(QStringLiteral("select ID from alg_commain where isFinished = 0")), 2);
}

TEST_F(Figures, FiguresOfAnotherDateThanTodayAreUnfinished) {
  AddIndexDays({0.01, -0.01, 0.03});  // up to 2026-01-03
  AddPortfolio();
  Run();
  const QString unfinished = QStringLiteral("select Count(ID) from alg_commain where isFinished = 0");
  Service().Execute(QStringLiteral("execute procedure INITFIRSTCALC('2026-01-03')"));
  EXPECT_EQ(Service().Count(unfinished), 0);
  Service().Execute(QStringLiteral("execute procedure INITFIRSTCALC('2025-12-31')"));
  EXPECT_EQ(Service().Count(unfinished), 1);
  Run();
  Service().Execute(QStringLiteral("execute procedure INITFIRSTCALC('2026-01-04')"));
  EXPECT_EQ(Service().Count(unfinished), 1);
  for (const char* bad : {"", "20260104", "2026-13-01", "2026-02-30", "heute1-2-3", "2026-1-004"}) {
    EXPECT_THROW(Service().Execute(QStringLiteral("execute procedure INITFIRSTCALC('%1')").arg(QLatin1String(bad))),
                 Error)
        << bad;
  }
}

/// A Sunday, or a day whose bar of the index is missing: the figures end before it after every calculation.
TEST_F(Figures, ADateWithoutARowOfTheIndexIsAskedForOnce) {
  AddIndexDays({0.01, -0.01, 0.03});  // up to 2026-01-03
  AddPortfolio();
  Run();
  EXPECT_EQ(UnfinishedOn("2026-01-04"), 1);
  ReloadIndex();
  Run();
  EXPECT_EQ(UnfinishedOn("2026-01-04"), 0);
  // What is new is unfinished by itself, and finishing it is final too.
  Service().Execute(InsertPortfolio(2, QStringLiteral("乙")));
  EXPECT_EQ(UnfinishedOn("2026-01-04"), 1);
  Service().Execute(QStringLiteral("execute procedure SP_GETBETA(1,2)"));
  EXPECT_EQ(UnfinishedOn("2026-01-04"), 0);
  EXPECT_EQ(UnfinishedOn("2026-01-05"), 2);
}

TEST_F(Figures, ADateIsAskedForAgainUntilTheIndexIsLoaded) {
  AddIndexDays({0.01, -0.01, 0.03});
  AddPortfolio();
  Run();
  EXPECT_EQ(UnfinishedOn("2026-01-04"), 1);
  Run();  // the file of the index could not be had
  EXPECT_EQ(UnfinishedOn("2026-01-04"), 1);
  ReloadIndex();
  Run();
  EXPECT_EQ(UnfinishedOn("2026-01-04"), 0);
}

TEST_F(Figures, AskingThatWasRolledBackIsAskedForAgain) {
  AddIndexDays({0.01, -0.01, 0.03});
  AddPortfolio();
  Run();
  Service().StartTransaction();
  EXPECT_EQ(UnfinishedOn("2026-01-04"), 1);
  Service().RollBack();
  EXPECT_EQ(UnfinishedOn("2026-01-04"), 1);
}

TEST_F(Figures, WithoutAnyIndexADateIsAskedForUntilThereIsOne) {
  AddPortfolio();
  for (int time = 0; time < 3; ++time) {
    Service().Execute(QStringLiteral("execute procedure SP_GETBETA(1,1)"));
    EXPECT_EQ(UnfinishedOn("2026-01-04"), 1);
  }
  ReloadIndex();
  Run();
  EXPECT_EQ(UnfinishedOn("2026-01-04"), 0);
}

TEST_F(Figures, FinishedWithoutFiguresIsUnfinishedAgain) {
  Service().Execute(InsertPortfolio(1, QStringLiteral("甲"), 1));
  Service().Execute(QStringLiteral("execute procedure INITFIRSTCALC('1990-01-01')"));
  EXPECT_EQ(Service().Count(QStringLiteral("select Count(ID) from alg_commain where isFinished = 0")), 1);
}

}  // namespace
