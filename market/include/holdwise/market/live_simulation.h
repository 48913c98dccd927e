// SPDX-License-Identifier: MIT
#pragma once
#include <cstdint>
#include <vector>

#include "holdwise/market/quote_service.h"
#include "holdwise/market/random.h"

namespace holdwise {

/// Moves the prices of an embedded quote service through made-up trading days for a demonstration: from 9:30 to 11:30
/// and from 13:00 to 15:00 of a clock of its own a small random walk with a factor common to the whole market, in ticks
/// of 0.01, inside the daily limits around the previous close, with volumes; still in between and after the close, ten
/// minutes (of that clock) after which the day begins anew. Deterministic per seed. Stocks that did not trade on the
/// quotes' date (price = previous close) stay suspended, securities without a previous close stand still. The service
/// must outlive it; same thread as the service.
class LiveSimulation {
 public:
  /// Where one simulation stands, for another to go on from.
  struct State {
    struct Item {
      int codeNumber = 0;
      double exactPrice = 0;
      Quote quote;  ///< its previous close tells whether it still fits
    };
    double secondOfDay = 0;
    double marketMove = 0;
    std::vector<Item> items;
  };
  static constexpr double kSlowest = 1, kFastest = 600;

  /// Begins a day with the quotes as they stand. @param speed seconds of its clock a step, kSlowest to kFastest
  LiveSimulation(QuoteService& service, std::uint64_t seed, double speed = 1);
  /// One step moves about a third of the stocks a second of its clock; indices move with the common factor.
  void Step();
  /// Its clock, in seconds since midnight.
  [[nodiscard]] int SecondOfDay() const noexcept { return static_cast<int>(secondOfDay_); }

  [[nodiscard]] State Now() const;
  /// Goes on from there. What cannot be (a time outside the day, a price outside the limits, a security that is not
  /// there or has another previous close now) is left as it stands; a time outside the day refuses all: false.
  bool GoOnFrom(const State& state);

 private:
  struct Walk {
    double exactPrice = 0;  // unrounded, so that moves below a tick add up
    double sharesASecond = 0;
    bool isSuspended = false;
  };

  void Begin();
  void Move(double seconds);
  void TellTime();
  [[nodiscard]] QuoteService::PriceChange Moved(std::size_t place, std::int64_t shares);

  QuoteService& service_;
  NormalSource random_;
  double speed_;
  double secondOfDay_ = 0;
  double market_ = 0;  // common factor since the previous close, as a fraction
  std::vector<Quote> first_;
  std::vector<Walk> walks_;
  std::vector<QuoteService::PriceChange> changes_;
};

}  // namespace holdwise
