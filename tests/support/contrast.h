// SPDX-License-Identifier: MIT
#pragma once
#include <QColor>
#include <algorithm>
#include <cmath>

/// Relative luminance and contrast ratio as WCAG 2.1 defines them.
namespace holdwise {

inline double Luminance(const QColor& color) {
  const auto channel = [](double value) {
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * channel(color.redF()) + 0.7152 * channel(color.greenF()) + 0.0722 * channel(color.blueF());
}

inline double Contrast(const QColor& first, const QColor& second) {
  const double a = Luminance(first);
  const double b = Luminance(second);
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

}  // namespace holdwise
