// SPDX-License-Identifier: MIT
#include "intraday/line_colors.h"

namespace holdwise {

LineColors LineColorsOf(const ThemeServices& theme) {
  const auto color = [&theme](const char* key) { return theme.Colors().ColorOf(QString::fromLatin1(key)); };
  LineColors colors;
  colors.ground = color("Qm_BGCorlor");
  colors.text = color("Grid_UnSelTxtColor");
  colors.grid = color("Qm_GridJgColor");
  colors.border = color("KTR_BorderColor");
  colors.price = color("Grid_ClickTxtColor");
  colors.average = color("Qm_KlineYellowColor");
  colors.previousClose = color("Qm_CharAxisLineColor");
  colors.rise = theme.ColorOfChange(1);
  colors.fall = theme.ColorOfChange(-1);
  return colors;
}

QColor ChangeColor(const LineColors& colors, double change) {
  if (change > 0) return colors.rise;
  return change < 0 ? colors.fall : colors.text;
}

}  // namespace holdwise
