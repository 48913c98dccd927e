// SPDX-License-Identifier: MIT
#include "quadratic_program.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

#include "market_program.h"

namespace holdwise {
namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Least variance of n assets of one variance each, long only, sum 1.
QuadraticProgram LongOnly(Index n) {
  QuadraticProgram program;
  program.quadratic = MatrixXd::Identity(n, n);
  program.linear = VectorXd::Zero(n);
  program.lower = VectorXd::Zero(n);
  program.upper = VectorXd::Constant(n, kInfinity);
  program.rows = MatrixXd::Ones(1, n);
  program.least = program.most = VectorXd::Ones(1);
  return program;
}

void AddRow(QuadraticProgram& program, const VectorXd& row, double least, double most) {
  const Index m = program.rows.rows();
  program.rows.conservativeResize(m + 1, row.size());
  program.rows.row(m) = row.transpose();
  for (VectorXd* end : {&program.least, &program.most}) end->conservativeResize(m + 1);
  program.least[m] = least;
  program.most[m] = most;
}

VectorXd Vector(std::initializer_list<double> values) {
  VectorXd vector(static_cast<Index>(values.size()));
  std::copy(values.begin(), values.end(), vector.begin());
  return vector;
}

void ExpectSolution(const QuadraticProgram& program, const VectorXd& wanted) {
  const QuadraticSolution solution = SolveQuadratic(program);
  ASSERT_EQ(solution.outcome, QuadraticOutcome::Solved);
  ASSERT_EQ(solution.x.size(), wanted.size());
  EXPECT_LT((solution.x - wanted).cwiseAbs().maxCoeff(), 1e-12) << solution.x.transpose();
  EXPECT_NEAR(solution.objective, wanted.dot(program.quadratic * wanted) / 2 + program.linear.dot(wanted), 1e-12);
}

TEST(QuadraticProgram, WithoutAConstraintItIsALinearSystem) {
  QuadraticProgram program = LongOnly(2);
  program.quadratic << 2, 1, 1, 3;
  program.linear << -5, -10;  // 2x + y = 5, x + 3y = 10
  program.lower.setConstant(-kInfinity);
  program.least[0] = -kInfinity;
  program.most[0] = kInfinity;
  ExpectSolution(program, Vector({1, 3}));
}

TEST(QuadraticProgram, MeetsBoundsGroupsAndAFloor) {
  // Free: variances 1, 2, 4 give weights 4/7, 2/7, 1/7.
  QuadraticProgram program = LongOnly(3);
  program.quadratic.diagonal() << 1, 2, 4;
  ExpectSolution(program, Vector({4.0 / 7, 2.0 / 7, 1.0 / 7}));
  program.upper[0] = 0.4;  // the rest 0.6 as 2 : 1
  ExpectSolution(program, Vector({0.4, 0.4, 0.2}));
  AddRow(program, Vector({1, 1, 0}), -kInfinity, 0.7);  // 0.3 is the third's; 0.7 as 2 : 1 breaks 0.4
  ExpectSolution(program, Vector({0.4, 0.3, 0.3}));
  AddRow(program, Vector({0, 0, 1}), 0.5, kInfinity);
  ExpectSolution(program, Vector({1.0 / 3, 1.0 / 6, 0.5}));
}

TEST(QuadraticProgram, AHeldWeightKeepsItsLeast) {
  // Correlated with the first and twice as risky: nothing of the second, but for its least weight.
  QuadraticProgram program = LongOnly(2);
  program.quadratic << 1, 1.8, 1.8, 4;
  ExpectSolution(program, Vector({1, 0}));
  program.lower[1] = 0.25;
  ExpectSolution(program, Vector({0.75, 0.25}));
}

TEST(QuadraticProgram, SaysWhatCannotBe) {
  const auto outcome = [](const QuadraticProgram& program) { return SolveQuadratic(program).outcome; };
  QuadraticProgram program = LongOnly(3);
  program.upper.setConstant(0.3);
  EXPECT_EQ(outcome(program), QuadraticOutcome::Infeasible) << "0.9 at most";
  program = LongOnly(3);
  program.lower.setConstant(0.4);
  EXPECT_EQ(outcome(program), QuadraticOutcome::Infeasible) << "1.2 at least";
  program = LongOnly(3);
  AddRow(program, Vector({1, 1, 0}), -kInfinity, 0.2);
  AddRow(program, Vector({0, 0, 1}), -kInfinity, 0.7);
  EXPECT_EQ(outcome(program), QuadraticOutcome::Infeasible) << "two groups";
  program = LongOnly(3);
  AddRow(program, Vector({0.1, 0.2, 0.3}), 0.3001, kInfinity);
  EXPECT_EQ(outcome(program), QuadraticOutcome::Infeasible) << "more than the best one gives";
  program = LongOnly(3);
  AddRow(program, Vector({2, 2, 2}), 3, 3);
  EXPECT_EQ(outcome(program), QuadraticOutcome::Infeasible) << "an equality against another";
  program = LongOnly(3);
  program.lower[1] = 0.5;
  program.upper[1] = 0.4;
  EXPECT_EQ(outcome(program), QuadraticOutcome::Infeasible) << "an empty range";
  program = LongOnly(3);
  AddRow(program, Vector({0, 0, 0}), 1, kInfinity);
  EXPECT_EQ(outcome(program), QuadraticOutcome::Infeasible) << "a row of nothing";
  program = LongOnly(2);
  program.quadratic << 1, 2, 2, 1;
  EXPECT_EQ(outcome(program), QuadraticOutcome::NotConvex);
  EXPECT_EQ(SolveQuadratic(program).x.size(), 0);
}

TEST(QuadraticProgram, DegenerateOnesEnd) {
  // Every constraint several times, all of them met at once at the solution.
  QuadraticProgram program = LongOnly(4);
  program.quadratic.diagonal() << 1, 1, 100, 100;
  program.upper.setConstant(0.25);
  for (int times = 0; times < 5; ++times) {
    AddRow(program, Vector({1, 1, 1, 1}), 1, 1);
    AddRow(program, Vector({1, 1, 0, 0}), -kInfinity, 0.5);
    AddRow(program, Vector({0, 0, 3, 3}), 1.5, kInfinity);
    AddRow(program, Vector({0, 0, 0, 0}), 0, 0);
  }
  ExpectSolution(program, Vector({0.25, 0.25, 0.25, 0.25}));

  program = LongOnly(60);  // sixty alike: every order is as good
  program.upper.setConstant(1.0 / 60);
  ExpectSolution(program, VectorXd::Constant(60, 1.0 / 60));

  program = LongOnly(3);
  program.lower << 0.2, 0.3, 0.5;
  program.upper = program.lower;
  ExpectSolution(program, Vector({0.2, 0.3, 0.5}));
  program = LongOnly(1);
  ExpectSolution(program, Vector({1}));
}

QuadraticProgram Read(std::istream& in, double& objective) {
  Index n = 0;
  Index m = 0;
  in >> n >> m;
  const auto read = [&in](auto& values, Index rows, Index columns) {
    values.resize(rows, columns);
    for (Index row = 0; row < rows; ++row) {
      for (Index column = 0; column < columns; ++column) in >> values(row, column);
    }
  };
  QuadraticProgram program;
  read(program.quadratic, n, n);
  program.linear = VectorXd::Zero(n);
  read(program.lower, n, 1);
  read(program.upper, n, 1);
  read(program.rows, m, n);
  read(program.least, m, 1);
  read(program.most, m, 1);
  in >> objective;
  for (VectorXd* ends : {&program.least, &program.most}) {
    *ends = ends->unaryExpr([](double end) { return std::abs(end) >= 1e300 ? std::copysign(kInfinity, end) : end; });
  }
  return program;
}

// Long only, sum 1, upper bounds, caps of groups and now and then a floor under the return: 2 to 60 assets.
TEST(QuadraticProgram, FiftyRandomOnesAreThoseOfAnotherSolver) {
  const Result problems =
      Execute(kPython, {Script("quadratic_problems.py"), QStringLiteral("50"), QStringLiteral("1")});
  ASSERT_EQ(problems.exitCode, 0) << problems.error.constData();
  std::istringstream in(problems.out.toStdString());
  int atABound = 0;
  for (int problem = 0; problem < 50; ++problem) {
    double objective = 0;
    const QuadraticProgram program = Read(in, objective);
    ASSERT_TRUE(in) << problem;
    const QuadraticSolution solution = SolveQuadratic(program);
    ASSERT_EQ(solution.outcome, QuadraticOutcome::Solved) << problem;
    EXPECT_NEAR(solution.objective, objective, 1e-9 * objective) << problem;
    const VectorXd values = program.rows * solution.x;
    EXPECT_GT((solution.x - program.lower).minCoeff(), -1e-9) << problem;
    EXPECT_GT((program.upper - solution.x).minCoeff(), -1e-9) << problem;
    EXPECT_GT((values - program.least).minCoeff(), -1e-9) << problem;
    EXPECT_GT((program.most - values).minCoeff(), -1e-9) << problem;
    if (((program.upper - solution.x).array() < 1e-9).any() || (solution.x.array() < 1e-9).any()) ++atABound;
  }
  EXPECT_GT(atABound, 25) << "most of them are more than a linear system";
}

}  // namespace
}  // namespace holdwise
