// SPDX-License-Identifier: MIT
#include "first_look.h"

#include "backup/restore.h"

namespace holdwise {
namespace {

void ReadBackup(FirstLook& look, const backup::BackupFolder& folder) {
  try {
    const std::optional<backup::Generation> newest = folder.Newest();
    if (std::optional<backup::UsableGeneration> usable = folder.NewestUsable()) {
      look.newest = std::move(usable->generation);
      look.backup = std::move(usable->set);
    }
    if (newest && (!look.newest || look.newest->path != newest->path))
      look.backupProblem = QStringLiteral("最近的备份“%1”不能使用").arg(newest->path);
  } catch (const Error& error) {
    look.backupProblem = QString::fromUtf8(error.what());
  }
}

FirstLook::Finding FindingOf(const FirstLook& look, bool mayBeNewer) {
  using Finding = FirstLook::Finding;
  if (!look.problems.isEmpty()) return Finding::Doubtful;
  const bool isAnythingKept = look.backup || !look.now.portfolios.empty() || !look.backupProblem.isEmpty();
  if (!isAnythingKept) return Finding::Sound;
  if (!look.backup) return Finding::Uncompared;
  if (*look.backup == look.now) return look.backupProblem.isEmpty() ? Finding::Sound : Finding::Uncompared;
  return mayBeNewer ? Finding::Newer : Finding::Differs;
}

}  // namespace

QString TextOf(const backup::Generation& generation) {
  return QStringLiteral("%1（%2 个组合，%3 条持股）")
      .arg(generation.time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")))
      .arg(generation.portfolios)
      .arg(generation.holdings);
}

QString FirstLook::Text() const {
  if (finding == Finding::Sound) return {};
  QStringList lines;
  if (!backupProblem.isEmpty()) lines << backupProblem;
  if (!problems.isEmpty()) lines << QStringLiteral("数据库里有不可能是输入的内容：") << problems;
  lines << QStringLiteral("数据库：%1 个组合，%2 条持股").arg(now.portfolios.size()).arg(now.HoldingCount());
  lines << (newest ? (backupProblem.isEmpty() ? QStringLiteral("最近的备份：") : QStringLiteral("之前的备份：")) +
                         holdwise::TextOf(*newest)
                   : QStringLiteral("没有可用的备份"));
  if (backup && *backup != now) {
    lines << QStringLiteral("用备份恢复会这样改变数据库：")
          << backup::PlanRestore(now, *backup, backup::RestoreExtent::Everything).Text();
  }
  return lines.join(QLatin1Char('\n'));
}

QString FirstLook::Line() const {
  if (finding != Finding::Sound) return Text().replace(QLatin1Char('\n'), QStringLiteral("；"));
  return newest ? QStringLiteral("数据库与最近的备份一致") : QStringLiteral("还没有可比较的备份");
}

FirstLook LookAtDatabase(DatabaseStatements& database, const backup::BackupFolder& folder, bool wasClosed) {
  FirstLook look;
  look.now = backup::ReadPortfolios(database);
  look.problems = backup::ProblemsOf(look.now, backup::ReadGenerators(database));
  ReadBackup(look, folder);
  look.finding = FindingOf(look, !wasClosed && !folder.IsUnsettled());
  return look;
}

}  // namespace holdwise
