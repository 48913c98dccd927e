// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <optional>

#include "pasted_holdings.h"

/// What the editor asks the host about stocks. User-interface thread; needs the module's host.
namespace holdwise {

/// None for six digits that are no Shanghai or Shenzhen A-share.
[[nodiscard]] std::optional<KnownStock> FindStock(const QString& sixDigits);

/// For each character of the stock's name the letters by which it can be typed; empty when the host knows none.
[[nodiscard]] QStringList ReadingsOf(const QString& sixDigits);

/// The stock's current price in yuan, taken in single precision, two decimals; "0.00" while it is unknown.
[[nodiscard]] QString CurrentPriceText(const QString& sixDigits);

/// The level of the composite index as it is stored with a portfolio, in the same form.
[[nodiscard]] QString IndexCloseText();

}  // namespace holdwise
