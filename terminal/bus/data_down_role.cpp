// SPDX-License-Identifier: MIT
#include "bus/data_down_role.h"

#include <QDeadlineTimer>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

namespace holdwise {
namespace {

constexpr char kCommandType[] = "CommandType";
constexpr std::uint32_t kCancel = 1;

bool Cancels(const TDMessage& message) {
  const std::uint32_t* command = message.fields.Uint32(kCommandType);
  return command != nullptr && *command == kCancel;
}

}  // namespace

/// The part of the role that hears the bus and the clock.
class DataDownRole::Engine final : public QObject {
 public:
  Engine(MessageBus& bus, DataDownRole& role, RequestListener onRequest)
      : role_(role), bus_(&bus), onRequest_(std::move(onRequest)) {
    subscriber_ =
        bus.Attach([this](MessageBus::RequestId request, const TDMessage& message) { Hear(request, message); });
    deadline_.setSingleShot(true);
    connect(&deadline_, &QTimer::timeout, this, &Engine::ReportTimeOuts);
    connect(&bus, &MessageBus::ConnectionStateChanged, this, &Engine::Reconnected);
  }
  ~Engine() override {
    if (bus_) bus_->Detach(subscriber_);
  }

  void SetComponentName(const QString& name) { setObjectName(name); }
  void SetProfile(const TDRequestProfile& profile) { profile_ = profile; }

  void Send(const QString& command) {
    TDMessage message{profile_, {}};
    if (role_.OnParameter) role_.OnParameter(command, message);
    if (!bus_) return;
    if (onRequest_) onRequest_(message);
    if (Cancels(message)) {
      current_.reset();
      waiting_.clear();
      bus_->Request(subscriber_, message);
      SetDeadline();
    } else {
      Subscribe(std::move(message));
    }
  }

 private:
  struct Waiting {
    MessageBus::RequestId request = 0;
    QDeadlineTimer deadline;
  };
  struct Subscription {
    MessageBus::RequestId request = 0;
    TDMessage message;
  };

  void Subscribe(TDMessage message) {
    const MessageBus::RequestId request = bus_->Request(subscriber_, message);
    waiting_.push_back({request, QDeadlineTimer(std::max(0, message.profile.timeOutMilliseconds))});
    current_ = Subscription{request, std::move(message)};
    SetDeadline();
  }

  void Hear(MessageBus::RequestId request, const TDMessage& message) {
    const auto answered = std::find_if(waiting_.begin(), waiting_.end(),
                                       [request](const Waiting& waiting) { return waiting.request == request; });
    const bool isCurrent = current_ && current_->request == request;
    if (answered == waiting_.end() && !isCurrent) return;  // of a subscription that is no longer in force
    if (answered != waiting_.end()) {
      waiting_.erase(answered);
      SetDeadline();
    }
    Report({false, message});
  }

  void ReportTimeOuts() {
    std::size_t expired = 0;
    std::erase_if(waiting_, [&expired](const Waiting& waiting) {
      if (!waiting.deadline.hasExpired()) return false;
      ++expired;
      return true;
    });
    SetDeadline();
    const QPointer<Engine> alive(this);
    for (; expired > 0 && alive; --expired) Report({true, {}});
  }

  void SetDeadline() {
    if (waiting_.empty()) {
      deadline_.stop();
      return;
    }
    const auto next = std::min_element(waiting_.begin(), waiting_.end(), [](const Waiting& a, const Waiting& b) {
      return a.deadline.deadline() < b.deadline.deadline();
    });
    const qint64 remaining = std::min<qint64>(next->deadline.remainingTime(), std::numeric_limits<int>::max());
    deadline_.start(static_cast<int>(remaining));
  }

  void Reconnected(MessageBus::State state) {
    if (state != MessageBus::State::Connected || !current_) return;
    waiting_.clear();
    Subscribe(std::move(current_->message));
  }

  /// The event may destroy the role: nothing of it is touched afterwards.
  void Report(const TDReply& reply) const {
    const auto event = role_.OnEndOfData;
    if (event) event(reply);
  }

  DataDownRole& role_;
  QPointer<MessageBus> bus_;
  RequestListener onRequest_;
  MessageBus::SubscriberId subscriber_ = 0;
  TDRequestProfile profile_;
  std::vector<Waiting> waiting_;
  std::optional<Subscription> current_;
  QTimer deadline_;
};

DataDownRole::DataDownRole(MessageBus& bus, RequestListener onRequest)
    : engine_(std::make_unique<Engine>(bus, *this, std::move(onRequest))) {}
DataDownRole::~DataDownRole() = default;
void DataDownRole::SetComponentName(const QString& name) {
  engine_->SetComponentName(name);
}
void DataDownRole::SetProfile(const TDRequestProfile& profile) {
  engine_->SetProfile(profile);
}
void DataDownRole::Send(const QString& command) {
  engine_->Send(command);
}

}  // namespace holdwise
