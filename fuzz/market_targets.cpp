// SPDX-License-Identifier: MIT
#include <QUtf8StringView>
#include <algorithm>
#include <cmath>
#include <functional>
#include <set>
#include <string>

#include "factor_files.h"
#include "holdwise/market/bar_reader.h"
#include "holdwise/market/market_rules.h"
#include "holdwise/market/reference_files.h"
#include "holdwise/market/reference_tables.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/number_text.h"
#include "long_bars.h"
#include "properties.h"
#include "targets.h"

namespace holdwise::fuzz {
namespace {

void RequireTableCategory(const Error& error) {
  Require(error.Category() == ErrorCategory::Corrupt || error.Category() == ErrorCategory::Refused,
          "a file that is no such table is corrupt or refused");
}

void CheckRejections(const std::vector<Rejection>& rejections, std::string_view input) {
  const auto lines = 1 + std::count(input.begin(), input.end(), '\n');
  for (const Rejection& rejection : rejections) {
    Require(rejection.line >= 1 && rejection.line <= lines, "a rejection names a line of the file");
    Require(!rejection.reason.isEmpty(), "a rejection has a reason");
  }
}

void CheckBar(const Bar& bar) {
  Require(ReadMarketDate(DateText(bar.date)) == bar.date, "a bar has a date of the calendar");
  Require(bar.close > 0 && bar.close < 1e9, "a close is a price");
}

std::string Written(const std::vector<Bar>& bars) {
  std::string csv = "\xEF\xBB\xBF收盘价（元）,日期\r\n";
  for (const Bar& bar : bars) csv += ShortestUtf8(bar.close) + ',' + DateText(bar.date) + "\r\n";
  return csv;
}

// Every security's bars of a table of many.
void CheckLongBars(std::string_view input, const QString& path) {
  const auto numberOf = [](std::string_view text) {
    const std::optional<std::string> code = ParseStockCode(text);
    return code ? CodeNumberOfStock(*code) : 0;
  };
  LongBars table(numberOf, {});
  try {
    table.Read(path);
  } catch (const Error& error) {
    return RequireTableCategory(error);
  }
  CheckRejections(table.TakeRejections(), input);
  for (const int number : table.Numbers()) {
    BarRules rules;
    rules.codeNumber = number;
    try {
      const BarFile file = table.Take(number, rules);
      CheckRejections(file.rejections, input);
      std::for_each(file.bars.begin(), file.bars.end(), CheckBar);
    } catch (const Error& error) {
      RequireTableCategory(error);
    }
  }
}

void CheckFactors(const QString& path, std::string_view input) {
  std::vector<Rejection> rejections;
  std::vector<std::pair<QString, QString>> understood;
  try {
    KeptFactorFiles kept;
    const FactorTable factors = ReadFactors(path, rejections, understood, kept);
    for (const auto& [number, ofOne] : factors) {
      const FactorSteps& steps = ofOne.steps;
      const auto isBehind = [](const FactorStep& a, const FactorStep& b) { return a.date >= b.date; };
      Require(std::adjacent_find(steps.begin(), steps.end(), isBehind) == steps.end(), "steps ascend, one a date");
      for (const FactorStep& step : steps) Require(step.ratio >= 0, "a ratio is not negative");
    }
  } catch (const Error& error) {
    RequireTableCategory(error);
  }
  CheckRejections(rejections, input);
}

void CheckBars(const BarFile& file, const QString& path) {
  const std::vector<Bar>& bars = file.bars;
  Require(file.volumes.empty() || file.volumes.size() == bars.size(), "every bar has its volume or none has");
  for (const double volume : file.volumes) Require(volume >= 0 && std::isfinite(volume), "a volume is a number");
  std::for_each(bars.begin(), bars.end(), CheckBar);
  const auto isBehind = [](const Bar& a, const Bar& b) { return a.date >= b.date; };
  Require(std::adjacent_find(bars.begin(), bars.end(), isBehind) == bars.end(), "dates ascend, one bar each");
  Require(std::is_sorted(file.rejections.begin(), file.rejections.end(),
                         [](const Rejection& a, const Rejection& b) { return a.line < b.line; }),
          "rejections ascend");

  const MemoryFile written(Written(bars));
  const BarFile again = ReadBars(written.Path());
  Require(again.bars == bars && again.rejections.empty(), "bars come back from their CSV");

  // Other bars at the end are another base of what is adjusted; of previous closes it depends on how many there are
  // whether they adjust.
  const bool mayAdjust = file.understood.contains(QStringLiteral("昨收="));
  if (bars.empty() || file.adjustment != Adjustment::AsTheyStand || mayAdjust) return;
  const int middle = bars[bars.size() / 2].date;
  std::vector<Bar> early;
  std::copy_if(bars.begin(), bars.end(), std::back_inserter(early), [middle](Bar b) { return b.date <= middle; });
  Require(ReadBars(path, {}, middle).bars == early, "a last date only leaves later bars away");

  const std::vector<int> ends = {bars.front().date, bars.back().date};
  const BarFile ofEnds = ReadBars(path, ends);
  Require(ofEnds.bars.size() == (bars.size() > 1 ? 2U : 1U), "only trading dates count");
}

template <typename Read>
bool Reads(Read read, std::string_view input) {
  std::vector<Rejection> rejections;
  try {
    read(rejections);
  } catch (const Error& error) {
    RequireTableCategory(error);
    return false;
  }
  CheckRejections(rejections, input);
  return true;
}

void CheckSecurities(const std::vector<Security>& securities) {
  std::set<std::string> codes;
  for (const Security& security : securities) {
    Require(IsSixDigits(security.code) && codes.insert(security.code).second, "securities have codes of their own");
    Require(security.market == MarketOfStock(security.code) && security.market != 0, "a security has a market");
    Require(!security.name.empty(), "a security has a name");
    Require(security.listDate == 0 || ReadMarketDate(DateText(security.listDate)) == security.listDate,
            "a list date is a date of the calendar");
  }
  CheckAccepted(SecuritiesTable(securities));
}

void CheckRates(const DepositRates& rates, int date) {
  Require(rates.effectiveDate <= date, "rates of the future are not in force");
  Require((rates.effectiveDate == 0) == rates.rates.empty(), "rates are in force from a day on");
  for (const DepositRate& rate : rates.rates)
    Require(rate.percent >= 0 && rate.percent <= 100, "a rate is a percentage");
  const double perDay = RiskFreePerDay(rates);
  Require(perDay >= 0 && perDay <= 1.0 / 250, "the rate of a day is a fraction of the year's");
  CheckAccepted(InterestRateTable(rates, 20240529));
}

}  // namespace

void Bars(std::string_view input) {
  const MemoryFile file(input);
  CheckLongBars(input, file.Path());
  BarFile bars;
  try {
    bars = ReadBars(file.Path());
  } catch (const Error& error) {
    return RequireTableCategory(error);
  }
  CheckRejections(bars.rejections, input);
  CheckBars(bars, file.Path());
  if (!QUtf8StringView(Raw(input)).isValidUtf8()) return;
  if (const auto gb = ToGb18030(Raw(input))) {
    const MemoryFile gbFile(View(*gb));
    try {
      Require(ReadBars(gbFile.Path()).bars == bars.bars, "the encoding does not matter");
    } catch (const Error& error) {
      Require(error.Category() == ErrorCategory::Corrupt, "a text that could be something else is corrupt");
    }
  }
}

void ReferenceFiles(std::string_view input) {
  const MemoryFile file(input);
  const QString path = file.Path();
  const std::unordered_set<int> known = {1, 399001, 399300, 1600000, 1600519, 1000001, 1300750};

  std::vector<Security> securities;
  if (Reads([&](auto& rejections) { securities = ReadSecurities(path, rejections); }, input))
    CheckSecurities(securities);
  std::vector<Security> bare = {{"600000", "a", "", 1, 0}, {"000001", "b", "银行", 2, 0}};
  if (Reads([&](auto& rejections) { ReadIndustries(path, bare, rejections); }, input)) {
    Require(bare.size() == 2 && bare[1].industry == "银行", "an industry that is known stays");
  }
  CheckFactors(path, input);

  std::vector<int> dates;
  if (Reads([&](auto& rejections) { dates = ReadTradingDates(path, rejections); }, input)) {
    Require(std::adjacent_find(dates.begin(), dates.end(), std::greater_equal<>()) == dates.end(),
            "trading dates ascend");
    CheckAccepted(TradingDatesTable(dates));
  }

  constexpr int kToday = 20240529;
  DepositRates rates;
  if (Reads([&](auto& rejections) { rates = ReadDepositRates(path, kToday, rejections); }, input)) {
    CheckRates(rates, kToday);
  }

  std::unordered_map<int, QuoteRow> quotes;
  if (Reads([&](auto& rejections) { quotes = ReadQuotes(path, known, rejections); }, input)) {
    for (const auto& [code, quote] : quotes) {
      Require(known.contains(code), "only known securities have quotes");
      Require(quote.price >= 0 && quote.previousClose >= 0, "a price is not negative");
    }
  }

  std::vector<Account> accounts;
  if (Reads([&](auto& rejections) { accounts = ReadAccounts(path, known, kToday, rejections); }, input)) {
    const auto isBehind = [](const Account& a, const Account& b) { return a.codeNumber >= b.codeNumber; };
    Require(std::adjacent_find(accounts.begin(), accounts.end(), isBehind) == accounts.end(), "accounts ascend");
    for (const Account& account : accounts) {
      Require(known.contains(account.codeNumber), "only known securities have accounts");
      Require(account.totalShares >= 0, "there are no fewer shares than none");
    }
    CheckAccepted(AccountsTable(accounts));
  }

  std::vector<EstimateValue> estimates;
  if (Reads([&](auto& rejections) { estimates = ReadEstimates(path, known, rejections); }, input)) {
    for (const EstimateValue& value : estimates) {
      Require(known.contains(CodeNumberOfStock(value.code)), "only known securities have estimates");
      Require(value.price >= 0, "an estimate is not negative");
    }
    CheckAccepted(EstimateTable(estimates));
  }
}

}  // namespace holdwise::fuzz
