// SPDX-License-Identifier: MIT
#pragma once
#include <functional>
#include <memory>

#include "bus/message_bus.h"
#include "holdwise/sdk/bus.h"

namespace holdwise {

/// The request/response role over a message bus. Events come on the user-interface thread. A request that is not a
/// cancellation and stays without an answer for the profile's time-out ends in one reply with `timedOut`; an answer
/// that comes later is still delivered while its subscription is in force. When the bus comes back after a break, the
/// subscription in force is sent again. The destructor cancels the subscription.
class DataDownRole final : public TDSBAsynDataDownRole {
 public:
  /// Told of every request as it is sent.
  using RequestListener = std::function<void(const TDMessage& request)>;
  /// `bus` must outlive the role.
  explicit DataDownRole(MessageBus& bus, RequestListener onRequest = {});
  ~DataDownRole() override;

  void SetComponentName(const QString& name) override;
  void SetProfile(const TDRequestProfile& profile) override;
  void Send(const QString& command) override;

 private:
  class Engine;
  std::unique_ptr<Engine> engine_;
};

}  // namespace holdwise
