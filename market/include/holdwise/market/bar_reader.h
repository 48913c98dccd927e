// SPDX-License-Identifier: MIT
#pragma once
#include <span>
#include <vector>

#include "holdwise/market/csv_table.h"

namespace holdwise {

/// The close of one trading day: date YYYYMMDD, price in yuan or points.
struct Bar {
  int date = 0;
  double close = 0;
  bool operator==(const Bar&) const = default;
};

/// How closes became comparable over days on which rights or dividends went off.
enum class Adjustment {
  AsTheyStand,     ///< nothing in the file says how; also bars that are adjusted already
  PreviousClose,   ///< by the exchange's reference price of each day
  Factors,         ///< by factors of another file
  OwnFactors,      ///< by the cumulative factor beside each close
  PriceFactors,    ///< closes were adjusted already, on another day's base: closes / factor are as traded
  AdjustedCloses,  ///< by the adjusted close beside each close
  LaterFactors,    ///< by factors of another file that begin after the first bar: the days before them are not adjusted
};
inline constexpr int kAdjustments = 7;

/// What is odd about the bars, for a check.
struct BarCounts {
  int suspendedDays = 0;      ///< lines of days without a trade: no bar, and no mistake
  int missingDays = 0;        ///< trading dates between first and last bar without a line
  int zeroPrices = 0;         ///< lines rejected for a price that is zero or negative
  int longestStandstill = 0;  ///< most bars in a row with one close
  int laterLines = 0;         ///< lines after the last date: not read
  int laterDays = 0;          ///< bars after the last of the trading dates
};

/// What a file of daily bars held.
struct BarFile {
  std::vector<Bar> bars;        ///< ascending, one a date; forward-adjusted to the last one where the file says how
  std::vector<double> volumes;  ///< of each bar, in the file's unit; empty when the file has no such column
  std::vector<Rejection> rejections;
  std::vector<Rejection> warnings;  ///< of what was used and looks wrong; the line is 0
  Adjustment adjustment = Adjustment::AsTheyStand;
  BarCounts counts;
  QString understood;  ///< as CsvTable::Understood
};

/// From `date` on prices are lower by rights and dividends: those before it, times `ratio`, compare with them.
struct FactorStep {
  int date = 0;
  double ratio = 1;
  int after = 0;  ///< it may have been on any day behind this one, of which there is no factor; 0 = on `date`
  bool operator==(const FactorStep&) const = default;
};
/// Ascending, one a date.
using FactorSteps = std::vector<FactorStep>;

/// What lines of bars are read by.
struct BarRules {
  std::span<const int> tradingDates = {};  ///< ascending; empty = no check
  int lastDate = 0;                        ///< lines dated after it are not read; 0 = no limit
  bool isIndex = false;                    ///< no rights and dividends: a previous close adjusts nothing
  int codeNumber = 0;                      ///< whose bars they are: a code in a line must be its; 0 = not known
  int listDate = 0;                        ///< 0 = not known
  const FactorSteps* factors = nullptr;    ///< for bars that do not say themselves how they are adjusted
  int factorsFrom = 0;                     ///< the factors do not tell about days before it; 0 = about all
};

/// Reads one CSV file of daily bars: date and close are needed, open, high, low and volume are checked when they are
/// there. Lines in any order. Of two lines with one date the first in the file counts, the later is rejected. A line of
/// a day without a trade (it says so, or its prices are blank) gives no bar. A Saturday or Sunday is rejected, and so
/// is a date inside the trading dates that is not one of them. Bars as traded are forward-adjusted to the last bar:
///   by a previous close        a(i-1) = p(i) x f(i), f(i-1) = f(i) x p(i) / c(i-1): the return of a day is c / p - 1;
///                              where it differs from the close before on adjacent days, upward more than twice, or
///                              on more than a fifth of the days, the closes are adjusted already and stay as they
///                              are: with a warning when a difference is more than that of rounding
///   by a factor per day        a(i) = c(i) x factor(i) / factor(last)
///   by steps                   a(i) = c(i) x product of the ratios of later steps up to the last bar
///   by an adjusted close       a(i) = adjusted(i) x c(last) / adjusted(last)
///   with a price factor        a(i) = c(i) / factor(last)
/// with c the close, p the previous close, a the adjusted close, f(last) = 1. Bars of which one moves more than its
/// board allows, or contradicts the change beside it, are warned of. Backward-adjusted bars (adjustflag 1):
/// Error(Refused), and so are those of which an adjusted close is no price; other errors of the file: see CsvTable.
/// Thread-safe.
[[nodiscard]] BarFile ReadBars(const QString& path, const BarRules& rules);
[[nodiscard]] BarFile ReadBars(const QString& path, std::span<const int> tradingDates = {}, int lastDate = 0);

}  // namespace holdwise
