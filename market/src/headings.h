// SPDX-License-Identifier: MIT
#pragma once
#include <cstddef>
#include <span>

#include "holdwise/market/csv_table.h"

/// The columns of every file that is read, and all words under which they are known: the one place for them.
namespace holdwise {

enum BarColumn : std::size_t {
  kBarDate,
  kBarClose,
  kBarOpen,
  kBarHigh,
  kBarLow,
  kBarVolume,
  kBarCode,
  kBarPreviousClose,
  kBarChange,
  kBarAdjustedClose,
  kBarFactor,
  kBarCumulativeFactor,
  kBarAdjustFlag,
  kBarTrades,
  kBarPaused,
  kBarSpecialTreatment,
};
[[nodiscard]] std::span<const CsvColumn> BarColumns();

enum SecurityColumn : std::size_t {
  kSecurityCode,
  kSecurityName,
  kSecurityIndustry,
  kSecurityMarket,
  kSecurityExchange,
  kSecurityListDate,
  kSecurityType,
};
[[nodiscard]] std::span<const CsvColumn> SecurityColumns();

enum IndustryColumn : std::size_t { kIndustryCode, kIndustryName };
[[nodiscard]] std::span<const CsvColumn> IndustryColumns();

enum CalendarColumn : std::size_t { kCalendarDate, kCalendarOpen, kCalendarExchange };
[[nodiscard]] std::span<const CsvColumn> CalendarColumns();

/// The date, then the terms: one year, demand, three months, half a year, two, three, five years.
enum RateColumn : std::size_t { kRateDate, kFirstRate };
[[nodiscard]] std::span<const CsvColumn> RateColumns();

enum QuoteColumn : std::size_t { kQuoteCode, kQuotePrice, kQuotePreviousClose };
[[nodiscard]] std::span<const CsvColumn> QuoteColumns();

enum EstimateColumn : std::size_t { kEstimateCode, kEstimatePrice };
[[nodiscard]] std::span<const CsvColumn> EstimateColumns();

/// The date is that of which the figures are.
enum AccountColumn : std::size_t { kAccountCode, kAccountDate, kAccountEarnings, kAccountNetAssets, kAccountShares };
[[nodiscard]] std::span<const CsvColumn> AccountColumns();

enum FactorColumn : std::size_t { kFactorCode, kFactorDate, kCumulative, kForward, kDivisor, kOfEvent, kFactor };
[[nodiscard]] std::span<const CsvColumn> FactorColumns();

}  // namespace holdwise
