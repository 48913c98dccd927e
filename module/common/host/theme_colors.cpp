// SPDX-License-Identifier: MIT
#include "common/host/theme_colors.h"

#include <cmath>

namespace holdwise {

GridColors ReadGridColors(const IColorSet& colors) {
  GridColors read;
  read.evenRow = colors.ColorOf(theme::kHighLight1);
  read.oddRow = colors.ColorOf(theme::kHighLight2);
  read.selectedRow = colors.ColorOf(theme::kRowSelect);
  read.selectedText = colors.ColorOf(theme::kSelectedText);
  read.unselectedText = colors.ColorOf(theme::kUnselectedText);
  read.titleText = colors.ColorOf(theme::kGridTitleText);
  read.background = colors.ColorOf(theme::kBackground);
  read.focusFrame = colors.ColorOf(theme::kClickText);
  read.rise = colors.FindColor(theme::kRiseText).value_or(QColor());
  read.fall = colors.FindColor(theme::kFallText).value_or(QColor());
  return read;
}

QColor MixedColor(const QColor& ground, const QColor& other, double share) {
  const auto mix = [share](int from, int to) { return from + static_cast<int>(std::lround((to - from) * share)); };
  return {mix(ground.red(), other.red()), mix(ground.green(), other.green()), mix(ground.blue(), other.blue())};
}

}  // namespace holdwise
