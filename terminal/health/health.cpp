// SPDX-License-Identifier: MIT
#include "health/health.h"

#include <sys/statvfs.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>

#include "backup/backup_folder.h"
#include "holdwise/packet/error.h"
#include "holdwise/packet/packet_file.h"

namespace holdwise::health {
namespace {

constexpr qint64 kMegabyte = 1 << 20;
constexpr qint64 kLittleSpace = 100 * kMegabyte;
/// What of the data folder the views need; docs/data-folder.md.
constexpr const char* kNeededData[] = {"market.dat",
                                       "securities.dat",
                                       "trading_dates.dat",
                                       "QMTL/TZZH/Day250/股票",
                                       "QMTL/TZZH/Day250/指数/allzs.dat",
                                       "QMTL/TZZH/风险计量/SH.dat",
                                       "QMTL/TZZH/风险计量/SZ.dat",
                                       "QMTL/TZZH/风险计量/HS.dat",
                                       "QMTL/TZZH/InterestRate.Dat",
                                       "QMTL/TZZH/GZ.dat"};
/// A market too small has none, and neither has a folder made without proposals.
constexpr const char* kProposalData[] = {"QMTL/TZZH/ZNPZ.dat", "QMTL/TZZH/StockPool.dat"};

QString TimeText(const QDateTime& time) {
  return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

QString SizeText(qint64 bytes) {
  return bytes < kMegabyte ? QStringLiteral("%1 KB").arg((bytes + 1023) / 1024)
                           : QStringLiteral("%1 MB").arg(bytes / kMegabyte);
}

QString AgeText(const QDateTime& time, const QDateTime& now) {
  constexpr qint64 kMinute = 60;
  constexpr qint64 kHour = 3600;
  constexpr qint64 kDay = 86400;
  const qint64 seconds = std::max<qint64>(0, time.secsTo(now));
  if (seconds < kMinute) return QStringLiteral("%1 秒前").arg(seconds);
  if (seconds < kHour) return QStringLiteral("%1 分钟前").arg(seconds / kMinute);
  if (seconds < kDay) return QStringLiteral("%1 小时前").arg(seconds / kHour);
  return QStringLiteral("%1 天前").arg(seconds / kDay);
}

Row DatabaseRow(const Facts& facts) {
  Row row{QStringLiteral("数据库"), facts.database, facts.databaseProblem.isEmpty()};
  if (!row.isWell) row.text += QStringLiteral("，") + facts.databaseProblem;
  if (facts.isServer || !row.isWell) return row;
  const QFileInfo file(facts.database);
  if (!file.isFile()) return {row.subject, QStringLiteral("%1 不在了，请把它移回原处").arg(facts.database), false};
  row.text += QStringLiteral("，%1").arg(SizeText(file.size()));
  return row;
}

Row CheckRow(const Facts& facts) {
  const QString subject = QStringLiteral("数据库检查");
  if (facts.isServer) return {subject, QStringLiteral("由数据库服务器负责")};
  const QFileInfo record(facts.checkRecord);
  if (facts.checkRecord.isEmpty() || !record.exists())
    return {subject, QStringLiteral("还没有做过完整检查（没有正常退出之后的启动和 --check 会做）")};
  return {subject, QStringLiteral("%1 完整检查过，没有发现损坏").arg(TimeText(record.lastModified()))};
}

QFileInfo DetailOf(const QString& workFolder) {
  return QFileInfo(QDir(workFolder).filePath(QStringLiteral("TZZHDetail.dat")));
}

QFileInfo MergeOf(const QString& workFolder) {
  return QFileInfo(QDir(workFolder).filePath(QStringLiteral("TZZHMerge.dat")));
}

Row MirrorRow(const Facts& facts) {
  const QString subject = QStringLiteral("镜像文件");
  const QDir folder(facts.workFolder);
  const QFileInfo detail = DetailOf(facts.workFolder);
  const QFileInfo merge = MergeOf(facts.workFolder);
  const QStringList refused = folder.entryList({QStringLiteral("TZZH*.bad*")}, QDir::Files);
  if (!refused.isEmpty()) {
    return {subject,
            QStringLiteral("工作目录里有 %1 个不能采用而改名的镜像文件：%2。内容可从备份恢复；确认组合无误后删除它们")
                .arg(refused.size())
                .arg(refused.join(QStringLiteral("、"))),
            false};
  }
  if (detail.exists() != merge.exists())
    return {subject, QStringLiteral("两个镜像文件缺了一个，正常退出一次会重新写"), false};
  if (!detail.exists()) return {subject, QStringLiteral("还没有写过，正常退出时写")};
  if (!facts.mirrorProblem.isEmpty()) {
    return {subject,
            QStringLiteral("读不出来（%1），正常退出一次会重新写，读不出来的一份会保留").arg(facts.mirrorProblem),
            false};
  }
  return {subject, QStringLiteral("写于 %1").arg(TimeText(std::min(detail.lastModified(), merge.lastModified())))};
}

Row BackupRow(const Facts& facts) {
  const QString subject = QStringLiteral("备份");
  try {
    const std::vector<backup::Generation> generations = backup::BackupFolder(facts.workFolder, facts.database).List();
    QString text = QStringLiteral("还没有");
    if (!generations.empty()) {
      const backup::Generation& newest = generations.front();
      text = QStringLiteral("最近 %1，%2 个组合、%3 条持股；共 %4 份")
                 .arg(TimeText(newest.time))
                 .arg(newest.portfolios)
                 .arg(newest.holdings)
                 .arg(generations.size());
    }
    if (facts.backupProblem.isEmpty()) return {subject, text};
    return {subject, text + QStringLiteral("。最近的修改没有备份：") + facts.backupProblem, false};
  } catch (const Error& error) {
    return {subject, QString::fromUtf8(error.what()), false};
  }
}

Row ComparisonRow(const Facts& facts) {
  return {QStringLiteral("与备份比较"), facts.comparison.text, facts.comparison.isWell};
}

Row QuotesRow(const Facts& facts) {
  const QString subject = QStringLiteral("行情");
  if (facts.isDataAwaited) return {subject, QStringLiteral("还没有选择行情数据")};
  const QFileInfo quotes(QDir(facts.dataFolder).filePath(QStringLiteral("quotes.dat")));
  if (!quotes.isFile()) return {subject, QStringLiteral("没有行情数据文件 %1").arg(quotes.filePath()), false};
  const QString age =
      QStringLiteral("%1的行情，文件写于 %2（%3）")
          .arg(facts.dataDate, TimeText(quotes.lastModified()), AgeText(quotes.lastModified(), facts.now));
  if (!facts.quotesProblem) return {subject, age + QStringLiteral("，终端没有运行，没有跟踪")};
  if (!facts.quotesProblem->isEmpty())
    return {subject, age + QStringLiteral("，没有跟踪：") + *facts.quotesProblem, false};
  return {subject, age + (facts.isSimulated ? QStringLiteral("，模拟行情") : QStringLiteral("，正在跟踪"))};
}

/// Those that are not there, by name; empty when all are.
template <std::size_t count>
QString MissingOf(const QString& folder, const char* const (&names)[count]) {
  QStringList missing;
  for (const char* name : names) {
    const QString path = QString::fromUtf8(name);
    if (!QFileInfo::exists(folder + QLatin1Char('/') + path)) missing.append(path);
  }
  return missing.join(QStringLiteral("、"));
}

Row DataRow(const Facts& facts) {
  const QString subject = QStringLiteral("数据目录");
  if (facts.isDataAwaited) return {subject, QStringLiteral("还没有选择，见窗口")};
  QStringList problems = facts.dataNotices;
  if (!facts.dataProblem.isEmpty()) problems.prepend(facts.dataProblem);
  const QString missing = MissingOf(facts.dataFolder, kNeededData);
  if (!missing.isEmpty()) problems.append(QStringLiteral("缺少 %1，请重新生成数据目录").arg(missing));
  QString text = facts.dataFolder;
  if (!facts.dataDate.isEmpty()) text += QStringLiteral("，日期 %1").arg(facts.dataDate);
  if (!facts.dataEdition.isEmpty()) text += QStringLiteral("，版本 %1").arg(facts.dataEdition);
  if (!problems.isEmpty()) return {subject, text + QStringLiteral("。") + problems.join(QStringLiteral("；")), false};
  const QString proposals = MissingOf(facts.dataFolder, kProposalData);
  if (!proposals.isEmpty()) text += QStringLiteral("。没有 %1，智能配置没有内容").arg(proposals);
  return {subject, text};
}

Row PluginRow(const Facts& facts) {
  const QString subject = QStringLiteral("插件");
  const QString running = facts.plugins.isEmpty() ? QStringLiteral("没有可用的插件") : facts.plugins;
  if (facts.pluginProblems.isEmpty()) return {subject, running};
  return {subject, running + QStringLiteral("。") + facts.pluginProblems.join(QStringLiteral("；")), false};
}

Row DiskRow(const Facts& facts) {
  Row row{QStringLiteral("磁盘"), {}};
  QStringList folders{facts.workFolder};
  if (!facts.isServer) folders.append(QFileInfo(facts.database).path());
  folders.removeDuplicates();
  QStringList texts;
  for (const QString& folder : folders) {
    struct statvfs status = {};
    if (::statvfs(QFile::encodeName(folder).constData(), &status) != 0) {
      texts.append(QStringLiteral("%1 不在了").arg(folder));
      row.isWell = false;
      continue;
    }
    if (status.f_blocks == 0) continue;  // some network and virtual file systems do not count
    const auto bytes = static_cast<qint64>(status.f_bavail) * static_cast<qint64>(status.f_frsize);
    texts.append(QStringLiteral("%1 可用 %2").arg(folder, SizeText(bytes)));
    if (bytes >= kLittleSpace) continue;
    texts.back() += QStringLiteral("，不多了，请清理磁盘");
    row.isWell = false;
  }
  row.text = texts.isEmpty() ? QStringLiteral("文件系统不报告可用空间") : texts.join(QStringLiteral("；"));
  return row;
}

Row LogRow(const Facts& facts) {
  const QString subject = QStringLiteral("日志");
  const QFileInfo log(facts.workFolder + QStringLiteral("/log/terminal.log"));
  if (!log.isFile()) return {subject, QStringLiteral("没有日志文件 %1").arg(log.filePath()), false};
  if (!log.isWritable()) return {subject, QStringLiteral("日志文件 %1 不能写入").arg(log.filePath()), false};
  return {subject, QStringLiteral("%1，%2").arg(log.filePath(), SizeText(log.size()))};
}

}  // namespace

const QString& MirrorReader::Problem(const QString& workFolder) {
  QString now;
  for (const QFileInfo& file : {DetailOf(workFolder), MergeOf(workFolder)}) {
    now += QStringLiteral("%1 %2 %3 ").arg(file.isFile()).arg(file.size()).arg(file.lastModified().toMSecsSinceEpoch());
  }
  if (now == read_) return problem_;
  read_ = now;
  problem_.clear();
  for (const QFileInfo& file : {DetailOf(workFolder), MergeOf(workFolder)}) {
    try {
      (void)ReadPacketFile(file.filePath());
    } catch (const Error& error) {
      if (error.Category() != ErrorCategory::NotFound) problem_ = QString::fromUtf8(error.what());
    }
  }
  return problem_;
}

Table TableOf(const Facts& facts) {
  Table table{DatabaseRow(facts),   CheckRow(facts),  MirrorRow(facts), BackupRow(facts),
              ComparisonRow(facts), QuotesRow(facts), DataRow(facts)};
  if (!facts.plugins.isEmpty() || !facts.pluginProblems.isEmpty()) table.push_back(PluginRow(facts));
  table.push_back(DiskRow(facts));
  table.push_back(LogRow(facts));
  return table;
}

int ProblemsIn(const Table& table) {
  return static_cast<int>(std::count_if(table.begin(), table.end(), [](const Row& row) { return !row.isWell; }));
}

QString TextOf(const Table& table) {
  QStringList lines;
  for (const Row& row : table)
    lines.append(QStringLiteral("%1  %2：%3")
                     .arg(row.isWell ? QStringLiteral("正常") : QStringLiteral("注意"), row.subject, row.text));
  return lines.join(QLatin1Char('\n'));
}

}  // namespace holdwise::health
