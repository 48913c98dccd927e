// SPDX-License-Identifier: MIT
#pragma once
#include <QObject>
#include <cstdint>
#include <functional>

#include "holdwise/packet/message.h"

namespace holdwise {

/// The message bus as the host's roles see it: requests go out, replies and pushes come in later. User-interface
/// thread; an implementation brings what it hears on other threads over to it.
class MessageBus : public QObject {
  Q_OBJECT

 public:
  enum class State { Disconnected, Connected };
  using SubscriberId = std::uint64_t;  ///< never 0
  using RequestId = std::uint64_t;     ///< never 0, grows
  /// `request` names the request that the message answers; pushes carry the id of the subscription they belong to.
  using Receiver = std::function<void(RequestId request, const TDMessage& message)>;

  using QObject::QObject;

  /// Registers a receiver. It is called from the event loop, never inside a call of the bus.
  [[nodiscard]] virtual SubscriberId Attach(Receiver receiver) = 0;
  /// Cancels the subscriber's subscription and forgets it; its receiver is not called again. An unknown id is ignored.
  virtual void Detach(SubscriberId subscriber) = 0;
  /// Sends a request and returns its id. While disconnected the request is dropped, never kept for later; the caller
  /// learns it from its time-out. A request that cancels is not answered.
  virtual RequestId Request(SubscriberId subscriber, const TDMessage& message) = 0;
  [[nodiscard]] virtual State ConnectionState() const = 0;

 Q_SIGNALS:
  void ConnectionStateChanged(holdwise::MessageBus::State state);
};

}  // namespace holdwise
