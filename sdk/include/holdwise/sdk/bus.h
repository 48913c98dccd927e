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
/// Send. After its destructor has returned no event comes.
///
/// A subscription ("0|" + list) is answered at once with the full list and again whenever a price changes, at most once
/// a second, until cancelled ("1|" + list) or replaced. A reply holds prices only; TDataCenter has the previous closes.
class TDSBAsynDataDownRole {
 public:
  virtual ~TDSBAsynDataDownRole() = default;

  virtual void SetComponentName(const QString& name) = 0;
  virtual void SetProfile(const TDRequestProfile& profile) = 0;
  /// Builds the request from a command string; runs inside Send on the caller's thread. What it throws ends Send and
  /// reaches the caller; nothing is sent.
  std::function<void(const QString& command, TDMessage& request)> OnParameter;
  /// A reply has arrived. May run on a thread of the bus; never inside Send.
  std::function<void(const TDReply& reply)> OnEndOfData;

  virtual void Send(const QString& command) = 0;
};

}  // namespace holdwise
