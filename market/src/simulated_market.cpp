// SPDX-License-Identifier: MIT
#include "holdwise/market/simulated_market.h"

#include <QDir>
#include <QFile>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <map>
#include <vector>

#include "holdwise/market/folder_swap.h"
#include "holdwise/market/market_rules.h"
#include "holdwise/market/random.h"
#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/error.h"
#include "holdwise/packet/thread_annotations.h"
#include "parallel_for.h"
#include "simulated_names.h"

namespace holdwise {
namespace {

constexpr double kMarketDrift = 0.0003;
constexpr double kMarketDeviation = 0.011;
constexpr double kIndustryDeviation = 0.007;
constexpr double kIndexDeviation = 0.0025;
constexpr double kNewsShare = 0.01;  // days on which a security moves for reasons of its own
constexpr double kNewsFactor = 3.5;
constexpr double kGrowthBoardFactor = 1.4;  // boards with the wide limit move more
constexpr double kSuspendedShare = 0.08;    // securities with one long suspension
constexpr double kLateListedShare = 0.02;
constexpr double kSingleDayGap = 0.0004;

using Cents = std::int64_t;

// Independent seeds from one (the finaliser of SplitMix64), so that securities may be made in any order.
std::uint64_t SubSeed(std::uint64_t seed, std::uint64_t number) {
  std::uint64_t z = seed + 0x9E3779B97F4A7C15ULL * (number + 1);
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
  return z ^ (z >> 31);
}

void AppendNumber(QByteArray& text, std::int64_t number) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  text.append(digits, end - digits);
}

void AppendPrice(QByteArray& text, Cents price) {
  AppendNumber(text, price / 100);
  const int cents = static_cast<int>(price % 100);
  text.append('.').append(static_cast<char>('0' + cents / 10)).append(static_cast<char>('0' + cents % 10));
}

struct DayPrices {
  Cents open = 0;
  Cents high = 0;
  Cents low = 0;
  Cents close = 0;
  std::int64_t volume = 0;
};

void AppendBar(QByteArray& text, const std::string& date, const DayPrices& day) {
  text.append(date.data(), static_cast<qsizetype>(date.size())).append(',');
  for (const Cents price : {day.open, day.high, day.low, day.close}) {
    AppendPrice(text, price);
    text.append(',');
  }
  AppendNumber(text, day.volume);
  text.append('\n');
}

constexpr int kEarliestDate = 19901219;
constexpr const char* kBarHeading = "date,open,high,low,close,volume\n";

struct Factors {
  std::vector<std::string> dates;  // "YYYY-MM-DD"
  std::vector<double> market;
  std::map<std::string, std::vector<double>> industries;
};

Factors MakeFactors(const SimulationOptions& options, const std::vector<SimulatedSecurity>& securities) {
  Factors factors;
  for (int day = DayNumber(options.endDate); static_cast<int>(factors.dates.size()) < options.days; --day) {
    const int date = DateOfDayNumber(day);
    if (IsWeekday(date)) factors.dates.push_back(DateText(date));
  }
  std::reverse(factors.dates.begin(), factors.dates.end());
  const std::size_t days = factors.dates.size();
  NormalSource random(SubSeed(options.seed, 0));
  for (std::size_t day = 0; day < days; ++day) {
    factors.market.push_back(kMarketDrift + kMarketDeviation * random.Normal());
  }
  for (const SimulatedSecurity& security : securities) factors.industries[security.industry];
  for (auto& [industry, returns] : factors.industries) {
    for (std::size_t day = 0; day < days; ++day) returns.push_back(kIndustryDeviation * random.Normal());
  }
  return factors;
}

/// Days without a bar of one security: before its listing, one long suspension, and single days.
struct Absences {
  std::size_t listedFrom = 0;
  std::size_t suspendedFrom = 0;
  std::size_t suspendedTo = 0;
};

Absences DrawAbsences(NormalSource& random, std::size_t days) {
  const auto dayBelow = [&](std::size_t limit) {
    return static_cast<std::size_t>(random.Uniform() * static_cast<double>(limit));
  };
  Absences absences;
  const double listing = random.Uniform();
  const std::size_t listedFrom = dayBelow(days / 2 + 1);
  if (listing < kLateListedShare) absences.listedFrom = listedFrom;
  const double suspension = random.Uniform();
  const std::size_t from = dayBelow(days);
  const std::size_t length = 3 + dayBelow(18);
  if (suspension < kSuspendedShare) {
    absences.suspendedFrom = from;
    absences.suspendedTo = std::min(days, from + length);
  }
  return absences;
}

Cents Move(Cents price, double change, const PriceLimits& limits) {
  const double moved = std::floor(static_cast<double>(price) * (1 + change) + 0.5);
  return std::clamp(static_cast<Cents>(moved), limits.lower, limits.upper);
}

/// Price behaviour of one security.
struct Character {
  double beta = 1;
  double industryWeight = 1;
  double deviation = 0.02;
  double turnover = 1e6;  ///< typical volume, shares
};

Character DrawCharacter(NormalSource& random) {
  Character character;
  character.beta = std::clamp(1 + 0.25 * random.Normal(), 0.3, 2.0);
  character.industryWeight = std::clamp(1 + 0.3 * random.Normal(), 0.2, 2.0);
  character.deviation = 0.016 * std::exp(0.25 * random.Normal());
  character.turnover = 8e6 * std::exp(random.Normal());
  return character;
}

DayPrices DrawDay(NormalSource& random, const Character& character, Cents previousClose, double change, int percent) {
  const PriceLimits limits = LimitsAround(previousClose, percent);
  DayPrices day;
  day.close = Move(previousClose, change, limits);
  day.open = Move(previousClose, 0.3 * change + 0.004 * random.Normal(), limits);
  const double reach = 0.3 * character.deviation;
  day.high = Move(std::max(day.open, day.close), reach * std::abs(random.Normal()), limits);
  day.low = Move(std::min(day.open, day.close), -reach * std::abs(random.Normal()), limits);
  const double volume = character.turnover * std::exp(0.35 * random.Normal() + 10 * std::abs(change));
  day.volume = std::max<std::int64_t>(1, std::llround(volume / 100)) * 100;
  return day;
}

struct StockBars {
  QByteArray csv;
  int listDate = 0;
  Cents estimate = 0;  ///< at which somebody values the stock
};

StockBars MakeStock(const SimulatedSecurity& security, const Factors& factors, std::uint64_t seed) {
  NormalSource random(seed);
  const std::size_t days = factors.dates.size();
  Character character = DrawCharacter(random);
  const Absences absences = DrawAbsences(random, days);
  const int percent = PriceLimitPercent(security.code);
  if (percent > 10) character.deviation *= kGrowthBoardFactor;
  const std::vector<double>& industry = factors.industries.at(security.industry);
  const double drawnPrice = 15 * std::exp(0.7 * random.Normal());
  const double firstPrice = security.firstPrice > 0 ? security.firstPrice : drawnPrice;
  Cents previousClose = std::max<Cents>(200, std::llround(firstPrice * 100));
  const double yearsListed = 1 + 24 * random.Uniform();

  StockBars bars;
  const int firstDay = DayNumber(*ReadMarketDate(factors.dates.front()));
  bars.listDate = absences.listedFrom > 0 ? *ReadMarketDate(factors.dates[absences.listedFrom])
                                          : DateOfDayNumber(firstDay - static_cast<int>(yearsListed * 365));
  bars.csv.reserve(static_cast<qsizetype>(days) * 56);
  bars.csv.append(kBarHeading);
  for (std::size_t day = absences.listedFrom; day < days; ++day) {
    const bool isGap = random.Uniform() < kSingleDayGap;
    const double news = random.Uniform() < kNewsShare ? kNewsFactor : 1;
    const double change = character.beta * factors.market[day] + character.industryWeight * industry[day] +
                          news * character.deviation * random.Normal();
    const DayPrices prices = DrawDay(random, character, previousClose, change, percent);
    if (isGap || (day >= absences.suspendedFrom && day < absences.suspendedTo)) continue;
    AppendBar(bars.csv, factors.dates[day], prices);
    previousClose = prices.close;
  }
  bars.estimate =
      std::max<Cents>(1, std::llround(static_cast<double>(previousClose) * std::exp(0.2 * random.Normal())));
  return bars;
}

QByteArray MakeIndex(double firstLevel, const Factors& factors, std::uint64_t seed) {
  NormalSource random(seed);
  Character character;
  character.deviation = 0.01;
  character.turnover = 3e10;
  QByteArray csv(kBarHeading);
  Cents previousClose = std::llround(firstLevel * 100);
  for (std::size_t day = 0; day < factors.dates.size(); ++day) {
    const double change = factors.market[day] + kIndexDeviation * random.Normal();
    const DayPrices prices = DrawDay(random, character, previousClose, change, 20);
    AppendBar(csv, factors.dates[day], prices);
    previousClose = prices.close;
  }
  return csv;
}

void WriteFile(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || file.write(bytes) != bytes.size()) {
    throw Error(ErrorCategory::Io, ("无法写入（" + file.errorString() + "）：" + path).toStdString());
  }
}

QByteArray SecuritiesCsv(const std::vector<SimulatedSecurity>& securities, const std::vector<int>& listDates) {
  QByteArray csv("code,name,industry,market,list_date\n");
  for (std::size_t i = 0; i < securities.size(); ++i) {
    const SimulatedSecurity& security = securities[i];
    const char* market = MarketOfStock(security.code) == 1 ? "SH" : "SZ";
    csv += security.code + "," + security.name + "," + security.industry + "," + market + "," + DateText(listDates[i]) +
           "\n";
  }
  return csv;
}

QByteArray EstimatesCsv(const std::vector<SimulatedSecurity>& securities, const std::vector<Cents>& estimates) {
  QByteArray csv("code,price\n");
  for (std::size_t i = 0; i < securities.size(); ++i) {
    csv += securities[i].code + ",";
    AppendPrice(csv, estimates[i]);
    csv += "\n";
  }
  return csv;
}

// In force before the first day, and lowered once in the middle.
QByteArray RatesCsv(const Factors& factors) {
  QByteArray csv("date,one_year,demand,three_month,half_year,two_year,three_year,five_year\n");
  csv += DateText(DateOfDayNumber(DayNumber(*ReadMarketDate(factors.dates.front())) - 365)) +
         ",1.50,0.20,1.15,1.35,1.70,1.95,2.00\n";
  csv += factors.dates[factors.dates.size() / 2] + ",1.35,0.15,1.05,1.25,1.45,1.75,1.80\n";
  return csv;
}

void CheckOptions(const SimulationOptions& options) {
  if (options.securities < 1 || options.securities > kMostSimulatedSecurities) {
    throw Error(ErrorCategory::Refused, "证券数须在 1 到 " + std::to_string(kMostSimulatedSecurities) + " 之间");
  }
  if (options.days < 2 || options.days > 5000) throw Error(ErrorCategory::Refused, "交易日数须在 2 到 5000 之间");
  // Five trading days a week; one week more for the ends.
  const int firstDay = DayNumber(options.endDate) - (options.days / 5 + 1) * 7;
  if (firstDay < DayNumber(kEarliestDate)) {
    throw Error(ErrorCategory::Refused, "模拟行情不能从早于 " + DateText(kEarliestDate) + " 的日子开始");
  }
}

}  // namespace

void WriteSimulatedMarket(const SimulationOptions& options, const std::function<void(int, int)>& onProgress) {
  CheckOptions(options);
  FolderSwap swap(options.outFolder, QStringLiteral("securities.csv"));
  const QString folder = swap.NewFolder() + u'/';
  if (!QDir(folder).mkpath(QStringLiteral("bars")) || !QDir(folder).mkpath(QStringLiteral("indices"))) {
    throw Error(ErrorCategory::Io, "无法建立目录：" + folder.toStdString());
  }
  const std::vector<SimulatedSecurity> securities = SimulatedSecurities(options.securities);
  const Factors factors = MakeFactors(options, securities);

  constexpr double kFirstLevels[] = {3000, 9500, 3500};  // in the order of kIndexNumbers
  static_assert(std::size(kFirstLevels) == std::size(kIndexNumbers));
  for (std::size_t index = 0; index < std::size(kIndexNumbers); ++index) {
    const int number = kIndexNumbers[index];
    WriteFile(folder + QStringLiteral("indices/%1.csv").arg(number),
              MakeIndex(kFirstLevels[index], factors, SubSeed(options.seed, static_cast<std::uint64_t>(number))));
  }
  std::vector<int> listDates(securities.size());
  std::vector<Cents> estimates(securities.size());
  struct {
    Mutex mutex;
    int done HOLDWISE_GUARDED_BY(mutex) = 0;
  } progress;
  ParallelFor(securities.size(), ThreadsOr(options.threads), [&](std::size_t i) {
    const SimulatedSecurity& security = securities[i];
    const auto number = static_cast<std::uint64_t>(CodeNumberOfStock(security.code));
    const StockBars bars = MakeStock(security, factors, SubSeed(options.seed, number));
    listDates[i] = bars.listDate;
    estimates[i] = bars.estimate;
    WriteFile(folder + QStringLiteral("bars/%1.csv").arg(QString::fromStdString(security.code)), bars.csv);
    const MutexLock lock(progress.mutex);
    ++progress.done;
    if (onProgress) onProgress(progress.done, static_cast<int>(securities.size()));
  });
  WriteFile(folder + QStringLiteral("securities.csv"), SecuritiesCsv(securities, listDates));
  WriteFile(folder + QStringLiteral("estimates.csv"), EstimatesCsv(securities, estimates));
  QByteArray dates("date\n");
  for (const std::string& date : factors.dates) dates += date + "\n";
  WriteFile(folder + QStringLiteral("trading_dates.csv"), dates);
  WriteFile(folder + QStringLiteral("deposit_rates.csv"), RatesCsv(factors));
  swap.Commit();
}

}  // namespace holdwise
