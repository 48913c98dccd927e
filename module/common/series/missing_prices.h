// SPDX-License-Identifier: MIT
#pragma once
#include <vector>

#include "common/store/incomplete_portfolios.h"

namespace holdwise {

/// Which prices figures rest on.
enum class PricesUsed {
  None,
  Latest,
  LatestAndCloses  ///< the previous closes and those of the week and month before, too
};

/// Which of what is stored about them figures rest on; each also on what stands before it.
enum class StoredUsed {
  None,
  Closes,          ///< the rows of the securities and the index
  Figures,         ///< what the calculation makes of them
  FiguresWithRate  ///< and of the deposit rate
};

/// What figures are made from.
struct TFigureBasis {
  StoredUsed stored = StoredUsed::FiguresWithRate;
  PricesUsed prices = PricesUsed::None;
  bool isIndexAtPurchaseUsed = false;
};
/// All of it.
inline constexpr TFigureBasis kWholeBasis{StoredUsed::FiguresWithRate, PricesUsed::LatestAndCloses, true};

/// The saved portfolios with holdings whose price is not known or, where the closes are used, whose previous close is
/// not known, or whose close of the week or month before is not known while another holding's is, latest portfolio
/// first: their value (change of the day, week, month) is not what it says. Nothing before the shared objects exist,
/// and of prices nothing before the first reply. What a failing statement throws reaches the caller. User-interface
/// thread.
[[nodiscard]] std::vector<IncompletePortfolio> PortfoliosLackingPrices(PricesUsed used, DatabaseStatements& database);
/// The saved portfolios with holdings whose previous close is not known, or whose beta counted as 0 in the last stress
/// test because the index's risk table lacks it (of betas nothing while there is no such table): latest first. Throws
/// like the above.
[[nodiscard]] std::vector<IncompletePortfolio> PortfoliosLackingStressInputs(DatabaseStatements& database);
/// Two lists of incomplete portfolios as one: of a portfolio in both, what is missing in `more` comes last, and once.
/// Pure.
[[nodiscard]] std::vector<IncompletePortfolio> Together(std::vector<IncompletePortfolio> portfolios,
                                                        const std::vector<IncompletePortfolio>& more);
/// The portfolios that lack something of what is stored and used, and the saved ones whose purchase does not fit the
/// data, as one list: with what of it figures on that basis rest on. Errors and thread as above.
[[nodiscard]] std::vector<IncompletePortfolio> PortfoliosLackingStoredInputs(const TFigureBasis& basis,
                                                                             DatabaseStatements& database,
                                                                             PortfolioSet set = PortfolioSet::Saved);
/// For a calculation that could not begin. Of the portfolios that have not been calculated, whatever it would have
/// brought is taken out: it lacks because nothing was fetched. Those that lack nothing else go. @return their names
[[nodiscard]] QStringList TakeUncalculated(std::vector<IncompletePortfolio>& portfolios);
/// "甲、乙：没有计算", of many the first ones and how many there are; empty for none. Pure.
[[nodiscard]] QString UncalculatedLine(const QStringList& names);
/// Those portfolios and the ones that lack prices as one list: of a portfolio in both, what it lacks of prices comes
/// last. Errors and thread as above.
[[nodiscard]] std::vector<IncompletePortfolio> WithThoseLackingPrices(std::vector<IncompletePortfolio> portfolios,
                                                                      PricesUsed used, DatabaseStatements& database);

}  // namespace holdwise
