// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <functional>

namespace holdwise {

/// Copies into a new folder what the old one holds under names that the new one does not have. Both absolute; the old
/// one may be missing. `isOurs` is asked with names relative to the folder: those files stay behind. A file that cannot
/// be copied: Error(Io).
void KeepOtherFiles(const QString& oldFolder, const QString& newFolder,
                    const std::function<bool(const QString& name)>& isOurs);

}  // namespace holdwise
