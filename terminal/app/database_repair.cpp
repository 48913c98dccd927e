// SPDX-License-Identifier: MIT
#include "database_repair.h"

#include <optional>

#include "backup/portfolio_file.h"
#include "backup/restore.h"
#include "first_look.h"

namespace holdwise {
namespace {

struct Usable {
  backup::Generation generation;
  backup::PortfolioSet set;
};

std::optional<Usable> NewestUsable(const backup::BackupFolder& folder) {
  for (const backup::Generation& generation : folder.List()) {
    try {
      return Usable{generation, backup::LoadPortfolioFile(generation.path)};
    } catch (const Error&) {  // an older one, then
    }
  }
  return std::nullopt;
}

}  // namespace

QString SafeText(const backup::BackupFolder& folder) {
  const std::optional<Usable> usable = NewestUsable(folder);
  return usable ? QStringLiteral("最近的备份完好：%1").arg(TextOf(usable->generation))
                : QStringLiteral("没有可用的备份；退出时保存的组合文件在，就从它读入");
}

QString RestoreNewest(UserDataServices& database, const backup::BackupFolder& folder) {
  const std::optional<Usable> usable = NewestUsable(folder);
  if (!usable) return {};
  (void)backup::Restore(database, usable->set, backup::RestoreExtent::Everything);
  return QStringLiteral("已恢复备份：%1").arg(TextOf(usable->generation));
}

}  // namespace holdwise
