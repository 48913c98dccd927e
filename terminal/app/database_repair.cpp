// SPDX-License-Identifier: MIT
#include "database_repair.h"

#include <optional>

#include "backup/restore.h"
#include "first_look.h"

namespace holdwise {

QString SafeText(const backup::BackupFolder& folder) {
  const std::optional<backup::UsableGeneration> usable = folder.NewestUsable();
  return usable ? QStringLiteral("最近的备份完好：%1").arg(TextOf(usable->generation))
                : QStringLiteral("没有可用的备份；退出时保存的组合文件在，就从它读入");
}

QString RestoreNewest(UserDataServices& database, const backup::BackupFolder& folder) {
  const std::optional<backup::UsableGeneration> usable = folder.NewestUsable();
  if (!usable) return {};
  (void)backup::Restore(database, usable->set, backup::RestoreExtent::Everything);
  folder.Settle();
  return QStringLiteral("已恢复备份：%1").arg(TextOf(usable->generation));
}

}  // namespace holdwise
