// SPDX-License-Identifier: MIT
#pragma once
#include <Eigen/Dense>
#include <limits>
#include <optional>
#include <vector>

/// The choice of a given number of stocks and of their weights. Pure and thread-safe; the same input gives the same
/// bits.
namespace holdwise {

/// What portfolios are made of; one entry a stock.
struct Universe {
  Eigen::MatrixXd covariance;   ///< of daily returns, positive definite
  Eigen::VectorXd betas;        ///< against the composite index
  std::vector<int> industries;  ///< number of its industry, from 0 on; -1 = not known, capped by nothing
};

struct SelectionRules {
  int count = 2;                                                ///< stocks held, at least 1
  Eigen::VectorXd least;                                        ///< least weight of each stock if it is held
  Eigen::VectorXd most;                                         ///< most weight of each stock
  double mostOfIndustry = 1;                                    ///< weights of one industry together
  double leastBeta = -std::numeric_limits<double>::infinity();  ///< of the weighted mean of the betas
};

struct Selection {
  std::vector<int> places;  ///< ascending, exactly `count`
  Eigen::VectorXd weights;  ///< in their order, sum 1
  double variance = 0;      ///< w'Sw
};

/// Portfolio of small variance, long only, of exactly `count` stocks. To find the best of all such portfolios is a
/// problem of integers; this is a heuristic, whose weights are exact for the stocks it ends with:
///  1. the program without a number of stocks: its holdings, and the stocks that come next by their derivatives, are
///     the short list;
///  2. of its holdings the smallest is dropped and the rest weighted anew, until `count` are left;
///  3. each one left is exchanged for the one of the short list that lowers the variance most, round by round, until
///     a round changes nothing.
/// Nothing when no portfolio that keeps the rules is found.
[[nodiscard]] std::optional<Selection> SelectStocks(const Universe& universe, const SelectionRules& rules);

}  // namespace holdwise
