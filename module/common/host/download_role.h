// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <memory>

#include "holdwise/sdk/download.h"

namespace holdwise {

/// New download roles of the host, configured as all of the module are: compressed, 20 s, without hints and messages
/// of the host's own. The events are still to be set. The host must have been handed over.
/// Files land in the work-data folder.
[[nodiscard]] std::unique_ptr<TDSBAsynDownFileRole> MakeFileDownload(const QString& name);
/// Contents arrive in memory.
[[nodiscard]] std::unique_ptr<TDSBAsynDownFileRole> MakeStreamDownload(const QString& componentName);

}  // namespace holdwise
