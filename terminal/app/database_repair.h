// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

#include "backup/backup_folder.h"
#include "holdwise/sdk/database.h"

/// What comes after a damaged database was set aside: the new one holds what the newest backup does.
namespace holdwise {

/// What there is to restore, for the user.
[[nodiscard]] QString SafeText(const backup::BackupFolder& folder);

/// Brings the newest generation that can be read back into the database, which then holds nothing else: what was
/// unsettled is settled. @return what
/// was restored, for the user; empty when there is no generation. Throws what backup::Restore throws: nothing has
/// changed. The thread of `database`.
QString RestoreNewest(UserDataServices& database, const backup::BackupFolder& folder);

}  // namespace holdwise
