// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <string>
#include <vector>

#include "holdwise/market/stock_pool.h"

/// Portfolios that are proposed to people with some capital. How they are found, and what they are not:
/// docs/allocation.md. Pure; the same input gives the same bits on any number of threads.
namespace holdwise {

inline constexpr int kFewestStocks = 2;
inline constexpr int kMostStocks = 10;
/// Weights are whole ten-thousandths: what is written adds up to 1 exactly, as decimal numbers.
inline constexpr int kWeightUnits = 10'000;

struct ProposalOptions {
  bool areWanted = true;
  PoolRules pool;
  int leastWeight = 50;     ///< of one stock, percent of the equal weight 1 / n; 0 to 100
  int mostWeight = 200;     ///< of one stock, percent of the equal weight 1 / n; 100 to 1000
  int mostOfIndustry = 40;  ///< of one industry, percent, 1 to 100; with few stocks 1.5 / n
  int premium = 5;          ///< expected return of the composite index above the deposit rate, percent a year; 0 to 30
  bool operator==(const ProposalOptions&) const = default;
};
/// Throws Error(Refused), naming the command line's option, when one is outside its range.
void CheckProposalOptions(const ProposalOptions& options);

struct ProposedHolding {
  std::string code;  ///< six digits
  int units = 0;     ///< weight in ten-thousandths, above 0
  bool operator==(const ProposedHolding&) const = default;
};

/// One candidate portfolio.
struct Proposal {
  std::string style;        ///< "稳健型", ...
  double targetReturn = 0;  ///< a year, fraction: deposit rate + premium x beta (the capital asset pricing model)
  double variance = 0;      ///< of the daily return, by the definitions of Figures and of portfolios
  double beta = 0;          ///< of the same, against the composite index
  std::vector<ProposedHolding> holdings;  ///< ascending by code; the units add up to kWeightUnits
};

/// The candidates of one number of stocks.
struct ProposalList {
  int count = 0;                     ///< stocks of each
  double leastCapital = 0;           ///< ten-thousands of yuan: from here on each holding is at least one lot
  double capitalLimit = 0;           ///< ten-thousands of yuan: up to here this number of stocks is proposed
  std::vector<Proposal> candidates;  ///< never empty
};

struct Proposals {
  std::vector<ProposalList> lists;  ///< ascending by count, limits ascending
  std::vector<QString> remarks;     ///< Chinese: what could not be proposed, and why
};

/// Figures of a portfolio with these weights, as the database's procedure computes them of the same: the weights of the
/// holdings that count on a day are scaled to 1. No holdings, or no days: all 0.
/// @param stocks those of the holdings, in their order
[[nodiscard]] Figures PortfolioFigures(const std::vector<ProposedHolding>& holdings,
                                       const std::vector<const AlignedReturns*>& stocks, const IndexReturns& index);

/// Least capital, in whole ten-thousands of yuan, at which portfolios of 2 to 10 stocks are planned, and behind it the
/// last limit of all: the usual table, raised where prices are so high that at equal weights one lot of half the
/// stocks, at the next day's highest price, would cost more. Ascending. `stocks` must not be empty.
[[nodiscard]] std::vector<double> PlannedCapitals(const std::vector<StockFacts>& stocks);

/// Candidates of every style for each number of stocks, as far as the pool allows: each holding weighs enough to be
/// bought, from the least capital of its number on, in at least one lot at the next day's highest price.
/// @param index the composite index's days, as AlignReturns saw them
/// @param yearRate one-year deposit rate, fraction
[[nodiscard]] Proposals MakeProposals(const StockPool& pool, const IndexReturns& index, double yearRate,
                                      const ProposalOptions& options, unsigned threads);

}  // namespace holdwise
