// SPDX-License-Identifier: MIT
#pragma once
#include <Eigen/Dense>
#include <vector>

namespace holdwise {

/// Weights as whole units that add up to exactly `total`: each rounded down, what is missing to the largest remainders
/// (of equal ones the first). Bounds of a weight and of an industry that are whole units stay kept. Pure.
/// @param weights not below 0, with the sum 1
/// @param industries number of each weight's industry; -1 = none
/// @param mostOfIndustry units
[[nodiscard]] std::vector<int> ToUnits(const Eigen::VectorXd& weights, const std::vector<int>& industries,
                                       int mostOfIndustry, int total);

}  // namespace holdwise
