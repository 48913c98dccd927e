// SPDX-License-Identifier: MIT
#include "weight_units.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

namespace holdwise {

std::vector<int> ToUnits(const Eigen::VectorXd& weights, const std::vector<int>& industries, int mostOfIndustry,
                         int total) {
  constexpr double kRounding = 1e-6;  // of a unit: a weight at its bound is not rounded below it
  const auto count = static_cast<std::size_t>(weights.size());
  std::vector<int> units(count);
  std::vector<double> remainders(count);
  std::map<int, int> ofIndustry;
  for (std::size_t i = 0; i < count; ++i) {
    const double exact = weights[static_cast<Eigen::Index>(i)] * total;
    units[i] = static_cast<int>(std::floor(exact + kRounding));
    remainders[i] = exact - units[i];
    if (industries[i] >= 0) ofIndustry[industries[i]] += units[i];
  }
  std::vector<std::size_t> order(count);
  std::iota(order.begin(), order.end(), 0U);
  std::stable_sort(order.begin(), order.end(),
                   [&remainders](std::size_t a, std::size_t b) { return remainders[a] > remainders[b]; });
  int missing = total - std::accumulate(units.begin(), units.end(), 0);
  for (auto place = order.begin(); missing > 0 && place != order.end(); ++place) {
    const int industry = industries[*place];
    if (industry >= 0 && ofIndustry[industry] >= mostOfIndustry) continue;
    if (industry >= 0) ++ofIndustry[industry];
    ++units[*place];
    --missing;
  }
  return units;
}

}  // namespace holdwise
