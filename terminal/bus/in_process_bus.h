// SPDX-License-Identifier: MIT
#pragma once
#include <QTimer>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "bus/message_bus.h"
#include "holdwise/market/live_simulation.h"
#include "holdwise/market/quote_service.h"

namespace holdwise {

/// The bus of one machine: requests are served by a quote service in the same process, replies come through the event
/// loop. While something is subscribed a timer looks once a second for prices to push; with a simulated market the same
/// timer moves them. Connected from the first quotes on.
class InProcessBus : public MessageBus {
  Q_OBJECT

 public:
  /// `simulationSeed`: moves the prices when given, by `simulationSpeed` seconds of trading a second.
  explicit InProcessBus(std::optional<std::uint64_t> simulationSeed = std::nullopt, double simulationSpeed = 1);
  ~InProcessBus() override;

  [[nodiscard]] SubscriberId Attach(Receiver receiver) override;
  void Detach(SubscriberId subscriber) override;
  RequestId Request(SubscriberId subscriber, const TDMessage& message) override;
  [[nodiscard]] State ConnectionState() const override { return service_ ? State::Connected : State::Disconnected; }

  /// Puts other quotes in place (a new snapshot); every subscription in force is answered again. The first quotes
  /// connect the bus. A simulation begins with them, or goes on from `simulation` before anybody is answered. Quotes
  /// that the service refuses change nothing: Error(Refused).
  void SetQuotes(std::vector<Quote> quotes, const std::optional<LiveSimulation::State>& simulation = std::nullopt);
  /// Quotes with their current prices. Connected only.
  [[nodiscard]] const std::vector<Quote>& Quotes() const { return service_->Quotes(); }
  /// The simulation that moves them; null without one, and before the bus is connected. The next SetQuotes ends it.
  [[nodiscard]] const LiveSimulation* Simulation() const { return simulation_.get(); }

 Q_SIGNALS:
  /// The simulated market has made a step.
  void PricesMoved();

 private:
  struct Subscription {
    RequestId request = 0;
    TDMessage message;
  };
  struct Subscriber {
    Receiver receiver;
    std::optional<Subscription> subscription;
  };

  void Deliver(SubscriberId subscriber, RequestId request, TDMessage message);
  void Tick();
  void StartOrStopTimer();

  std::unique_ptr<QuoteService> service_;  // null: not connected
  std::unique_ptr<LiveSimulation> simulation_;
  std::optional<std::uint64_t> seed_;
  double speed_;
  std::map<SubscriberId, Subscriber> subscribers_;
  SubscriberId lastSubscriber_ = 0;
  RequestId lastRequest_ = 0;
  std::int64_t ticked_ = 0;  // milliseconds by the timer's own count: no tick comes early by it
  QTimer timer_;
};

}  // namespace holdwise
