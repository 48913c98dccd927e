// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <memory>

#include "holdwise/packet/packet_file.h"
#include "holdwise/packet/result_set.h"
#include "holdwise/sdk/download.h"

namespace holdwise {

/// New download roles of the host, configured as all of the module are: compressed, 20 s, without hints and messages
/// of the host's own. The events are still to be set. The host must have been handed over.
/// Files land in the work-data folder.
[[nodiscard]] std::unique_ptr<TDSBAsynDownFileRole> MakeFileDownload(const QString& name);
/// Contents arrive in memory.
[[nodiscard]] std::unique_ptr<TDSBAsynDownFileRole> MakeStreamDownload(const QString& componentName);

/// The table that a download brought. `mode` 1: it is `stream`; 0: it is the local copy of the file. Throws what
/// reading a packet throws.
[[nodiscard]] ResultSet ReadReceived(const TDSBAsynDownFileRole& role, const QString& fileName,
                                     const QByteArray& stream, int mode, const PacketLimits& limits);

}  // namespace holdwise
