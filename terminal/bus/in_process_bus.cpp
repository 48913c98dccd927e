// SPDX-License-Identifier: MIT
#include "in_process_bus.h"

#include <utility>

namespace holdwise {
namespace {

constexpr int kTickMilliseconds = 1000;
constexpr char kCommandType[] = "CommandType";
constexpr std::uint32_t kSubscribe = 0;

bool Subscribes(const TDMessage& message) {
  const std::uint32_t* command = message.fields.Uint32(kCommandType);
  return command != nullptr && *command == kSubscribe;
}

bool IsAccepted(const TDMessage& reply) {
  const std::uint32_t* code = reply.fields.Uint32("ErrCode");
  return code != nullptr && *code == 0;
}

}  // namespace

InProcessBus::InProcessBus(std::optional<std::uint64_t> simulationSeed, double simulationSpeed)
    : seed_(simulationSeed), speed_(simulationSpeed) {
  timer_.setInterval(kTickMilliseconds);
  connect(&timer_, &QTimer::timeout, this, &InProcessBus::Tick);
}

InProcessBus::~InProcessBus() = default;

MessageBus::SubscriberId InProcessBus::Attach(Receiver receiver) {
  subscribers_[++lastSubscriber_].receiver = std::move(receiver);
  return lastSubscriber_;
}

void InProcessBus::Detach(SubscriberId subscriber) {
  if (subscribers_.erase(subscriber) == 0 || !service_) return;
  service_->Drop(subscriber);
  StartOrStopTimer();
}

MessageBus::RequestId InProcessBus::Request(SubscriberId subscriber, const TDMessage& message) {
  const RequestId request = ++lastRequest_;
  const auto found = subscribers_.find(subscriber);
  if (found == subscribers_.end() || !service_) return request;
  TDMessage reply = service_->Handle(subscriber, message);
  if (!IsAccepted(reply)) {
    Deliver(subscriber, request, std::move(reply));
  } else if (Subscribes(message)) {
    found->second.subscription = Subscription{request, message};
    Deliver(subscriber, request, std::move(reply));
  } else {
    found->second.subscription.reset();
  }
  StartOrStopTimer();
  return request;
}

void InProcessBus::SetQuotes(std::vector<Quote> quotes, const std::optional<LiveSimulation::State>& simulation) {
  auto service = std::make_unique<QuoteService>(std::move(quotes));
  const bool isFirst = std::exchange(service_, std::move(service)) == nullptr;
  if (seed_) simulation_ = std::make_unique<LiveSimulation>(*service_, *seed_, speed_);
  if (simulation_ && simulation) (void)simulation_->GoOnFrom(*simulation);
  for (const auto& [id, subscriber] : subscribers_) {
    if (!subscriber.subscription) continue;
    Deliver(id, subscriber.subscription->request, service_->Handle(id, subscriber.subscription->message));
  }
  if (isFirst) Q_EMIT ConnectionStateChanged(State::Connected);
}

void InProcessBus::Deliver(SubscriberId subscriber, RequestId request, TDMessage message) {
  QMetaObject::invokeMethod(
      this,
      [this, subscriber, request, message = std::move(message)] {
        const auto found = subscribers_.find(subscriber);
        if (found == subscribers_.end()) return;
        const Receiver receiver = found->second.receiver;  // the call may detach its own subscriber
        receiver(request, message);
      },
      Qt::QueuedConnection);
}

void InProcessBus::Tick() {
  if (simulation_) {
    simulation_->Step();
    Q_EMIT PricesMoved();
  }
  ticked_ += kTickMilliseconds;
  for (QuoteService::Push& push : service_->CollectPushes(ticked_)) {
    const auto found = subscribers_.find(push.subscriber);
    if (found == subscribers_.end() || !found->second.subscription) continue;
    Deliver(push.subscriber, found->second.subscription->request, std::move(push.message));
  }
}

void InProcessBus::StartOrStopTimer() {
  if (service_->SubscriptionCount() == 0) {
    timer_.stop();
  } else if (!timer_.isActive()) {
    timer_.start();
  }
}

}  // namespace holdwise
