// SPDX-License-Identifier: MIT
#pragma once
#include <QTest>
#include <optional>

#include "bus/data_down_role.h"
#include "bus/in_process_bus.h"

namespace holdwise {

inline TDRequestProfile Profile(int timeOutMilliseconds = 20000) {
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
inline void FillRequest(const QString& command, TDMessage& request) {
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
inline QString Prices(const TDMessage& reply) {
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
  bool Hears(int count) const {
    return QTest::qWaitFor([&] { return heard.size() >= count; }, 30000);
  }
  std::unique_ptr<DataDownRole> role;
  QStringList heard;
};

inline Quote MakeQuote(int codeNumber, std::int64_t cents, std::int64_t previousCents) {
  return {codeNumber, {cents, 2}, {previousCents, 2}};
}

inline std::vector<Quote> SomeQuotes() {
  return {MakeQuote(1, 311102, 310957), MakeQuote(1600000, 815, 820), MakeQuote(1000001, 1123, 1105)};
}

/// A bus with quotes from the start.
struct ConnectedBus : InProcessBus {
  explicit ConnectedBus(std::vector<Quote> quotes, std::optional<std::uint64_t> simulationSeed = std::nullopt)
      : InProcessBus(simulationSeed) {
    SetQuotes(std::move(quotes));
  }
};

}  // namespace holdwise
