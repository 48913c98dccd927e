// SPDX-License-Identifier: MIT
#include "backup/backup_writer.h"

#include <exception>

#include "backup/portfolio_file.h"

namespace holdwise::backup {

void BackupWriter::Look() {
  if (std::exchange(hasLooked_, true)) return;
  try {
    state_.newest = folder_.Newest();
    if (std::optional<UsableGeneration> usable = folder_.NewestUsable()) {
      last_ = std::move(usable->set);
      isLastNewest_ = usable->generation.path == state_.newest->path;
    }
    if (state_.newest && !isLastNewest_)
      log_.WriteLog(QStringLiteral("最新的组合备份“%1”不能使用，将重新写").arg(state_.newest->path));
  } catch (const std::exception& error) {
    log_.WriteLog(QStringLiteral("组合备份不能读取：%1").arg(QString::fromUtf8(error.what())));
  }
}

QStringList BackupWriter::DoubtsAbout(const PortfolioSet& set) const {
  // A set that is known has been looked over before: files that read back have no problems.
  if (last_ == set) return {};
  QStringList doubts = ProblemsOf(set);
  if (doubts.isEmpty() && last_ && folder_.IsUnsettled() && !IsEnteredAlike(set, *last_))
    doubts.append(QStringLiteral("启动时数据库与最近的备份不同，以哪一个为准还没有选择；下次打开窗口时会再问"));
  return doubts;
}

BackupWriter::Outcome BackupWriter::Write(const PortfolioSet& set) {
  Look();
  try {
    const QStringList doubts = DoubtsAbout(set);
    return doubts.isEmpty() ? WriteGeneration(set) : WriteDoubtful(set, doubts);
  } catch (const std::exception& error) {
    Report(QStringLiteral("组合没有备份：%1").arg(QString::fromUtf8(error.what())), true);
    return Outcome::Failed;
  }
}

BackupWriter::Outcome BackupWriter::WriteGeneration(const PortfolioSet& set) {
  const bool isNothingYet = !state_.newest && set.portfolios.empty();
  if (!isNothingYet && (!isLastNewest_ || last_ != set)) {
    state_.newest = folder_.Write(set, clock_.Now());
    last_ = set;
    isLastNewest_ = true;
    log_.WriteLog(QStringLiteral("组合已备份到“%1”（%2个组合，%3条持股）")
                      .arg(state_.newest->path)
                      .arg(state_.newest->portfolios)
                      .arg(state_.newest->holdings));
  }
  folder_.Settle();
  state_.problem.clear();
  state_.isLost = false;
  return Outcome::Done;
}

BackupWriter::Outcome BackupWriter::WriteDoubtful(const PortfolioSet& set, const QStringList& problems) {
  if (lastDoubtful_ != set) {
    const QString path = folder_.WriteDoubtful(set, clock_.Now());
    lastDoubtful_ = set;
    doubt_ = QStringLiteral("数据库里的组合有疑问，没有作为备份保存，另写在“%1”，以前的备份不变：\n%2")
                 .arg(path, problems.join(QLatin1Char('\n')));
  }
  Report(doubt_, false);
  return Outcome::Doubtful;
}

void BackupWriter::CouldNotRead(const QString& reason) {
  Report(QStringLiteral("组合没有备份，数据库不能读取：%1").arg(reason), true);
}

void BackupWriter::Report(const QString& problem, bool isLost) {
  state_.isLost = isLost;
  if (std::exchange(state_.problem, problem) != problem) log_.WriteLog(problem);
}

}  // namespace holdwise::backup
