// SPDX-License-Identifier: MIT
#include "selection.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <random>

#include "quadratic_program.h"
#include "weight_units.h"

namespace holdwise {
namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

Universe Independent(std::initializer_list<double> variances) {
  Universe universe;
  const auto n = static_cast<Index>(variances.size());
  universe.covariance = MatrixXd::Zero(n, n);
  std::copy(variances.begin(), variances.end(), universe.covariance.diagonal().begin());
  universe.betas = VectorXd::Ones(n);
  universe.industries.assign(variances.size(), -1);
  return universe;
}

SelectionRules Rules(const Universe& universe, int count, double least = 0, double most = 1) {
  SelectionRules rules;
  rules.count = count;
  rules.least = VectorXd::Constant(universe.betas.size(), least);
  rules.most = VectorXd::Constant(universe.betas.size(), most);
  return rules;
}

void ExpectSelection(const Universe& universe, const SelectionRules& rules, const std::vector<int>& places,
                     std::initializer_list<double> weights) {
  const auto selection = SelectStocks(universe, rules);
  ASSERT_TRUE(selection);
  EXPECT_EQ(selection->places, places);
  ASSERT_EQ(selection->weights.size(), static_cast<Index>(weights.size()));
  for (Index i = 0; i < selection->weights.size(); ++i) {
    EXPECT_NEAR(selection->weights[i], weights.begin()[i], 1e-12) << i;
  }
}

TEST(Selection, TakesTheCalmestOfIndependentStocks) {
  // Weights go with one over the variance: 1 : 1/2, and 1/3 : 1/4 : 1/6 of 3, 4, 6.
  const Universe universe = Independent({4, 1, 6, 2, 3});
  ExpectSelection(universe, Rules(universe, 2), {1, 3}, {2.0 / 3, 1.0 / 3});
  ExpectSelection(universe, Rules(universe, 5), {0, 1, 2, 3, 4}, {1.0 / 9, 4.0 / 9, 2.0 / 27, 2.0 / 9, 4.0 / 27});
  ExpectSelection(universe, Rules(universe, 1), {1}, {1});
}

TEST(Selection, KeepsBoundsIndustriesAndTheLeastBeta) {
  Universe universe = Independent({1, 1.1, 1.5, 4});
  SelectionRules rules = Rules(universe, 2, 0.25, 0.75);
  universe.industries = {7, 7, 8, 8};
  rules.mostOfIndustry = 0.75;
  ExpectSelection(universe, rules, {0, 2}, {0.6, 0.4});  // not the two calm ones, of one industry
  rules.least[0] = 0.8;                                  // more than it may weigh: it cannot be held
  ExpectSelection(universe, rules, {1, 2}, {15.0 / 26, 11.0 / 26});
  universe.betas << 0.5, 0.5, 1, 2;
  rules.leastBeta = 0.9;
  // 0.5 w + 2 (1 - w) = 0.9 at w = 0.733; with the third 0.5 w + (1 - w) = 0.9 at w = 0.2, below 0.25.
  ExpectSelection(universe, rules, {1, 3}, {1.1 / 1.5, 0.4 / 1.5});
}

TEST(Selection, GivesNothingWhenNothingKeepsTheRules) {
  Universe universe = Independent({1, 2, 3});
  EXPECT_FALSE(SelectStocks(universe, Rules(universe, 4))) << "too few stocks";
  EXPECT_FALSE(SelectStocks(universe, Rules(universe, 0)));
  EXPECT_FALSE(SelectStocks(universe, Rules(universe, 2, 0.6, 1))) << "1.2 at least";
  EXPECT_FALSE(SelectStocks(universe, Rules(universe, 2, 0, 0.4))) << "0.8 at most";
  universe.industries = {0, 0, 0};
  SelectionRules rules = Rules(universe, 2);
  rules.mostOfIndustry = 0.75;
  EXPECT_FALSE(SelectStocks(universe, rules)) << "one industry";
  rules = Rules(universe, 2);
  rules.leastBeta = 1.01;
  EXPECT_FALSE(SelectStocks(universe, rules));
}

// A market of factors, with a least weight that not every stock can have.
Universe Random(unsigned seed, int n) {
  std::mt19937 random(seed);
  std::normal_distribution<double> normal;
  std::uniform_real_distribution<double> uniform(0.4, 1.6);
  MatrixXd loadings(n, 3);
  for (Index i = 0; i < loadings.size(); ++i) loadings.data()[i] = normal(random);
  Universe universe;
  universe.betas.resize(n);
  for (double& beta : universe.betas) beta = uniform(random);
  universe.covariance = universe.betas * universe.betas.transpose() + 0.3 * loadings * loadings.transpose();
  for (Index i = 0; i < n; ++i) universe.covariance(i, i) += uniform(random);
  for (int i = 0; i < n; ++i) universe.industries.push_back(i % 5);
  return universe;
}

double BestOfAll(const Universe& universe, const SelectionRules& rules) {
  const int n = static_cast<int>(universe.betas.size());
  double best = std::numeric_limits<double>::infinity();
  for (unsigned held = 0; held < (1U << n); ++held) {
    if (std::popcount(held) != rules.count) continue;
    std::vector<int> places;
    for (int i = 0; i < n; ++i) {
      if ((held >> i & 1U) != 0) places.push_back(i);
    }
    QuadraticProgram program;
    program.quadratic = universe.covariance(places, places);
    program.linear = VectorXd::Zero(rules.count);
    program.lower = rules.least(places);
    program.upper = rules.most(places);
    program.rows = MatrixXd::Zero(7, rules.count);
    program.least = VectorXd::Constant(7, -1e9);
    program.most = VectorXd::Constant(7, rules.mostOfIndustry);
    for (int i = 0; i < rules.count; ++i) {
      program.rows(universe.industries[static_cast<std::size_t>(places[static_cast<std::size_t>(i)])], i) = 1;
      program.rows(5, i) = 1;
      program.rows(6, i) = universe.betas[places[static_cast<std::size_t>(i)]];
    }
    program.least[5] = program.most[5] = 1;
    program.least[6] = rules.leastBeta;
    program.most[6] = 1e9;
    const QuadraticSolution solution = SolveQuadratic(program);
    if (solution.outcome == QuadraticOutcome::Solved) best = std::min(best, 2 * solution.objective);
  }
  return best;
}

// All 12-stock universes against all their sets of stocks: mostly the best of them, never far from it.
TEST(Selection, IsCloseToTheBestOfAllSets) {
  int isBest = 0;
  int problems = 0;
  for (unsigned seed = 1; seed <= 20; ++seed) {
    const Universe universe = Random(seed, 12);
    for (const int count : {2, 4, 6}) {
      SelectionRules rules = Rules(universe, count, 0.5 / count, 2.0 / count);
      rules.mostOfIndustry = std::max(0.4, 1.5 / count);
      if (seed % 2 == 0) rules.leastBeta = 1;
      const auto selection = SelectStocks(universe, rules);
      ASSERT_TRUE(selection) << seed << " " << count;
      const double best = BestOfAll(universe, rules);
      EXPECT_GT(selection->variance, best * (1 - 1e-9)) << seed << " " << count;
      EXPECT_LT(selection->variance, best * 1.1) << seed << " " << count;
      if (selection->variance < best * (1 + 1e-9)) ++isBest;
      ++problems;
    }
  }
  EXPECT_GE(isBest, problems * 4 / 5);
  RecordProperty("best", isBest);
}

TEST(WeightUnits, AddUpAndGoToTheLargestRemainders) {
  const auto units = [](std::initializer_list<double> weights, int total) {
    VectorXd vector(static_cast<Index>(weights.size()));
    std::copy(weights.begin(), weights.end(), vector.begin());
    return ToUnits(vector, std::vector<int>(weights.size(), -1), total, total);
  };
  EXPECT_EQ(units({1.0 / 3, 1.0 / 3, 1.0 / 3}, 10000), (std::vector<int>{3334, 3333, 3333}));
  EXPECT_EQ(units({0.126, 0.247, 0.627}, 100), (std::vector<int>{12, 25, 63}));
  EXPECT_EQ(units({1}, 10000), std::vector<int>{10000});
  EXPECT_EQ(units({0.4 - 1e-13, 0.6 + 1e-13}, 10000), (std::vector<int>{4000, 6000})) << "at their bounds";
}

TEST(WeightUnits, KeepTheCapOfAnIndustry) {
  EXPECT_EQ(ToUnits((VectorXd(4) << 0.148, 0.148, 0.348, 0.356).finished(), {1, 1, -1, -1}, 30, 100),
            (std::vector<int>{15, 15, 35, 35}));
  // The second of the industry has a larger remainder than the last one, but no room.
  EXPECT_EQ(ToUnits((VectorXd(4) << 0.149, 0.149, 0.346, 0.356).finished(), {1, 1, -1, -1}, 29, 100),
            (std::vector<int>{15, 14, 35, 36}));
}

}  // namespace
}  // namespace holdwise
