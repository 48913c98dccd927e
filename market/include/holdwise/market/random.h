// SPDX-License-Identifier: MIT
#pragma once
#include <cstdint>
#include <random>

namespace holdwise {

/// Random numbers that are the same on every machine and library for the same seed: the engine's output is fixed by the
/// language standard, the conversions are our own. Not thread-safe.
class NormalSource {
 public:
  explicit NormalSource(std::uint64_t seed) : engine_(seed) {}
  /// Uniform in (0, 1): multiples of 2^-53 shifted by half a step, so neither end occurs.
  [[nodiscard]] double Uniform();
  /// Standard normal deviate by the polar method of Marsaglia and Bray (SIAM Review 6, 1964).
  [[nodiscard]] double Normal();

 private:
  std::mt19937_64 engine_;
  double spare_ = 0;
  bool hasSpare_ = false;
};

}  // namespace holdwise
