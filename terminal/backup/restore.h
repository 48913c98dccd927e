// SPDX-License-Identifier: MIT
#pragma once
#include <QStringList>

#include "backup/portfolio_set.h"

/// Brings a set back into a database.
namespace holdwise::backup {

/// What of a set is brought back.
enum class RestoreExtent {
  Everything,   ///< afterwards the database holds the set and nothing else
  MissingOnly,  ///< what is there stays; portfolios that are not there come back
};

/// What a restore changes, by portfolio names. Portfolios that are alike in both stay with their figures; the others
/// come back without, unfinished.
struct RestorePlan {
  QStringList added;    ///< come back
  QStringList changed;  ///< are as in the set afterwards
  QStringList changes;  ///< what of them, a line each, as it is and as it will be; of ten at most
  QStringList removed;  ///< are not in the set and go
  QStringList leftOut;  ///< would come back, but another portfolio has the name or the numbers of its holdings by now
  int unchanged = 0;
  int orphans = 0;  ///< holdings of no portfolio, which go
  [[nodiscard]] bool IsNothing() const;
  /// For the user, a line each for what is added, changed, removed, left out (at most 20 names each), and the changes.
  /// Never empty.
  [[nodiscard]] QString Text() const;
};

/// Pure.
[[nodiscard]] RestorePlan PlanRestore(const PortfolioSet& now, const PortfolioSet& set, RestoreExtent extent);

/// Carries it out in one transaction, reads the tables back before the commit and moves the generators past all ids.
/// Error(Refused) for a set with problems (ProblemsOf); Error(Busy) when a transaction is open, a question waiting for
/// its answer; Error(Corrupt) when the tables hold something else afterwards; what a failing statement or the commit
/// throws. Nothing has changed then. The thread of `database`.
RestorePlan Restore(UserDataServices& database, const PortfolioSet& set, RestoreExtent extent);

/// Adds the portfolios of a set under new numbers, with everything else as it is there. A transaction is open and stays
/// so. Throws what a failing statement throws. The thread of `database`.
void AddAsNew(DatabaseStatements& database, const SavedPortfolio& portfolio);

}  // namespace holdwise::backup
