// SPDX-License-Identifier: MIT
#pragma once
#include <Eigen/Dense>

/// Convex quadratic programs of moderate size (up to some hundred variables). Pure and thread-safe.
namespace holdwise {

/// Minimise x'Gx / 2 + c'x over lower <= x <= upper, least <= Ax <= most.
struct QuadraticProgram {
  Eigen::MatrixXd quadratic;  ///< G, n x n, symmetric and positive definite
  Eigen::VectorXd linear;     ///< c, n
  Eigen::VectorXd lower;      ///< n; -infinity = none; equal to upper: the variable is fixed
  Eigen::VectorXd upper;      ///< n; +infinity = none
  Eigen::MatrixXd rows;       ///< A, m x n, m may be 0
  Eigen::VectorXd least;      ///< m; -infinity = none; equal to most: an equality
  Eigen::VectorXd most;       ///< m; +infinity = none
};

enum class QuadraticOutcome {
  Solved,
  Infeasible,  ///< no x keeps all constraints
  NotConvex,   ///< G is not positive definite, as far as the arithmetic can tell
  Unfinished   ///< gave up after very many steps: never seen, never an endless loop
};

struct QuadraticSolution {
  QuadraticOutcome outcome = QuadraticOutcome::Unfinished;
  Eigen::VectorXd x;     ///< empty unless solved
  double objective = 0;  ///< x'Gx / 2 + c'x
  int steps = 0;         ///< constraints that were taken up or dropped
};

/// The dual active-set method of D. Goldfarb and A. Idnani, A numerically stable dual method for solving strictly
/// convex quadratic programs, Mathematical Programming 27 (1983): from the unconstrained minimum on, the most violated
/// constraint is taken up and what stands in its way is dropped. Ends at the one minimum, exact but for rounding:
/// constraints hold to 1e-12 of their size. The same input gives the same bits.
[[nodiscard]] QuadraticSolution SolveQuadratic(const QuadraticProgram& program);

}  // namespace holdwise
