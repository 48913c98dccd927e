// SPDX-License-Identifier: MIT
#pragma once
#include <QStringList>
#include <memory>

#include "holdwise/sdk/catalogue.h"

/// The windows beside the views, for the catalogue. User-interface thread; the shared objects must exist.
namespace holdwise {

/// "StockPool", the stock pool list.
[[nodiscard]] QStringList SideWindows();
/// Null for a name that is none of them.
[[nodiscard]] std::unique_ptr<CatalogueWindow> MakeSideWindow(const QString& name);

}  // namespace holdwise
