// SPDX-License-Identifier: MIT
#include "covariance.h"

#include <gtest/gtest.h>

#include <cmath>

#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

using Eigen::MatrixXd;

// Eight days of three stocks with the mean 0. Their intensity was worked out apart from this house.
constexpr double kIntensity = 0.7256230152475555;
MatrixXd Rows() {
  MatrixXd rows(8, 3);
  rows << 1, 2, -1, -2, -1, 0, 3, 1, 2, 0, -2, 1, -1, 0, -3, 2, 3, 1, -3, -2, 2, 0, -1, -2;
  return rows;
}

TEST(Covariance, IntensityIsTheKnownOne) {
  const ShrunkCovariance shrunk = ShrinkCovariance(Rows());
  EXPECT_NEAR(shrunk.intensity, kIntensity, 1e-14);
  // Squares and products by hand: 28, 24, 24; 19, 4, -1; over 7. The variances stay.
  EXPECT_NEAR(shrunk.matrix(0, 0), 28.0 / 7, 1e-14);
  EXPECT_NEAR(shrunk.matrix(1, 1), 24.0 / 7, 1e-14);
  EXPECT_NEAR(shrunk.matrix(2, 2), 24.0 / 7, 1e-14);
  const double correlations[] = {19 / std::sqrt(28.0 * 24), 4 / std::sqrt(28.0 * 24), -1.0 / 24};
  const double mean = (correlations[0] + correlations[1] + correlations[2]) / 3;
  const double wanted = (kIntensity * mean + (1 - kIntensity) * correlations[0]) * std::sqrt(28.0 * 24) / 7;
  EXPECT_NEAR(shrunk.matrix(0, 1), wanted, 1e-14);
  EXPECT_EQ(shrunk.matrix, MatrixXd(shrunk.matrix.transpose()));
}

TEST(Covariance, AConstantAddedToAColumnChangesNothing) {
  MatrixXd moved = Rows();
  moved.rowwise() += Eigen::RowVector3d(5, -0.25, 100);
  const ShrunkCovariance shrunk = ShrinkCovariance(moved);
  EXPECT_NEAR(shrunk.intensity, kIntensity, 1e-12);
  EXPECT_LT((shrunk.matrix - ShrinkCovariance(Rows()).matrix).cwiseAbs().maxCoeff(), 1e-12);
}

TEST(Covariance, MoreStocksThanDaysCanBeInverted) {
  MatrixXd returns(5, 20);
  for (Eigen::Index i = 0; i < returns.size(); ++i) returns.data()[i] = std::sin(static_cast<double>(i * i));
  const Eigen::LLT<MatrixXd> factor(ShrinkCovariance(returns).matrix);
  EXPECT_EQ(factor.info(), Eigen::Success);
}

TEST(Covariance, OfOneStockAndOfTwoNothingIsShrunk) {
  const ShrunkCovariance one = ShrinkCovariance(Rows().leftCols(1));
  EXPECT_EQ(one.intensity, 0);
  EXPECT_NEAR(one.matrix(0, 0), 28.0 / 7, 1e-14);
  // The mean correlation of one pair is that pair's.
  const ShrunkCovariance two = ShrinkCovariance(Rows().leftCols(2));
  EXPECT_NEAR(two.matrix(0, 1), 19.0 / 7, 1e-14);
}

TEST(Covariance, WithoutMovementThereIsNone) {
  MatrixXd still = Rows();
  still.col(1).setZero();
  EXPECT_THROW(static_cast<void>(ShrinkCovariance(still)), Error);
  EXPECT_THROW(static_cast<void>(ShrinkCovariance(Rows().topRows(1))), Error);
}

}  // namespace
}  // namespace holdwise
