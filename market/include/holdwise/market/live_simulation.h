// SPDX-License-Identifier: MIT
#pragma once
#include <cstdint>
#include <vector>

#include "holdwise/market/quote_service.h"
#include "holdwise/market/random.h"

namespace holdwise {

/// Moves the prices of an embedded quote service for a demonstration: a small random walk with a factor common to the
/// whole market, in ticks of 0.01, inside the daily limits around the previous close. Deterministic per seed.
/// Securities without a previous close stand still. The service must outlive it; same thread as the service.
class LiveSimulation {
 public:
  LiveSimulation(QuoteService& service, std::uint64_t seed);
  /// One step moves about a third of the stocks; indices move with the common factor.
  void Step();

 private:
  QuoteService& service_;
  NormalSource random_;
  double market_ = 0;                // common factor since the previous close, as a fraction
  std::vector<double> exactPrices_;  // unrounded, so that moves below a tick add up
  std::vector<QuoteService::PriceChange> changes_;
};

}  // namespace holdwise
