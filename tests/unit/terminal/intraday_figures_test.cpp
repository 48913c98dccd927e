// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>

#include "intraday/chart_layout.h"
#include "intraday/day_words.h"
#include "intraday/price_scale.h"
#include "intraday/ticks.h"
#include "intraday/trading_day.h"

namespace holdwise {
namespace {

constexpr int Time(int hour, int minute, int second = 0) {
  return hour * 3600 + minute * 60 + second;
}

TEST(TradingDayTest, TheBreakIsOnePlace) {
  struct Case {
    int time;
    std::optional<int> second;
  };
  const Case cases[] = {
      {Time(0, 0), std::nullopt}, {Time(9, 29, 59), std::nullopt}, {Time(9, 30), 0},     {Time(9, 30, 1), 1},
      {Time(10, 30), 3600},       {Time(11, 29, 59), 7199},        {Time(11, 30), 7200}, {Time(12, 15), 7200},
      {Time(13, 0), 7200},        {Time(13, 0, 1), 7201},          {Time(14, 0), 10800}, {Time(15, 0), 14400},
      {Time(15, 30), 14400},      {Time(24, 0), std::nullopt},     {-1, std::nullopt}};
  for (const Case& one : cases) EXPECT_EQ(TradingSecondAt(one.time), one.second) << one.time;
  for (int second = 0; second <= kDaySeconds; second += 100) EXPECT_EQ(TradingSecondAt(SecondOfDayAt(second)), second);
  EXPECT_EQ(SecondOfDayAt(7200), Time(11, 30));
  EXPECT_EQ(SecondOfDayAt(99999), Time(15, 0));
}

TEST(TradingDayTest, TimesAsTexts) {
  EXPECT_EQ(TimeText(0), QStringLiteral("09:30"));
  EXPECT_EQ(TimeText(7200), QStringLiteral("11:30"));
  EXPECT_EQ(TimeText(7201, true), QStringLiteral("13:00:01"));
  EXPECT_EQ(TimeText(14400, true), QStringLiteral("15:00:00"));
  EXPECT_EQ(SecondOfDayOf(93005), Time(9, 30, 5));
  EXPECT_EQ(SecondOfDayOf(235959), Time(23, 59, 59));
  for (const std::uint32_t bad : {240000U, 96000U, 93060U, 4294967295U}) EXPECT_EQ(SecondOfDayOf(bad), std::nullopt);
}

TEST(TradingDayTest, TheAxisGoesThereAndBack) {
  const DayAxis axis{100, 480};  // a point is 30 seconds
  EXPECT_EQ(axis.XOf(0), 100);
  EXPECT_EQ(axis.XOf(3600), 220);
  EXPECT_EQ(axis.XOf(7200), 340);
  EXPECT_EQ(axis.XOf(14400), 580);
  EXPECT_EQ(axis.XOf(20000), 580);
  EXPECT_EQ(axis.SecondAt(101), 30);
  EXPECT_EQ(axis.SecondAt(340), 7200);
  EXPECT_EQ(axis.SecondAt(0), 0);
  EXPECT_EQ(axis.SecondAt(1000), 14400);
  EXPECT_EQ((DayAxis{100, 0}.SecondAt(100)), 0);
}

std::vector<std::array<std::int64_t, 4>> BarsOf(const std::vector<Tick>& ticks) {
  std::vector<std::array<std::int64_t, 4>> bars;
  for (const MinuteBar& bar : MinuteBars(ticks)) bars.push_back({bar.minute, bar.close, bar.before, bar.volume});
  return bars;
}
using Bars = std::vector<std::array<std::int64_t, 4>>;

TEST(TicksTest, AMinuteEndsWithItsLastSecond) {
  EXPECT_EQ(MinuteOf(0), 0);
  EXPECT_EQ(MinuteOf(60), 0);
  EXPECT_EQ(MinuteOf(61), 1);
  EXPECT_EQ(MinuteOf(7200), 119) << "11:30:00";
  EXPECT_EQ(MinuteOf(7201), 120) << "13:00:01";
  EXPECT_EQ(MinuteOf(14400), 239) << "15:00:00";
}

TEST(TicksTest, AMinutesVolumeIsWhatWasTradedInIt) {
  // 500 at the opening, 300 and 100 more; 600 in the second minute; nothing in the fourth.
  EXPECT_EQ(BarsOf({{0, 1000, 500}, {30, 1010, 800}, {60, 1005, 900}, {61, 1020, 1500}, {200, 1015, 1500}}),
            (Bars{{0, 1005, 1000, 900}, {1, 1020, 1005, 600}, {3, 1015, 1020, 0}}));
  EXPECT_EQ(BarsOf({}), Bars{});
}

TEST(TicksTest, WhatWasTradedBeforeTheLineBeginsIsNobodys) {
  EXPECT_EQ(BarsOf({{600, 1000, 50000, -1, true}, {610, 1001, 50300}}),
            (Bars{{9, 1000, 1000, 0}, {10, 1001, 1000, 300}}));
}

TEST(TicksTest, WhatWasTradedInAGapIsNobodys) {
  EXPECT_EQ(BarsOf({{0, 1000, 100}, {60, 1000, 200}, {1200, 1000, 9000, -1, true}, {1210, 1001, 9100}}),
            (Bars{{0, 1000, 1000, 200}, {19, 1000, 1000, 0}, {20, 1001, 1000, 100}}));
}

TEST(TicksTest, WithoutVolumesThereAreNoneInTheBars) {
  EXPECT_EQ(BarsOf({{0, 1000}, {61, 1020}}), (Bars{{0, 1000, 1000, -1}, {1, 1020, 1000, -1}}));
}

std::vector<std::pair<int, double>> PointsOf(const AverageLine& line) {
  std::vector<std::pair<int, double>> points;
  for (const AveragePoint& point : line.points) points.emplace_back(point.second, point.price);
  return points;
}
using Points = std::vector<std::pair<int, double>>;

TEST(AverageTest, IsAmountByVolumeWhereBothAreKnown) {
  // 100 shares at 10.00 yuan are 100000 hundredths, 300 more at 10.20 another 306000: (100000 + 306000) / 400 = 1015.
  const std::vector<Tick> ticks{{0, 1000, 100, 100000}, {61, 1020, 400, 406000}};
  const AverageLine line = AverageOf(ticks, true);
  EXPECT_EQ(line.kind, AverageKind::ByAmount);
  EXPECT_EQ(PointsOf(line), (Points{{0, 1000}, {61, 1015}}));
}

TEST(AverageTest, WeightsPricesWithVolumesWithoutAmounts) {
  // (100 x 1000 + 300 x 1020) / 400 = 1015; the third tick trades nothing.
  const std::vector<Tick> ticks{{0, 1000, 100}, {30, 1020, 400}, {90, 1100, 400}};
  const AverageLine line = AverageOf(ticks, true);
  EXPECT_EQ(line.kind, AverageKind::ByVolume);
  EXPECT_EQ(PointsOf(line), (Points{{30, 1015}, {90, 1015}}));
}

TEST(AverageTest, IsTheMeanOfTheMinutesWithoutVolumes) {
  // Minute 0 closes at 1000, 1 at 1020 and so do 2 and 3, 4 at 1000: (1000 + 3 x 1020 + 1000) / 5 = 1012.
  const std::vector<Tick> ticks{{0, 1000}, {61, 1020}, {241, 1000}};
  const AverageLine line = AverageOf(ticks, true);
  EXPECT_EQ(line.kind, AverageKind::ByTime);
  EXPECT_EQ(PointsOf(line), (Points{{0, 1000}, {61, 1010}, {241, 1012}}));
}

TEST(AverageTest, OfAnIndexIsNeverByItsVolume) {
  const std::vector<Tick> ticks{{0, 300000, 100, 100000}, {61, 300200, 400, 406000}};
  const AverageLine line = AverageOf(ticks, false);
  EXPECT_EQ(line.kind, AverageKind::ByTime);
  EXPECT_EQ(PointsOf(line), (Points{{0, 300000}, {61, 300100}}));
  EXPECT_EQ(AverageOf({}, false).kind, AverageKind::None);
}

TEST(ThinningTest, KeepsWhatAColumnShows) {
  std::vector<std::int64_t> prices;
  const std::vector<Tick> ticks{{0, 5}, {1, 6}, {2, 3}, {3, 7}, {4, 9}, {5, 8}, {6, 4}};
  for (const Tick& tick : ThinnedOut(ticks, 1)) prices.push_back(tick.price);
  EXPECT_EQ(prices, (std::vector<std::int64_t>{5, 3, 9, 4}));
  EXPECT_EQ(ThinnedOut(ticks, 0), ticks);
  EXPECT_TRUE(ThinnedOut({}, 5).empty());
}

TEST(ThinningTest, ADayBecomesFourTicksAColumnAtMost) {
  std::vector<Tick> day;
  for (int second = 0; second <= kDaySeconds; ++second) day.push_back({second, 1000 + second * 7919 % 211});
  const std::vector<Tick> kept = ThinnedOut(day, 500);
  EXPECT_LE(kept.size(), 2000U);
  EXPECT_TRUE(std::is_sorted(kept.begin(), kept.end(), [](auto& a, auto& b) { return a.second < b.second; }));
  EXPECT_EQ(kept.front(), day.front());
  EXPECT_EQ(kept.back(), day.back());
  const auto byPrice = [](const Tick& one, const Tick& other) { return one.price < other.price; };
  EXPECT_EQ(std::max_element(kept.begin(), kept.end(), byPrice)->price, 1210);
  EXPECT_EQ(std::min_element(kept.begin(), kept.end(), byPrice)->price, 1000);
}

TEST(TicksTest, TheTickOfAMomentIsTheLastOneBefore) {
  const std::vector<Tick> ticks{{10, 1000}, {20, 1010}};
  EXPECT_EQ(TickAt(ticks, 9), nullptr);
  EXPECT_EQ(TickAt(ticks, 10), &ticks[0]);
  EXPECT_EQ(TickAt(ticks, 19), &ticks[0]);
  EXPECT_EQ(TickAt(ticks, 14400), &ticks[1]);
}

TEST(PriceScaleTest, IsSymmetricalAboutThePreviousClose) {
  // 30 above is farther than 10 below: 30 x 1.05 either way.
  const PriceScale scale = ScaleFor(std::vector<Tick>{{0, 990}, {1, 1030}}, {}, 1000);
  EXPECT_DOUBLE_EQ(scale.High(), 1031.5);
  EXPECT_DOUBLE_EQ(scale.Low(), 968.5);
  const PriceScale below = ScaleFor(std::vector<Tick>{{0, 960}, {1, 1030}}, {}, 1000);
  EXPECT_DOUBLE_EQ(below.High(), 1042);
  const std::vector<AveragePoint> averages{{0, 1080}};
  EXPECT_DOUBLE_EQ(ScaleFor(std::vector<Tick>{{0, 1010}}, averages, 1000).High(), 1084);
}

TEST(PriceScaleTest, HoldsWhatIsKnownWithoutAPlaceInTime) {
  // The last price stands 2.29 percent below 2100: 48 below, 48 x 1.05 either way.
  const std::vector<std::int64_t> known{2052, -1, 0};
  EXPECT_DOUBLE_EQ(ScaleFor({}, {}, 2100, known).reach, 50.4);
  EXPECT_DOUBLE_EQ(ScaleFor(std::vector<Tick>{{0, 2000}}, {}, 2100, known).reach, 105);
  EXPECT_DOUBLE_EQ(ScaleFor({}, {}, 0, known).middle, 2052) << "a first trading day";
}

TEST(PriceScaleTest, IsNeverTooNarrow) {
  EXPECT_DOUBLE_EQ(ScaleFor(std::vector<Tick>{{0, 10001}}, {}, 10000).reach, 50) << "half a percent";
  EXPECT_DOUBLE_EQ(ScaleFor(std::vector<Tick>{{0, 100}}, {}, 100).reach, 2);
  EXPECT_DOUBLE_EQ(ScaleFor({}, {}, 0).reach, 2);
  const PriceScale first = ScaleFor(std::vector<Tick>{{0, 2000}, {1, 2100}}, {}, 0);
  EXPECT_DOUBLE_EQ(first.middle, 2000) << "a first trading day";
  EXPECT_DOUBLE_EQ(first.reach, 105);
}

TEST(PriceScaleTest, FiguresAsTexts) {
  EXPECT_EQ(PercentText(PercentOf(1012.5, 1000)), QStringLiteral("+1.25%"));
  EXPECT_EQ(PercentText(PercentOf(996, 1000)), QStringLiteral("-0.40%"));
  EXPECT_EQ(PercentText(PercentOf(1000.04, 1000)), QStringLiteral("0.00%"));
  EXPECT_EQ(PercentText(PercentOf(999.96, 1000)), QStringLiteral("0.00%"));
  EXPECT_EQ(PercentOf(5, 0), 0);
  EXPECT_EQ(PriceText(1234), QStringLiteral("12.34"));
  EXPECT_EQ(VolumeText(860), QStringLiteral("860 股"));
  EXPECT_EQ(VolumeText(12500), QStringLiteral("1.25 万股"));
  EXPECT_EQ(VolumeText(340'000'000), QStringLiteral("3.40 亿股"));
  EXPECT_EQ(VolumeText(-1), QStringLiteral("—"));
  EXPECT_EQ(AmountText(86'050), QStringLiteral("860.50 元"));
  EXPECT_EQ(AmountText(1'250'000), QStringLiteral("1.25 万元"));
  EXPECT_EQ(AmountText(-1), QStringLiteral("—"));
  EXPECT_EQ(MostTraded(std::vector<MinuteBar>{{0, 1, 1, 700}, {1, 1, 1, 900}, {2, 1, 1, -1}}), 900);
  EXPECT_EQ(MostTraded({}), 1);
}

TEST(ChartLayoutTest, PricesStandAboveVolumes) {
  // 1000 x 500 with labels of 50 and lines of 16 points: 62 points at either side; above half a line and one point,
  // below a line and six: 469 high, of that 24 percent for the volumes and a line between.
  const PriceScale scale{1000, 40};
  const ChartLayout layout = LayOut({1000, 500}, 50, 16, scale);
  EXPECT_EQ(layout.plot, QRectF(62, 9, 876, 469));
  EXPECT_DOUBLE_EQ(layout.volumes.height(), 112.56);
  EXPECT_DOUBLE_EQ(layout.volumes.bottom(), 478);
  EXPECT_DOUBLE_EQ(layout.prices.height(), 340.44);
  EXPECT_DOUBLE_EQ(layout.YOf(1040, scale), 9);
  EXPECT_DOUBLE_EQ(layout.YOf(1000, scale), 9 + 170.22);
  EXPECT_DOUBLE_EQ(layout.YOf(960, scale), 9 + 340.44);
  EXPECT_EQ(layout.rows, 4);
  EXPECT_DOUBLE_EQ(layout.PriceAtRow(1, scale), 1010);
  EXPECT_DOUBLE_EQ(layout.PriceAtRow(-4, scale), 960);
  // What stands over the whole plot must put the same prices at the same places.
  const PlotRange prices = PriceRange(layout, scale);
  EXPECT_DOUBLE_EQ(prices.high, 1040);
  EXPECT_DOUBLE_EQ((prices.high - 960) / (prices.high - prices.low) * 469, 340.44);
}

TEST(ChartLayoutTest, RowsHaveTheirPricesAndPercentages) {
  // 40 around 2000 is 2 percent either way; four rows above the middle, half a percent each.
  const PriceScale scale{2000, 40};
  const std::vector<RowLabel> labels = RowLabels(LayOut({1000, 500}, 50, 16, scale), scale, 2000);
  QStringList texts;
  for (const RowLabel& label : labels) texts.append(label.price + u' ' + label.percent);
  EXPECT_EQ(texts.join(u'|'), QStringLiteral("19.60 -2.00%|19.70 -1.50%|19.80 -1.00%|19.90 -0.50%|20.00 0.00%|"
                                             "20.10 +0.50%|20.20 +1.00%|20.30 +1.50%|20.40 +2.00%"));
  EXPECT_DOUBLE_EQ(labels.front().y, 9 + 340.44);
  EXPECT_DOUBLE_EQ(labels.back().y, 9);
  for (const RowLabel& label : RowLabels(LayOut({1000, 500}, 50, 16, scale), scale, 0))
    EXPECT_EQ(label.percent, QString()) << "of nothing";
}

TEST(ChartLayoutTest, BarsStandOnTheLowerEdge) {
  ChartLayout layout;
  layout.plot = QRectF(100, 0, 960, 300);  // four points a minute
  layout.volumes = QRectF(100, 200, 960, 100);
  const std::vector<MinuteBar> minutes{{0, 1010, 1000, 500}, {1, 1005, 1010, 250}, {2, 1005, 1005, 0}, {239, 1, 1, -1}};
  const std::vector<BarPlace> bars = BarsIn(layout, minutes);
  ASSERT_EQ(bars.size(), 2U);
  EXPECT_EQ(bars[0].rectangle, QRectF(100.5, 200, 3, 100));
  EXPECT_FALSE(bars[0].isFall);
  EXPECT_EQ(bars[1].rectangle, QRectF(104.5, 250, 3, 50));
  EXPECT_TRUE(bars[1].isFall);
}

TEST(ChartLayoutTest, NoBarIsTooSmallToBeSeen) {
  ChartLayout layout;
  layout.plot = QRectF(100, 0, 120, 300);  // half a point a minute
  layout.volumes = QRectF(100, 200, 120, 100);
  const std::vector<BarPlace> bars = BarsIn(layout, std::vector<MinuteBar>{{0, 1, 1, 1'000'000}, {1, 1, 1, 100}});
  ASSERT_EQ(bars.size(), 2U);
  EXPECT_EQ(bars[0].rectangle.size(), QSizeF(1, 100));
  EXPECT_EQ(bars[1].rectangle.size(), QSizeF(1, 1));
  EXPECT_EQ(bars[1].rectangle.bottom(), 300);
}

TEST(ChartLayoutTest, ASmallPlaceHasFewerRowsAndNoNegativeOnes) {
  EXPECT_EQ(LayOut({1000, 180}, 50, 16, {1000, 40}).rows, 1);
  EXPECT_EQ(LayOut({1000, 500}, 50, 16, {1000, 2}).rows, 2) << "no two rows of the same price";
  const ChartLayout none = LayOut({20, 10}, 50, 16, {1000, 40});
  EXPECT_EQ(none.plot.width(), 0);
  EXPECT_EQ(none.plot.height(), 0);
  EXPECT_EQ(PriceRange(none, {1000, 40}).low, 960);
}

TEST(DayWordsTest, SaySinceWhenThereIsALineAndHowTheAverageIsMade) {
  DayFacts facts{QStringLiteral("2024-05-29"), false, false, true, 2700, 500};
  const std::vector<Tick> whole{{0, 1000, 100}, {90, 1001, 500}};
  EXPECT_EQ(WordsOfDay(facts, whole, AverageKind::ByAmount).join(u'|'),
            QStringLiteral("2024-05-29 10:15:00|均价：成交额÷成交量"));
  const std::vector<Tick> late{{2520, 1000, 100, -1, true}, {2600, 1001}, {2900, 1001, -1, -1, true}};
  EXPECT_EQ(WordsOfDay(facts, late, AverageKind::ByTime).join(u'|'),
            QStringLiteral("2024-05-29 10:15:00|10:12 起有记录：此前没有跟踪它|10:13–10:18 没有记录（终端没有运行）|"
                           "均价：按时间平均（行情没有成交量）"));
  facts.isSimulated = true;
  facts.second = kMorningSeconds;
  facts.volume = 0;
  EXPECT_EQ(
      WordsOfDay(facts, whole, AverageKind::ByVolume).join(u'|'),
      QStringLiteral(
          "2024-05-29 11:30:00|模拟行情|午间休市|今天还没有成交（可能停牌）|均价：按成交量加权（行情没有成交额）"));
  facts = {QStringLiteral("2024-05-29"), false, false, true, std::nullopt, -1};
  EXPECT_TRUE(
      WordsOfDay(facts, {}, AverageKind::None).constLast().startsWith(QStringLiteral("还没有 2024-05-29 的分时记录")));
  facts.hasPrice = false;
  EXPECT_TRUE(WordsOfDay(facts, {}, AverageKind::None).constLast().startsWith(QStringLiteral("行情里没有它的价格")));
}

TEST(DayWordsTest, SayWhenAPlaceWasLostAndWhenNothingIsSaved) {
  DayFacts facts{QStringLiteral("2024-05-29"), false, false, true, 2700, 500};
  const std::vector<Tick> late{{2520, 1000, 100, -1, true}, {2600, 1001}};
  facts.hasLostItsPlace = true;
  EXPECT_EQ(WordsOfDay(facts, late, AverageKind::None).value(1),
            QStringLiteral("10:12 起有记录：最多记录 300 只，此前的让给了别的股票"));
  facts.isSaved = false;
  EXPECT_TRUE(WordsOfDay(facts, late, AverageKind::None).value(1).startsWith(QStringLiteral("存不了盘")));
  EXPECT_TRUE(WordsOfDay(facts, {}, AverageKind::None).value(1).startsWith(QStringLiteral("存不了盘")));
  EXPECT_EQ(WordsOfDay(facts, {}, AverageKind::None).constLast(),
            QStringLiteral("还没有它今天的分时记录：图上是现价，从现在起记录"));
}

TEST(DayWordsTest, TheTwoLongestGapsAreNamedAndAllOfThemInTheHint) {
  const DayFacts facts{QStringLiteral("2024-05-29"), false, false, true, 14000, 500};
  // A gap of 90 s after each quarter of an hour from 9:45 on, but 5 minutes from 10:00 and 10 from 14:00 on.
  std::vector<Tick> ticks{{0, 1000}};
  for (int quarter = 1; quarter < 16; ++quarter) {
    const int from = quarter * 900;
    ticks.push_back({from, 1000 + quarter});
    ticks.push_back({from + (quarter == 2 ? 300 : quarter == 12 ? 600 : 90), 1000, -1, -1, true});
  }
  const auto words = [&](std::size_t count) {
    return WordsOfDay(facts, std::span(ticks).first(count), AverageKind::None).value(1);
  };
  EXPECT_EQ(words(3), QStringLiteral("09:45–09:46 没有记录（终端没有运行）"));
  EXPECT_EQ(words(5), QStringLiteral("09:45–09:46、10:00–10:05 没有记录（终端没有运行）"));
  EXPECT_EQ(words(ticks.size()), QStringLiteral("10:00–10:05、14:00–14:10 等 15 段没有记录（终端没有运行）"));
  const QString hint = HintOfDay(ticks);
  EXPECT_EQ(hint.count(u'–'), 15);
  EXPECT_TRUE(hint.contains(QStringLiteral("14:45–14:46"))) << hint.toStdString();
  for (const QString& line : hint.split(u'\n')) EXPECT_LE(line.count(u'–'), 5);
  EXPECT_EQ(HintOfDay(std::span(ticks).first(5)).count(u'–'), 0) << "they are named already";
}

/// 500 shares at 10.00, 300 at 10.10 half a minute later, 100 at 10.20 at its end.
TEST(DayWordsTest, AMomentIsWhatWasKnownThen) {
  const std::vector<Tick> ticks{{0, 1000, 500, 500'000}, {30, 1010, 800, 803'000}, {60, 1020, 900, 905'000}};
  const QString first = QStringLiteral("09:30:10  价 10.00  均 10.00  涨跌 0.00%  量 500 股");
  EXPECT_EQ(WordsOfMoment(10, ticks, AverageKind::ByAmount, 1000), first);
  EXPECT_EQ(WordsOfMoment(10, std::span(ticks).first(1), AverageKind::ByAmount, 1000), first);
  // (500 x 10.00 + 300 x 10.10) / 800 = 10.0375
  EXPECT_EQ(WordsOfMoment(59, ticks, AverageKind::ByAmount, 1000),
            QStringLiteral("09:30:59  价 10.10  均 10.04  涨跌 +1.00%  量 800 股"));
  EXPECT_EQ(WordsOfMoment(59, ticks, AverageKind::ByTime, 0),
            QStringLiteral("09:30:59  价 10.10  均 10.10  量 800 股"));
  // 9050 / 900 = 10.0556; in the next minute nothing has been traded yet.
  EXPECT_EQ(WordsOfMoment(61, ticks, AverageKind::ByAmount, 1000),
            QStringLiteral("09:31:01  价 10.20  均 10.06  涨跌 +2.00%"));
  EXPECT_EQ(WordsOfMoment(5, std::span(ticks).subspan(1), AverageKind::ByAmount, 1000), QStringLiteral("09:30:05"));
}

TEST(DayWordsTest, TheRangeIsTheServicesElseThatOfTheTicks) {
  const std::vector<Tick> ticks{{0, 1000}, {90, 1030}, {120, 990}};
  const DayRange told = RangeOfDay({-1, -1, 1001, 1040, 980}, ticks);
  EXPECT_EQ(told.open, 1001);
  EXPECT_EQ(told.high, 1040);
  EXPECT_EQ(told.low, 980);
  EXPECT_TRUE(told.isWhole);
  const DayRange seen = RangeOfDay({}, ticks);
  EXPECT_EQ(seen.open, 1000);
  EXPECT_EQ(seen.high, 1030);
  EXPECT_EQ(seen.low, 990);
  EXPECT_TRUE(seen.isWhole);
  const std::vector<Tick> late{{600, 1000}, {700, 1030}};
  const DayRange part = RangeOfDay({}, late);
  EXPECT_EQ(part.open, -1) << "nobody saw it";
  EXPECT_EQ(part.high, 1030);
  EXPECT_FALSE(part.isWhole);
  EXPECT_EQ(RangeOfDay({}, {}).high, -1);
}

}  // namespace
}  // namespace holdwise
