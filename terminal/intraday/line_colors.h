// SPDX-License-Identifier: MIT
#pragma once
#include <QColor>

#include "theme/theme_services.h"

namespace holdwise {

/// The colours of the day's picture, all of the theme.
struct LineColors {
  QColor ground, text, grid, border;
  QColor price, average, previousClose;
  QColor rise, fall;
};
[[nodiscard]] LineColors LineColorsOf(const ThemeServices& theme);
/// Colour of a figure by its sign: that of rises, of falls, of plain text. The one place where it is chosen.
[[nodiscard]] QColor ChangeColor(const LineColors& colors, double change);

}  // namespace holdwise
