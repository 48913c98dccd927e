// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <array>

namespace holdwise {

/// The colours of a chart's terms, by what they are called in the theme.
enum class ChartColor { Yellow, Red, Blue };

/// One bar.
struct ChartTerm {
  QString name;
  double value = 0;  ///< percent
  QString text;      ///< the value as it is to be read
  ChartColor color = ChartColor::Yellow;
};

/// A total and the two parts that add up to it.
struct ChartStep {
  QString caption;
  ChartTerm total;
  ChartTerm left;
  ChartTerm right;
};

inline constexpr int kSteps = 3;
inline constexpr int kBarsOfAStep = 3;
inline constexpr int kBars = kSteps * kBarsOfAStep;

/// A total that is taken apart in three steps, drawn one below the other. A plain value.
struct StepChart {
  std::array<ChartStep, kSteps> steps;
  QString subject;       ///< what the chart is about
  QString note{};        ///< a line above everything, about the figures as a whole; empty for none
  bool isEmpty = false;  ///< no bars, only the text of each total
};

}  // namespace holdwise
