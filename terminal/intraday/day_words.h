// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <optional>
#include <span>

#include "intraday/tick_recorder.h"
#include "intraday/ticks.h"

/// What the page says of a security's day. Pure.
namespace holdwise {

struct DayFacts {
  QString date;  ///< of the market
  bool isSimulated = false;
  bool isIndex = false;
  bool hasPrice = false;
  std::optional<int> second;  ///< of trading, last heard of
  std::int64_t volume = Tick::kUnknown;
  bool hasLostItsPlace = false;  ///< as TickRecorder says
  bool isSaved = true;           ///< as TickRecorder says
};
/// Date and time, since when there is a line and why not earlier, the longest gaps, how the average is made.
[[nodiscard]] QStringList WordsOfDay(const DayFacts& facts, std::span<const Tick> ticks, AverageKind average);

/// More of it, in lines: all gaps when there are more than those, and of which securities there are ticks.
[[nodiscard]] QString HintOfDay(std::span<const Tick> ticks);

/// What was known at a moment, in a line: time, price, average, change against the previous close (above 0), volume of
/// its minute so far. Nothing that came later makes a difference.
[[nodiscard]] QString WordsOfMoment(int second, std::span<const Tick> ticks, AverageKind average,
                                    std::int64_t previousClose);

/// First, highest and lowest price of a day, hundredths; unknown below 0.
struct DayRange {
  std::int64_t open = Tick::kUnknown;
  std::int64_t high = Tick::kUnknown;
  std::int64_t low = Tick::kUnknown;
  bool isWhole = true;  ///< false: of the time since the first tick only
};
/// What the quote service says of it, else what the ticks tell: an opening price only if there was a tick in the first
/// minute.
[[nodiscard]] DayRange RangeOfDay(const DaySoFar& day, std::span<const Tick> ticks);

}  // namespace holdwise
