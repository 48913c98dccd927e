// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <functional>

#include "holdwise/packet/message.h"

namespace holdwise {

/// Result of one request: the reply, or why there is none.
struct TDReply {
  bool timedOut = false;  ///< no answer within the profile's time-out; `message` is empty
  TDMessage message;
};

/// Request/response role on the message bus "DSB". Made by the host, owned by the caller. Configure it before the first
/// Send. Its functions are called on the user-interface thread. The events may be replaced between calls; an empty one
/// is passed over. A role may be destroyed inside its own OnEndOfData; after its destructor has returned no event
/// comes.
///
/// A subscription ("0|" + list) is answered at once with the full list and again whenever a price changes, at most once
/// a second, until cancelled ("1|" + list) or replaced. A reply holds prices only; TDataCenter has the previous closes.
class TDSBAsynDataDownRole {
 public:
  virtual ~TDSBAsynDataDownRole() = default;

  /// A name for the host's own logs and tools; may be empty.
  virtual void SetComponentName(const QString& name) = 0;
  /// Addressing and time-out of all requests from now on; the role keeps a copy. A time-out of 0 ms or less expires at
  /// once.
  virtual void SetProfile(const TDRequestProfile& profile) = 0;
  /// Builds the request from a command string; runs inside Send on the caller's thread. What it throws ends Send and
  /// reaches the caller; nothing is sent.
  std::function<void(const QString& command, TDMessage& request)> OnParameter;
  /// A reply has arrived. May run on a thread of the bus; never inside Send.
  std::function<void(const TDReply& reply)> OnEndOfData;

  /// Has OnParameter make a request of `command` (its words are the role's user's own; may be empty) and sends it;
  /// without OnParameter the request has no fields. Returns at once. The answer is the reply or, after the profile's
  /// time-out, a TDReply with timedOut; a subscription's further replies follow. A cancellation ("CommandType" 1) has
  /// no answer, and nothing comes any more for what was sent before it. While the bus is not connected a request times
  /// out; with each new connection the last one is sent again. Throws what OnParameter throws, nothing else.
  virtual void Send(const QString& command) = 0;
};

}  // namespace holdwise
