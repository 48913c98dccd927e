// SPDX-License-Identifier: MIT
#pragma once
#include <QStringList>
#include <memory>

#include "common/helpers/name_value_list.h"
#include "holdwise/packet/thread_annotations.h"
#include "holdwise/sdk/bus.h"

namespace holdwise {

/// Current or day-close prices of securities a view asks for. User-interface thread; replies may be applied on a bus
/// thread and swap in a whole new list.
class TStockClosePrice {
 public:
  /// Makes and configures the request role. Needs the module's host.
  TStockClosePrice();
  TStockClosePrice(const TStockClosePrice&) = delete;
  TStockClosePrice& operator=(const TStockClosePrice&) = delete;

  /// The data centre's is-open state as it is; despite the name there is no negation.
  [[nodiscard]] bool IsBeforeOpenMaket() const;

  /// Fetches prices of the listed codes (code numbers or six digits). First removes from `codes` what is known already:
  /// for each index of the own list, in ascending order, the entry of `codes` at that index if the own list has it. The
  /// index is not adjusted after a removal, and an own list longer than `codes` ends in a list-index error,
  /// Error(Refused); both are intended. What remains is subscribed to while the market is open (prices come with the
  /// reply) and otherwise taken from the data centre at once.
  void GetDayClosePriceStrList(QStringList& codes);

  /// Drops what was fetched: the data behind it have been replaced.
  void Forget();

  /// The prices fetched so far. Names: codes (six digits when they came by the bus, else as they were asked for);
  /// values: yuan, two decimals.
  [[nodiscard]] TNameValueSnapshot Prices() const;

 private:
  void ApplyReply(const TDReply& reply);
  void RemoveKnown(QStringList& codes) const;
  void TakeFromDataCenter(const QStringList& codes);

  mutable Mutex lock_;  ///< held for a whole replacement: the next one builds on it
  TNameValueSnapshot prices_ HOLDWISE_GUARDED_BY(lock_);
  std::unique_ptr<TDSBAsynDataDownRole> role_;  ///< last member: it goes first, and with it the replies
};

}  // namespace holdwise
