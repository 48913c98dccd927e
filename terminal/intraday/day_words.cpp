// SPDX-License-Identifier: MIT
#include "intraday/day_words.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "intraday/price_scale.h"
#include "intraday/trading_day.h"

namespace holdwise {
namespace {

/// Ticks that are missing for no longer are not worth a word.
constexpr int kShortSeconds = 60;
constexpr std::size_t kNamedGaps = 2;
constexpr std::size_t kGapsALine = 5;

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
  if (facts.second) return QStringLiteral("还没有它今天的分时记录：图上是现价，从现在起记录");
  return QStringLiteral("还没有 %1 的分时记录：打开着终端并且开市时才有").arg(facts.date);
}

QString LateWords(const DayFacts& facts, const Tick& first) {
  const QString since = TimeText(first.second) + QStringLiteral(" 起有记录：");
  if (!facts.hasLostItsPlace) return since + QStringLiteral("此前没有跟踪它");
  return since + QStringLiteral("最多记录 %1 只，此前的让给了别的股票").arg(TickStore::kMostSecurities);
}

/// A time from and to which there are no ticks, in seconds of trading.
using Gap = std::pair<int, int>;
std::vector<Gap> GapsOf(std::span<const Tick> ticks) {
  std::vector<Gap> gaps;
  for (std::size_t place = 1; place < ticks.size(); ++place) {
    const Gap gap{ticks[place - 1].second, ticks[place].second};
    if (ticks[place].isAfterGap && gap.second - gap.first > kShortSeconds) gaps.push_back(gap);
  }
  return gaps;
}

QString GapText(const Gap& gap) {
  return TimeText(gap.first) + QStringLiteral("–") + TimeText(gap.second);
}

/// The longest, in the order of the day, and how many there are.
QString GapWords(const std::vector<Gap>& gaps) {
  std::vector<Gap> named = gaps;
  std::stable_sort(named.begin(), named.end(),
                   [](const Gap& a, const Gap& b) { return a.second - a.first > b.second - b.first; });
  named.resize(std::min(named.size(), kNamedGaps));
  std::sort(named.begin(), named.end());
  QStringList texts;
  for (const Gap& gap : named) texts.append(GapText(gap));
  const QString more = gaps.size() > named.size() ? QStringLiteral(" 等 %1 段").arg(gaps.size()) : QStringLiteral(" ");
  return texts.join(QStringLiteral("、")) + more + QStringLiteral("没有记录（终端没有运行）");
}

}  // namespace

QStringList WordsOfDay(const DayFacts& facts, std::span<const Tick> ticks, AverageKind average) {
  QStringList words{facts.second ? facts.date + QLatin1Char(' ') + TimeText(*facts.second, true) : facts.date};
  if (facts.isSimulated) words.append(QStringLiteral("模拟行情"));
  if (facts.second == kMorningSeconds) words.append(QStringLiteral("午间休市"));
  if (facts.second == kDaySeconds) words.append(QStringLiteral("已收盘"));
  if (!facts.isSaved) words.append(QStringLiteral("存不了盘，退出后会丢失这些记录：请检查磁盘空间和权限，详见日志"));
  if (ticks.empty()) {
    words.append(NoLineWords(facts));
    return words;
  }
  if (facts.volume == 0 && !facts.isIndex) words.append(QStringLiteral("今天还没有成交（可能停牌）"));
  if (ticks.front().second > kShortSeconds) words.append(LateWords(facts, ticks.front()));
  if (const std::vector<Gap> gaps = GapsOf(ticks); !gaps.empty()) words.append(GapWords(gaps));
  words.append(AverageWords(average, facts.isIndex));
  return words;
}

QString HintOfDay(std::span<const Tick> ticks) {
  QStringList lines;
  const std::vector<Gap> gaps = GapsOf(ticks);
  if (gaps.size() > kNamedGaps) {
    lines.append(QStringLiteral("没有记录的时间："));
    for (std::size_t place = 0; place < gaps.size(); ++place) {
      if (place % kGapsALine == 0)
        lines.append(GapText(gaps[place]));
      else
        lines.back() += QStringLiteral("、") + GapText(gaps[place]);
    }
  }
  lines.append(
      QStringLiteral("开着终端时记录指数、持仓、自选和当天看过的股票，最多 %1 只。").arg(TickStore::kMostSecurities));
  return lines.join(QLatin1Char('\n'));
}

QString WordsOfMoment(int second, std::span<const Tick> ticks, AverageKind average, std::int64_t previousClose) {
  QStringList words{TimeText(second, true)};
  const Tick* tick = TickAt(ticks, second);
  if (tick == nullptr) return words.constFirst();
  const auto price = static_cast<double>(tick->price);
  words.append(QStringLiteral("价 ") + PriceText(price));
  if (const std::optional<double> mean = AverageAt(ticks, average, second))
    words.append(QStringLiteral("均 ") + PriceText(*mean));
  if (previousClose > 0) words.append(QStringLiteral("涨跌 ") + PercentText(PercentOf(price, previousClose)));
  if (const std::int64_t volume = MinuteVolumeAt(ticks, second); volume >= 0)
    words.append(QStringLiteral("量 ") + VolumeText(volume));
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
