// SPDX-License-Identifier: MIT
#pragma once
#include <optional>

#include "holdwise/market/proposals.h"

namespace holdwise {

/// The last proposals, for as long as all that they are made of stays the same. Not thread-safe.
class KeptProposals {
 public:
  /// As MakeProposals.
  [[nodiscard]] const Proposals& Make(const StockPool& pool, const IndexReturns& index, double yearRate,
                                      const ProposalOptions& options, unsigned threads);

 private:
  struct Source {
    std::vector<StockFacts> stocks;
    IndexReturns index;
    double yearRate = 0;
    ProposalOptions options;
    bool operator==(const Source&) const = default;
  };
  std::optional<Source> source_;
  Proposals proposals_;
};

}  // namespace holdwise
