// SPDX-License-Identifier: MIT
#include "intraday/tick_recorder.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>

#include "bus/embedded_market.h"
#include "bus_listener.h"
#include "market_data_fixture.h"
#include "recording_bus.h"

namespace holdwise {
namespace {

const QString kHeld = QStringLiteral("TZZHHQCURRENTPRICE");

class TickRecorderTest : public MarketDataTest {
 protected:
  void Start(bool isSimulated = false) {
    folder_.WriteMarket(20240529, isSimulated);
    Load();
    SetTime(10, 0);
    Restart();
  }
  void Restart() {
    recorder_.reset();
    bus_ = std::make_unique<RecordingBus>();
    recorder_ = std::make_unique<TickRecorder>(*bus_, data_, clock_, log_, work_.filePath(QStringLiteral("ticks.dat")));
    recorder_->Start();
    QTest::qWait(1);
  }
  void SetTime(int hour, int minute, int second = 0, int day = 29) {
    constexpr int kBeijing = 8 * 3600;
    clock_.now = QDateTime(QDate(2024, 5, day), QTime(hour, minute, second), Qt::OffsetFromUTC, kBeijing);
  }
  void Follow(int codeNumber) {
    recorder_->LookAt(codeNumber);
    QTest::qWait(1);
  }
  /// The stocks 602000, 602001 and so on are known too.
  void AddStocks(int count) const {
    std::vector<QStringList> rows = MarketFolder::SecurityRows();
    for (int stock = 0; stock < count; ++stock)
      rows.push_back({QString::number(602000 + stock), "新股", "综合", "1", "20200102", "1"});
    std::sort(rows.begin(), rows.end());
    folder_.Write(QStringLiteral("securities.dat"), MakeTable(MarketFolder::kSecurityHeadings, rows));
  }
  /// Asks prices as a plug-in does: "0|01600036,02300750".
  void Ask(const QString& name, const QString& command) {
    TDMessage request;
    request.profile.requestName = name;
    FillRequest(command, request);
    recorder_->HearRequest(request);
    QTest::qWait(1);
  }
  /// Command with the stocks 602000 + first to 602000 + last.
  static QString Stocks(int first, int last) {
    QStringList items;
    for (int stock = first; stock <= last; ++stock) items += QStringLiteral("01%1").arg(602000 + stock);
    return QStringLiteral("0|") + items.join(u',');
  }
  /// "second=price ..." of a security's ticks.
  [[nodiscard]] QString Ticks(int codeNumber) const {
    QStringList ticks;
    for (const Tick& tick : recorder_->TicksOf(codeNumber))
      ticks += QStringLiteral("%1=%2%3").arg(tick.second).arg(tick.price).arg(tick.isAfterGap ? "*" : "");
    return ticks.join(u' ');
  }

  QTemporaryDir work_;
  std::unique_ptr<RecordingBus> bus_;
  std::unique_ptr<TickRecorder> recorder_;
};

TEST_F(TickRecorderTest, FollowsTheIndicesAtOnceAndOthersAsTheyAreAskedFor) {
  Start();
  ASSERT_EQ(bus_->requests.size(), 1U);
  EXPECT_EQ(RecordingBus::DigitsOf(bus_->requests[0].second), (QStringList{"000001", "399001", "399300"}));
  const auto* securities = bus_->requests[0].second.fields.Sequence("L1_SECUCODESEQ");
  EXPECT_EQ(*securities->front().Uint32("MarketType"), 1U);
  EXPECT_EQ(*securities->back().Uint32("MarketType"), 2U);
  Follow(1999999);
  Follow(1600000);
  EXPECT_EQ(RecordingBus::DigitsOf(bus_->requests.back().second), QStringList{"600000"}) << "the other is unknown";
  const std::size_t requests = bus_->requests.size();
  Follow(1600000);
  EXPECT_EQ(bus_->requests.size(), requests);
  EXPECT_TRUE(recorder_->IsFollowed(1600000));
}

TEST_F(TickRecorderTest, FollowsWhatIsHeld) {
  Start();
  Ask(kHeld, QStringLiteral("0|01600036,01000001,02399001"));
  EXPECT_TRUE(recorder_->IsFollowed(1600036));
  EXPECT_FALSE(recorder_->IsFollowed(1000001)) << "000001 of Shanghai is the index";
  Ask(kHeld, QStringLiteral("1|02300750"));
  EXPECT_FALSE(recorder_->IsFollowed(1300750)) << "a cancellation";
  Ask(kHeld, QStringLiteral("0|02000001"));
  EXPECT_TRUE(recorder_->IsFollowed(1000001));
  recorder_->HearRequest({});
}

TEST_F(TickRecorderTest, APoolOfStocksIsNotFollowed) {
  AddStocks(400);
  Start();
  Ask(QStringLiteral("DSBHQCURRENTPRICE_SC"), Stocks(0, 399));
  EXPECT_FALSE(recorder_->IsFollowed(1602000));
  Follow(1602399);
  bus_->Answer("602399", PriceOf(815), 93010U);
  EXPECT_EQ(Ticks(1602399), QStringLiteral("10=815*"));
}

TEST_F(TickRecorderTest, TheOneLookedAtTheLongestTimeAgoGoesWhenAllPlacesAreTaken) {
  AddStocks(400);
  Start();
  const int places = static_cast<int>(TickStore::kMostSecurities) - kIndexCount;
  for (int stock = 0; stock < places; ++stock) Follow(1602000 + stock);
  bus_->Answer("602000", PriceOf(700), 93010U);
  bus_->Answer("602001", PriceOf(701), 93010U);
  Follow(1602000);  // looked at again
  EXPECT_TRUE(recorder_->IsFollowed(1602001));
  Follow(1602300);
  EXPECT_FALSE(recorder_->IsFollowed(1602001));
  EXPECT_TRUE(recorder_->HasLostItsPlace(1602001));
  EXPECT_EQ(Ticks(1602001), QString());
  EXPECT_TRUE(recorder_->IsFollowed(1602000));
  EXPECT_FALSE(RecordingBus::DigitsOf(bus_->requests.back().second).contains("602001"));
  bus_->Answer("602300", PriceOf(815), 93020U);
  EXPECT_EQ(Ticks(1602300), QStringLiteral("20=815*"));
  Follow(1602001);
  bus_->Answer("602001", PriceOf(702), 93030U);
  EXPECT_EQ(Ticks(1602001), QStringLiteral("30=702*")) << "begins anew";
}

TEST_F(TickRecorderTest, WhatIsHeldAndOwnGoesBeforeWhatWasLookedAt) {
  AddStocks(400);
  folder_.Write(QStringLiteral("groups.dat"),
                MakeTable({QStringLiteral("name:text"), QStringLiteral("code_number:integer")},
                          {{QStringLiteral("OptionalStock"), QStringLiteral("1600036")}}));
  Start();
  ASSERT_TRUE(recorder_->IsFollowed(1600036)) << "an own stock";
  for (int stock = 0; stock < 350; ++stock) Follow(1602000 + stock);
  EXPECT_TRUE(recorder_->IsFollowed(1600036));
  ASSERT_FALSE(recorder_->IsFollowed(1602000));
  Ask(kHeld, Stocks(0, 1));
  for (const char* digits : {"602000", "602001"}) bus_->Answer(QString::fromLatin1(digits), PriceOf(815), 93010U);
  EXPECT_EQ(Ticks(1602000), QStringLiteral("10=815*"));
  EXPECT_EQ(Ticks(1602001), QStringLiteral("10=815*"));
  for (int stock = 2; stock < 350; ++stock) Follow(1602000 + stock);
  EXPECT_TRUE(recorder_->IsFollowed(1602000)) << "it is held, however long ago it was looked at";
  // More than there are places: all is held, and still the one on the page has a place.
  Ask(kHeld, Stocks(0, 350));
  EXPECT_FALSE(recorder_->IsFollowed(1600036)) << "what is held goes before what is own";
  Follow(1602399);
  bus_->Answer("602399", PriceOf(815), 93010U);
  EXPECT_EQ(Ticks(1602399), QStringLiteral("10=815*"));
  Ask(kHeld, Stocks(0, 350));
  EXPECT_TRUE(recorder_->IsFollowed(1602399));
  for (const int index : kIndexNumbers) EXPECT_TRUE(recorder_->IsFollowed(index));
}

TEST_F(TickRecorderTest, UnknownSecuritiesInTheFileTakeNoPlace) {
  {
    TickStore store(work_.filePath(QStringLiteral("ticks.dat")), QStringLiteral("2024-05-29\n"));
    for (int place = 0; place < static_cast<int>(TickStore::kMostSecurities) - 1; ++place)
      EXPECT_TRUE(store.Add(place % 2 == 0 ? 1'700'000 + place : 600'037 - place, {0, 1}));
    EXPECT_TRUE(store.Add(1'600'000, {0, 815}));
  }
  Start();
  EXPECT_EQ(Ticks(1600000), QStringLiteral("0=815")) << "the file is read";
  bus_->Answer("399001", PriceOf(941'422), 93010U);
  EXPECT_EQ(Ticks(399001), QStringLiteral("10=941422*"));
}

/// What filled the file goes where there is a claim.
TEST_F(TickRecorderTest, AFullFileLeavesPlacesForIndicesAndOwnStocks) {
  AddStocks(400);
  {
    TickStore store(work_.filePath(QStringLiteral("ticks.dat")), QStringLiteral("2024-05-29\n"));
    for (int place = 0; place < static_cast<int>(TickStore::kMostSecurities); ++place)
      EXPECT_TRUE(store.Add(1'602'000 + place, {0, 815}));
  }
  Start();
  for (const char* digits : {"000001", "399001", "399300"})
    bus_->Answer(QString::fromLatin1(digits), PriceOf(9000), 93010U);
  for (const int index : kIndexNumbers) EXPECT_EQ(Ticks(index), QStringLiteral("10=9000*"));
  EXPECT_EQ(Ticks(1602000), QStringLiteral("0=815"));
  EXPECT_EQ(Ticks(1602299), QString());
}

TEST_F(TickRecorderTest, KeepsPricesWithTheClocksTimeWhereTheServiceTellsNone) {
  Start();
  Follow(1600000);
  QSignalSpy changes(recorder_.get(), &TickRecorder::Changed);
  bus_->Answer("600000", PriceOf(815), std::nullopt);
  SetTime(10, 0, 30);
  bus_->Answer("600000", PriceOf(816), std::nullopt);
  SetTime(12, 0);
  bus_->Answer("600000", PriceOf(817), std::nullopt);
  SetTime(15, 5);
  bus_->Answer("600000", PriceOf(818), std::nullopt);
  EXPECT_EQ(Ticks(1600000), QStringLiteral("1800=815* 1830=816 7200=817 14400=818"));
  EXPECT_EQ(changes.size(), 4);
  EXPECT_EQ(recorder_->LastSecond(), 14400);
}

TEST_F(TickRecorderTest, KeepsNothingOfAnotherDayAndBeforeTheOpening) {
  Start();
  Follow(1600000);
  SetTime(9, 29, 59);
  bus_->Answer("600000", PriceOf(815), std::nullopt);
  SetTime(10, 0, 0, 30);
  bus_->Answer("600000", PriceOf(816), std::nullopt);
  SetTime(10, 0, 0, 28);
  bus_->Answer("600000", PriceOf(817), std::nullopt);
  EXPECT_EQ(Ticks(1600000), QString());
  EXPECT_EQ(recorder_->LastSecond(), std::nullopt);
}

TEST_F(TickRecorderTest, TheMarketsOwnTimeGoesBeforeTheClock) {
  Start();
  Follow(1600000);
  bus_->Answer("600000", PriceOf(815), 93010U);
  bus_->Answer("600000", PriceOf(816), 130001U);
  bus_->Answer("600000", PriceOf(817), 250000U);  // no time
  EXPECT_EQ(Ticks(1600000), QStringLiteral("10=815* 7201=816"));
}

TEST_F(TickRecorderTest, ASimulatedMarketWithoutATimeHasNoTicks) {
  Start(true);
  Follow(1600000);
  bus_->Answer("600000", PriceOf(815), std::nullopt);
  EXPECT_EQ(Ticks(1600000), QString());
}

TEST_F(TickRecorderTest, TakesVolumesAndTheDaysRangeWhereTheyAreTold) {
  Start();
  Follow(1600000);
  TDFieldSet entry = PriceOf(815);
  EXPECT_EQ(recorder_->DayOf(1600000).volume, -1);
  entry.Set("Volume", std::int64_t{5000});
  entry.Set("Amount", Decimal{4'075'000, 2});
  entry.Set("Open", Decimal{81, 1});
  entry.Set("High", Decimal{820, 2});
  entry.Set("Low", std::uint32_t{7});  // of another type: not known
  bus_->Answer("600000", entry, 93010U);
  EXPECT_EQ(recorder_->TicksOf(1600000).back(), (Tick{10, 815, 5000, 4'075'000, true}));
  const DaySoFar day = recorder_->DayOf(1600000);
  EXPECT_EQ(day.volume, 5000);
  EXPECT_EQ(day.open, 810);
  EXPECT_EQ(day.high, 820);
  EXPECT_EQ(day.low, -1);
}

TEST_F(TickRecorderTest, IndexAndStockOfTheSameDigitsStayApart) {
  Start();
  Follow(1000001);
  bus_->Answer("399001", PriceOf(941'422), 93010U);
  const auto indices = bus_->requests.front();
  const auto stocks = bus_->requests.back();
  ASSERT_NE(indices.first, stocks.first);
  bus_->Answer("000001", PriceOf(1123), 93010U);  // the last request is the stocks'
  EXPECT_EQ(Ticks(1000001), QStringLiteral("10=1123*"));
  EXPECT_EQ(Ticks(1), QString());
  EXPECT_EQ(Ticks(399001), QStringLiteral("10=941422*"));
}

TEST_F(TickRecorderTest, ADaySurvivesARestartAndGoesOnBeingFollowed) {
  Start();
  Follow(1600000);
  bus_->Answer("600000", PriceOf(815), 93010U);
  bus_->Answer("600000", PriceOf(816), 93020U);
  Restart();
  EXPECT_EQ(Ticks(1600000), QStringLiteral("10=815* 20=816"));
  EXPECT_TRUE(recorder_->IsFollowed(1600000));
  bus_->Answer("600000", PriceOf(816), 94000U);
  EXPECT_EQ(Ticks(1600000), QStringLiteral("10=815* 20=816 600=816*"));
}

TEST_F(TickRecorderTest, ASimulatedDayThatIsSetBackBeginsAnew) {
  Start(true);
  Follow(1600000);
  bus_->Answer("600000", PriceOf(815), 100000U);
  bus_->Answer("600000", PriceOf(816), 150000U);
  bus_->Answer("600000", PriceOf(817), 145930U);  // a little late
  EXPECT_EQ(Ticks(1600000), QStringLiteral("1800=815* 14400=816"));
  bus_->Answer("600000", PriceOf(820), 93000U);
  EXPECT_EQ(Ticks(1600000), QStringLiteral("0=820"));
}

TEST_F(TickRecorderTest, AClockThatWasAheadIsSetBack) {
  Start();
  Follow(1600000);
  bus_->Answer("600000", PriceOf(815), 100000U);
  bus_->Answer("600000", PriceOf(816), 143000U);  // it was 10:01
  bus_->Answer("600000", PriceOf(817), 100200U);
  EXPECT_EQ(Ticks(1600000), QStringLiteral("1800=815* 12600=816")) << "one reply alone may be a stray";
  EXPECT_EQ(recorder_->LastSecond(), 12600);
  bus_->Answer("600000", PriceOf(818), 100203U);
  EXPECT_EQ(Ticks(1600000), QStringLiteral("1800=815* 1923=818"));
  EXPECT_EQ(recorder_->LastSecond(), 1923);
}

TEST_F(TickRecorderTest, StraysAndLateRepliesSetNothingBack) {
  Start();
  Follow(1600000);
  bus_->Answer("600000", PriceOf(815), 100000U);
  for (const std::uint32_t minute : {101000U, 102000U, 103000U}) {
    bus_->Answer("600000", PriceOf(816 + minute % 7), minute);
    bus_->Answer("600000", PriceOf(1), 93000U);  // a stray after each
  }
  bus_->Answer("600000", PriceOf(2), 102930U);  // late
  bus_->Answer("600000", PriceOf(3), 102935U);
  EXPECT_EQ(recorder_->TicksOf(1600000).size(), 4U);
  EXPECT_EQ(recorder_->TicksOf(1600000).back().second, 3600);
}

TEST_F(TickRecorderTest, AFileThatCannotBeWrittenIsSaidAndUnsaid) {
  Start();
  recorder_.reset();
  bus_ = std::make_unique<RecordingBus>();
  recorder_ = std::make_unique<TickRecorder>(*bus_, data_, clock_, log_, work_.filePath(QStringLiteral("gone/t.dat")));
  recorder_->Start();
  Follow(1600000);
  const std::size_t before = log_.Lines().size();
  QSignalSpy changes(recorder_.get(), &TickRecorder::Changed);
  bus_->Answer("600000", PriceOf(815), 93010U);
  for (int time = 0; time < 3; ++time) recorder_->Flush();
  EXPECT_FALSE(recorder_->IsSaved());
  EXPECT_EQ(changes.size(), 2);
  ASSERT_EQ(log_.Lines().size(), before + 1) << "once";
  EXPECT_TRUE(log_.Lines().back().contains(QStringLiteral("没有保存")));
  ASSERT_TRUE(QDir(work_.path()).mkdir(QStringLiteral("gone")));
  for (int time = 0; time < 3; ++time) recorder_->Flush();
  EXPECT_TRUE(recorder_->IsSaved());
  EXPECT_EQ(changes.size(), 3);
  ASSERT_EQ(log_.Lines().size(), before + 2);
  EXPECT_TRUE(log_.Lines().back().contains(QStringLiteral("又保存了")));
}

TEST_F(TickRecorderTest, FollowsTheDemoMarket) {
  folder_.WriteMarket(20240529, true);
  Load();
  EmbeddedMarket market(data_, log_, {60, work_.filePath(QStringLiteral("simulation.dat"))});
  TickRecorder recorder(market.Bus(), data_, clock_, log_, QString());
  recorder.Start();
  recorder.LookAt(1600000);
  market.Connect();
  ASSERT_TRUE(QTest::qWaitFor([&] { return recorder.TicksOf(1600000).size() >= 3; }, 30000));
  const std::vector<Tick>& ticks = recorder.TicksOf(1600000);
  EXPECT_EQ(ticks[0].second, 0);
  EXPECT_EQ(ticks[0].price, 815);
  EXPECT_EQ(ticks[0].volume, 0);
  EXPECT_EQ(ticks[2].second % 60, 0);
  EXPECT_GT(ticks[2].volume, ticks[1].volume);
  EXPECT_GT(ticks[2].amount, ticks[1].amount);
  EXPECT_EQ(recorder.DayOf(1600000).open, 815);
  EXPECT_GE(recorder.TicksOf(1).size(), 2U) << "indices too";
}

}  // namespace
}  // namespace holdwise
