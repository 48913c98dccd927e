// SPDX-License-Identifier: MIT
#include "backup/backup_writer.h"

#include <exception>

#include "backup/portfolio_file.h"

namespace holdwise::backup {

void BackupWriter::Look() {
  if (std::exchange(hasLooked_, true)) return;
  try {
    state_.newest = folder_.Newest();
    if (!state_.newest) return;
    PortfolioSet newest = LoadPortfolioFile(state_.newest->path);
    if (ProblemsOf(newest).isEmpty()) last_ = std::move(newest);
  } catch (const std::exception& error) {
    log_.WriteLog(QStringLiteral("最新的组合备份不能使用，将重新写：%1").arg(QString::fromUtf8(error.what())));
  }
}

BackupWriter::Outcome BackupWriter::Write(const PortfolioSet& set) {
  Look();
  try {
    // A set that is known has been looked over before.
    if (lastDoubtful_ == set) {
      Report(doubt_);
      return Outcome::Doubtful;
    }
    const QStringList problems = last_ == set ? QStringList() : ProblemsOf(set);
    return problems.isEmpty() ? WriteGeneration(set) : WriteDoubtful(set, problems);
  } catch (const std::exception& error) {
    Report(QStringLiteral("组合没有备份：%1").arg(QString::fromUtf8(error.what())));
    return Outcome::Failed;
  }
}

BackupWriter::Outcome BackupWriter::WriteGeneration(const PortfolioSet& set) {
  const bool isNothingYet = !state_.newest && set.portfolios.empty();
  if (!isNothingYet && last_ != set) {
    state_.newest = folder_.Write(set, clock_.Now());
    last_ = set;
    log_.WriteLog(QStringLiteral("组合已备份到“%1”（%2个组合，%3条持股）")
                      .arg(state_.newest->path)
                      .arg(state_.newest->portfolios)
                      .arg(state_.newest->holdings));
  }
  state_.problem.clear();
  return Outcome::Done;
}

BackupWriter::Outcome BackupWriter::WriteDoubtful(const PortfolioSet& set, const QStringList& problems) {
  const QString path = folder_.WriteDoubtful(set, clock_.Now());
  lastDoubtful_ = set;
  doubt_ = QStringLiteral("数据库里的组合有疑问，没有作为备份保存，另写在“%1”，以前的备份不变：\n%2")
               .arg(path, problems.join(QLatin1Char('\n')));
  Report(doubt_);
  return Outcome::Doubtful;
}

void BackupWriter::CouldNotRead(const QString& reason) {
  Report(QStringLiteral("组合没有备份，数据库不能读取：%1").arg(reason));
}

void BackupWriter::Report(const QString& problem) {
  if (std::exchange(state_.problem, problem) != problem) log_.WriteLog(problem);
}

}  // namespace holdwise::backup
