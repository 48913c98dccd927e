// SPDX-License-Identifier: MIT
#include "intraday/ticks.h"

#include <algorithm>

#include "intraday/trading_day.h"

namespace holdwise {
namespace {

constexpr int kMinuteSeconds = 60;

/// What was traded between two ticks; unknown when either does not tell, or across a gap.
std::int64_t TradedSince(const Tick* before, const Tick& tick) {
  if (tick.volume < 0) return Tick::kUnknown;
  if (before == nullptr) return MinuteOf(tick.second) == 0 ? tick.volume : 0;
  if (tick.isAfterGap) return 0;
  return before->volume < 0 ? Tick::kUnknown : std::max<std::int64_t>(tick.volume - before->volume, 0);
}

AverageKind KindFor(std::span<const Tick> ticks, bool hasShares) {
  if (ticks.empty()) return AverageKind::None;
  const Tick& last = ticks.back();
  if (!hasShares || last.volume <= 0) return AverageKind::ByTime;
  return last.amount > 0 ? AverageKind::ByAmount : AverageKind::ByVolume;
}

std::vector<AveragePoint> ByAmount(std::span<const Tick> ticks) {
  std::vector<AveragePoint> points;
  for (const Tick& tick : ticks) {
    if (tick.volume > 0 && tick.amount > 0)
      points.push_back({tick.second, static_cast<double>(tick.amount) / static_cast<double>(tick.volume)});
  }
  return points;
}

std::vector<AveragePoint> ByVolume(std::span<const Tick> ticks) {
  std::vector<AveragePoint> points;
  double value = 0, volume = 0;
  const Tick* before = nullptr;
  for (const Tick& tick : ticks) {
    const auto traded = static_cast<double>(std::max<std::int64_t>(TradedSince(before, tick), 0));
    value += traded * static_cast<double>(tick.price);
    volume += traded;
    if (volume > 0) points.push_back({tick.second, value / volume});
    before = &tick;
  }
  return points;
}

std::vector<AveragePoint> ByTime(std::span<const Tick> ticks) {
  std::vector<AveragePoint> points;
  double sum = 0;  // of the closes of the minutes before `minute`
  int count = 0;
  int minute = MinuteOf(ticks.front().second);
  double close = static_cast<double>(ticks.front().price);
  for (const Tick& tick : ticks) {
    for (; minute < MinuteOf(tick.second); ++minute, ++count) sum += close;
    close = static_cast<double>(tick.price);
    points.push_back({tick.second, (sum + close) / (count + 1)});
  }
  return points;
}

/// One a tick.
std::vector<AveragePoint> AveragesOf(std::span<const Tick> ticks, AverageKind kind) {
  if (ticks.empty()) return {};
  switch (kind) {
    case AverageKind::None:
      break;
    case AverageKind::ByAmount:
      return ByAmount(ticks);
    case AverageKind::ByVolume:
      return ByVolume(ticks);
    case AverageKind::ByTime:
      return ByTime(ticks);
  }
  return {};
}

std::span<const Tick> UpTo(std::span<const Tick> ticks, int second) {
  const auto after = std::upper_bound(ticks.begin(), ticks.end(), second,
                                      [](int wanted, const Tick& tick) { return wanted < tick.second; });
  return ticks.first(static_cast<std::size_t>(after - ticks.begin()));
}

/// Of each minute the last.
std::vector<AveragePoint> LastOfMinutes(const std::vector<AveragePoint>& points) {
  std::vector<AveragePoint> lasts;
  for (const AveragePoint& point : points) {
    if (!lasts.empty() && MinuteOf(lasts.back().second) == MinuteOf(point.second))
      lasts.back() = point;
    else
      lasts.push_back(point);
  }
  return lasts;
}

}  // namespace

int MinuteOf(int second) {
  return second <= 0 ? 0 : (std::min(second, kDaySeconds) - 1) / kMinuteSeconds;
}

std::vector<MinuteBar> MinuteBars(std::span<const Tick> ticks) {
  std::vector<MinuteBar> bars;
  const Tick* before = nullptr;
  for (const Tick& tick : ticks) {
    const int minute = MinuteOf(tick.second);
    if (bars.empty() || bars.back().minute != minute)
      bars.push_back({minute, tick.price, bars.empty() ? tick.price : bars.back().close});
    MinuteBar& bar = bars.back();
    bar.close = tick.price;
    if (const std::int64_t traded = TradedSince(before, tick); traded >= 0)
      bar.volume = std::max<std::int64_t>(bar.volume, 0) + traded;
    before = &tick;
  }
  return bars;
}

AverageLine AverageOf(std::span<const Tick> ticks, bool hasShares) {
  const AverageKind kind = KindFor(ticks, hasShares);
  return {kind, LastOfMinutes(AveragesOf(ticks, kind))};
}

std::vector<Tick> ThinnedOut(std::span<const Tick> ticks, int columns) {
  if (columns <= 0) return {ticks.begin(), ticks.end()};
  const auto columnOf = [columns](const Tick& tick) {
    return static_cast<std::int64_t>(tick.second) * columns / (kDaySeconds + 1);
  };
  std::vector<Tick> kept;
  for (std::size_t from = 0; from < ticks.size();) {
    std::size_t end = from + 1;
    while (end < ticks.size() && columnOf(ticks[end]) == columnOf(ticks[from])) ++end;
    const auto column = ticks.subspan(from, end - from);
    const auto byPrice = [](const Tick& one, const Tick& other) { return one.price < other.price; };
    const auto [low, high] = std::minmax_element(column.begin(), column.end(), byPrice);
    std::size_t places[] = {from, from + static_cast<std::size_t>(low - column.begin()),
                            from + static_cast<std::size_t>(high - column.begin()), end - 1};
    std::sort(std::begin(places), std::end(places));
    const auto last = std::unique(std::begin(places), std::end(places));
    for (const auto* place = std::begin(places); place != last; ++place) kept.push_back(ticks[*place]);
    from = end;
  }
  return kept;
}

const Tick* TickAt(std::span<const Tick> ticks, int second) {
  const std::span<const Tick> known = UpTo(ticks, second);
  return known.empty() ? nullptr : &known.back();
}

std::optional<double> AverageAt(std::span<const Tick> ticks, AverageKind kind, int second) {
  const std::vector<AveragePoint> averages = AveragesOf(UpTo(ticks, second), kind);
  return averages.empty() ? std::nullopt : std::optional(averages.back().price);
}

std::int64_t MinuteVolumeAt(std::span<const Tick> ticks, int second) {
  const std::vector<MinuteBar> bars = MinuteBars(UpTo(ticks, second));
  return !bars.empty() && bars.back().minute == MinuteOf(second) ? bars.back().volume : Tick::kUnknown;
}

}  // namespace holdwise
