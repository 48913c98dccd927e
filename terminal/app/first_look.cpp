// SPDX-License-Identifier: MIT
#include "first_look.h"

#include "backup/portfolio_file.h"
#include "backup/restore.h"

namespace holdwise {
namespace {

void ReadBackup(FirstLook& look, const backup::BackupFolder& folder) {
  try {
    look.newest = folder.Newest();
    if (look.newest) look.backup = backup::LoadPortfolioFile(look.newest->path);
  } catch (const Error&) {  // nothing to compare with
    look.newest.reset();
  }
}

FirstLook::Finding FindingOf(const FirstLook& look, bool wasClosed) {
  if (!look.problems.isEmpty()) return FirstLook::Finding::Doubtful;
  if (!look.backup || *look.backup == look.now) return FirstLook::Finding::Sound;
  return wasClosed ? FirstLook::Finding::Differs : FirstLook::Finding::Newer;
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
  if (!problems.isEmpty()) lines << QStringLiteral("数据库里有不可能是输入的内容：") << problems;
  lines << QStringLiteral("数据库：%1 个组合，%2 条持股").arg(now.portfolios.size()).arg(now.HoldingCount());
  lines << (newest ? QStringLiteral("最近的备份：") + holdwise::TextOf(*newest) : QStringLiteral("没有可用的备份"));
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
  look.finding = FindingOf(look, wasClosed);
  return look;
}

}  // namespace holdwise
