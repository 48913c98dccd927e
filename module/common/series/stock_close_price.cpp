// SPDX-License-Identifier: MIT
#include "common/series/stock_close_price.h"

#include <utility>

#include "common/host/codes.h"
#include "common/host/debug_log.h"
#include "common/host/host_access.h"
#include "holdwise/packet/number_text.h"
#include "price_request.h"

namespace holdwise {

TStockClosePrice::TStockClosePrice()
    : prices_(std::make_shared<TNameValueList>()),
      role_(MakePriceRole(QStringLiteral("FDSBVexDownDataRole"), QStringLiteral("DSBHQCURRENTPRICE_SC"),
                          [this](const TDReply& reply) { ApplyReply(reply); })) {}

bool TStockClosePrice::IsBeforeOpenMaket() const {
  return ModuleHost().DataCenter().IsOpen();
}

TNameValueSnapshot TStockClosePrice::Prices() const {
  const MutexLock lock(lock_);
  return prices_;
}

void TStockClosePrice::Forget() {
  const MutexLock lock(lock_);
  prices_ = std::make_shared<TNameValueList>();
}

void TStockClosePrice::GetDayClosePriceStrList(QStringList& codes) {
  RemoveKnown(codes);
  if (!IsBeforeOpenMaket()) {
    TakeFromDataCenter(codes);
    return;
  }
  const QString list = SecurityList(codes);
  if (!list.isEmpty()) role_->Send(SubscribeCommand(list));
}

// The own list bounds the index and a removal does not step back, so the entry after a removed one is not looked at;
// both are intended.
void TStockClosePrice::RemoveKnown(QStringList& codes) const {
  const TNameValueSnapshot known = Prices();
  for (int index = 0; index < known->Count(); ++index) {
    if (index >= codes.size()) {
      throw Error(ErrorCategory::Refused, "list index out of bounds (" + std::to_string(index) + ")");
    }
    if (known->Has(codes.at(index))) codes.removeAt(index);
  }
}

void TStockClosePrice::TakeFromDataCenter(const QStringList& codes) {
  const TDataCenter& dataCenter = ModuleHost().DataCenter();
  const MutexLock lock(lock_);
  auto prices = std::make_shared<TNameValueList>(*prices_);
  for (const QString& code : codes) {
    // A list may give six digits; the data centre wants the code number.
    const int codeNumber = CodeNumberOf(code);
    prices->Set(code, FormatFixed(dataCenter.StockNowData(codeNumber).currentPrice, 2));
  }
  prices_ = std::move(prices);
}

void TStockClosePrice::ApplyReply(const TDReply& reply) {
  try {
    const MutexLock lock(lock_);
    auto prices = std::make_shared<TNameValueList>(*prices_);
    if (StorePrices(reply, *prices)) prices_ = std::move(prices);
  } catch (...) {  // a bus thread has nobody to hand it to
    LogCurrentException(QStringLiteral("untcommon"), QStringLiteral("StockClosePriceEndOfData"));
  }
}

}  // namespace holdwise
