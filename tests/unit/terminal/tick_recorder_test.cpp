// SPDX-License-Identifier: MIT
#include "intraday/tick_recorder.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "bus/embedded_market.h"
#include "bus_listener.h"
#include "market_data_fixture.h"
#include "recording_bus.h"

namespace holdwise {
namespace {

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
  void Follow(const std::vector<int>& codeNumbers) {
    for (const int codeNumber : codeNumbers) recorder_->Follow(codeNumber);
    QTest::qWait(1);
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
  Follow({1600000, 1999999});
  EXPECT_EQ(RecordingBus::DigitsOf(bus_->requests.back().second), QStringList{"600000"}) << "the other is unknown";
  const std::size_t requests = bus_->requests.size();
  Follow({1600000});
  EXPECT_EQ(bus_->requests.size(), requests);
  EXPECT_TRUE(recorder_->IsFollowed(1600000));
}

TEST_F(TickRecorderTest, FollowsWhatAPlugInAsksPricesFor) {
  Start();
  TDMessage request;
  FillRequest(QStringLiteral("0|01600036,01000001,02399001"), request);
  recorder_->FollowRequest(request);
  EXPECT_TRUE(recorder_->IsFollowed(1600036));
  EXPECT_FALSE(recorder_->IsFollowed(1000001)) << "000001 of Shanghai is the index";
  FillRequest(QStringLiteral("1|02300750"), request);
  recorder_->FollowRequest(request);
  EXPECT_FALSE(recorder_->IsFollowed(1300750)) << "a cancellation";
  FillRequest(QStringLiteral("0|02000001"), request);
  recorder_->FollowRequest(request);
  EXPECT_TRUE(recorder_->IsFollowed(1000001));
  recorder_->FollowRequest({});
}

TEST_F(TickRecorderTest, HasAPlaceForWhatIsLookedAtWhereVeryManyAreAskedFor) {
  std::vector<QStringList> rows;
  QStringList asked;
  for (int stock = 0; stock < 400; ++stock) {
    rows.push_back(Row(qPrintable(QStringLiteral("%1,A,B,1,20200102,1").arg(600000 + stock))));
    asked.append(QStringLiteral("01%1").arg(600000 + stock));
  }
  folder_.Write(QStringLiteral("securities.dat"), MakeTable(MarketFolder::kSecurityHeadings, rows));
  Start();
  TDMessage request;
  FillRequest(QStringLiteral("0|") + asked.join(u','), request);
  recorder_->FollowRequest(request);
  // Three are the indices.
  EXPECT_TRUE(recorder_->IsFollowed(1600246));
  EXPECT_FALSE(recorder_->IsFollowed(1600247));
  Follow({1600399});
  EXPECT_TRUE(recorder_->IsFollowed(1600399));
  for (int stock = 300; stock < 400; ++stock) recorder_->Follow(1600000 + stock);
  EXPECT_TRUE(recorder_->IsFollowed(1600348));
  EXPECT_FALSE(recorder_->IsFollowed(1600349)) << "300 in all";
}

TEST_F(TickRecorderTest, KeepsPricesWithTheClocksTimeWhereTheServiceTellsNone) {
  Start();
  Follow({1600000});
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
  Follow({1600000});
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
  Follow({1600000});
  bus_->Answer("600000", PriceOf(815), 93010U);
  bus_->Answer("600000", PriceOf(816), 130001U);
  bus_->Answer("600000", PriceOf(817), 250000U);  // no time
  EXPECT_EQ(Ticks(1600000), QStringLiteral("10=815* 7201=816"));
}

TEST_F(TickRecorderTest, ASimulatedMarketWithoutATimeHasNoTicks) {
  Start(true);
  Follow({1600000});
  bus_->Answer("600000", PriceOf(815), std::nullopt);
  EXPECT_EQ(Ticks(1600000), QString());
}

TEST_F(TickRecorderTest, TakesVolumesAndTheDaysRangeWhereTheyAreTold) {
  Start();
  Follow({1600000});
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
  Follow({1000001});
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
  Follow({1600000});
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
  Follow({1600000});
  bus_->Answer("600000", PriceOf(815), 100000U);
  bus_->Answer("600000", PriceOf(816), 150000U);
  bus_->Answer("600000", PriceOf(817), 145930U);  // a little late
  EXPECT_EQ(Ticks(1600000), QStringLiteral("1800=815* 14400=816"));
  bus_->Answer("600000", PriceOf(820), 93000U);
  EXPECT_EQ(Ticks(1600000), QStringLiteral("0=820"));
}

TEST_F(TickRecorderTest, FollowsTheDemoMarket) {
  folder_.WriteMarket(20240529, true);
  Load();
  EmbeddedMarket market(data_, log_, {60, work_.filePath(QStringLiteral("simulation.dat"))});
  TickRecorder recorder(market.Bus(), data_, clock_, log_, QString());
  recorder.Start();
  recorder.Follow(1600000);
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
