#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QPointer>
#include <QTest>

#include "bus/data_down_role.h"
#include "bus/embedded_market.h"
#include "bus/in_process_bus.h"
#include "datacentre/code_numbers.h"
#include "market_data_fixture.h"

namespace holdwise {
namespace {

TDRequestProfile Profile(int timeOutMilliseconds = 20000) {
  TDRequestProfile profile;
  profile.messageId = 67017;
  profile.messageTypeFieldName = QStringLiteral("MessageType");
  profile.messageType = QStringLiteral("SUB_HQ_CURRENT_PRICE");
  profile.requestName = QStringLiteral("TZZHHQCURRENTPRICE");
  profile.serviceMessageId = 95;
  profile.serviceNameField = QStringLiteral("SVCName");
  profile.serviceName = QStringLiteral("L1_DIST");
  profile.serviceDescriptionFile = QStringLiteral("L1_Dist.xml");
  profile.timeOutMilliseconds = timeOutMilliseconds;
  return profile;
}

/// Builds the request of a command string ("0|01600000,02000001") as the module does.
void FillRequest(const QString& command, TDMessage& request) {
  auto entries = std::make_shared<std::vector<TDFieldSet>>();
  const QStringList items = command.section(QLatin1Char('|'), 1).split(QLatin1Char(','));
  for (const QString& item : items) {
    TDFieldSet entry;
    entry.Set("CodeNum", item.right(6));
    entry.Set("MarketType", static_cast<std::uint32_t>(item.left(2).toUInt()));
    entries->push_back(entry);
  }
  request.fields.Set("CommandType", static_cast<std::uint32_t>(command.left(1).toUInt()));
  request.fields.Set("L1_SECUCODESEQ", TDSequence(entries));
}

/// "600000=8.15 ..." of a reply's list, "error n" for an error code.
QString Prices(const TDMessage& reply) {
  const std::uint32_t* code = reply.fields.Uint32("ErrCode");
  if (code == nullptr || *code != 0) return QStringLiteral("error %1").arg(code != nullptr ? *code : 999);
  QStringList parts;
  if (const auto* list = reply.fields.Sequence("CURRENT_PRICET_LIST")) {
    for (const TDFieldSet& entry : *list) {
      parts +=
          *entry.Text("CodeNum") + QLatin1Char('=') + QString::number(entry.DecimalValue("Price")->ToDouble(), 'f', 2);
    }
  }
  return parts.join(QLatin1Char(' '));
}

/// A role that writes down what it hears.
struct Listener {
  explicit Listener(MessageBus& bus, int timeOutMilliseconds = 20000) : role(std::make_unique<DataDownRole>(bus)) {
    role->SetComponentName(QStringLiteral("FDSBVexDownDataRole"));
    role->SetProfile(Profile(timeOutMilliseconds));
    role->OnParameter = FillRequest;
    role->OnEndOfData = [this](const TDReply& reply) {
      heard += reply.timedOut ? QStringLiteral("timed out") : Prices(reply.message);
    };
  }
  bool Hears(int count, int milliseconds = 3000) const {
    return QTest::qWaitFor([&] { return heard.size() >= count; }, milliseconds);
  }
  std::unique_ptr<DataDownRole> role;
  QStringList heard;
};

Quote MakeQuote(int codeNumber, std::int64_t cents, std::int64_t previousCents) {
  return {codeNumber, {cents, 2}, {previousCents, 2}};
}

std::vector<Quote> SomeQuotes() {
  return {MakeQuote(1, 311102, 310957), MakeQuote(1600000, 815, 820), MakeQuote(1000001, 1123, 1105)};
}

struct ConnectedBus : InProcessBus {
  explicit ConnectedBus(std::vector<Quote> quotes, std::optional<std::uint64_t> simulationSeed = std::nullopt)
      : InProcessBus(simulationSeed) {
    SetQuotes(std::move(quotes));
  }
};

/// A bus on which nothing answers by itself.
class SilentBus final : public MessageBus {
 public:
  SubscriberId Attach(Receiver attached) override {
    receiver = std::move(attached);
    return 7;
  }
  void Detach(SubscriberId subscriber) override { detached.push_back(subscriber); }
  RequestId Request(SubscriberId /*subscriber*/, const TDMessage& message) override {
    requests.push_back(message);
    return requests.size();
  }
  [[nodiscard]] State ConnectionState() const override { return State::Connected; }

  Receiver receiver;
  std::vector<TDMessage> requests;
  std::vector<SubscriberId> detached;
};

TDMessage Answer(const char* code, std::int64_t cents) {
  TDMessage message;
  auto entries = std::make_shared<std::vector<TDFieldSet>>(1);
  entries->front().Set("CodeNum", QString::fromLatin1(code));
  entries->front().Set("Price", Decimal{cents, 2});
  message.fields.Set("ErrCode", std::uint32_t{0});
  message.fields.Set("CURRENT_PRICET_LIST", TDSequence(entries));
  return message;
}

TEST(DataDownRoleTest, ParameterEventRunsInsideSendAndTheReplyLater) {
  ConnectedBus bus(SomeQuotes());
  Listener listener(bus);
  QStringList built;
  listener.role->OnParameter = [&](const QString& command, TDMessage& request) {
    built += command;
    EXPECT_EQ(request.profile.requestName, QStringLiteral("TZZHHQCURRENTPRICE"));
    FillRequest(command, request);
  };
  listener.role->Send(QStringLiteral("0|01600000,02000001"));
  EXPECT_EQ(built, QStringList{QStringLiteral("0|01600000,02000001")});
  EXPECT_TRUE(listener.heard.isEmpty());
  ASSERT_TRUE(listener.Hears(1));
  EXPECT_EQ(listener.heard[0], QStringLiteral("600000=8.15 000001=11.23"));
}

TEST(DataDownRoleTest, NothingIsSentWhenTheParameterEventThrows) {
  ConnectedBus bus(SomeQuotes());
  Listener listener(bus, 50);
  listener.role->OnParameter = [](const QString&, TDMessage&) { throw Error(ErrorCategory::Refused, "市场类型为空"); };
  EXPECT_THROW(listener.role->Send(QStringLiteral("0|600000")), Error);
  EXPECT_FALSE(bus.IsTicking());
  QTest::qWait(150);
  EXPECT_TRUE(listener.heard.isEmpty());  // no answer and no time-out either
}

TEST(DataDownRoleTest, CancellingIsNotAnswered) {
  ConnectedBus bus(SomeQuotes());
  Listener listener(bus, 100);
  listener.role->Send(QStringLiteral("0|01600000"));
  ASSERT_TRUE(listener.Hears(1));
  EXPECT_TRUE(bus.IsTicking());
  listener.role->Send(QStringLiteral("1|01600000"));
  EXPECT_FALSE(bus.IsTicking());
  QTest::qWait(300);
  EXPECT_EQ(listener.heard.size(), 1);
}

TEST(DataDownRoleTest, ReplyUnderWayOfACancelledSubscriptionIsDropped) {
  ConnectedBus bus(SomeQuotes());
  Listener listener(bus);
  listener.role->Send(QStringLiteral("0|01600000"));
  listener.role->Send(QStringLiteral("1|01600000"));
  QTest::qWait(100);
  EXPECT_TRUE(listener.heard.isEmpty());
}

TEST(DataDownRoleTest, RenewalGivesTheNewList) {
  ConnectedBus bus(SomeQuotes());
  Listener listener(bus);
  listener.role->Send(QStringLiteral("0|01600000"));
  listener.role->Send(QStringLiteral("1|01600000"));
  listener.role->Send(QStringLiteral("0|02000001"));
  ASSERT_TRUE(listener.Hears(1));
  QTest::qWait(50);
  EXPECT_EQ(listener.heard, QStringList{QStringLiteral("000001=11.23")});
}

TEST(DataDownRoleTest, MalformedRequestIsAnsweredWithAnError) {
  ConnectedBus bus(SomeQuotes());
  Listener listener(bus);
  listener.role->OnParameter = [](const QString&, TDMessage& request) {
    request.fields.Set("CommandType", std::uint32_t{0});
  };
  listener.role->Send(QStringLiteral("0|"));
  ASSERT_TRUE(listener.Hears(1));
  EXPECT_EQ(listener.heard[0], QStringLiteral("error 1"));
  EXPECT_FALSE(bus.IsTicking());
}

TEST(DataDownRoleTest, SilenceEndsInOneTimeOut) {
  SilentBus bus;
  Listener listener(bus, 60);
  QElapsedTimer timer;
  timer.start();
  listener.role->Send(QStringLiteral("0|01600000"));
  ASSERT_TRUE(listener.Hears(1));
  EXPECT_GE(timer.elapsed(), 60);
  QTest::qWait(150);
  EXPECT_EQ(listener.heard, QStringList{QStringLiteral("timed out")});
  bus.receiver(1, Answer("600000", 815));  // late, but the subscription is in force
  EXPECT_EQ(listener.heard.last(), QStringLiteral("600000=8.15"));
}

TEST(DataDownRoleTest, AnsweredAndCancelledRequestsDoNotTimeOut) {
  SilentBus bus;
  Listener listener(bus, 60);
  listener.role->Send(QStringLiteral("0|01600000"));
  bus.receiver(1, Answer("600000", 815));
  QTest::qWait(150);
  EXPECT_EQ(listener.heard, QStringList{QStringLiteral("600000=8.15")});
  listener.role->Send(QStringLiteral("0|01600000"));
  listener.role->Send(QStringLiteral("1|01600000"));
  QTest::qWait(150);
  EXPECT_EQ(listener.heard.size(), 1);
  bus.receiver(2, Answer("600000", 816));  // of the cancelled one
  EXPECT_EQ(listener.heard.size(), 1);
}

TEST(DataDownRoleTest, EachRequestTimesOutByItself) {
  SilentBus bus;
  Listener listener(bus, 80);
  listener.role->Send(QStringLiteral("0|01600000"));
  QTest::qWait(30);
  listener.role->Send(QStringLiteral("0|02000001"));
  bus.receiver(2, Answer("000001", 1123));
  ASSERT_TRUE(listener.Hears(2));
  EXPECT_EQ(listener.heard, (QStringList{QStringLiteral("000001=11.23"), QStringLiteral("timed out")}));
}

TEST(DataDownRoleTest, ComesBackAfterABreak) {
  SilentBus bus;
  Listener listener(bus, 60);
  Q_EMIT bus.ConnectionStateChanged(MessageBus::State::Connected);
  EXPECT_TRUE(bus.requests.empty());  // nothing to renew
  listener.role->Send(QStringLiteral("0|01600000"));
  Q_EMIT bus.ConnectionStateChanged(MessageBus::State::Disconnected);
  EXPECT_EQ(bus.requests.size(), 1U);
  Q_EMIT bus.ConnectionStateChanged(MessageBus::State::Connected);
  ASSERT_EQ(bus.requests.size(), 2U);
  EXPECT_EQ(bus.requests[1].fields.Sequence("L1_SECUCODESEQ")->front().Text("CodeNum")->toStdString(), "600000");
  bus.receiver(2, Answer("600000", 815));
  QTest::qWait(150);
  EXPECT_EQ(listener.heard, QStringList{QStringLiteral("600000=8.15")});  // and no time-out of the lost request
  listener.role->Send(QStringLiteral("1|01600000"));
  Q_EMIT bus.ConnectionStateChanged(MessageBus::State::Connected);
  EXPECT_EQ(bus.requests.size(), 3U);  // nothing in force any more
}

TEST(DataDownRoleTest, NoEventAfterDestruction) {
  ConnectedBus bus(SomeQuotes());
  Listener listener(bus);
  listener.role->Send(QStringLiteral("0|01600000"));
  listener.role.reset();
  EXPECT_FALSE(bus.IsTicking());  // the subscription went with it
  QTest::qWait(100);
  EXPECT_TRUE(listener.heard.isEmpty());
  SilentBus silent;
  Listener other(silent, 30);
  other.role->Send(QStringLiteral("0|01600000"));
  other.role.reset();
  EXPECT_EQ(silent.detached, std::vector<MessageBus::SubscriberId>{7});
  QTest::qWait(100);
  EXPECT_TRUE(other.heard.isEmpty());
}

TEST(DataDownRoleTest, MayBeDestroyedInsideItsEvents) {
  ConnectedBus bus(SomeQuotes());
  Listener listener(bus);
  int calls = 0;
  listener.role->OnEndOfData = [&](const TDReply&) {
    ++calls;
    listener.role.reset();
  };
  listener.role->Send(QStringLiteral("0|01600000"));
  listener.role->Send(QStringLiteral("0|02000001"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return calls > 0; }, 3000));
  SilentBus silent;
  Listener other(silent, 30);
  other.role->OnEndOfData = [&](const TDReply& reply) {
    EXPECT_TRUE(reply.timedOut);
    ++calls;
    other.role.reset();
  };
  other.role->Send(QStringLiteral("0|01600000"));
  other.role->Send(QStringLiteral("0|01600000"));
  QTest::qWait(200);
  EXPECT_EQ(calls, 2);
}

TEST(DataDownRoleTest, OutlivesItsBus) {
  auto bus = std::make_unique<SilentBus>();
  Listener listener(*bus, 30);
  bus.reset();
  listener.role->Send(QStringLiteral("0|01600000"));
  QTest::qWait(80);
  EXPECT_TRUE(listener.heard.isEmpty());
}

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
  EXPECT_TRUE(bus.IsTicking());
  two.role.reset();
  EXPECT_FALSE(bus.IsTicking());
}

TEST(InProcessBusTest, PushesChangesAtMostOnceASecond) {
  std::vector<Quote> quotes = SomeQuotes();
  for (int i = 0; i < 200; ++i) quotes.push_back(MakeQuote(1601000 + i, 5000 + i, 5000 + i));
  ConnectedBus bus(quotes, 42);
  Listener listener(bus);
  QStringList codes;
  for (int i = 0; i < 200; ++i) codes += QStringLiteral("01601%1").arg(i, 3, 10, QLatin1Char('0'));
  QElapsedTimer timer;
  timer.start();
  listener.role->Send(QStringLiteral("0|") + codes.join(QLatin1Char(',')));
  ASSERT_TRUE(listener.Hears(3, 6000));  // the answer and two pushes
  EXPECT_GE(timer.elapsed(), 1500);      // the timer may be up to a twentieth early
  EXPECT_NE(listener.heard[0], listener.heard[1]);
  EXPECT_NE(listener.heard[1], listener.heard[2]);
  EXPECT_EQ(listener.heard[2].count(QLatin1Char('=')), 200);  // always the full list
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
  EXPECT_TRUE(bus.IsTicking());
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
  EXPECT_FALSE(bus.IsTicking());
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

TEST(InProcessBusTest, UnknownSubscribersAreIgnored) {
  ConnectedBus bus(SomeQuotes());
  TDMessage message{Profile(), {}};
  FillRequest(QStringLiteral("0|01600000"), message);
  EXPECT_GT(bus.Request(99, message), 0U);
  bus.Detach(99);
  EXPECT_FALSE(bus.IsTicking());
}

class EmbeddedMarketTest : public MarketDataTest {
 protected:
  void Start(bool simulated) {
    folder_.WriteMarket(20240529, simulated);
    Load();
    market_ = std::make_unique<EmbeddedMarket>(data_, log_);
    market_->ServeQuotes();
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

TEST_F(EmbeddedMarketTest, SpoiledFileChangesNothing) {
  Start(false);
  Listener listener(market_->Bus());
  listener.role->Send(QStringLiteral("0|01600000"));
  ASSERT_TRUE(listener.Hears(1));
  folder_.WriteBytes(QStringLiteral("quotes.dat"), "rubbish");
  ASSERT_TRUE(QTest::qWaitFor([&] { return !log_.Lines().empty(); }, 3000));
  QTest::qWait(50);
  EXPECT_EQ(listener.heard.size(), 1);
  EXPECT_EQ(data_.StockNowData(1600000).currentPrice, 8.15);
}

TEST_F(EmbeddedMarketTest, SimulatedPricesReachTheDataCentre) {
  Start(true);
  Listener listener(market_->Bus());
  listener.role->Send(QStringLiteral("0|01600000,01600036,02000001,02000002,02300750"));
  ASSERT_TRUE(listener.Hears(1));
  ASSERT_TRUE(QTest::qWaitFor([&] { return data_.StockNowData(1300750).currentPrice != 199.88; }, 15000));
  ASSERT_FALSE(market_->Bus().Quotes().empty());
  for (const Quote& quote : market_->Bus().Quotes()) {
    const NowData now =
        IsIndexNumber(quote.codeNumber) ? data_.IndexNowData(quote.codeNumber) : data_.StockNowData(quote.codeNumber);
    EXPECT_EQ(now.currentPrice, quote.price.ToDouble()) << quote.codeNumber;
    EXPECT_EQ(now.previousClose, quote.previousClose.ToDouble()) << quote.codeNumber;
  }
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
