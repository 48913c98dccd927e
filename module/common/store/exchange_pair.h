// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

#include "holdwise/packet/result_set.h"
#include "holdwise/sdk/database.h"

/// The two exchange files of the work-data folder as files: how they are replaced, kept and told apart. All functions
/// throw Error(Io) when the folder cannot be read or written. User-interface thread.
namespace holdwise::exchange {

[[nodiscard]] QString DetailPath();
[[nodiscard]] QString MergePath();
/// Is there a file in the place of one of the two? Anything that is no folder counts: what cannot be read is there.
[[nodiscard]] bool HasAny();
/// Throws Error(NotFound) that names the missing one unless both are there.
void RequireBoth();

/// Brings a replacement to its end that was interrupted between its steps.
void FinishInterruptedSave();
/// Replaces the pair by a new one, flushed to the disk: whatever fails, or whenever the power goes, what is found later
/// is the earlier pair or the new one. With `keepsEarlier` the earlier one gets a second name "….<time>.kept" first, of
/// which the ten newest stay. @return that time, the same in both names; empty when nothing was kept
QString Replace(const ResultSet& holdings, const ResultSet& portfolios, bool keepsEarlier);
/// Renames what there is of the pair to "….<time>.bad", of which the ten newest stay; works on a full disk too.
/// @return the time
QString SetAside();

/// Which database a pair or a database is: its id, and where it stands (relative to the work-data folder when inside).
struct Identity {
  QString id;
  QString place;
  [[nodiscard]] bool IsKnown() const { return !id.isEmpty(); }
};
/// Of the database; unknown for one that has no id.
[[nodiscard]] Identity IdentityOf(DatabaseStatements& database);
/// Of the database that the pair belongs to; unknown without the small file "TZZHOwner.txt" beside the pair.
[[nodiscard]] Identity OwnerOfPair();
/// Notes that the pair belongs to the database; nothing happens when that is noted already or the id is not known.
void NoteOwner(const Identity& database);
/// Does the pair belong to another database? Not to one that has moved, nor to one that was made anew in the place of
/// the one that was lost; but to the original of a copy.
[[nodiscard]] bool IsOfAnother(const Identity& owner, const Identity& database);

}  // namespace holdwise::exchange
