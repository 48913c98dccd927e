// SPDX-License-Identifier: MIT
#include "bar_adjustment.h"

#include <algorithm>
#include <cmath>

#include "holdwise/market/market_rules.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

// Of the days with a previous close that is not the close before: more than this part is rounding, not dividends.
constexpr std::size_t kMostStepsOf = 5;
constexpr std::size_t kFewSteps = 5;

bool HasStep(std::span<const BarLine> lines, std::size_t day) {
  return !std::isnan(lines[day].basis) && lines[day].basis != lines[day - 1].close;
}

bool ByPreviousClose(std::span<const BarLine> lines, std::vector<Bar>& bars) {
  std::size_t steps = 0;
  for (std::size_t day = 1; day < lines.size(); ++day) steps += HasStep(lines, day) ? 1 : 0;
  if (steps > kFewSteps && steps * kMostStepsOf > lines.size()) return false;
  double factor = 1;
  for (std::size_t day = lines.size() - 1; day > 0; --day) {
    const bool hasStep = HasStep(lines, day);
    const double before = hasStep ? lines[day].basis : lines[day - 1].close;
    bars[day - 1].close = before * factor;
    if (hasStep) factor *= before / lines[day - 1].close;
  }
  return true;
}

void BySteps(const FactorSteps& steps, std::vector<Bar>& bars) {
  double factor = 1;
  auto step = steps.rbegin();
  while (step != steps.rend() && step->date > bars.back().date) ++step;
  for (auto bar = bars.rbegin(); bar != bars.rend(); ++bar) {
    for (; step != steps.rend() && step->date > bar->date; ++step) factor *= step->ratio;
    bar->close *= factor;
  }
}

double Tolerance(double price) {
  constexpr double kCents = 0.02;  // adjusted prices are rounded, on both days
  return kCents / price;
}

QString Percent(double fraction) {
  return FormatFixed(fraction * 100, 2) + u'%';
}

QString DayText(const Bar& bar) {
  return QString::fromStdString(DateText(bar.date));
}

/// Days after listing on which the price may move freely.
bool IsFirstDay(std::size_t day, const Bar& bar, int listDate) {
  constexpr std::size_t kFreeDays = 5;
  constexpr int kCalendarDays = 14;
  if (day >= kFreeDays) return false;
  return listDate == 0 || DayNumber(bar.date) - DayNumber(listDate) < kCalendarDays;
}

bool IsStock(int codeNumber) {
  return codeNumber >= kStockBase;
}

}  // namespace

Adjustment AdjustForward(std::span<const BarLine> lines, BarBasis basis, const FactorSteps* factors,
                         std::vector<Bar>& bars) {
  if (lines.empty()) return Adjustment::AsTheyStand;
  const BarLine& last = lines.back();
  const auto scale = [&](auto closeOf) {
    for (std::size_t day = 0; day + 1 < lines.size(); ++day) bars[day].close = closeOf(lines[day]);
  };
  switch (basis) {
    case BarBasis::AdjustedClose:
      scale([&](const BarLine& line) { return line.basis * (last.close / last.basis); });
      return Adjustment::AdjustedCloses;
    case BarBasis::PriceFactor:
      for (Bar& bar : bars) bar.close /= last.basis;
      return Adjustment::PriceFactors;
    case BarBasis::CumulativeFactor:
      scale([&](const BarLine& line) { return line.close * (line.basis / last.basis); });
      return Adjustment::OwnFactors;
    case BarBasis::PreviousClose:
      return ByPreviousClose(lines, bars) ? Adjustment::PreviousClose : Adjustment::AsTheyStand;
    case BarBasis::None:
    case BarBasis::Change:
      break;
  }
  if (factors == nullptr) return Adjustment::AsTheyStand;
  BySteps(*factors, bars);
  return Adjustment::Factors;
}

namespace {

/// Trading dates between two bars for which there is not even a line.
std::ptrdiff_t DaysMissing(int from, int to, std::span<const int> tradingDates,
                           std::span<const std::uint32_t> suspendedDates) {
  const auto between = [from, to](const auto& dates) {
    return std::count_if(dates.begin(), dates.end(), [from, to](auto date) {
      return static_cast<int>(date) > from && static_cast<int>(date) < to;
    });
  };
  return between(tradingDates) - between(suspendedDates);
}

std::optional<QString> JumpOn(std::size_t day, std::span<const Bar> bars, std::span<const BarLine> lines,
                              const BarRules& rules) {
  if (!IsStock(rules.codeNumber) || IsFirstDay(day, bars[day], rules.listDate)) return std::nullopt;
  const int percent = PriceLimitPercent(rules.codeNumber, lines[day].isSpecialTreatment != 0);
  const double move = bars[day].close / bars[day - 1].close - 1;
  if (std::fabs(move) <= percent / 100.0 + Tolerance(bars[day - 1].close)) return std::nullopt;
  return QStringLiteral("%1 收盘变动 %2，超过涨跌幅限制 %3%").arg(DayText(bars[day]), Percent(move)).arg(percent);
}

std::optional<QString> ContradictionOn(std::size_t day, std::span<const BarLine> lines, const Bar& bar) {
  const double before = lines[day - 1].close;
  const double reference = lines[day].close - lines[day].basis;
  // A change made of adjusted prices is off by their rounding.
  if (std::isnan(reference) || std::fabs(reference - before) <= Tolerance(1)) return std::nullopt;
  return QStringLiteral("%1 涨跌额与收盘价不符，相差 %2").arg(DayText(bar), Percent(reference / before - 1));
}

}  // namespace

std::vector<QString> DoubtsAbout(std::span<const Bar> bars, std::span<const BarLine> lines, BarBasis basis,
                                 Adjustment adjustment, const BarRules& rules,
                                 std::span<const std::uint32_t> suspendedDates) {
  std::vector<QString> doubts;
  for (std::size_t day = 1; day < bars.size(); ++day) {
    std::optional<QString> doubt = JumpOn(day, bars, lines, rules);
    if (!doubt && basis == BarBasis::Change && adjustment == Adjustment::AsTheyStand) {
      doubt = ContradictionOn(day, lines, bars[day]);
    }
    if (!doubt && adjustment == Adjustment::PreviousClose && HasStep(lines, day)) {
      const auto missing = DaysMissing(bars[day - 1].date, bars[day].date, rules.tradingDates, suspendedDates);
      if (missing > 0 && lines[day].basis > lines[day - 1].close) {
        doubt = QStringLiteral("%1 之前缺 %2 个交易日的行情，昨收高于上一收盘 %3")
                    .arg(DayText(bars[day]))
                    .arg(missing)
                    .arg(Percent(lines[day].basis / lines[day - 1].close - 1));
      }
    }
    if (doubt) doubts.push_back(*doubt);
  }
  return doubts;
}

}  // namespace holdwise
