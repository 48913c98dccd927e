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
    Sound,     ///< nothing to ask: alike, or there is no backup to compare with
    Newer,     ///< differs, and was not closed: what came after the backup, which is to be written anew
    Differs,   ///< differs though it was closed: another program has written, or damage
    Doubtful,  ///< holds what no person can have entered
  };
  Finding finding = Finding::Sound;
  backup::PortfolioSet now;                    ///< the database's
  std::optional<backup::PortfolioSet> backup;  ///< the newest generation's; none: there is none that can be read
  std::optional<backup::Generation> newest;
  QStringList problems;  ///< what is doubtful, a text each

  /// Both sides and what differs, for the user; empty when Sound.
  [[nodiscard]] QString Text() const;
  /// The same in one line, also when Sound.
  [[nodiscard]] QString Line() const;
};

/// Reads both and compares. `wasClosed`: the last terminal came to its end in order. A backup that cannot be read is
/// left out and said in no way: the next one takes its place. Throws what a failing statement throws. The thread of
/// `database`.
[[nodiscard]] FirstLook LookAtDatabase(DatabaseStatements& database, const backup::BackupFolder& folder,
                                       bool wasClosed);

/// "2026-11-22 11:20（3 个组合，12 条持股）".
[[nodiscard]] QString TextOf(const backup::Generation& generation);

}  // namespace holdwise
