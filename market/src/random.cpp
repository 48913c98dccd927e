// SPDX-License-Identifier: MIT
#include "holdwise/market/random.h"

#include <cmath>

namespace holdwise {

double NormalSource::Uniform() {
  constexpr double kStep = 1.0 / 9007199254740992.0;  // 2^-53
  return (static_cast<double>(engine_() >> 11) + 0.5) * kStep;
}

double NormalSource::Normal() {
  if (hasSpare_) {
    hasSpare_ = false;
    return spare_;
  }
  double x = 0;
  double y = 0;
  double square = 0;
  do {
    x = 2 * Uniform() - 1;
    y = 2 * Uniform() - 1;
    square = x * x + y * y;
  } while (square >= 1 || square == 0);
  const double factor = std::sqrt(-2 * std::log(square) / square);
  spare_ = y * factor;
  hasSpare_ = true;
  return x * factor;
}

}  // namespace holdwise
