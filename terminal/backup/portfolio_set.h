// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <vector>

#include "holdwise/sdk/database.h"

/// What a person has entered, apart from the database it is kept in: read whole, compared, written, brought back.
/// Figures that the plug-in calculates are no part of it.
namespace holdwise::backup {

/// One holding as stored.
struct SavedHolding {
  std::int64_t id = 0;
  std::int64_t portfolioId = 0;
  std::int64_t code = 0;  ///< code number: 1600000, 1000001
  std::int64_t quantity = 0;
  double weight = 0;    ///< fraction
  double buyPrice = 0;  ///< yuan
  bool operator==(const SavedHolding&) const = default;
};

/// One portfolio as stored, with its holdings by id.
struct SavedPortfolio {
  std::int64_t id = 0;
  QString name;
  QString date;  ///< as stored; "YYYY-MM-DD"
  double indexLevel = 0;
  double targetReturn = 0;
  std::int64_t saveFlag = 0;                 ///< 1: saved
  std::optional<QString> style = {};         ///< none: null
  std::optional<std::int64_t> isClose = {};  ///< 1: the level is the index's close of that date; none: not known
  std::optional<std::int64_t> knownTo = {};  ///< YYYYMMDD the index's series reached to; none: not known
  std::vector<SavedHolding> holdings = {};
  bool operator==(const SavedPortfolio&) const = default;
};

/// All portfolios, by id.
struct PortfolioSet {
  std::vector<SavedPortfolio> portfolios;
  std::vector<SavedHolding> orphans;  ///< holdings of no portfolio, by id
  /// Values that are missing where every program of the house writes one (Chinese, a text each); they read as 0 or "".
  QStringList gaps;
  bool operator==(const PortfolioSet&) const = default;
  /// Holdings of all portfolios, without the orphans.
  [[nodiscard]] int HoldingCount() const;
};

/// Whether a person has entered the same in both: they may differ in what the plug-in itself finds out about an index
/// level, which the exchange files do not bring back.
[[nodiscard]] bool IsEnteredAlike(const PortfolioSet& left, const PortfolioSet& right);

/// The last numbers given away; 0 when none was.
struct Generators {
  std::int64_t portfolio = 0;
  std::int64_t holding = 0;
};

/// Reads all portfolios as they are committed at one moment, by one statement; inside a transaction of `database` as
/// that one sees them. Throws what Query throws. The thread of `database`.
[[nodiscard]] PortfolioSet ReadPortfolios(DatabaseStatements& database);
/// Throws what Query throws.
[[nodiscard]] Generators ReadGenerators(DatabaseStatements& database);

/// Why the set cannot be what a person has entered, a Chinese text for each finding (at most 100, then how many more):
/// orphans, gaps, a portfolio without holdings, two rows of one id, ids outside 1 to kLargestId, a name that is empty
/// or longer than its column, a date that is none, a code number other than 1000000 to 1999999, a quantity, price,
/// weight, level or target return out of range. Empty: plausible. Pure; any thread.
[[nodiscard]] QStringList ProblemsOf(const PortfolioSet& set);
/// The same, with ids that the generators have not reached, which the next new row would meet.
[[nodiscard]] QStringList ProblemsOf(const PortfolioSet& set, const Generators& generators);

}  // namespace holdwise::backup
