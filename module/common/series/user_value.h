// SPDX-License-Identifier: MIT
#pragma once
#include "common/helpers/name_value_list.h"
#include "common/series/holding_rows.h"
#include "holdwise/packet/thread_annotations.h"

namespace holdwise {

/// Cost of every portfolio, previous close of every held security, value of every portfolio at those previous closes.
/// Any thread: a bus reply may need the previous closes. What a failing query throws reaches the caller, and the next
/// reader tries again. Lists are added to, never emptied: names that are no longer present keep their values. At most
/// one object exists at a time.
class TUserValue {
 public:
  TUserValue();
  ~TUserValue();
  TUserValue(const TUserValue&) = delete;
  TUserValue& operator=(const TUserValue&) = delete;

  /// Names: portfolio ids; values: sum of quantity x buy price, yuan, as the database gives it as text. A portfolio
  /// without holdings has no line. Read from the database on first use.
  TNameValueSnapshot GetUserValuesStringList();
  /// Names: six-digit codes; values: previous close in yuan, "0.00". Read on first use, like the next.
  TNameValueSnapshot GetUserPrvCloseValues();
  /// Names: portfolio ids; values: sum of quantity x previous close, yuan, shortest decimal text.
  /// A holding without a previous close counts 0: the sum of a portfolio that HoldingsWithoutPreviousClose names is
  /// none to compare with.
  TNameValueSnapshot GetUserValuesPrvCloseValues();
  /// The holdings as of the last reading that have no previous close (first trading day, unknown security).
  [[nodiscard]] TMissingCodes HoldingsWithoutPreviousClose();

  /// True: reads the costs (previous closes and values) again now.
  void SetIsGetUserValue_Sum(bool flag);
  void SetIsGetUserCloseValue(bool flag);
  void ReGetUserValue_Sum() { SetIsGetUserValue_Sum(true); }
  void ReGetUserCloseValue() { SetIsGetUserCloseValue(true); }
  /// True: reads everything again at once, unlike TClosePrice, which waits for the next reader.
  void SetIsNeedUpdate(bool flag);

 private:
  void ReadSums() HOLDWISE_REQUIRES(lock_);
  void ReadPreviousCloses() HOLDWISE_REQUIRES(lock_);

  Mutex lock_;  ///< held while reading too, so that a second reader waits for the first one's lists
  bool isGetSum_ HOLDWISE_GUARDED_BY(lock_) = false;
  bool isGetClose_ HOLDWISE_GUARDED_BY(lock_) = false;
  TNameValueSnapshot costs_ HOLDWISE_GUARDED_BY(lock_);
  TNameValueSnapshot previousCloses_ HOLDWISE_GUARDED_BY(lock_);
  TNameValueSnapshot previousCloseValues_ HOLDWISE_GUARDED_BY(lock_);
  TMissingCodes withoutPreviousClose_ HOLDWISE_GUARDED_BY(lock_);
};

/// GetUserPrvCloseValues() of the existing TUserValue; an empty list when there is none. For bus replies: safe from any
/// thread while the user-interface thread creates or frees the object.
[[nodiscard]] TNameValueSnapshot PreviousCloses();

}  // namespace holdwise
