// SPDX-License-Identifier: MIT
#include "bus/data_down_role.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QPointer>

#include "bus_listener.h"

namespace holdwise {
namespace {

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
  bus.SetQuotes({MakeQuote(1600000, 901, 815)});
  QTest::qWait(150);
  EXPECT_TRUE(listener.heard.isEmpty());  // no answer and no time-out either
}

TEST(DataDownRoleTest, CancellingIsNotAnswered) {
  ConnectedBus bus(SomeQuotes());
  Listener listener(bus, 100);
  listener.role->Send(QStringLiteral("0|01600000"));
  ASSERT_TRUE(listener.Hears(1));
  listener.role->Send(QStringLiteral("1|01600000"));
  bus.SetQuotes({MakeQuote(1600000, 901, 815)});
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
  bus.SetQuotes({MakeQuote(1600000, 901, 815)});
  QTest::qWait(100);
  EXPECT_EQ(listener.heard.size(), 1) << "nothing is subscribed";
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
  bus.SetQuotes({MakeQuote(1600000, 901, 815)});  // the subscription went with it
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
  ASSERT_TRUE(QTest::qWaitFor([&] { return calls > 0; }, 30000));
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

}  // namespace
}  // namespace holdwise
