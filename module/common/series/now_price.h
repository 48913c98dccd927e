// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <atomic>
#include <memory>

#include "common/helpers/name_value_list.h"
#include "common/series/holding_rows.h"
#include "holdwise/packet/thread_annotations.h"
#include "holdwise/sdk/bus.h"

namespace holdwise {

/// Current price of every held security and current value of every portfolio, from a subscription on the bus.
/// User-interface thread; replies may be applied on a bus thread. A reply builds new lists and swaps them in whole, so
/// a reader sees the lists before or after it, never between.
class TNowPrice {
 public:
  /// Makes and configures the request role; asks for nothing yet. Needs the module's host.
  TNowPrice();
  TNowPrice(const TNowPrice&) = delete;
  TNowPrice& operator=(const TNowPrice&) = delete;

  /// True: clears the data-ready flag and (re)subscribes to every held security, cancelling the subscription in force.
  /// With nothing held no request is sent and the data is ready at once. When the request cannot be made (database,
  /// "市场类型为空") the error reaches the caller and the data-ready flag is as before, because no reply will come.
  void SetIsGetNowPrice(bool flag);
  void ReGetNowPrice() { SetIsGetNowPrice(true); }

  /// Names: six-digit codes; values: price in yuan, two decimals. Subscribes first when that was never asked for.
  TNameValueSnapshot GetNowPriceStringList();
  /// Names: portfolio ids; values: sum of price x quantity in yuan, shortest decimal text. Subscribes like the above.
  TNameValueSnapshot GetNowValueGroupStringList();

  /// The holdings that had no price at the last reply: they count 0 in the values. Empty before the first reply.
  [[nodiscard]] TMissingCodes HoldingsWithoutPrice() const;

  /// No effect; kept for its callers.
  void SetHqDataIsActive(bool active);

  /// Has the last request been answered (also by an error or a time-out), or was nothing to ask?
  [[nodiscard]] bool IsDataReady() const noexcept { return isDataReady_; }
  void SetDataReady(bool ready) noexcept { isDataReady_ = ready; }
  /// Have prices been applied (or was nothing to ask) since the list of securities asked for last changed? Renewing the
  /// same subscription keeps the answer.
  [[nodiscard]] bool HasPrices() const noexcept { return hasPrices_; }
  /// Security list of the subscription in force; empty when none.
  [[nodiscard]] const QString& SubscriptionString() const noexcept { return subscription_; }
  /// Cancels the subscription in force, if any.
  void CancelSubscription();

 private:
  void Subscribe();
  void ApplyReply(const TDReply& reply);
  void SubscribeUnlessAsked();

  bool isGet_ = false;
  std::atomic<bool> isDataReady_ = false;
  std::atomic<bool> hasPrices_ = false;
  QString subscription_;
  Mutex replyLock_;     ///< one reply at a time
  mutable Mutex lock_;  ///< never held during a query
  TNameValueSnapshot prices_ HOLDWISE_GUARDED_BY(lock_);
  TNameValueSnapshot values_ HOLDWISE_GUARDED_BY(lock_);
  TMissingCodes withoutPrice_ HOLDWISE_GUARDED_BY(lock_);
  std::unique_ptr<TDSBAsynDataDownRole> role_;  ///< last member: it goes first, and with it the replies
};

}  // namespace holdwise
