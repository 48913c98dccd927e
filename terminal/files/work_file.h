// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>

namespace holdwise {

/// Writes a fetched file under a work folder: makes missing folders (0700), refuses links that leave the folder,
/// replaces the file atomically (0600). Returns a TDSBAsynDownFileRole::Code. Any thread.
[[nodiscard]] int StoreWorkFile(const QString& workFolder, const QString& path, const QByteArray& content);

}  // namespace holdwise
