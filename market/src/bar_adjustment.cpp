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
constexpr double kHalfCent = 0.005;
constexpr double kRounding = 0.02;  // adjusted prices are rounded to cents, on both days

bool HasStep(std::span<const BarLine> lines, std::size_t day) {
  return !std::isnan(lines[day].basis) && lines[day].basis != lines[day - 1].close;
}

bool IsUpward(std::span<const BarLine> lines, std::size_t day) {
  return lines[day].basis > lines[day - 1].close + kHalfCent;
}

// Trading dates between a bar and the one before for which there is not even a line.
std::ptrdiff_t DaysMissing(const BarLines& source, std::size_t day, std::span<const int> tradingDates) {
  const auto from = static_cast<int>(source.lines[day - 1].date);
  const auto to = static_cast<int>(source.lines[day].date);
  const auto first = std::upper_bound(tradingDates.begin(), tradingDates.end(), from);
  const auto isBetween = [from, to](std::uint32_t date) {
    return static_cast<int>(date) > from && static_cast<int>(date) < to;
  };
  const auto suspended = std::count_if(source.suspendedDates.begin(), source.suspendedDates.end(), isBetween);
  return std::lower_bound(first, tradingDates.end(), to) - first - suspended;
}

/// What the previous closes say, apart from those that bridge days without a line.
struct Steps {
  std::size_t all = 0;  // with those
  std::size_t upward = 0;
  bool areAdjacent = false;
  std::size_t large = 0;  // beyond rounding
  std::size_t firstLarge = 0;
};

Steps StepsOf(const BarLines& source, const BarRules& rules) {
  const std::span<const BarLine> lines = source.lines;
  Steps steps;
  std::size_t before = 0;
  for (std::size_t day = 1; day < lines.size(); ++day) {
    if (!HasStep(lines, day)) continue;
    ++steps.all;
    if (DaysMissing(source, day, rules.tradingDates) > 0) continue;
    if (before != 0 && before + 1 == day) steps.areAdjacent = true;
    before = day;
    if (IsUpward(lines, day)) ++steps.upward;
    if (std::fabs(lines[day].basis - lines[day - 1].close) <= kRounding) continue;
    if (steps.large++ == 0) steps.firstLarge = day;
  }
  return steps;
}

// Rights and dividends go off on single days, and downward.
bool AreAdjustedAlready(const Steps& steps, std::size_t days) {
  constexpr std::size_t kMostUpward = 2;
  return steps.areAdjacent || steps.upward > kMostUpward || (steps.all > kFewSteps && steps.all * kMostStepsOf > days);
}

void ByPreviousClose(std::span<const BarLine> lines, std::vector<Bar>& bars) {
  double factor = 1;
  for (std::size_t day = lines.size() - 1; day > 0; --day) {
    const bool hasStep = HasStep(lines, day);
    const double before = hasStep ? lines[day].basis : lines[day - 1].close;
    bars[day - 1].close = before * factor;
    if (hasStep) factor *= before / lines[day - 1].close;
  }
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
  return kRounding / price;
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
  return day < kFreeDays && listDate != 0 && DayNumber(bar.date) - DayNumber(listDate) < kCalendarDays;
}

}  // namespace

Adjustment AdjustForward(const BarLines& source, const BarRules& rules, std::vector<Bar>& bars) {
  const std::span<const BarLine> lines = source.lines;
  if (lines.empty()) return Adjustment::AsTheyStand;
  const BarLine& last = lines.back();
  const auto scale = [&](auto closeOf) {
    for (std::size_t day = 0; day + 1 < lines.size(); ++day) bars[day].close = closeOf(lines[day]);
  };
  switch (source.basis) {
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
      if (AreAdjustedAlready(StepsOf(source, rules), lines.size())) return Adjustment::AsTheyStand;
      ByPreviousClose(lines, bars);
      return Adjustment::PreviousClose;
    case BarBasis::None:
    case BarBasis::Change:
      break;
  }
  if (rules.factors == nullptr) return Adjustment::AsTheyStand;
  BySteps(*rules.factors, bars);
  return rules.factorsFrom > bars.front().date ? Adjustment::LaterFactors : Adjustment::Factors;
}

namespace {

std::optional<QString> JumpOn(std::size_t day, std::span<const Bar> bars, std::span<const BarLine> lines,
                              const BarRules& rules) {
  if (!IsStockNumber(rules.codeNumber) || IsFirstDay(day, bars[day], rules.listDate)) return std::nullopt;
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

// The return over days without a line is not known; a reference above the close before is no dividend's.
std::optional<QString> BridgeOn(std::size_t day, const BarLines& source, const Bar& bar, const BarRules& rules) {
  const std::span<const BarLine> lines = source.lines;
  if (!HasStep(lines, day)) return std::nullopt;
  const double difference = lines[day].basis / lines[day - 1].close - 1;
  const auto missing = DaysMissing(source, day, rules.tradingDates);
  if (missing <= 0 && !IsUpward(lines, day)) return std::nullopt;
  const QString gap = missing > 0 ? QStringLiteral(" 之前缺 %1 个交易日的行情，").arg(missing) : QStringLiteral(" ");
  return QStringLiteral("%1%2昨收%3于上一收盘 %4")
      .arg(DayText(bar), gap, difference > 0 ? QStringLiteral("高") : QStringLiteral("低"),
           Percent(std::fabs(difference)));
}

std::optional<QString> DoubtOn(std::size_t day, std::span<const Bar> bars, const BarLines& source,
                               Adjustment adjustment, const BarRules& rules) {
  std::optional<QString> doubt = JumpOn(day, bars, source.lines, rules);
  if (doubt) return doubt;
  if (adjustment == Adjustment::PreviousClose) return BridgeOn(day, source, bars[day], rules);
  if (source.basis == BarBasis::Change && adjustment == Adjustment::AsTheyStand) {
    return ContradictionOn(day, source.lines, bars[day]);
  }
  return std::nullopt;
}

// Of the bars as a whole.
std::optional<QString> DoubtAboutAll(std::span<const Bar> bars, const BarLines& source, Adjustment adjustment,
                                     const BarRules& rules) {
  if (adjustment == Adjustment::LaterFactors) {
    return QStringLiteral("复权因子从 %1 开始，晚于第一根日线 %2，此前的除权没有复权")
        .arg(QString::fromStdString(DateText(rules.factorsFrom)), DayText(bars.front()));
  }
  if (source.basis != BarBasis::PreviousClose || adjustment != Adjustment::AsTheyStand) return std::nullopt;
  const Steps steps = StepsOf(source, rules);
  if (steps.large == 0) return std::nullopt;
  const std::size_t day = steps.firstLarge;
  return QStringLiteral("有 %1 日昨收与上一收盘不符（%2 起，相差 %3），收盘价像是复权的而昨收不是，没有按昨收复权")
      .arg(steps.large)
      .arg(DayText(bars[day]), Percent(source.lines[day].basis / source.lines[day - 1].close - 1));
}

// On which of the days without a factor something went off, nobody knows.
void AddGaps(std::span<const Bar> bars, const FactorSteps& steps, std::vector<QString>& doubts) {
  for (const FactorStep& step : steps) {
    if (step.after == 0 || step.date > bars.back().date) continue;
    const auto isAtOrBehind = [](const Bar& bar, int date) { return bar.date < date; };
    const auto bar = std::lower_bound(bars.begin(), bars.end(), step.after + 1, isAtOrBehind);
    if (bar == bars.end() || bar->date >= step.date) continue;
    doubts.push_back(QStringLiteral("复权因子从 %1 到 %2 之间缺行，其间的除权（%3）按 %2 计算")
                         .arg(QString::fromStdString(DateText(step.after)), QString::fromStdString(DateText(step.date)),
                              Percent(step.ratio - 1)));
  }
}

}  // namespace

std::vector<QString> DoubtsAbout(std::span<const Bar> bars, const BarLines& source, Adjustment adjustment,
                                 const BarRules& rules) {
  std::vector<QString> doubts;
  if (bars.empty()) return doubts;
  if (const auto doubt = DoubtAboutAll(bars, source, adjustment, rules)) doubts.push_back(*doubt);
  if (adjustment == Adjustment::Factors || adjustment == Adjustment::LaterFactors)
    AddGaps(bars, *rules.factors, doubts);
  for (std::size_t day = 1; day < bars.size(); ++day) {
    const auto doubt = DoubtOn(day, bars, source, adjustment, rules);
    if (doubt) doubts.push_back(*doubt);
  }
  return doubts;
}

}  // namespace holdwise
