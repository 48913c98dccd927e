// SPDX-License-Identifier: MIT
#include "common/series/now_price.h"

#include <utility>

#include "common/host/debug_log.h"
#include "common/series/holding_rows.h"
#include "common/store/database.h"
#include "common/store/statements.h"
#include "holdwise/packet/number_text.h"
#include "price_request.h"

namespace holdwise {
namespace {

QStringList HeldCodes() {
  const ResultSet rows = Database().Query(sql::kHeldCodes);
  const int codeColumn = rows.Column("SECUCODE");
  QStringList codes;
  codes.reserve(rows.RowCount());
  for (int row = 0; row < rows.RowCount(); ++row) codes.append(rows.TextAt(row, codeColumn));
  return codes;
}

/// @return the holdings without a price
TMissingCodes StoreValues(const TNameValueList& prices, TNameValueList& values) {
  const ResultSet holdings = Database().Query(sql::kHoldingsForNowValues);
  TMissingCodes missing;
  const int idColumn = holdings.Column("MAINID");
  const int codeColumn = holdings.Column("SECUCODE");
  const int quantityColumn = holdings.Column("PZSL");
  StoreSumsByPortfolio(
      holdings,
      [&](int row) {
        const SixDigitCode code(holdings, row, codeColumn);
        const double price = RealOr(prices.ValueOf(code.View()));
        if (price <= 0) missing[holdings.TextAt(row, idColumn)].append(code.View().toString());
        return price * NumberAt(holdings, row, quantityColumn);
      },
      values);
  return missing;
}

}  // namespace

TNowPrice::TNowPrice()
    : prices_(std::make_shared<TNameValueList>()),
      values_(std::make_shared<TNameValueList>()),
      role_(MakePriceRole(QStringLiteral("FDSBVexDownDataRoleNowPrice"), QStringLiteral("TZZHHQCURRENTPRICE"),
                          [this](const TDReply& reply) { ApplyReply(reply); })) {}

void TNowPrice::SetIsGetNowPrice(bool flag) {
  isGet_ = flag;
  if (!flag) return;
  const bool wasReady = isDataReady_.exchange(false);
  try {
    Subscribe();
  } catch (...) {
    isDataReady_ = wasReady;
    throw;
  }
}

void TNowPrice::Subscribe() {
  const QString list = SecurityList(HeldCodes());
  if (list.isEmpty()) {
    hasPrices_ = true;
    isDataReady_ = true;
    return;
  }
  const QString previous = subscription_;
  if (list != previous) hasPrices_ = false;
  CancelSubscription();
  role_->Send(SubscribeCommand(list));
  subscription_ = list;
}

void TNowPrice::CancelSubscription() {
  if (subscription_.isEmpty()) return;
  role_->Send(CancelCommand(std::exchange(subscription_, QString())));
}

TNameValueSnapshot TNowPrice::GetNowPriceStringList() {
  SubscribeUnlessAsked();
  const MutexLock lock(lock_);
  return prices_;
}

TNameValueSnapshot TNowPrice::GetNowValueGroupStringList() {
  SubscribeUnlessAsked();
  const MutexLock lock(lock_);
  return values_;
}

void TNowPrice::SubscribeUnlessAsked() {
  if (!isGet_) ReGetNowPrice();
}

TMissingCodes TNowPrice::HoldingsWithoutPrice() const {
  const MutexLock lock(lock_);
  return withoutPrice_;
}

void TNowPrice::SetHqDataIsActive(bool /*active*/) {}

void TNowPrice::ApplyReply(const TDReply& reply) {
  const MutexLock oneAtATime(replyLock_);
  try {
    // Only replies change the lists: what they grow from stays the latest while it is worked on.
    const auto [oldPrices, oldValues] = [this] {
      const MutexLock lock(lock_);
      return std::pair(prices_, values_);
    }();
    auto prices = std::make_shared<TNameValueList>(*oldPrices);
    if (StorePrices(reply, *prices)) {
      auto values = std::make_shared<TNameValueList>(*oldValues);
      TMissingCodes missing = StoreValues(*prices, *values);
      const MutexLock lock(lock_);
      withoutPrice_ = std::move(missing);
      prices_ = std::move(prices);
      values_ = std::move(values);
      hasPrices_ = true;
    }
  } catch (...) {  // a bus thread has nobody to hand it to
    LogCurrentException(QStringLiteral("untcommon"), QStringLiteral("NowPriceEndOfData"));
  }
  isDataReady_ = true;
}

}  // namespace holdwise
