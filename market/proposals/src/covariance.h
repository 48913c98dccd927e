// SPDX-License-Identifier: MIT
#pragma once
#include <Eigen/Dense>

/// A covariance matrix that can be inverted although there are more stocks than days. Pure and thread-safe.
namespace holdwise {

struct ShrunkCovariance {
  Eigen::MatrixXd matrix;  ///< stocks x stocks
  double intensity = 0;    ///< 0 to 1: the target's share
};

/// The sample covariance (divisor days - 1) moved towards the one in which all pairs have the mean correlation, by the
/// estimated best share: O. Ledoit and M. Wolf, Honey, I shrunk the sample covariance matrix, Journal of Portfolio
/// Management 30 (2004). The variances stay those of the sample, so that what is called variance elsewhere is the same
/// here; the identity as target would draw the calm stocks' variances up, and those are what is looked for.
/// @param returns days x stocks, at least two days; a column that never moves is Error(Refused)
[[nodiscard]] ShrunkCovariance ShrinkCovariance(const Eigen::MatrixXd& returns);

}  // namespace holdwise
