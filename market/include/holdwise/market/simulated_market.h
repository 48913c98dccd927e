// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <cstdint>
#include <functional>

namespace holdwise {

/// A made-up market.
struct SimulationOptions {
  int securities = 300;  ///< 1 to kMostSimulatedSecurities
  int days = 500;        ///< trading days (weekdays), 2 to 5000
  std::uint64_t seed = 1;
  int endDate = 20251231;  ///< YYYYMMDD; the last trading day is this day or the Friday before it; the first day must
                           ///< not come before 1990-12-19, the first of the exchange
  QString outFolder;
  unsigned threads = 0;  ///< 0 = as many as the machine runs at once
};
inline constexpr int kMostSimulatedSecurities = 8000;

/// Writes daily bars of a made-up market as CSV: bars/<code>.csv, indices/{1,399001,399300}.csv, securities.csv,
/// trading_dates.csv, deposit_rates.csv, estimates.csv (values as made up as the prices). The same options give the
/// same bytes. Returns come from a market factor, a factor an industry and noise of the security's own; closes stay
/// inside the daily limits; some securities are suspended for a while (no lines) or listed later. The folder is
/// replaced as a whole at the end. Options outside their range, or a folder that holds anything else: Error(Refused).
/// `onProgress` may be empty; called on any one thread at a time.
void WriteSimulatedMarket(const SimulationOptions& options,
                          const std::function<void(int done, int total)>& onProgress = {});

}  // namespace holdwise
