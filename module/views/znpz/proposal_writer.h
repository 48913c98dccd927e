// SPDX-License-Identifier: MIT
#pragma once
#include <QDate>
#include <QString>
#include <vector>

#include "holdwise/sdk/database.h"

/// What saving a proposed portfolio writes. User-interface thread; no transaction may be open.
namespace holdwise::allocation {

/// One holding, as its texts stand in the grid; empty ones are stored as 0.
struct ProposedHolding {
  QString code;  ///< code number or six digits
  QString quantity;
  QString weight;
  QString price;  ///< yuan, two decimals
};
/// A candidate with its holdings, as the texts stand in the grids.
struct Proposal {
  QString number;  ///< in the list, from 1
  QString style;
  QString targetReturn;  ///< percent
  QString variance;
  QString beta;
  int stockCount = 0;
  QDate today;         ///< stands in the name
  QString indexClose;  ///< of the Shanghai Composite
  QString editDate;    ///< the market's current date
  std::vector<ProposedHolding> holdings;
};

enum class SaveResult {
  Saved,
  NameTaken,  ///< nothing was written
  Failed      ///< a statement did not answer 1; nothing of the portfolio is left
};
/// Stores the proposal as a saved, unfinished portfolio. What a failing statement throws reaches the caller; nothing is
/// left of the portfolio then either. Needs the module's host.
[[nodiscard]] SaveResult Save(DatabaseStatements& database, const Proposal& proposal);

}  // namespace holdwise::allocation
