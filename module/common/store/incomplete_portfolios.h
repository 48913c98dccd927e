// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <vector>

#include "holdwise/sdk/database.h"

/// What the figures of the portfolios lack, to be said where they are read.
namespace holdwise {

enum class Lack {
  NotCalculated,  ///< everything is there, the calculation has not been run to its end
  NoStatistics,   ///< the index or a holding has no daily rows at all
  OldStatistics,  ///< its rows end before those of the others, or before the data centre's latest trading date
  NewStatistics,  ///< the index's rows end after the data centre's latest trading date
  OtherEdition,   ///< its rows are of another edition than the data centre's
  NoReturn,       ///< it has rows but no return among them yet, as on its first trading day
  OneReturn,      ///< the portfolio has returns of a single day, which have no deviation
  NoWeights,      ///< the weights of the portfolio's holdings are all 0
  NoDepositRate,  ///< the one-year deposit rate, for which the portfolio's figures take 0
  NoPrice,
  NoPreviousClose,
  NoWeekClose,     ///< none in the week before
  NoMonthClose,    ///< none in the month before
  NoBeta,          ///< against the index of the stress test
  NoCost,          ///< nothing is known to have been paid for the portfolio
  NoBuyIndex,      ///< the index level of the day of purchase is not known
  BoughtLater,     ///< the day of purchase is later than the data centre's date
  CorrectedIndex,  ///< the index's close of the day of purchase is not the stored one any more
};

struct MissingInput {
  Lack lack = Lack::NotCalculated;
  QString code;        ///< six digits; empty for the index and when the portfolio itself lacks it
  QString name;        ///< of the security, empty when the host knows none
  int date = 0;        ///< OldStatistics, NewStatistics: the end of its rows, YYYYMMDD; else 0
  QString found = {};  ///< BoughtLater, CorrectedIndex: what does not fit, in words

  bool operator==(const MissingInput&) const = default;
};

struct IncompletePortfolio {
  QString id;
  QString name;
  int figureDate = 0;  ///< the date its stored figures rest on, YYYYMMDD; 0 when it has none or a holding has no rows
  std::vector<MissingInput> missing;  ///< never empty
};

enum class PortfolioSet {
  Saved,
  Unsaved  ///< those still being edited
};

/// The portfolios whose stored figures do not rest on everything they should, latest portfolio first. One cheap
/// statement when there is none. Names of securities come from the module's host. What a failing statement throws
/// reaches the caller. User-interface thread.
[[nodiscard]] std::vector<IncompletePortfolio> IncompletePortfolios(DatabaseStatements& database,
                                                                    PortfolioSet set = PortfolioSet::Saved);

/// "2 个组合的数据不完整"; empty when there is none. Pure.
[[nodiscard]] QString NoticeOf(const std::vector<IncompletePortfolio>& portfolios);
/// One line a portfolio: its name and what is missing. Pure.
[[nodiscard]] QStringList LinesOf(const std::vector<IncompletePortfolio>& portfolios);
/// The same as one text for a hint; of many portfolios and many securities the first ones, and how many more. Pure.
[[nodiscard]] QString HintOf(const std::vector<IncompletePortfolio>& portfolios);

}  // namespace holdwise
