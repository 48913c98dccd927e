// SPDX-License-Identifier: MIT
#include "kept_proposals.h"

#include <utility>

namespace holdwise {

const Proposals& KeptProposals::Make(const StockPool& pool, const IndexReturns& index, double yearRate,
                                     const ProposalOptions& options, unsigned threads) {
  Source source{pool.stocks, index, yearRate, options};
  if (source_ == source) return proposals_;
  source_.reset();
  proposals_ = MakeProposals(pool, index, yearRate, options, threads);
  source_ = std::move(source);
  return proposals_;
}

}  // namespace holdwise
