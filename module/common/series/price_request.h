// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

#include "common/helpers/name_value_list.h"
#include "holdwise/sdk/bus.h"

/// The request and the reply that both price objects use.
namespace holdwise {

/// A role of the host's bus, configured for price requests. OnEndOfData is `onReply`.
[[nodiscard]] std::unique_ptr<TDSBAsynDataDownRole> MakePriceRole(const QString& componentName,
                                                                  const QString& requestName,
                                                                  std::function<void(const TDReply&)> onReply);

/// Security list of a command: market type (two digits) and last six characters of each code, comma between.
[[nodiscard]] QString SecurityList(const QStringList& codes);
[[nodiscard]] QString SubscribeCommand(const QString& securityList);
[[nodiscard]] QString CancelCommand(const QString& securityList);

/// Fills a request from a command ("0|" or "1|" and a security list). An item without a market type is Error(Refused)
/// "市场类型为空"; a command or market type that is no number is Error(Refused) too.
void FillPriceRequest(const QString& command, TDMessage& request);

/// Stores the prices of a reply, two decimals, under their codes. A price of exactly 0 (no trade yet) is replaced by
/// the previous close of PreviousCloses(), "0.00" when there is none. False, and nothing stored, for a time-out, an
/// error code or a reply without a price list. Entries without code or price are skipped.
[[nodiscard]] bool StorePrices(const TDReply& reply, TNameValueList& prices);

/// Two decimals, half away from zero on the exact decimal.
[[nodiscard]] QString PriceText(const Decimal& price);

}  // namespace holdwise
