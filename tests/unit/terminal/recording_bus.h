// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include <QStringList>
#include <optional>
#include <utility>
#include <vector>

#include "bus/message_bus.h"

namespace holdwise {

/// A bus whose service can be spoken to.
class RecordingBus : public MessageBus {
 public:
  SubscriberId Attach(Receiver receiver) override {
    receivers_.push_back(std::move(receiver));
    return receivers_.size();
  }
  void Detach(SubscriberId subscriber) override { receivers_[subscriber - 1] = {}; }
  RequestId Request(SubscriberId subscriber, const TDMessage& message) override {
    requests.emplace_back(subscriber, message);
    return requests.size();
  }
  [[nodiscard]] State ConnectionState() const override { return State::Connected; }

  /// Answers the last request of the group that asks for these six digits.
  void Answer(const QString& digits, const TDFieldSet& entry, std::optional<std::uint32_t> time) {
    for (std::size_t place = requests.size(); place-- > 0;) {
      const auto& [subscriber, request] = requests[place];
      if (!DigitsOf(request).contains(digits)) continue;
      TDMessage reply;
      reply.fields.Set("ErrCode", std::uint32_t{0});
      if (time) reply.fields.Set("MarketTime", *time);
      TDFieldSet whole = entry;
      whole.Set("CodeNum", digits);
      reply.fields.Set("CURRENT_PRICET_LIST", std::make_shared<const std::vector<TDFieldSet>>(1, whole));
      receivers_[subscriber - 1](place + 1, reply);
      return;
    }
    ADD_FAILURE() << digits.toStdString() << " was not asked for";
  }
  [[nodiscard]] static QStringList DigitsOf(const TDMessage& request) {
    QStringList digits;
    for (const TDFieldSet& security : *request.fields.Sequence("L1_SECUCODESEQ")) digits += *security.Text("CodeNum");
    return digits;
  }
  std::vector<std::pair<SubscriberId, TDMessage>> requests;

 private:
  std::vector<Receiver> receivers_;
};

inline TDFieldSet PriceOf(std::int64_t hundredths) {
  TDFieldSet entry;
  entry.Set("Price", Decimal{hundredths, 2});
  return entry;
}

}  // namespace holdwise
