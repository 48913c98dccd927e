// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <optional>

#include "backup/backup_folder.h"
#include "backup/portfolio_set.h"
#include "holdwise/sdk/database.h"

namespace holdwise {

/// How an opened database stands beside the newest backup, which after an orderly end holds the same.
struct FirstLook {
  enum class Finding {
    Sound,       ///< nothing to ask: alike, or nothing was ever entered
    Uncompared,  ///< there is no backup of it, or the newest one cannot be read: is to be written anew
    Newer,       ///< differs, and was not closed: what came after the backup, which is to be written anew
    Differs,     ///< differs though it was closed, or that was so before and is not settled: another program has
                 ///< written, or damage
    Doubtful,    ///< holds what no person can have entered
  };
  Finding finding = Finding::Sound;
  bool isFileNew = false;                      ///< it was not there and has been made; known to the opener
  backup::PortfolioSet now;                    ///< the database's
  std::optional<backup::PortfolioSet> backup;  ///< the newest generation's that can be read; none: there is none
  std::optional<backup::Generation> newest;    ///< that one
  QString backupProblem;                       ///< why the newest of all was not read; empty when it was
  QStringList problems;                        ///< what is doubtful, a text each

  /// Both sides and what differs, for the user; empty when Sound.
  [[nodiscard]] QString Text() const;
  /// The same in one line, also when Sound.
  [[nodiscard]] QString Line() const;
};

/// Reads both and compares. `wasClosed`: the last terminal came to its end in order. An older backup takes the place of
/// one that cannot be read. Throws what a failing statement throws. The thread of
/// `database`.
[[nodiscard]] FirstLook LookAtDatabase(DatabaseStatements& database, const backup::BackupFolder& folder,
                                       bool wasClosed);

/// "2026-11-22 11:20（3 个组合，12 条持股）".
[[nodiscard]] QString TextOf(const backup::Generation& generation);

}  // namespace holdwise
