// SPDX-License-Identifier: MIT
#pragma once
#include <QPoint>
#include <QString>
#include <array>
#include <optional>
#include <vector>

#include "common/helpers/drawing.h"

/// Where amounts of capital lie on the slider, and back. Capitals are in ten-thousands of yuan, places in pixels of the
/// panel. Pure, any thread.
namespace holdwise::allocation {

inline constexpr int kBars = 33;

/// The slider and its ramp of bars. Bars 1 to 30 stand for 0 to 100, three for each ten; 31 for 100 to 120, 32 for 120
/// to 150, 33 for 150 to 200.
struct CapitalPlaces {
  TRect slider;
  std::array<TRect, kBars> bars;
};
/// For a frame of that width. Below 300 pixels the places are those for 300, and cut off.
[[nodiscard]] CapitalPlaces CalcRect(int frameWidth);

/// A bar (from 0) without the gap behind it, as it is shown and pointed at.
[[nodiscard]] TRect ShownBar(int bar, const CapitalPlaces& places);

struct CapitalRange {
  int index = 0;  ///< of the bar, from 1
  TRect current;  ///< the bar up to the place of the capital, which is its right edge
};
/// The bar of a capital. One of -10/3 or less, which has none, is Error(Refused).
[[nodiscard]] CapitalRange CalcRange(double capital, const CapitalPlaces& places);

/// The capital that a point in a bar stands for; none outside the bars. The last two pixels of a bar are outside of it.
[[nodiscard]] std::optional<double> CapitalAt(const QPoint& point, const CapitalPlaces& places);
/// The same for every x, at whatever height: between two bars the value of the one on the left, beside the ramp that of
/// its nearer end.
[[nodiscard]] double CapitalAtX(int x, const CapitalPlaces& places);
/// The x whose capital is nearest to that one: where the slider's thumb points.
[[nodiscard]] int PositionOf(double capital, const CapitalPlaces& places);

/// A mark below the slider, centred.
struct CapitalMark {
  QString text;
  int centre = 0;
};
[[nodiscard]] std::vector<CapitalMark> MarksOf(const CapitalPlaces& places);

}  // namespace holdwise::allocation
