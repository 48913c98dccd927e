// SPDX-License-Identifier: MIT
#pragma once
#include <QColor>
#include <QString>

#include "capital_places.h"
#include "holdwise/sdk/theme.h"

class QPainter;

namespace holdwise::allocation {

/// What the slider is painted with.
struct CapitalSliderPalette {
  QColor background;
  QColor text;     ///< marks
  QColor caption;  ///< line above the ramp
  QColor baseLine;
  QColor rampStart, rampEnd;
  QColor filledStart, filledEnd;
  QColor focus;  ///< round the thumb

  bool operator==(const CapitalSliderPalette&) const = default;
};
/// The palette of the current theme, read in one go.
[[nodiscard]] CapitalSliderPalette ReadCapitalSliderPalette(const IColorSet& colors);

struct CapitalSliderState {
  double capital = 0;  ///< ten-thousands of yuan; below 0 counts as 0
  QString caption;
  bool hasFocus = false;
};

/// Where the thumb lies for a capital.
[[nodiscard]] QRect ThumbOf(double capital, const CapitalPlaces& places);

/// Paints ramp, filled part, thumb, marks and caption; what lies between is background. Keeps nothing; the painter's
/// state is as before.
void PaintCapitalSlider(QPainter& painter, const CapitalSliderState& state, const CapitalPlaces& places,
                        const QRect& area, const CapitalSliderPalette& palette);

}  // namespace holdwise::allocation
