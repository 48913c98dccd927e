// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <utility>
#include <vector>

#include "holdwise/market/proposals.h"
#include "holdwise/packet/result_set.h"
#include "kept_proposals.h"

/// Proposals as files of the data folder (docs/data-folder.md). Pure and thread-safe.
namespace holdwise {

struct ProposalFiles {
  std::vector<std::pair<QString, ResultSet>> tables;  ///< by name relative to the data folder; the stock pool first
  int candidates = 0;
  std::vector<QString> remarks;  ///< Chinese
};

/// What the market as a whole gives.
struct ReferenceFigures {
  const IndexReturns& index;  ///< the composite's days
  double yearRate = 0;        ///< one-year deposit rate, fraction
  int date = 0;               ///< the market's, YYYYMMDD
};

/// @param stocks all that have bars
/// @param estimates of the stocks that somebody gave one for
/// @param kept the last proposals
[[nodiscard]] ProposalFiles MakeProposalFiles(std::vector<StockFacts> stocks, const ReferenceFigures& reference,
                                              const std::vector<EstimateValue>& estimates,
                                              const ProposalOptions& options, unsigned threads, KeptProposals& kept);

/// Is this the name, relative to the data folder, of a file that proposals are written to? Those of an earlier build
/// must not outlive it.
[[nodiscard]] bool IsProposalFile(const QString& name);

}  // namespace holdwise
