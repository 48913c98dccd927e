// SPDX-License-Identifier: MIT
#include "intraday/day_words.h"

#include <algorithm>

#include "intraday/price_scale.h"
#include "intraday/trading_day.h"

namespace holdwise {
namespace {

/// Ticks that are missing for no longer are not worth a word.
constexpr int kShortSeconds = 60;

QString AverageWords(AverageKind average, bool isIndex) {
  switch (average) {
    case AverageKind::None:
      break;
    case AverageKind::ByAmount:
      return QStringLiteral("均价：成交额÷成交量");
    case AverageKind::ByVolume:
      return QStringLiteral("均价：按成交量加权（行情没有成交额）");
    case AverageKind::ByTime:
      return isIndex ? QStringLiteral("均价：指数按时间平均") : QStringLiteral("均价：按时间平均（行情没有成交量）");
  }
  return {};
}

QString NoLineWords(const DayFacts& facts) {
  if (!facts.hasPrice) return QStringLiteral("行情里没有它的价格，有了以后自动画出");
  return QStringLiteral("还没有 %1 的分时记录：打开着终端并且开市时才有").arg(facts.date);
}

}  // namespace

QStringList WordsOfDay(const DayFacts& facts, std::span<const Tick> ticks, AverageKind average) {
  QStringList words{facts.second ? facts.date + QLatin1Char(' ') + TimeText(*facts.second, true) : facts.date};
  if (facts.isSimulated) words.append(QStringLiteral("模拟行情"));
  if (facts.second == kMorningSeconds) words.append(QStringLiteral("午间休市"));
  if (facts.second == kDaySeconds) words.append(QStringLiteral("已收盘"));
  if (ticks.empty()) {
    words.append(NoLineWords(facts));
    return words;
  }
  if (facts.volume == 0 && !facts.isIndex) words.append(QStringLiteral("今天还没有成交（可能停牌）"));
  if (ticks.front().second > kShortSeconds)
    words.append(QStringLiteral("%1 起有记录：此前没有跟踪它").arg(TimeText(ticks.front().second)));
  for (std::size_t place = 1; place < ticks.size(); ++place) {
    if (!ticks[place].isAfterGap || ticks[place].second - ticks[place - 1].second <= kShortSeconds) continue;
    words.append(QStringLiteral("%1–%2 没有记录（终端没有运行）")
                     .arg(TimeText(ticks[place - 1].second), TimeText(ticks[place].second)));
  }
  words.append(AverageWords(average, facts.isIndex));
  return words;
}

QString WordsOfMoment(int second, double price, std::int64_t previousClose, std::span<const AveragePoint> averages,
                      std::span<const MinuteBar> bars) {
  QStringList words{TimeText(second, true), QStringLiteral("价 ") + PriceText(price)};
  const auto average = std::find_if(averages.rbegin(), averages.rend(),
                                    [second](const AveragePoint& point) { return point.second <= second; });
  if (average != averages.rend()) words.append(QStringLiteral("均 ") + PriceText(average->price));
  if (previousClose > 0) words.append(QStringLiteral("涨跌 ") + PercentText(PercentOf(price, previousClose)));
  const auto bar =
      std::find_if(bars.begin(), bars.end(), [second](const MinuteBar& one) { return one.minute == MinuteOf(second); });
  if (bar != bars.end() && bar->volume >= 0) words.append(QStringLiteral("量 ") + VolumeText(bar->volume));
  return words.join(QStringLiteral("  "));
}

DayRange RangeOfDay(const DaySoFar& day, std::span<const Tick> ticks) {
  DayRange range{day.open, day.high, day.low, true};
  if (ticks.empty()) return range;
  const bool isFromOpening = ticks.front().second <= kShortSeconds;
  if (range.open < 0 && isFromOpening && day.volume != 0) range.open = ticks.front().price;
  if (range.high >= 0 && range.low >= 0) return range;
  const auto byPrice = [](const Tick& one, const Tick& other) { return one.price < other.price; };
  const auto [low, high] = std::minmax_element(ticks.begin(), ticks.end(), byPrice);
  range.high = high->price;
  range.low = low->price;
  range.isWhole = isFromOpening;
  return range;
}

}  // namespace holdwise
