// SPDX-License-Identifier: MIT
#pragma once
#include <map>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "bar_folder.h"
#include "factor_files.h"
#include "holdwise/market/data_folder_builder.h"
#include "holdwise/market/file_state.h"
#include "holdwise/market/period_series.h"
#include "holdwise/market/reference_files.h"
#include "input_report.h"
#include "long_bars.h"

namespace holdwise {

/// What tells whether a stock's bars would be read as before, in a market with the same dates.
struct StockSource {
  FileState file;
  int listDate = 0;
  StockFactors factors;
  bool operator==(const StockSource&) const = default;
};

/// All that a data folder is made from, as it is read. Errors as BuildDataFolder's. ReadStock may be called from
/// several threads for different stocks; all else from one.
class MarketInputs {
 public:
  /// What is not used, and what looks wrong, goes to the observer and is counted in the summary.
  /// @param factorFiles those read before
  MarketInputs(const BuildOptions& options, const BuildObserver& observer, BuildSummary& summary,
               KeptFactorFiles& factorFiles);

  /// Indices, trading dates, securities, rates, accounts, estimates.
  void ReadReferences();
  /// Which stocks have bars; of tables of many stocks their lines.
  void ListStocks();
  struct StockBars {
    BarFile file;
    std::vector<Rejection> rejections;  ///< with those of the file
    /// Keeps what Report wants to know.
    void LetBarsGo();
  };
  /// Of the i-th of Stocks(), as it stands now; none when its bars come from a table of many, or just change.
  [[nodiscard]] std::optional<StockSource> SourceOf(std::size_t stock) const;
  /// The bars of the i-th of Stocks(), once.
  [[nodiscard]] StockBars ReadStock(std::size_t stock);
  /// After ReadStock of all: takes note of what it gave.
  void Report(std::size_t stock, const StockBars& bars);
  [[nodiscard]] std::unordered_map<int, QuoteRow> ReadQuotesFile();
  /// What has been said so far, into the summary.
  void Finish();

  [[nodiscard]] const std::vector<StockFile>& Stocks() const { return stocks_; }
  [[nodiscard]] const std::vector<Security>& Securities() const { return securities_; }
  [[nodiscard]] const std::vector<int>& TradingDates() const { return tradingDates_; }
  [[nodiscard]] Window GetWindow() const { return window_; }
  [[nodiscard]] const BarFile& Index(int number) const { return indices_.at(number); }
  [[nodiscard]] const DepositRates& Rates() const { return rates_; }
  [[nodiscard]] const std::vector<EstimateValue>& Estimates() const { return estimates_; }
  [[nodiscard]] const std::vector<Account>& Accounts() const { return accounts_; }

 private:
  void ReadIndices();
  void TakeIndex(int number, BarFile file, const QString& path);
  void ReadDates();
  void CheckIndices(int lastOfCalendar);
  void Warn(const QString& place, const QString& doubt);
  void ReadSecurityMaster();
  void ReadAccountsFile();
  void Report(const std::vector<Rejection>& rejections);
  [[nodiscard]] BarRules RulesOf(const std::string& code) const;
  [[nodiscard]] std::unordered_set<int> KnownStocks() const;

  const BuildOptions& options_;
  const BuildObserver& observer_;
  BuildSummary& summary_;
  KeptFactorFiles& factorFiles_;
  InputReport report_;
  std::vector<Security> securities_;
  std::map<std::string, Security*> byCode_;
  std::vector<int> tradingDates_;
  Window window_;
  std::map<int, BarFile> indices_;
  int laterStocks_ = 0;  // with lines behind the market's last trading date
  std::int64_t laterDays_ = 0;
  DepositRates rates_;
  std::vector<EstimateValue> estimates_;
  std::vector<Account> accounts_;
  FactorTable factors_;
  std::vector<StockFile> stocks_;
  std::unique_ptr<LongBars> tables_;
  std::unordered_set<std::string> ofTables_;  // codes of stocks whose bars come from tables
};

}  // namespace holdwise
