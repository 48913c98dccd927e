// SPDX-License-Identifier: MIT
#include "backup/backup_folder.h"

#include <sys/stat.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <algorithm>

#include "backup/portfolio_file.h"
#include "holdwise/packet/atomic_file.h"

namespace holdwise::backup {
namespace {

constexpr std::size_t kNewestKept = 10;
constexpr int kDaysKept = 7;
constexpr int kMonthsKept = 12;
constexpr qsizetype kDoubtfulKept = 3;
const QString kTimeFormat = QStringLiteral("yyyyMMdd-HHmmss");

QString NameOf(const PortfolioSet& set, const QDateTime& time) {
  return QStringLiteral("portfolios-%1-%2-%3.csv")
      .arg(time.toString(kTimeFormat))
      .arg(set.portfolios.size())
      .arg(set.HoldingCount());
}

std::optional<Generation> GenerationOf(const QDir& folder, const QString& name) {
  static const QRegularExpression kName(QStringLiteral("^portfolios-(\\d{8}-\\d{6})-(\\d{1,9})-(\\d{1,9})\\.csv$"));
  const QRegularExpressionMatch match = kName.match(name);
  if (!match.hasMatch()) return std::nullopt;
  const QDateTime time = QDateTime::fromString(match.captured(1), kTimeFormat);
  if (!time.isValid()) return std::nullopt;
  return Generation{folder.filePath(name), time, match.captured(2).toInt(), match.captured(3).toInt()};
}

/// The newest of each of the latest periods that have one stay.
class PeriodKeeper {
 public:
  PeriodKeeper(QString format, int most) : format_(std::move(format)), most_(most) {}
  bool Keeps(const QDateTime& time) {
    const QString period = time.toString(format_);
    if (seen_.size() >= most_ || seen_.contains(period)) return false;
    seen_.insert(period);
    return true;
  }

 private:
  QString format_;
  int most_;
  QSet<QString> seen_;
};

void MakeFolder(const QString& path) {
  if (::mkdir(QFile::encodeName(path).constData(), S_IRWXU) == 0) FlushFolder(QFileInfo(path).path());
  if (!QFileInfo(path).isDir())
    throw Error(ErrorCategory::Io, QStringLiteral("备份目录“%1”不能建立").arg(path).toStdString());
}

}  // namespace

void BackupFolder::WriteLasting(const QString& path, const QByteArray& bytes) {
  WriteFileAtomically(path, bytes, Durability::Lasting);
}

BackupFolder::BackupFolder(const QString& workFolder, const QString& database, FileWriter write)
    : path_(workFolder + QStringLiteral("/backups")), write_(write) {
  constexpr qsizetype kDigits = 12;
  if (database.isEmpty() || database == workFolder + QStringLiteral("/holdwise.fdb")) return;
  const QByteArray name = QCryptographicHash::hash(database.toUtf8(), QCryptographicHash::Md5).toHex().left(kDigits);
  path_ += QStringLiteral("/db-") + QString::fromLatin1(name);
}

void BackupFolder::Make() const {
  MakeFolder(QFileInfo(path_).path());
  MakeFolder(path_);
  const QDir folder(path_);
  // One terminal a work folder: nobody else is writing here.
  for (const QString& name : folder.entryList({QStringLiteral(".holdwise-*.tmp")}, QDir::Files | QDir::Hidden))
    QFile::remove(folder.filePath(name));
}

std::vector<Generation> BackupFolder::List() const {
  const QDir folder(path_);
  const QFileInfo place(path_);
  const QFileInfo parent(place.path());
  if (!place.exists() && (parent.isDir() || !parent.exists())) return {};
  if (!place.isDir() || !place.isReadable())
    throw Error(ErrorCategory::Io, QStringLiteral("备份目录“%1”不是目录或不能读取").arg(path_).toStdString());
  std::vector<Generation> generations;
  for (const QString& name : folder.entryList(QDir::Files, QDir::Name | QDir::Reversed))
    if (const auto generation = GenerationOf(folder, name)) generations.push_back(*generation);
  std::stable_sort(generations.begin(), generations.end(),
                   [](const Generation& left, const Generation& right) { return left.time > right.time; });
  return generations;
}

std::optional<Generation> BackupFolder::Newest() const {
  const std::vector<Generation> generations = List();
  if (generations.empty()) return std::nullopt;
  return generations.front();
}

std::optional<UsableGeneration> BackupFolder::NewestUsable() const {
  for (const Generation& generation : List()) {
    try {
      return UsableGeneration{generation, LoadPortfolioFile(generation.path)};
    } catch (const Error&) {  // an older one, then
    }
  }
  return std::nullopt;
}

std::vector<Generation> BackupFolder::Superfluous(const std::vector<Generation>& newestFirst) {
  PeriodKeeper days(QStringLiteral("yyyyMMdd"), kDaysKept);
  PeriodKeeper months(QStringLiteral("yyyyMM"), kMonthsKept);
  std::vector<Generation> superfluous;
  for (std::size_t place = 0; place < newestFirst.size(); ++place) {
    const Generation& generation = newestFirst[place];
    const bool isOfDay = days.Keeps(generation.time);
    const bool isOfMonth = months.Keeps(generation.time);
    if (place >= kNewestKept && !isOfDay && !isOfMonth) superfluous.push_back(generation);
  }
  return superfluous;
}

void BackupFolder::WriteAndReadBack(const QString& path, const PortfolioSet& set) const {
  write_(path, PortfolioFileText(set));
  try {
    if (LoadPortfolioFile(path) == set) return;
  } catch (const Error&) {  // nor is that what was written
  }
  QFile::remove(path);
  throw Error(ErrorCategory::Corrupt,
              QStringLiteral("备份文件“%1”读回的内容与写入的不同，没有留下它；请检查磁盘").arg(path).toStdString());
}

Generation BackupFolder::Write(const PortfolioSet& set, const QDateTime& now) const {
  if (const QStringList problems = ProblemsOf(set); !problems.isEmpty())
    throw Error(ErrorCategory::Refused, problems.join(QLatin1Char('\n')).toStdString());
  Make();
  const std::optional<Generation> newest = Newest();
  QDateTime time = QDateTime::fromSecsSinceEpoch(now.toSecsSinceEpoch());
  if (newest && time <= newest->time) time = newest->time.addSecs(1);
  Generation written{path_ + QLatin1Char('/') + NameOf(set, time), time, static_cast<int>(set.portfolios.size()),
                     set.HoldingCount()};
  WriteAndReadBack(written.path, set);
  for (const Generation& old : Superfluous(List())) QFile::remove(old.path);
  return written;
}

QString BackupFolder::WriteDoubtful(const PortfolioSet& set, const QDateTime& now) const {
  Make();
  const QDir folder(path_);
  const auto newestFirst = [&folder] {
    return folder.entryList({QStringLiteral("doubtful-*.csv")}, QDir::Files, QDir::Name | QDir::Reversed);
  };
  const auto nameOf = [](const QDateTime& time) {
    return QStringLiteral("doubtful-%1.csv").arg(time.toString(kTimeFormat));
  };
  const QString newest = newestFirst().value(0);
  QDateTime time = now;
  if (nameOf(time) <= newest) {
    const QDateTime before = QDateTime::fromString(newest.section(QLatin1Char('-'), 1).chopped(4), kTimeFormat);
    if (before.isValid()) time = before.addSecs(1);
  }
  QString path = folder.filePath(nameOf(time));
  WriteFileAtomically(path, PortfolioFileText(set), Durability::Lasting);
  for (const QString& name : newestFirst().mid(kDoubtfulKept)) QFile::remove(folder.filePath(name));
  return path;
}

bool BackupFolder::IsUnsettled() const {
  return QFileInfo::exists(MarkPath());
}

void BackupFolder::MarkUnsettled() const {
  Make();
  WriteFileAtomically(MarkPath(), {}, Durability::Lasting);
}

void BackupFolder::Settle() const {
  QFile::remove(MarkPath());
}

}  // namespace holdwise::backup
