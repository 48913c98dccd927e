// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <functional>

#include "bus/embedded_market.h"
#include "bus/in_process_bus.h"
#include "bus_listener.h"
#include "holdwise/packet/code_numbers.h"
#include "market_data_fixture.h"

namespace holdwise {
namespace {

TEST(InProcessBusTest, RolesAreServedApart) {
  ConnectedBus bus(SomeQuotes());
  Listener one(bus);
  Listener two(bus);
  one.role->Send(QStringLiteral("0|01600000"));
  two.role->Send(QStringLiteral("0|02000001"));
  ASSERT_TRUE(one.Hears(1) && two.Hears(1));
  EXPECT_EQ(one.heard[0], QStringLiteral("600000=8.15"));
  EXPECT_EQ(two.heard[0], QStringLiteral("000001=11.23"));
  one.role.reset();
  bus.SetQuotes({MakeQuote(1600000, 901, 815), MakeQuote(1000001, 1200, 1123)});
  ASSERT_TRUE(two.Hears(2));
  EXPECT_EQ(two.heard[1], QStringLiteral("000001=12.00"));
  EXPECT_EQ(one.heard.size(), 1);
}

TEST(InProcessBusTest, TheSimulatedMarketMovesWhileSomethingIsSubscribed) {
  ConnectedBus bus(SomeQuotes(), 42);
  QSignalSpy moves(&bus, &InProcessBus::PricesMoved);
  TDMessage unknown{Profile(), {}};
  FillRequest(QStringLiteral("0|01600000"), unknown);
  EXPECT_GT(bus.Request(99, unknown), 0U) << "nobody's subscription";
  bus.Detach(99);
  EXPECT_FALSE(moves.wait(1300));
  Listener one(bus);
  Listener two(bus);
  one.role->Send(QStringLiteral("0|01600000"));
  two.role->Send(QStringLiteral("0|02000001"));
  one.role.reset();
  EXPECT_TRUE(moves.wait(30000));
  two.role->Send(QStringLiteral("1|02000001"));
  moves.clear();
  EXPECT_FALSE(moves.wait(1300));
}

TEST(InProcessBusTest, PushesChangesAtMostOnceASecond) {
  std::vector<Quote> quotes = SomeQuotes();
  for (int i = 0; i < 200; ++i) quotes.push_back(MakeQuote(1601000 + i, 5001 + i, 5000 + i));
  ConnectedBus bus(quotes, 42);
  Listener listener(bus);
  QStringList codes;
  for (int i = 0; i < 200; ++i) codes += QStringLiteral("01601%1").arg(i, 3, 10, QLatin1Char('0'));
  QElapsedTimer timer;
  timer.start();
  listener.role->Send(QStringLiteral("0|") + codes.join(QLatin1Char(',')));
  ASSERT_TRUE(listener.Hears(3));    // the answer and two pushes
  EXPECT_GE(timer.elapsed(), 1500);  // the timer may be up to a twentieth early
  EXPECT_NE(listener.heard[0], listener.heard[1]);
  EXPECT_NE(listener.heard[1], listener.heard[2]);
  EXPECT_EQ(listener.heard[2].count(QLatin1Char('=')), 200);  // always the full list
}

/// A timer that is a little early must not cost every second push.
TEST(InProcessBusTest, EveryStepOfTheMarketIsPushed) {
  std::vector<Quote> quotes = SomeQuotes();
  for (int i = 0; i < 200; ++i) quotes.push_back(MakeQuote(1601000 + i, 5001 + i, 5000 + i));
  ConnectedBus bus(quotes, 42);
  QSignalSpy moves(&bus, &InProcessBus::PricesMoved);
  Listener listener(bus);
  QStringList codes;
  for (int i = 0; i < 200; ++i) codes += QStringLiteral("01601%1").arg(i, 3, 10, QLatin1Char('0'));
  listener.role->Send(QStringLiteral("0|") + codes.join(QLatin1Char(',')));
  ASSERT_TRUE(QTest::qWaitFor([&] { return moves.size() == 6; }, 30'000));
  EXPECT_TRUE(listener.Hears(7)) << "the answer, and a push a step";
  EXPECT_EQ(moves.size(), 6);
}

TEST(InProcessBusTest, QuietMarketPushesNothing) {
  ConnectedBus bus(SomeQuotes());
  Listener listener(bus);
  listener.role->Send(QStringLiteral("0|01600000"));
  QTest::qWait(1300);
  EXPECT_EQ(listener.heard.size(), 1);
}

TEST(InProcessBusTest, NewQuotesAnswerSubscriptionsAgain) {
  ConnectedBus bus(SomeQuotes());
  Listener listener(bus);
  listener.role->Send(QStringLiteral("0|01600000"));
  ASSERT_TRUE(listener.Hears(1));
  bus.SetQuotes({MakeQuote(1600000, 901, 815)});
  EXPECT_EQ(listener.heard.size(), 1);  // never inside a call
  ASSERT_TRUE(listener.Hears(2));
  EXPECT_EQ(listener.heard[1], QStringLiteral("600000=9.01"));
  EXPECT_THROW(bus.SetQuotes({MakeQuote(1, 1, 1), MakeQuote(1, 1, 1)}), Error);
  EXPECT_EQ(bus.Quotes().size(), 1U);
  EXPECT_EQ(bus.Quotes()[0].price, (Decimal{901, 2}));
}

TEST(InProcessBusTest, ConnectsWithTheFirstQuotesAndAnswersWhatIsInForceThen) {
  InProcessBus bus;
  std::vector<MessageBus::State> states;
  QObject::connect(&bus, &MessageBus::ConnectionStateChanged, &bus,
                   [&states](MessageBus::State state) { states.push_back(state); });
  Listener cancelled(bus);
  cancelled.role->Send(QStringLiteral("0|01600000"));
  cancelled.role->Send(QStringLiteral("1|01600000"));
  Listener gone(bus);
  gone.role->Send(QStringLiteral("0|01600000"));
  gone.role.reset();
  Listener listener(bus);
  listener.role->Send(QStringLiteral("0|01600000"));
  QTest::qWait(50);
  EXPECT_EQ(bus.ConnectionState(), MessageBus::State::Disconnected);
  EXPECT_TRUE(listener.heard.isEmpty());
  EXPECT_THROW(bus.SetQuotes({MakeQuote(1600000, 815, 820), MakeQuote(1600000, 815, 820)}), Error);
  EXPECT_EQ(bus.ConnectionState(), MessageBus::State::Disconnected);
  bus.SetQuotes(SomeQuotes());
  bus.SetQuotes(SomeQuotes());
  EXPECT_EQ(states, std::vector{MessageBus::State::Connected});
  ASSERT_TRUE(listener.Hears(1));
  EXPECT_EQ(listener.heard.front(), QStringLiteral("600000=8.15"));
  EXPECT_TRUE(cancelled.heard.isEmpty());
}

class EmbeddedMarketTest : public MarketDataTest {
 protected:
  void Start(bool simulated) {
    folder_.WriteMarket(20240529, simulated);
    Load();
    market_ = std::make_unique<EmbeddedMarket>(data_, log_);
    market_->Connect();
  }
  std::unique_ptr<EmbeddedMarket> market_;
};

TEST_F(EmbeddedMarketTest, FileReachesRolesAndDataCentre) {
  Start(false);
  Listener listener(market_->Bus());
  listener.role->Send(QStringLiteral("0|01600000,01000001,02000001"));
  ASSERT_TRUE(listener.Hears(1));
  EXPECT_EQ(listener.heard[0], QStringLiteral("600000=8.15 000001=3111.02 000001=11.23"));  // index and stock
  folder_.WriteQuotes({{QStringLiteral("1600000"), QStringLiteral("9.07"), QStringLiteral("8.2")}});
  ASSERT_TRUE(listener.Hears(2));
  EXPECT_EQ(listener.heard[1], QStringLiteral("600000=9.07 000001=3111.02 000001=11.23"));
  EXPECT_EQ(data_.StockNowData(1600000).currentPrice, 9.07);
}

TEST_F(EmbeddedMarketTest, OnlyASimulatedMarketHasATimeOfItsOwn) {
  Start(false);
  EXPECT_EQ(market_->OwnSecondOfDay(), std::nullopt);
  folder_.WriteMarket(20240529, true);
  MarketData data(clock_, log_, reader_);
  data.Load(folder_.Path());
  EmbeddedMarket simulated(data, log_);
  EXPECT_EQ(simulated.OwnSecondOfDay(), std::nullopt) << "not connected";
  simulated.Connect();
  EXPECT_EQ(simulated.OwnSecondOfDay(), 9 * 3600 + 30 * 60);
}

TEST_F(EmbeddedMarketTest, SpoiledFileChangesNothing) {
  Start(false);
  Listener listener(market_->Bus());
  listener.role->Send(QStringLiteral("0|01600000"));
  ASSERT_TRUE(listener.Hears(1));
  folder_.WriteBytes(QStringLiteral("quotes.dat"), "rubbish");
  ASSERT_TRUE(QTest::qWaitFor([&] { return !log_.Lines().empty(); }, 30000));
  QTest::qWait(50);
  EXPECT_EQ(listener.heard.size(), 1);
  EXPECT_EQ(data_.StockNowData(1600000).currentPrice, 8.15);
}

TEST_F(EmbeddedMarketTest, TellsWhetherTheFileIsFollowed) {
  Start(false);
  QSignalSpy spy(market_.get(), &EmbeddedMarket::QuotesChanged);
  const auto told = [&](const std::function<void()>& change) {
    spy.clear();
    change();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !spy.isEmpty(); }, 30000));
    return spy.isEmpty() ? QStringLiteral("nothing") : spy.last().first().toString();
  };
  const auto writeGood = [&] {
    folder_.WriteQuotes({{QStringLiteral("1600000"), QStringLiteral("9.07"), QStringLiteral("8.2")}});
  };
  EXPECT_EQ(told(writeGood), QString());
  EXPECT_TRUE(told([&] { folder_.WriteBytes(QStringLiteral("quotes.dat"), "rubbish"); }).contains("quotes.dat"));
  EXPECT_EQ(told(writeGood), QString());
  const QString tooLarge = told([&] {
    folder_.WriteQuotes({{QStringLiteral("1600000"), QStringLiteral("1e17"), QStringLiteral("8.2")}});
  });
  EXPECT_TRUE(tooLarge.contains(QStringLiteral("报价服务没有接受"))) << tooLarge.toStdString();
  EXPECT_EQ(told(writeGood), QString());
  const QString later = told([&] {
    folder_.WriteMarket(20240530, false);
    writeGood();
  });
  EXPECT_TRUE(later.contains("2024-05-30")) << later.toStdString();
}

TEST_F(EmbeddedMarketTest, TellsThatTheDataFolderChanged) {
  Start(false);
  QSignalSpy quotes(market_.get(), &EmbeddedMarket::QuotesChanged);
  QSignalSpy folder(market_.get(), &EmbeddedMarket::DataFolderChanged);
  ASSERT_TRUE(QDir().mkpath(folder_.File(QStringLiteral("QMTL/TZZH"))));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !folder.isEmpty(); }, 30000));
  EXPECT_TRUE(quotes.isEmpty()) << "its quotes are the same";
}

TEST_F(EmbeddedMarketTest, AFolderThatIsGoneIsToldUntilItIsBack) {
  Start(false);
  QSignalSpy spy(market_.get(), &EmbeddedMarket::QuotesChanged);
  const QString away = folder_.Path() + QStringLiteral(".away");
  EXPECT_EQ(market_->QuotesProblem(), QString());
  ASSERT_TRUE(QDir().rename(folder_.Path(), away));
  const QString problem = market_->QuotesProblem();
  EXPECT_TRUE(problem.contains(QStringLiteral("quotes.dat”不在了"))) << "at once";
  EXPECT_TRUE(QTest::qWaitFor([&] { return !spy.isEmpty(); }, 30000));
  EXPECT_EQ(spy.last().first().toString(), problem);
  ASSERT_TRUE(QDir().rename(away, folder_.Path()));
  EXPECT_EQ(market_->QuotesProblem(), problem) << "nobody has read it again yet";
  EXPECT_TRUE(QTest::qWaitFor([&] { return spy.last().first().toString().isEmpty(); }, 30000));
  EXPECT_EQ(market_->QuotesProblem(), QString());
}

TEST_F(EmbeddedMarketTest, SimulatedPricesReachTheDataCentre) {
  Start(true);
  Listener listener(market_->Bus());
  listener.role->Send(QStringLiteral("0|01600000,01600036,02000001,02000002,02300750"));
  ASSERT_TRUE(listener.Hears(1));
  ASSERT_TRUE(QTest::qWaitFor([&] { return data_.StockNowData(1300750).currentPrice != 199.88; }, 30000));
  const auto& bus = dynamic_cast<const InProcessBus&>(market_->Bus());
  ASSERT_FALSE(bus.Quotes().empty());
  for (const Quote& quote : bus.Quotes()) {
    const NowData now =
        IsIndexNumber(quote.codeNumber) ? data_.IndexNowData(quote.codeNumber) : data_.StockNowData(quote.codeNumber);
    EXPECT_EQ(now.currentPrice, quote.price.ToDouble()) << quote.codeNumber;
    EXPECT_EQ(now.previousClose, quote.previousClose.ToDouble()) << quote.codeNumber;
  }
}

TEST_F(EmbeddedMarketTest, ASimulatedDayGoesOnWhereTheLastStartLeftIt) {
  folder_.WriteMarket(20240529, true);
  Load();
  const QTemporaryDir work;
  const SimulationSetting setting{600, work.filePath(QStringLiteral("simulation.dat"))};
  const auto start = [&] {
    market_ = std::make_unique<EmbeddedMarket>(data_, log_, setting);
    market_->Connect();
    return dynamic_cast<const InProcessBus&>(market_->Bus()).Simulation()->SecondOfDay();
  };
  constexpr int kOpening = 9 * 3600 + 30 * 60;
  EXPECT_EQ(start(), kOpening);
  Listener listener(market_->Bus());
  listener.role->Send(QStringLiteral("0|01600000"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return data_.StockNowData(1600000).currentPrice != 8.15; }, 30000));
  const double left = data_.StockNowData(1600000).currentPrice;
  const int leftAt = dynamic_cast<const InProcessBus&>(market_->Bus()).Simulation()->SecondOfDay();
  listener.role.reset();
  market_.reset();
  data_.ApplyQuotes({{1600000, {8.15, 8.2}}});  // as read from the file again
  EXPECT_EQ(start(), leftAt);
  EXPECT_EQ(data_.StockNowData(1600000).currentPrice, left);
  market_.reset();
  QFile file(setting.stateFile);
  ASSERT_TRUE(file.open(QIODevice::ReadWrite));
  ASSERT_TRUE(file.seek(file.size() / 2));
  ASSERT_EQ(file.write("\x5a\xa5"), 2);
  file.close();
  EXPECT_EQ(start(), kOpening) << "a damaged file is none";
}

TEST_F(EmbeddedMarketTest, PlainMarketStandsStill) {
  Start(false);
  Listener listener(market_->Bus());
  listener.role->Send(QStringLiteral("0|01600000"));
  QTest::qWait(2200);
  EXPECT_EQ(listener.heard.size(), 1);
  EXPECT_EQ(data_.StockNowData(1600000).currentPrice, 8.15);
}

}  // namespace
}  // namespace holdwise
