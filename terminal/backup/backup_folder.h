// SPDX-License-Identifier: MIT
#pragma once
#include <QDateTime>
#include <QString>
#include <optional>
#include <vector>

#include "backup/portfolio_set.h"

namespace holdwise::backup {

/// One file of the folder, as its name tells.
struct Generation {
  QString path;
  QDateTime time;  ///< local
  int portfolios = 0;
  int holdings = 0;
};

/// A generation that has been read.
struct UsableGeneration {
  Generation generation;
  PortfolioSet set;
};

/// The folder of a database's generations: "backups" in the work folder for the database there, a folder of its own in
/// that one for any other:
/// "portfolios-YYYYMMDD-HHMMSS-<portfolios>-<holdings>.csv" each. What stays: the ten newest, the last of each of the
/// seven latest days and of each of the twelve latest months that have one. Not synchronised: one thread at a time.
class BackupFolder {
 public:
  /// Puts bytes into a file, flushed to the disk, or throws Error(Io).
  using FileWriter = void (*)(const QString& path, const QByteArray& bytes);
  static void WriteLasting(const QString& path, const QByteArray& bytes);

  /// @param database file or connection string; empty: the one in the work folder
  explicit BackupFolder(const QString& workFolder, const QString& database = {}, FileWriter write = WriteLasting);

  [[nodiscard]] const QString& Path() const { return path_; }
  /// Newest first. A folder that is not there has none; one that cannot be read or is none: Error(Io). Opens no file.
  [[nodiscard]] std::vector<Generation> List() const;
  /// The first of List.
  [[nodiscard]] std::optional<Generation> Newest() const;
  /// The newest one that can be read back. Error(Io): the folder cannot be read.
  [[nodiscard]] std::optional<UsableGeneration> NewestUsable() const;

  /// Writes a new generation, flushed to the disk, reads it back and only then removes those that need not stay. A set
  /// with problems (ProblemsOf): Error(Refused). Not written, or not read back as it was written: Error(Io, Corrupt),
  /// nothing of it is left and the earlier ones stay. What a writing left that was cut short goes too. A time that is
  /// not after the newest one's counts as a second after it.
  Generation Write(const PortfolioSet& set, const QDateTime& now) const;
  /// Writes a set with problems beside the generations, for a person to look at: "doubtful-YYYYMMDD-HHMMSS.csv". The
  /// three newest stay. A time that is not after the newest one's counts as a second after it. Error(Io).
  QString WriteDoubtful(const PortfolioSet& set, const QDateTime& now) const;

  /// Whether the database may be damaged, which nobody has decided yet: until then no generation is made of it.
  [[nodiscard]] bool IsUnsettled() const;
  /// Notes that, also for starts to come. Error(Io).
  void MarkUnsettled() const;
  /// It has been decided.
  void Settle() const;

  /// Which of the generations (newest first) need not stay. Pure.
  [[nodiscard]] static std::vector<Generation> Superfluous(const std::vector<Generation>& newestFirst);

 private:
  void Make() const;
  void WriteAndReadBack(const QString& path, const PortfolioSet& set) const;
  [[nodiscard]] QString MarkPath() const { return path_ + QStringLiteral("/unsettled"); }

  QString path_;
  FileWriter write_;
};

}  // namespace holdwise::backup
