// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <vector>

namespace holdwise {

/// A value with its place on an axis.
struct AxisTick {
  double value = 0;
  int y = 0;
  QString text;
};

/// Maps values to pixel rows of a plot that always shows the zero line. Pure.
class ValueAxis {
 public:
  /// @param low,high the least and the greatest value, in any order; 0 is taken in. A range below `leastSpan` is
  ///   widened to it at its greater end, so that next to nothing stays low.
  /// @param top,bottom pixel rows of the greatest and the least value, top <= bottom
  ValueAxis(double low, double high, double leastSpan, int top, int bottom);

  /// The row of a value; beyond the ends for values out of range, kept to them.
  [[nodiscard]] int YOf(double value) const;
  [[nodiscard]] int ZeroY() const { return YOf(0); }
  /// Multiples of a round distance (1, 2, 5 x a power of ten) inside the range, lowest first, at least `leastGap`
  /// pixels apart; 0 is one of them. Where that leaves 0 alone and there is room for another one, the greatest value of
  /// one significant digit, or of two, is the other. The texts have as many decimals as the distance needs, and a
  /// percent sign.
  [[nodiscard]] std::vector<AxisTick> Ticks(int leastGap) const;

 private:
  /// That other one, or none.
  [[nodiscard]] std::vector<AxisTick> FarTick(int leastGap) const;

  double low_;
  double high_;
  int top_;
  int bottom_;
};

}  // namespace holdwise
