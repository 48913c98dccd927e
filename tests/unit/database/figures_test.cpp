// SPDX-License-Identifier: MIT
#include <QProcess>
#include <random>

#include "figures_fixture.h"

using namespace holdwise;
using namespace holdwise::test;

namespace {

// Index returns 0.01, -0.01, 0.03: mean 0.01, variance ((0)^2 + 0.02^2 + 0.02^2) / 2 = 0.0004.
// Portfolio 0.5 a + 0.5 b with a = 0.02, -0.04, 0.06 and b = 0.00, 0.02, 0.02: 0.01, -0.01, 0.04.
//   mean 0.04/3; deviations -0.01/3, -0.07/3, 0.08/3; squares (1 + 49 + 64) e-4 / 9 = 114e-4/9; variance 57e-4/9.
//   covariance: (0 * -0.01/3 + -0.02 * -0.07/3 + 0.02 * 0.08/3) / 2 = (0.0014 + 0.0016) / 6 = 0.0005; beta 1.25.
// Rate 2.5 % a year: rf = 0.025 / 250 = 0.0001.
TEST_F(Figures, HandExample) {
  AddIndexDays({0.01, -0.01, 0.03});
  for (int day = 0; day < 3; ++day) {
    AddDay(1600000, day, std::vector{0.02, -0.04, 0.06}[static_cast<std::size_t>(day)]);
    AddDay(1000001, day, std::vector{0.00, 0.02, 0.02}[static_cast<std::size_t>(day)]);
  }
  AddRate("2.5");
  AddPortfolio();
  AddHolding(1600000, "0.5");
  AddHolding(1000001, "0.5");
  const double variance = 57e-4 / 9;
  const double mean = 0.04 / 3;
  ExpectFigures(Run(), {variance, std::sqrt(variance), 1.25, mean - (0.0001 + 1.25 * (0.01 - 0.0001)),
                        (mean - 0.0001) / std::sqrt(variance), (mean - 0.0001) / 1.25});
}

TEST_F(Figures, DayWithoutARowCountsNothing) {
  AddIndexDays({0.01, -0.01, 0.03});
  AddDay(1600000, 0, 0.02);
  AddDay(1600000, 2, 0.04);  // no bar on the second day
  AddDay(1600000, 7, 0.50);  // no day of the index
  AddPortfolio();
  AddHolding(1600000, "1");
  // 0.02, 0, 0.04: mean 0.02, variance 0.0004; covariance (0 + -0.02 * -0.02 + 0.02 * 0.02) / 2 = 0.0004, beta 1.
  ExpectFigures(Run(), {0.0004, 0.02, 1.0, 0.02 - 0.01, 1.0, 0.02});
}

TEST_F(Figures, HoldingWithoutStatisticsLeavesItsWeightToTheOthers) {
  AddIndexDays({0.01, -0.01, 0.03});
  for (int day = 0; day < 3; ++day) AddDay(1600000, day, 0.01 * day);
  Service().Execute(InsertStatistic({.code = 1600009, .date = 20260102, .dailyReturn = 0.9, .type = 1}));
  AddPortfolio();
  AddHolding(1600000, "0.25");
  AddHolding(1600009, "0.75");  // weekly rows only
  // 0, 0.01, 0.02 as if held alone: variance 0.0001; covariance (-0.01*0 + 0 + 0.01*0.02) / 2 = 0.0001, beta 0.25.
  ExpectFigures(Run(), {0.0001, 0.01, 0.25, 0.01 - 0.25 * 0.01, 1.0, 0.04});
}

TEST_F(Figures, OnlyTheWindowOfTheIndexCounts) {
  Service().Execute(InsertStatistic({.code = 1, .date = 20251230, .dailyReturn = 0.5}));  // before its start date
  Service().Execute(InsertStatistic({.code = 1, .date = 20260101, .dailyReturn = 0, .oldClose = 0}));  // first bar ever
  AddDay(1, 1, 0.01);
  AddDay(1, 2, 0.03);
  for (int day = 0; day < 3; ++day) AddDay(1600000, day, 0.02 * day);
  AddPortfolio();
  AddHolding(1600000, "1");
  // Two days: index 0.01, 0.03, portfolio 0.02, 0.04; all variances and the covariance 0.0002.
  ExpectFigures(Run(), {0.0002, std::sqrt(0.0002), 1.0, 0.03 - 0.02, 0.03 / std::sqrt(0.0002), 0.03});
}

TEST_F(Figures, ZeroDivisorsGiveZero) {
  AddIndexDays({0.01, 0.01, 0.01});  // no variance of the index, so no beta
  AddDay(1600000, 0, 0.02);
  AddDay(1600000, 1, 0.02);
  AddDay(1600000, 2, 0.02);
  AddPortfolio();
  AddHolding(1600000, "1");
  ExpectFigures(Run(), {0, 0, 0, 0.02, 0, 0});
}

TEST_F(Figures, APortfolioWithoutHoldingsHasZeroesAndIsFinished) {
  AddIndexDays({0.01, -0.01, 0.03});
  AddPortfolio();
  ExpectFigures(Run(), {0, 0, 0, 0, 0, 0});
  EXPECT_EQ(Dates(), "20260103,0");
}

TEST_F(Figures, WithoutTheIndexOrAnyHoldingTheOldFiguresStayUnfinished) {
  AddPortfolio();
  AddHolding(1600000, "1");
  Service().Execute(QStringLiteral("update alg_commain set FC = 0.25, BETA = 1.5"));
  const auto expectOldFigures = [&] {
    Service().Execute(QStringLiteral("execute procedure SP_GETBETA(1,1)"));
    EXPECT_EQ(
        Service().Count(QStringLiteral(
            "select count(*) from alg_commain where FC = 0.25 and BETA = 1.5 and ISFINISHED = 0 and ALPHA is null "
            "and CALCDATE is null")),
        1);
  };
  for (int day = 0; day < 3; ++day) AddDay(1600000, day, 0.01);
  expectOldFigures();
  Service().Execute(QStringLiteral("delete from alg_stockstatistic"));
  AddIndexDays({0.01, -0.01, 0.03});
  expectOldFigures();
  // The first bar of all, a return outside the window, and at last one inside it.
  Service().Execute(InsertStatistic({.code = 1600000, .date = 20260103, .dailyReturn = 0, .oldClose = 0}));
  expectOldFigures();
  Service().Execute(InsertStatistic({.code = 1600000, .date = 20251231, .dailyReturn = 0.02}));
  expectOldFigures();
  // 20260103 as the only day, then two.
  Service().Execute(InsertStatistic({.code = 1600000, .date = 20260103, .dailyReturn = 0.02}));
  expectOldFigures();
  AddRate("0");
  AddDay(1600000, 1, 0.04);
  Run();
  EXPECT_EQ(Dates(), "20260103,0");
}

/// One return has no deviation: nothing is stored, and what was there stays unfinished.
TEST_F(Figures, ASingleDayIsNoFigure) {
  AddIndexDays({0.01, -0.01, 0.03});
  AddDay(1600000, 2, 0.05);
  AddRate("1.5");
  AddPortfolio();
  AddHolding(1600000, "1");
  const QString untouched = QStringLiteral(
      "select count(*) from alg_commain where ISFINISHED = 0 and ALPHA is null and CALCDATE is null and LACKING is "
      "null");
  Service().Execute(QStringLiteral("execute procedure SP_GETBETA(1,1)"));
  EXPECT_EQ(Service().Count(untouched), 1);
  // Nor are two days of which only one counts, because the other has no weight.
  AddDay(1000001, 1, 0.02);
  AddHolding(1000001, "0");
  Service().Execute(QStringLiteral("execute procedure SP_GETBETA(1,1)"));
  EXPECT_EQ(Service().Count(untouched), 1);
  Service().Execute(QStringLiteral("update alg_comdetail set PZBL = 0"));
  Service().Execute(QStringLiteral("execute procedure SP_GETBETA(1,1)"));
  EXPECT_EQ(Service().Count(untouched), 1) << "without any weight";
}

// The days of HandExample's index and its first stock held alone, without a rate of one year: risk-free 0.
// 0.02, -0.04, 0.06: mean 0.04/3; deviations 0.02/3, -0.16/3, 0.14/3; squares (4 + 256 + 196) e-4 / 9; variance
// 228e-4/9. Covariance (0 + 0.02 * 0.16/3 + 0.02 * 0.14/3) / 2 = 0.001, beta 2.5.
TEST_F(Figures, WithoutTheDepositRateFiguresLackIt) {
  AddIndexDays({0.01, -0.01, 0.03});
  for (int day = 0; day < 3; ++day) AddDay(1600000, day, std::vector{0.02, -0.04, 0.06}[static_cast<std::size_t>(day)]);
  AddPortfolio();
  AddHolding(1600000, "1");
  const double variance = 228e-4 / 9;
  const double mean = 0.04 / 3;
  for (const char* rates : {"", "'定期存款整存整取','三个月',9", "'定期存款整存整取','一年',null"}) {
    if (*rates != '\0') {
      Service().Execute(QStringLiteral("insert into alg_rmbinterestrate (ID,DEPOSITTYPE,TERM,INTEREST) values (1,%1)")
                            .arg(QString::fromUtf8(rates)));
    }
    ExpectFigures(Run(),
                  {variance, std::sqrt(variance), 2.5, mean - 2.5 * 0.01, mean / std::sqrt(variance), mean / 2.5});
    EXPECT_EQ(Dates(), "20260103,1") << rates;
    EXPECT_EQ(UnfinishedOn("2026-01-03"), 1) << rates;
  }
  Service().Execute(QStringLiteral("delete from alg_rmbinterestrate"));
  AddRate("2.5");
  ExpectFigures(Run(), {variance, std::sqrt(variance), 2.5, mean - (0.0001 + 2.5 * (0.01 - 0.0001)),
                        (mean - 0.0001) / std::sqrt(variance), (mean - 0.0001) / 2.5});
  EXPECT_EQ(Dates(), "20260103,0");
  EXPECT_EQ(UnfinishedOn("2026-01-03"), 0);
}

TEST_F(Figures, ARateOfZeroIsARate) {
  AddIndexDays({0.01, -0.01, 0.03});
  for (int day = 0; day < 3; ++day) AddDay(1600000, day, 0.01 * day);
  AddRate("0");
  AddPortfolio();
  AddHolding(1600000, "1");
  Run();
  EXPECT_EQ(Dates(), "20260103,0");
}

/// Known is only that the level was the close of the day when it was first compared.
TEST_F(Figures, TheIndexLevelIsMarkedWhenItIsTheCloseOfTheDayOfPurchase) {
  struct Case {
    const char* editDate;
    const char* level;
    const char* mark;
  };
  AddIndexDays({0.01, -0.01, 0.03});
  Service().Execute(QStringLiteral("update alg_stockstatistic set closeprice = 3012.4546 where hqdate = 20260102"));
  for (const Case& one : {Case{"2026-01-02", "3012.45", "1"}, Case{"2026-01-02", "3012.46", "-"},
                          Case{"2026-01-03", "10", "1"}, Case{"2026-01-05", "10", "-"}, Case{"20260103", "10", "-"},
                          Case{"soon", "10", "-"}, Case{"2026-01-02", "null", "-"}}) {
    Service().Execute(QStringLiteral("delete from alg_commain"));
    AddPortfolio();
    Service().Execute(QStringLiteral("update alg_commain set EDITDATE = '%1', ZSCLOSEPRICE = %2")
                          .arg(QLatin1String(one.editDate), QLatin1String(one.level)));
    Run();
    const auto mark = [&] {
      const ResultSet row = Service().Query(QStringLiteral("select INDEXISCLOSE from alg_commain"));
      return row.IsNull(0, 0) ? std::string("-") : row.TextAt(0, 0).toStdString();
    };
    EXPECT_EQ(mark(), one.mark) << one.editDate << ' ' << one.level;
    Service().Execute(QStringLiteral("update alg_commain set ZSCLOSEPRICE = 9"));
    Run();
    EXPECT_EQ(mark(), one.mark) << "a correction does not take it away";
  }
}

TEST_F(Figures, TheNewestDayOfTheDataIsKept) {
  AddIndexDays({0.01, -0.01, 0.03});
  AddPortfolio();
  const auto knownTo = [&](int end) {
    Service().Execute(QStringLiteral("update alg_stockstatistic set enddate = %1").arg(end));
    Run();
    return Service().Query(QStringLiteral("select KNOWNTO from alg_commain")).IntegerAt(0, 0);
  };
  EXPECT_EQ(knownTo(20260103), 20260103);
  EXPECT_EQ(knownTo(20260102), 20260103) << "older data do not take it away";
  EXPECT_EQ(knownTo(0), 20260103) << "without its end the last row's day";
  EXPECT_EQ(knownTo(20260105), 20260105);
}

TEST_F(Figures, AHoldingWithoutAReturnYetLeavesItsWeightToTheOthersAndLacks) {
  AddIndexDays({0.01, -0.01, 0.03});
  for (int day = 0; day < 3; ++day) AddDay(1600000, day, 0.01 * day);
  Service().Execute(InsertStatistic({.code = 1000001, .date = 20260103, .dailyReturn = 0, .oldClose = 0}));
  AddRate("0");
  AddPortfolio();
  AddHolding(1600000, "0.25");
  AddHolding(1000001, "0.75");
  // As if the first were held alone: 0, 0.01, 0.02, the variance 0.0001; covariance (0.01 * 0.02) / 2, beta 0.25.
  ExpectFigures(Run(), {0.0001, 0.01, 0.25, 0.01 - 0.25 * 0.01, 1.0, 0.04});
  EXPECT_EQ(Dates(), "20260103,1");
  EXPECT_EQ(UnfinishedOn("2026-01-03"), 1);
  AddDay(1000001, 3, 0.02);
  Service().Execute(InsertStatistic({.code = 1, .date = 20260104, .dailyReturn = 0.02}));
  Run();
  EXPECT_EQ(Dates(), "20260104,0");
}

/// Each is one that lacks something, and is counted once.
TEST_F(Figures, EachHoldingThatLacksSomethingCountsOnce) {
  AddIndexDays({0.01, -0.01, 0.03});
  AddDay(1600000, 2, 0.01);
  Service().Execute(InsertStatistic({.code = 1600001, .date = 20260103, .dailyReturn = 0, .oldClose = 0}));
  Service().Execute(
      InsertStatistic({.code = 1600002, .date = 20260102, .dailyReturn = 0, .oldClose = 0, .endDate = 20260102}));
  AddRate("0");
  AddDay(1600000, 1, 0.02);
  AddPortfolio();
  for (const int code : {1600001, 1600002, 1600003, 1600000}) AddHolding(code, "0.25");
  Run();
  EXPECT_EQ(Dates(), "none,3");
}

// A holds three days, b its first return on the second: day 1 a alone 0.02; day 2 (0.25 * 0.04 + 0.75 * 0.08) = 0.07;
// day 3 (0.25 * 0.06 + 0) = 0.015. Mean 0.035; deviations -0.015, 0.035, -0.02; variance (225 + 1225 + 400) e-6 / 2.
// Index 0.01, -0.01, 0.03: mean 0.01; covariance (0 + -0.02 * 0.035 + 0.02 * -0.02) / 2 = -0.00055; beta -1.375.
TEST_F(Figures, AHoldingCountsFromItsFirstReturnOn) {
  AddIndexDays({0.01, -0.01, 0.03});
  for (int day = 0; day < 3; ++day) AddDay(1600000, day, 0.02 * (day + 1));
  Service().Execute(InsertStatistic({.code = 1000001, .date = 20260101, .dailyReturn = 0, .oldClose = 0}));
  AddDay(1000001, 1, 0.08);
  AddPortfolio();
  AddHolding(1600000, "0.25");
  AddHolding(1000001, "0.75");
  const double deviation = std::sqrt(0.000925);
  ExpectFigures(Run(), {0.000925, deviation, -1.375, 0.035 + 1.375 * 0.01, 0.035 / deviation, 0.035 / -1.375});
}

TEST_F(Figures, DaysBeforeTheFirstReturnAreNoDaysOfThePortfolio) {
  AddIndexDays({0.05, 0.01, 0.03});
  AddDay(1600000, 1, 0.02);
  AddDay(1600000, 2, 0.04);
  AddPortfolio();
  AddHolding(1600000, "1");
  // Two days: index 0.01, 0.03, portfolio 0.02, 0.04; all variances and the covariance 0.0002.
  ExpectFigures(Run(), {0.0002, std::sqrt(0.0002), 1.0, 0.03 - 0.02, 0.03 / std::sqrt(0.0002), 0.03});
}

/// The date that the figures rest on, and how many inputs lack something, by the window ends of the inputs.
TEST_F(Figures, TheDateIsThatOfTheOldestInput) {
  struct Case {
    int indexEnd;
    std::vector<int> holdings;  ///< window ends; -1 without rows, 0 rows without a window
    const char* dates;
  };
  const Case cases[] = {
      {20260103, {20260103, 20260103}, "20260103,0"},
      {20260103, {20260103, 20260102}, "20260102,1"},
      {20260103, {20251231, 20260102}, "20251231,2"},
      {20260103, {20260103, -1}, "none,1"},
      {20260103, {20260104, 20260104}, "20260103,1"},
      {20260103, {20260105, 20260104}, "20260103,2"},
      {20260103, {20260102, -1, 20260103}, "none,2"},
      {20260104, {20260104}, "20260103,0"},
      {0, {20260103}, "20260103,0"},
      {20260103, {0}, "20260103,0"},
      {20260103, {20260103, 20260103, 0}, "20260103,0"},
  };
  AddRate("0");
  for (const Case& one : cases) {
    Service().Execute(QStringLiteral("delete from alg_stockstatistic"));
    Service().Execute(QStringLiteral("delete from alg_commain"));
    Service().Execute(QStringLiteral("delete from alg_comdetail"));
    AddPortfolio();
    for (int day = 1; day <= 3; ++day) {
      Service().Execute(InsertStatistic({.code = 1,
                                         .date = 20260100 + day,
                                         .dailyReturn = 0.01 * day,
                                         .startDate = 20260101,
                                         .endDate = one.indexEnd}));
    }
    for (std::size_t i = 0; i < one.holdings.size(); ++i) {
      const int code = 1600000 + static_cast<int>(i);
      AddHolding(code, "1");
      if (one.holdings[i] < 0) continue;
      for (const int date : {20260102, 20260103}) {
        Service().Execute(
            InsertStatistic({.code = code, .date = date, .dailyReturn = 0.01, .endDate = one.holdings[i]}));
      }
      Service().Execute(InsertStatistic({.code = code, .date = 20260109, .type = 1, .endDate = 20260109}));
    }
    Run();
    EXPECT_EQ(Dates(), one.dates);
  }
}

/// Ten holdings, 250 days, gaps (one of them on the first day), one holding without statistics; the figures by numpy
/// from the same numbers.
TEST_F(Figures, AgreesWithNumpy) {
  std::mt19937 random(20260105);
  std::normal_distribution<double> daily(0.0004, 0.017);
  constexpr int kHoldings = 10;
  constexpr int kDays = 250;
  QString script = QStringLiteral("import numpy as np\nindex=[");
  Service().StartTransaction();
  for (int day = 0; day < kDays; ++day) {
    const double value = daily(random);
    AddDay(1, day, value);
    script += QString::number(value, 'g', 17) + u',';
  }
  script += QStringLiteral("]\nweights=[]\nreturns=[]\n");
  AddPortfolio();
  for (int holding = 0; holding < kHoldings; ++holding) {
    const double weight = 0.01 * (holding + 3);
    AddHolding(1600000 + holding, QString::number(weight, 'g', 17));
    script += QStringLiteral("weights.append(%1)\nreturns.append([").arg(QString::number(weight, 'g', 17));
    for (int day = 0; day < kDays; ++day) {
      const double value = daily(random);
      const bool gap = (day * 7 + holding) % 31 == 0;
      if (!gap) AddDay(1600000 + holding, day, value);
      script += gap ? QStringLiteral("None,") : QString::number(value, 'g', 17) + u',';
    }
    script += QStringLiteral("])\n");
  }
  AddHolding(1688001, "0.3");
  AddRate("1.75");
  Service().Commit();
  script += QStringLiteral(
      "r=np.array(returns,dtype=float); counts=np.cumsum(~np.isnan(r),axis=1)>0; w=np.array(weights)\n"
      "rm=np.array(index); rp=w@np.nan_to_num(r)/(w@counts); rf=1.75/100/250\n"
      "fc=rp.var(ddof=1); sd=rp.std(ddof=1); beta=np.cov(rp,rm,ddof=1)[0,1]/rm.var(ddof=1)\n"
      "for x in (fc,sd,beta,rp.mean()-(rf+beta*(rm.mean()-rf)),(rp.mean()-rf)/sd,(rp.mean()-rf)/beta): "
      "print(repr(float(x)))\n");
  // The distribution's own interpreter: numpy is its package.
  const QString interpreter = QStringLiteral("/usr/bin/python3");
  if (QProcess::execute(interpreter, {QStringLiteral("-c"), QStringLiteral("import numpy")}) != 0) {
    GTEST_SKIP() << "no numpy";
  }
  QProcess python;
  python.start(interpreter, {QStringLiteral("-")});
  python.write(script.toUtf8());
  python.closeWriteChannel();
  ASSERT_TRUE(python.waitForFinished());
  ASSERT_EQ(python.exitCode(), 0) << python.readAllStandardError().toStdString();
  std::vector<double> expected;
  for (const QByteArray& line : python.readAllStandardOutput().trimmed().split('\n'))
    expected.push_back(line.toDouble());
  ASSERT_EQ(expected.size(), 6U);
  ExpectFigures(Run(), expected);
}

}  // namespace
