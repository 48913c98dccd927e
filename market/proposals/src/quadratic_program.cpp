// SPDX-License-Identifier: MIT
#include "quadratic_program.h"

#include <cmath>
#include <limits>
#include <vector>

namespace holdwise {
namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kFeasible = 1e-12;    // of a bound's size
constexpr double kDependent = 1e-10;   // share of a normal that is left when the active ones are taken out
constexpr double kNoObstacle = 1e-13;  // share of the largest dual direction
constexpr Index kStepsPerRange = 50;

/// A constraint met from one side. Ranges are numbered: variables first, then rows.
struct Side {
  Index range = 0;
  double sign = 1;  // +1 at the lower end, -1 at the upper
  bool isEquality = false;
};

/// Names as in the paper: J and R come from G = LL' and the active normals N: J'N = (R; 0), JJ' = G^-1.
class DualMethod {
 public:
  explicit DualMethod(const QuadraticProgram& program)
      : program_(program), n_(program.linear.size()), ranges_(n_ + program.least.size()), r_(n_, n_), u_(n_) {}

  QuadraticSolution Run();

 private:
  bool Start();
  void ScaleRows();
  [[nodiscard]] double Lower(Index range) const { return range < n_ ? program_.lower[range] : least_[range - n_]; }
  [[nodiscard]] double Upper(Index range) const { return range < n_ ? program_.upper[range] : most_[range - n_]; }
  [[nodiscard]] double ValueOf(Index range) const { return range < n_ ? x_[range] : rows_.row(range - n_).dot(x_); }
  /// How far the side is kept; negative when it is violated.
  [[nodiscard]] double Slack(const Side& side) const;
  [[nodiscard]] bool IsViolated(double slack, double bound) const {
    return slack < -kFeasible * std::max(1.0, std::abs(bound));
  }
  [[nodiscard]] bool HasEmptyRange() const;
  QuadraticOutcome TakeUpEqualities();
  [[nodiscard]] bool MostViolated(Side& side) const;
  QuadraticOutcome TakeUp(const Side& side);
  void Append(VectorXd& d, const Side& side, double multiplier);
  void Drop(Index place);
  [[nodiscard]] Index FirstObstacle(const VectorXd& direction, double& length) const;

  const QuadraticProgram& program_;
  Index n_;
  Index ranges_;
  MatrixXd rows_;  // scaled to length 1
  VectorXd least_;
  VectorXd most_;
  MatrixXd j_;
  MatrixXd r_;
  VectorXd u_;  // multipliers of the active sides
  VectorXd x_;
  std::vector<Side> active_;
  Index steps_ = 0;
};

QuadraticSolution DualMethod::Run() {
  QuadraticSolution solution;
  ScaleRows();
  if (HasEmptyRange()) {
    solution.outcome = QuadraticOutcome::Infeasible;
    return solution;
  }
  if (!Start()) {
    solution.outcome = QuadraticOutcome::NotConvex;
    return solution;
  }
  solution.outcome = TakeUpEqualities();
  for (Side side; solution.outcome == QuadraticOutcome::Solved && MostViolated(side);) solution.outcome = TakeUp(side);
  solution.steps = static_cast<int>(steps_);
  if (solution.outcome != QuadraticOutcome::Solved) return solution;
  solution.objective = x_.dot(program_.quadratic * x_) / 2 + program_.linear.dot(x_);
  solution.x = std::move(x_);
  return solution;
}

void DualMethod::ScaleRows() {
  rows_ = program_.rows;
  least_ = program_.least;
  most_ = program_.most;
  for (Index row = 0; row < rows_.rows(); ++row) {
    const double length = rows_.row(row).norm();
    if (length == 0) continue;
    rows_.row(row) /= length;
    least_[row] /= length;
    most_[row] /= length;
  }
}

bool DualMethod::HasEmptyRange() const {
  for (Index range = 0; range < ranges_; ++range) {
    if (!(Lower(range) <= Upper(range))) return true;
    const bool isZeroRow = range >= n_ && rows_.row(range - n_).isZero(0);
    if (isZeroRow && (Lower(range) > 0 || Upper(range) < 0)) return true;
  }
  return false;
}

bool DualMethod::Start() {
  const Eigen::LLT<MatrixXd> factor(program_.quadratic);
  if (factor.info() != Eigen::Success) return false;
  j_ = factor.matrixU().solve(MatrixXd::Identity(n_, n_));
  x_ = -factor.solve(program_.linear);
  return j_.allFinite() && x_.allFinite();
}

double DualMethod::Slack(const Side& side) const {
  const double value = ValueOf(side.range);
  return side.sign > 0 ? value - Lower(side.range) : Upper(side.range) - value;
}

QuadraticOutcome DualMethod::TakeUpEqualities() {
  for (Index range = 0; range < ranges_; ++range) {
    if (Lower(range) != Upper(range) || (range >= n_ && rows_.row(range - n_).isZero(0))) continue;
    // From the side on which it is not kept: the step towards it has a positive length.
    const QuadraticOutcome outcome = TakeUp({range, ValueOf(range) <= Lower(range) ? 1.0 : -1.0, true});
    if (outcome != QuadraticOutcome::Solved) return outcome;
  }
  return QuadraticOutcome::Solved;
}

bool DualMethod::MostViolated(Side& side) const {
  double least = 0;
  const VectorXd values = rows_ * x_;
  for (Index range = 0; range < ranges_; ++range) {
    if (Lower(range) == Upper(range)) continue;
    const double value = range < n_ ? x_[range] : values[range - n_];
    const double fromLower = value - Lower(range);
    const double fromUpper = Upper(range) - value;
    if (fromLower < least && IsViolated(fromLower, Lower(range))) {
      least = fromLower;
      side = {range, 1, false};
    }
    if (fromUpper < least && IsViolated(fromUpper, Upper(range))) {
      least = fromUpper;
      side = {range, -1, false};
    }
  }
  return least < 0;
}

// The active inequality whose multiplier is the first to reach zero, -1 = none; the length of the way there.
Index DualMethod::FirstObstacle(const VectorXd& direction, double& length) const {
  length = kInfinity;
  Index place = -1;
  const double threshold = direction.size() == 0 ? 0 : kNoObstacle * direction.cwiseAbs().maxCoeff();
  for (Index k = 0; k < direction.size(); ++k) {
    if (active_[static_cast<std::size_t>(k)].isEquality || direction[k] <= threshold) continue;
    const double ratio = std::max(0.0, u_[k]) / direction[k];
    if (ratio < length) {
      length = ratio;
      place = k;
    }
  }
  return place;
}

QuadraticOutcome DualMethod::TakeUp(const Side& side) {
  double multiplier = 0;
  for (;;) {
    if (++steps_ > kStepsPerRange * (ranges_ + 2)) return QuadraticOutcome::Unfinished;
    const auto q = static_cast<Index>(active_.size());
    VectorXd d = side.range < n_ ? VectorXd(j_.row(side.range))
                                 : VectorXd(j_.transpose() * rows_.row(side.range - n_).transpose());
    d *= side.sign;
    const VectorXd direction = r_.topLeftCorner(q, q).triangularView<Eigen::Upper>().solve(d.head(q));
    const double slope = d.tail(n_ - q).squaredNorm();
    const bool canMove = slope > kDependent * kDependent * d.squaredNorm();
    const double slack = Slack(side);
    if (!canMove && side.isEquality && !IsViolated(-std::abs(slack), Lower(side.range))) {
      return QuadraticOutcome::Solved;  // it follows from those that are active
    }
    double dualLength = 0;
    const Index obstacle = FirstObstacle(direction, dualLength);
    const double primalLength = canMove ? std::max(0.0, -slack) / slope : kInfinity;
    const double length = std::min(dualLength, primalLength);
    if (length == kInfinity) return QuadraticOutcome::Infeasible;
    u_.head(q) -= length * direction;
    multiplier += length;
    if (canMove) x_ += length * (j_.rightCols(n_ - q) * d.tail(n_ - q));
    if (primalLength <= dualLength) {
      Append(d, side, multiplier);
      return QuadraticOutcome::Solved;
    }
    Drop(obstacle);
  }
}

void DualMethod::Append(VectorXd& d, const Side& side, double multiplier) {
  const auto q = static_cast<Index>(active_.size());
  VectorXd essential(n_ - q - 1);
  double factor = 0;
  double corner = 0;
  d.tail(n_ - q).makeHouseholder(essential, factor, corner);
  VectorXd workspace(n_);
  j_.rightCols(n_ - q).applyHouseholderOnTheRight(essential, factor, workspace.data());
  r_.col(q).head(q) = d.head(q);
  r_(q, q) = corner;
  u_[q] = multiplier;
  active_.push_back(side);
}

void DualMethod::Drop(Index place) {
  const auto q = static_cast<Index>(active_.size());
  for (Index column = place; column + 1 < q; ++column) {
    r_.col(column).head(column + 2) = r_.col(column + 1).head(column + 2);
    u_[column] = u_[column + 1];
    active_[static_cast<std::size_t>(column)] = active_[static_cast<std::size_t>(column + 1)];
  }
  active_.pop_back();
  for (Index column = place; column + 1 < q; ++column) {
    Eigen::JacobiRotation<double> rotation;
    rotation.makeGivens(r_(column, column), r_(column + 1, column));
    r_.block(0, column, q, q - 1 - column).applyOnTheLeft(column, column + 1, rotation.adjoint());
    j_.applyOnTheRight(column, column + 1, rotation);
  }
}

}  // namespace

QuadraticSolution SolveQuadratic(const QuadraticProgram& program) {
  return DualMethod(program).Run();
}

}  // namespace holdwise
