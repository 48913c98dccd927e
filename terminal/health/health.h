// SPDX-License-Identifier: MIT
#pragma once
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

/// Whether the terminal and what it keeps are well, as one table. Reads files' names, sizes and dates and, with
/// MirrorReader, the exchange files; what has to be asked of others is handed in. Any thread; never throws.
namespace holdwise::health {

/// One line of the table.
struct Row {
  QString subject;
  QString text;        ///< how it is and, when it is not well, what to do
  bool isWell = true;  ///< false: somebody should look
};
using Table = std::vector<Row>;

/// Reads the exchange files of a work folder, again only when they have been written. One thread at a time.
class MirrorReader {
 public:
  /// Why the two cannot be read; empty when they can, or when one of them is not there.
  [[nodiscard]] const QString& Problem(const QString& workFolder);

 private:
  QString read_;  ///< what was read last, by sizes and dates
  QString problem_;
};

/// How the database stands beside the newest backup.
struct Comparison {
  QString text;
  bool isWell = true;

  /// Of a server's database, which other terminals may use at the same time.
  [[nodiscard]] static Comparison OfServer() { return {QStringLiteral("没有比较，只比较本机的数据库文件")}; }
};

/// What the table is made from.
struct Facts {
  QDateTime now;
  QString workFolder;
  QString database;         ///< file, or the name of a server's database
  bool isServer = false;    ///< nothing is known of its file
  QString databaseProblem;  ///< why it cannot be used; empty when it can
  QString checkRecord;      ///< file whose date is that of the last full check; empty: there is none
  QString mirrorProblem;    ///< MirrorReader's
  QString backupProblem;    ///< why the latest change is in no backup; empty when it is
  Comparison comparison;
  QString dataFolder;
  bool isDataAwaited = false;  ///< none were ever chosen and none are there: nothing is amiss yet
  QString dataProblem;         ///< why it cannot be used; empty when it can
  QString dataDate;            ///< date of the market, YYYY-MM-DD
  QString dataEdition;         ///< which making of the folder it is; empty: unknown
  bool isSimulated = false;
  QStringList dataNotices;               ///< what of its files is not used or missing
  QString plugins;                       ///< that run; empty with no problem: nobody has loaded them
  QStringList pluginProblems;            ///< why one does not run
  std::optional<QString> quotesProblem;  ///< why quotes are not followed, empty when they are; none: nobody follows
};

/// All rows, in the order of the page: database, its last check, mirror, backups, comparison with the newest one,
/// quotes, data folder, plug-ins if they have been loaded, disk, log.
[[nodiscard]] Table TableOf(const Facts& facts);
[[nodiscard]] int ProblemsIn(const Table& table);
/// A line a row, "正常" or "注意" in front of it.
[[nodiscard]] QString TextOf(const Table& table);

}  // namespace holdwise::health
