// SPDX-License-Identifier: MIT
#pragma once
#include "common/helpers/name_value_list.h"
#include "common/series/holding_rows.h"

namespace holdwise {

/// Closes of the previous week and month of every held security, and the value of every saved portfolio at those
/// closes. User-interface thread only. Each accessor first reads the database again when that has not been done yet or
/// an update is needed; what a failing query throws reaches its caller, as does Error(Refused) when the host's
/// current date is not a date. The lists are then those of before, and the next reader tries again. Lists are added to,
/// never emptied: names that are no longer present keep their values.
class TClosePrice {
 public:
  TClosePrice();

  /// Names: security codes as the database gives them; values: closes in yuan, shortest decimal text ("0" for a close
  /// that is no number). A security without a row in the period has no line.
  TNameValueSnapshot GetWeekCloseStringList();
  TNameValueSnapshot GetMonthCloseStringList();
  /// Names: ids of saved portfolios; values: close x quantity over the holdings, yuan, shortest decimal text. A missing
  /// close counts 0. Made from the closes at the first reading after these: a page's first picture does not need them.
  TNameValueSnapshot GetWeekCloseStringList_Sum();
  TNameValueSnapshot GetMonthCloseStringList_Sum();

  /// Holdings of saved portfolios without a close in the period while others of the portfolio have one: its sum is too
  /// small to be compared with. As of the last sums.
  [[nodiscard]] TMissingCodes HoldingsWithoutWeekClose();
  [[nodiscard]] TMissingCodes HoldingsWithoutMonthClose();

  /// True: reads the closes again now.
  void SetIsGetClosePrice(bool flag);
  void ReGetClosePrice() { SetIsGetClosePrice(true); }
  /// True: the next accessor reads everything again.
  void SetIsNeedUpdate(bool flag) { isNeedUpdate_ = flag; }

 private:
  void RefreshIfNeeded();
  void RefreshSumsIfNeeded();

  bool isNeedUpdate_ = false;
  bool isGet_ = false;
  bool areSumsDue_ = false;
  TNameValueSnapshot weekCloses_;
  TNameValueSnapshot monthCloses_;
  TNameValueSnapshot weekSums_;
  TNameValueSnapshot monthSums_;
  TMissingCodes withoutWeekClose_;
  TMissingCodes withoutMonthClose_;
};

}  // namespace holdwise
