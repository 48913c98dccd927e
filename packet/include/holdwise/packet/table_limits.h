// SPDX-License-Identifier: MIT
#pragma once
#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/packet_file.h"

/// What a file of a known kind can hold at most, several times over what a market ever had: a small file that unpacks
/// to more is refused before memory or time is spent on it. Who writes such a file keeps to the same limits.
namespace holdwise {

/// The size of a table: rows, columns (unknown ones behind the known ones included), bytes of one row's texts together.
struct TableSize {
  int rows = 0;
  int columns = 32;
  int rowTextBytes = 0;
};

/// The limits of packet files that hold at most such a table. The size of the unpacked content follows from it, so that
/// a frame which promises more is refused unopened.
[[nodiscard]] constexpr PacketLimits LimitsOf(const TableSize& size) noexcept {
  constexpr std::int64_t kHeadBytes = 16;     // of a value's array, of a text
  constexpr std::int64_t kTextHolder = 32;    // an empty text in memory
  constexpr std::int64_t kColumnBytes = 256;  // name and keys
  PacketLimits limits;
  const std::int64_t rows = size.rows;
  const std::int64_t cells = rows * size.columns;
  const std::int64_t texts = rows * size.rowTextBytes;
  limits.rows = size.rows;
  limits.columns = size.columns;
  limits.textBytes = size.rowTextBytes;
  limits.contentBytes = kColumnBytes + size.columns * kColumnBytes + cells * kHeadBytes + texts;
  limits.compressedBytes = limits.contentBytes + kColumnBytes;
  limits.memoryBytes = cells * (kTextHolder + 1) + texts + size.columns * kColumnBytes;
  return limits;
}

/// Days, weeks and months of one security: the exchanges have had 8,700 trading days since 1990.
inline constexpr int kMostSeriesRows = 20'000;
/// Securities, and rows of a file with one row a security.
inline constexpr int kMostSecurities = 100'000;

/// What a data folder says of its market.
inline constexpr PacketLimits kMarketLimits = LimitsOf({.rows = 1, .rowTextBytes = 256});
/// The statistics rows of one stock.
inline constexpr PacketLimits kStockSeriesLimits = LimitsOf({.rows = kMostSeriesRows, .rowTextBytes = 512});
/// The statistics rows of the three indices.
inline constexpr PacketLimits kIndexSeriesLimits =
    LimitsOf({.rows = kIndexCount * kMostSeriesRows, .rowTextBytes = 512});
/// Deposit rates.
inline constexpr PacketLimits kInterestRateLimits = LimitsOf({.rows = 1000, .columns = 64, .rowTextBytes = 8192});
/// One row a security: security master, quotes, accounts, risk figures, estimate values.
inline constexpr PacketLimits kSecuritiesLimits = LimitsOf({.rows = kMostSecurities, .rowTextBytes = 2048});
/// Proposed portfolios: the table of capitals, the candidates of one number of stocks, the holdings of one candidate,
/// the stock pool.
inline constexpr PacketLimits kProposalLimits = LimitsOf({.rows = 1000, .rowTextBytes = 2048});
/// Trading dates.
inline constexpr PacketLimits kTradingDatesLimits = LimitsOf({.rows = 100'000});
/// Members of all stock groups.
inline constexpr PacketLimits kGroupsLimits =
    LimitsOf({.rows = 2 * kMostSecurities, .columns = 8, .rowTextBytes = 256});

/// The exchange files: portfolios, and the holdings of all of them.
inline constexpr PacketLimits kPortfoliosLimits = LimitsOf({.rows = 100'000, .rowTextBytes = 4096});
inline constexpr PacketLimits kHoldingsLimits = LimitsOf({.rows = 1'000'000, .rowTextBytes = 256});

}  // namespace holdwise
