// SPDX-License-Identifier: MIT
#pragma once
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "holdwise/market/csv_table.h"

/// The files beside the daily bars: security master, trading dates, deposit rates, quotes, accounts, estimate values.
/// Each reader throws for the file as a whole as CsvTable does, names every line that it does not use, tells by
/// `understood` (may be null) which columns it took, and is thread-safe.
namespace holdwise {

struct Security {
  std::string code;  ///< six digits
  std::string name;
  std::string industry;  ///< empty when not given
  int market = 0;        ///< 1 Shanghai, 2 Shenzhen
  int listDate = 0;      ///< YYYYMMDD, 0 = not given
};

/// Reads code and name (needed), industry, market or board, exchange and list date. A code that appeared before is
/// rejected; lines of a list that says they are indices, bonds or funds (type 2 to 5) are passed over.
[[nodiscard]] std::vector<Security> ReadSecurities(const QString& path, std::vector<Rejection>& rejections,
                                                   QString* understood = nullptr);
/// Reads code and industry, for those of `securities` that have none yet; codes that are not among them are passed
/// over.
void ReadIndustries(const QString& path, std::vector<Security>& securities, std::vector<Rejection>& rejections,
                    QString* understood = nullptr);
/// Ascending, one each. Where the file has a column that says whether the day is open, only open ones.
[[nodiscard]] std::vector<int> ReadTradingDates(const QString& path, std::vector<Rejection>& rejections,
                                                QString* understood = nullptr);

/// Latest deposit rates, percent a year.
struct DepositRate {
  std::string type;      ///< "定期存款整存整取" or "活期存款"
  std::string term;      ///< "一年" and so on
  std::string rateCode;  ///< stable short name
  double percent = 0;
};
struct DepositRates {
  int effectiveDate = 0;  ///< YYYYMMDD; 0 = none in force
  std::vector<DepositRate> rates;
};
/// Rates in force on `date`: those of the latest line not after it. Needs the columns date and one_year; an empty field
/// of another term means that the term is not offered.
[[nodiscard]] DepositRates ReadDepositRates(const QString& path, int date, std::vector<Rejection>& rejections,
                                            QString* understood = nullptr);

/// What holds without a file: the People's Bank's benchmark rate for one year, 1.50 since 2015-10-24. None before.
[[nodiscard]] DepositRates BenchmarkRates(int date);
/// The one-year rate as a fraction; 0 when no rates are in force.
[[nodiscard]] double RiskFreePerYear(const DepositRates& rates);
/// The one-year rate of a day as a fraction; a year has 250 days. 0 when no rates are in force.
[[nodiscard]] double RiskFreePerDay(const DepositRates& rates);

/// Prices of one stock or index.
struct QuoteRow {
  double price = 0;          ///< above 0
  double previousClose = 0;  ///< 0 = none: nothing traded before the day, as on a first trading day
  bool isSuspended = false;  ///< no trade on the day: both prices are the last close
};
/// Reads code, price and previous close; the result is keyed by code number. A price of 0 is that of a suspended
/// security. A code that appeared before, one whose code number is not in `known`, and a line with both prices 0 are
/// rejected.
/// The indices are written as 1, 399001, 399300 or with their market (sh000001, 000300.SH).
[[nodiscard]] std::unordered_map<int, QuoteRow> ReadQuotes(const QString& path, const std::unordered_set<int>& known,
                                                           std::vector<Rejection>& rejections,
                                                           QString* understood = nullptr);

/// What a stock earns and owns.
struct Account {
  int codeNumber = 0;
  double earnings = 0;     ///< yuan a share, a loss below 0
  double netAssets = 0;    ///< yuan a share
  double totalShares = 0;  ///< 0 = not known
  bool operator==(const Account&) const = default;
};
/// Reads code, earnings and net assets a share (both needed in every line), and the number of shares. Where lines say
/// of which date they are, the latest of each stock that is not after `date` counts. Stocks that are not in `known`
/// (code numbers) are passed over; a second line of a stock and date is rejected when it says something else.
/// Ascending by code number.
[[nodiscard]] std::vector<Account> ReadAccounts(const QString& path, const std::unordered_set<int>& known, int date,
                                                std::vector<Rejection>& rejections, QString* understood = nullptr);

/// The value at which somebody estimates a stock, yuan a share.
struct EstimateValue {
  std::string code;  ///< six digits
  double price = 0;
};
/// Reads code and price, in the order of the file. A code that appeared before, and one whose code number is not in
/// `known`, is rejected.
[[nodiscard]] std::vector<EstimateValue> ReadEstimates(const QString& path, const std::unordered_set<int>& known,
                                                       std::vector<Rejection>& rejections,
                                                       QString* understood = nullptr);

}  // namespace holdwise
