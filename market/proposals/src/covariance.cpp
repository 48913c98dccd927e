// SPDX-License-Identifier: MIT
#include "covariance.h"

#include <algorithm>

#include "holdwise/packet/error.h"

namespace holdwise {

ShrunkCovariance ShrinkCovariance(const Eigen::MatrixXd& returns) {
  const auto count = static_cast<double>(returns.cols());
  const auto freedom = static_cast<double>(returns.rows() - 1);
  if (freedom < 1) throw Error(ErrorCategory::Refused, "协方差至少要有两个交易日的收益率");
  const Eigen::MatrixXd centred = returns.rowwise() - returns.colwise().mean();
  const Eigen::MatrixXd sample = centred.transpose() * centred / freedom;
  const Eigen::ArrayXd variances = sample.diagonal().array();
  if (!(variances > 0).all()) throw Error(ErrorCategory::Refused, "有股票的价格从未变动");
  const Eigen::ArrayXd deviations = variances.sqrt();
  ShrunkCovariance shrunk{sample, 0};
  if (returns.cols() < 2) return shrunk;

  const Eigen::MatrixXd products = (deviations.matrix() * deviations.matrix().transpose());
  const double meanCorrelation = ((sample.array() / products.array()).sum() - count) / (count * (count - 1));
  Eigen::MatrixXd target = meanCorrelation * products;
  target.diagonal() = sample.diagonal();

  // pi: summed variances of the sample's entries; rho: their covariances with the target's; gamma: the target's error.
  const Eigen::MatrixXd squares = centred.array().square();
  const Eigen::ArrayXXd entryVariances = (squares.transpose() * squares).array() / freedom - sample.array().square();
  Eigen::ArrayXXd thirdMoments =
      ((squares.array() * centred.array()).matrix().transpose() * centred).array() / freedom -
      sample.array().colwise() * variances;
  thirdMoments.matrix().diagonal().setZero();
  const Eigen::ArrayXXd ratios = (deviations.inverse().matrix() * deviations.matrix().transpose()).array();
  const double pi = entryVariances.sum();
  const double rho = entryVariances.matrix().trace() + meanCorrelation * (ratios * thirdMoments).sum();
  const double gamma = (sample - target).squaredNorm();
  if (gamma > 0) shrunk.intensity = std::clamp((pi - rho) / gamma / freedom, 0.0, 1.0);
  shrunk.matrix += shrunk.intensity * (target - sample);
  return shrunk;
}

}  // namespace holdwise
