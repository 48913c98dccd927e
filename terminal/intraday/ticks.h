// SPDX-License-Identifier: MIT
#pragma once
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// What a day's line is drawn from. Prices in hundredths of a yuan (of a point for an index), volumes in shares,
/// amounts in hundredths of a yuan. Pure; any thread.
namespace holdwise {

struct Tick {
  static constexpr std::int64_t kUnknown = -1;
  int second = 0;  ///< of trading, 0 to kDaySeconds
  std::int64_t price = 0;
  std::int64_t volume = kUnknown;  ///< since the day began
  std::int64_t amount = kUnknown;  ///< since the day began
  bool isAfterGap = false;         ///< the first one after nobody had been listening: what was before is not known
  bool operator==(const Tick&) const = default;
};

/// A minute in which there was a tick: minute 0 holds second 0 to 60, minute n the seconds above 60 n up to 60 (n + 1),
/// so that 11:30:00 and 15:00:00 belong to what went before.
struct MinuteBar {
  int minute = 0;
  std::int64_t close = 0;
  std::int64_t before = 0;  ///< close of the bar before; of the first one its own first price
  std::int64_t volume = Tick::kUnknown;
};
[[nodiscard]] int MinuteOf(int second);
/// Ascending. A bar's volume is what was traded since the tick before it; what was traded before the first tick counts
/// in the day's first minute only, and what was traded in a gap not at all. Unknown where no tick of the minute tells.
/// `ticks` ascend by second, as in all functions here.
[[nodiscard]] std::vector<MinuteBar> MinuteBars(std::span<const Tick> ticks);

/// How an average was made.
enum class AverageKind {
  None,      ///< no tick
  ByAmount,  ///< amount / volume since the day began, as the exchanges print it
  ByVolume,  ///< prices of the ticks weighted by what was traded since the tick before
  ByTime,    ///< mean of the minutes' closing prices; a minute without a tick has the one before it
};
struct AveragePoint {
  int second = 0;
  double price = 0;
};
struct AverageLine {
  AverageKind kind = AverageKind::None;
  std::vector<AveragePoint> points;  ///< one a minute with a tick, at its last tick
};
/// @param hasShares false for an index, whose points are not what its volume was traded at: then always by time
[[nodiscard]] AverageLine AverageOf(std::span<const Tick> ticks, bool hasShares);

/// The ticks that make a difference in so many columns of points: of each column the first, the lowest, the highest and
/// the last, in their order. All of them when columns is not above 0.
[[nodiscard]] std::vector<Tick> ThinnedOut(std::span<const Tick> ticks, int columns);

/// The last tick at or before a second; null when there is none.
[[nodiscard]] const Tick* TickAt(std::span<const Tick> ticks, int second);

/// What was known at a second, from the ticks up to it and none after: the average of that kind, none before there was
/// one; what had been traded in the minute, unknown when its ticks do not tell.
[[nodiscard]] std::optional<double> AverageAt(std::span<const Tick> ticks, AverageKind kind, int second);
[[nodiscard]] std::int64_t MinuteVolumeAt(std::span<const Tick> ticks, int second);

}  // namespace holdwise
