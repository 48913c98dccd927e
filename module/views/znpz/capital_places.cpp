// SPDX-License-Identifier: MIT
#include "capital_places.h"

#include <algorithm>
#include <cmath>

#include "holdwise/packet/error.h"

namespace holdwise::allocation {
namespace {

constexpr int kLeast = 300;  // pixels of a frame
constexpr int kLeft = 100;
constexpr int kTop = 59;
constexpr int kBottom = 125;
constexpr int kEdge = 10;      // between the slider's ends and the bars
constexpr int kGap = 2;        // between two bars
constexpr int kRise = 2;       // from one bar to the next
constexpr int kGroup = 3;      // bars for each ten
constexpr int kLastEven = 30;  // bars of the even part
constexpr double kEven = 100;

/// The bars behind the even part: where they begin and how much they stand for.
struct Step {
  double from;
  double span;
};
// The last two never count, as the bars end before them: intended.
constexpr std::array<Step, 5> kSteps = {{{100, 20}, {120, 30}, {150, 50}, {200, 100}, {300, 100}}};

double CapitalIn(int bar, int x, const CapitalPlaces& places) {
  const auto rectOf = [&](int one) -> const TRect& { return places.bars[static_cast<std::size_t>(one)]; };
  if (bar >= kLastEven) {
    const Step& step = kSteps[static_cast<std::size_t>(bar - kLastEven)];
    const TRect& rect = rectOf(bar);
    return step.from + (x - rect.left) * step.span / (rect.right - kGap - rect.left);
  }
  const int group = bar / kGroup;
  const int left = rectOf(group * kGroup).left;
  const int width = rectOf(group * kGroup + kGroup - 1).right - kGap - left;
  return group * 10 + (x - left) * 10.0 / width;
}

int RoundHalfEven(double value) {
  return static_cast<int>(std::nearbyint(value));  // the default rounding of the processor
}

}  // namespace

CapitalPlaces CalcRect(int frameWidth) {
  const int width = std::max(frameWidth, kLeast);
  CapitalPlaces places;
  places.slider = {kLeft, kTop, (width - 45) - (width - 145) % kBars + 20, kBottom};
  const int bar = (places.slider.right - places.slider.left - 2 * kEdge) / kBars;
  for (int at = 0; at < kBars; ++at) {
    const int left = places.slider.left + kEdge + at * bar;
    const int height = at == 0 ? 1 : kRise * at;
    places.bars[static_cast<std::size_t>(at)] = {left, kBottom - height, left + bar, kBottom};
  }
  places.bars.back().right -= kGap;
  places.slider.right -= kGap;
  return places;
}

TRect ShownBar(int bar, const CapitalPlaces& places) {
  TRect rect = places.bars[static_cast<std::size_t>(bar)];
  if (bar < kBars - 1) rect.right -= kGap;
  return rect;
}

CapitalRange CalcRange(double capital, const CapitalPlaces& places) {
  int index = 0;
  double fraction = 0;
  if (capital <= kEven) {
    const double tens = capital / 10;
    const int whole = static_cast<int>(std::max(capital, -kEven)) / 10;
    const int third = static_cast<int>(std::max((tens - whole) * kGroup, -kEven));
    fraction = (tens - whole) * kGroup - third;
    index = whole * kGroup + third + 1;
  } else {
    index = kLastEven;
    for (const Step& step : kSteps) {
      const bool isReached = index == kLastEven ? capital > step.from : capital >= step.from;
      if (index >= kBars || !isReached) continue;
      ++index;
      fraction = (capital - step.from) / step.span;
    }
  }
  if (index < 1) throw Error(ErrorCategory::Refused, "range check error: the slider has no bar for this capital");
  fraction = std::min(fraction, 1.0);
  CapitalRange range{index, places.bars[static_cast<std::size_t>(index - 1)]};
  if (index < kBars - 1) range.current.right -= kGap;
  range.current.right = range.current.left + RoundHalfEven((range.current.right - range.current.left) * fraction);
  return range;
}

std::optional<double> CapitalAt(const QPoint& point, const CapitalPlaces& places) {
  for (int bar = 0; bar < kBars; ++bar) {
    if (PTInRect_(ShownBar(bar, places), point)) return CapitalIn(bar, point.x(), places);
  }
  return std::nullopt;
}

double CapitalAtX(int x, const CapitalPlaces& places) {
  const int first = places.bars.front().left;
  const int width = places.bars.front().right - first;
  const int bar = std::clamp((x - first) / width, 0, kBars - 1);
  const TRect rect = ShownBar(bar, places);
  return CapitalIn(bar, std::clamp(x, rect.left, rect.right), places);
}

int PositionOf(double capital, const CapitalPlaces& places) {
  int low = places.bars.front().left;
  int high = places.bars.back().right;
  while (low < high) {
    const int middle = low + (high - low) / 2;
    CapitalAtX(middle, places) < capital ? low = middle + 1 : high = middle;
  }
  const int first = places.bars.front().left;
  if (low == first || capital - CapitalAtX(low - 1, places) >= CapitalAtX(low, places) - capital) return low;
  return CapitalAt({low - 1, places.slider.bottom}, places) ? low - 1 : low - kGap;
}

std::vector<CapitalMark> MarksOf(const CapitalPlaces& places) {
  const auto leftOf = [&](int bar) { return places.bars[static_cast<std::size_t>(bar)].left; };
  std::vector<CapitalMark> marks{{QStringLiteral("10以下"), (leftOf(0) + leftOf(kGroup)) / 2}};
  for (int ten = 2; ten <= 10; ++ten) marks.push_back({QString::number(ten * 10), leftOf(ten * kGroup)});
  marks.push_back({QStringLiteral("100以上"), (leftOf(kLastEven + 1) + places.slider.right + kEdge) / 2});
  return marks;
}

}  // namespace holdwise::allocation
