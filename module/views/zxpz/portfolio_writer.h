// SPDX-License-Identifier: MIT
#pragma once
#include <cstdint>

#include "holdwise/sdk/database.h"
#include "portfolio_draft.h"

/// What the editor writes to the portfolio tables. Which statement may fail with which consequence is intended as it
/// stands, also where one failure is not treated like another. User-interface thread; no transaction may be open.
namespace holdwise::editor {

enum class CreateResult {
  Created,
  NameTaken,  ///< also by a saved portfolio; nothing was written
  Failed      ///< by an exception: nothing was written, and it stands in the debug log
};
/// Stores the draft as a new unsaved portfolio, bought today, in one transaction. That the header's statement does not
/// answer 1 is Failed too, but what the holdings' statements wrote is stored then: intended.
[[nodiscard]] CreateResult Create(DatabaseStatements& database, const PortfolioDraft& draft);

enum class RewriteResult {
  Rewritten,
  Refused,     ///< nothing was changed; the user is told nothing
  NameShared,  ///< nothing was changed; a portfolio with another id has the name
  Failed       ///< nothing was changed; the user is told. An exception stands in the debug log
};
/// What becomes of a rewriting whose name another portfolio has. Two of one name cannot be saved, and the deletion of
/// one deletes both.
enum class SharedName { Taken, Refused };
/// Stores the draft in the place of the portfolio with that id, bought on the market's current date, in one
/// transaction. When the header's deletion does not answer 1, nothing is stored in its place and the deletion of the
/// holdings stays, as Rewritten: intended.
[[nodiscard]] RewriteResult Rewrite(DatabaseStatements& database, std::int64_t portfolioId, const PortfolioDraft& draft,
                                    SharedName sharedName = SharedName::Taken);

enum class SaveState {
  Fit,
  Unfinished,  ///< its statistics are not calculated
  NotOne       ///< no portfolio has the name, or several have
};
/// Can the portfolio of that name be saved? A failing statement throws.
[[nodiscard]] SaveState SaveStateOf(DatabaseStatements& database, const QString& name);
/// Marks it saved; false when the statement does not answer 1. A failing statement throws.
[[nodiscard]] bool Save(DatabaseStatements& database, const QString& name);

/// The deletion of a portfolio, in a transaction that is begun before the user is asked: made, the transaction is open;
/// destroyed, what was not stored is rolled back. What a failing statement throws reaches the caller.
class Deletion {
 public:
  /// The database must live longer.
  explicit Deletion(DatabaseStatements& database) : database_(database), transaction_(database) {}

  enum class Result { Deleted, HoldingsRefused, HeaderRefused };
  /// Deletes holdings and header of the named portfolio; stored only when both statements answer 1. Once.
  [[nodiscard]] Result Run(const QString& name);

 private:
  DatabaseStatements& database_;
  TransactionScope transaction_;
};

}  // namespace holdwise::editor
