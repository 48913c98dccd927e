// SPDX-License-Identifier: MIT
#include "selection.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <utility>

#include "quadratic_program.h"

namespace holdwise {
namespace {

using Eigen::Index;
using Eigen::VectorXd;
using Places = std::vector<int>;

constexpr double kHeld = 1e-8;         // below is a weight of nothing
constexpr int kShortList = 40;         // stocks at least, and three for each one held
constexpr int kMostRounds = 50;        // of exchanges
constexpr double kImprovement = 1e-9;  // share of the variance

class Search {
 public:
  Search(const Universe& universe, const SelectionRules& rules) : universe_(universe), rules_(rules) {}

  std::optional<Selection> Run();

 private:
  /// Weights of these stocks and no others: held ones keep their least weight, else they may go down to 0.
  [[nodiscard]] std::optional<Selection> Weigh(const Places& places, bool areHeld) const;
  [[nodiscard]] QuadraticProgram ProgramOf(const Places& places, bool areHeld) const;
  [[nodiscard]] Places Affordable() const;
  [[nodiscard]] Places ShortList(const Places& eligible, const Selection& relaxed) const;
  [[nodiscard]] Places Eliminate(Selection relaxed, const Places& shortList) const;
  void Exchange(Places& places, const Places& shortList, std::optional<Selection>& best) const;
  [[nodiscard]] bool ExchangeOne(std::size_t position, Places& places, const Places& shortList,
                                 std::optional<Selection>& best) const;

  const Universe& universe_;
  const SelectionRules& rules_;
};

std::optional<Selection> Search::Run() {
  const Places eligible = Affordable();
  if (rules_.count < 1 || static_cast<int>(eligible.size()) < rules_.count) return std::nullopt;
  const std::optional<Selection> relaxed = Weigh(eligible, false);
  if (!relaxed) return std::nullopt;
  const Places shortList = ShortList(eligible, *relaxed);
  Places places = Eliminate(*relaxed, shortList);
  std::optional<Selection> best = Weigh(places, true);
  Exchange(places, shortList, best);
  return best;
}

Places Search::Affordable() const {
  Places places;
  for (int place = 0; place < static_cast<int>(rules_.least.size()); ++place) {
    if (rules_.least[place] <= std::min(rules_.most[place], rules_.mostOfIndustry)) places.push_back(place);
  }
  return places;
}

QuadraticProgram Search::ProgramOf(const Places& places, bool areHeld) const {
  const auto n = static_cast<Index>(places.size());
  std::map<int, std::vector<Index>> industries;
  for (Index i = 0; i < n; ++i) {
    const int industry = universe_.industries[static_cast<std::size_t>(places[static_cast<std::size_t>(i)])];
    if (industry >= 0) industries[industry].push_back(i);
  }
  const bool hasBeta = rules_.leastBeta > -std::numeric_limits<double>::infinity();
  const auto rowCount = static_cast<Index>(1 + (hasBeta ? 1 : 0) + industries.size());
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  QuadraticProgram program;
  program.quadratic = universe_.covariance(places, places);
  program.linear = VectorXd::Zero(n);
  program.lower = areHeld ? VectorXd(rules_.least(places)) : VectorXd(VectorXd::Zero(n));
  program.upper = rules_.most(places);
  program.rows = Eigen::MatrixXd::Zero(rowCount, n);
  program.least = VectorXd::Constant(rowCount, -kInfinity);
  program.most = VectorXd::Constant(rowCount, kInfinity);
  program.rows.row(0).setOnes();
  program.least[0] = program.most[0] = 1;
  Index row = 1;
  if (hasBeta) {
    program.rows.row(row) = universe_.betas(places).transpose();
    program.least[row++] = rules_.leastBeta;
  }
  for (const auto& [industry, members] : industries) {
    for (const Index member : members) program.rows(row, member) = 1;
    program.most[row++] = rules_.mostOfIndustry;
  }
  return program;
}

std::optional<Selection> Search::Weigh(const Places& places, bool areHeld) const {
  QuadraticSolution solution = SolveQuadratic(ProgramOf(places, areHeld));
  if (solution.outcome != QuadraticOutcome::Solved) return std::nullopt;
  return Selection{places, std::move(solution.x), 2 * solution.objective};
}

Places Search::ShortList(const Places& eligible, const Selection& relaxed) const {
  const VectorXd slopes = universe_.covariance(eligible, eligible) * relaxed.weights;
  std::vector<std::size_t> order(eligible.size());
  std::iota(order.begin(), order.end(), 0U);
  const auto isFirst = [&](std::size_t a, std::size_t b) {
    const bool isHeldA = relaxed.weights[static_cast<Index>(a)] > kHeld;
    const bool isHeldB = relaxed.weights[static_cast<Index>(b)] > kHeld;
    if (isHeldA != isHeldB) return isHeldA;
    if (isHeldA) return a < b;
    const double slopeA = slopes[static_cast<Index>(a)];
    const double slopeB = slopes[static_cast<Index>(b)];
    return slopeA != slopeB ? slopeA < slopeB : a < b;
  };
  std::sort(order.begin(), order.end(), isFirst);
  const auto held = static_cast<std::size_t>((relaxed.weights.array() > kHeld).count());
  const auto wanted = static_cast<std::size_t>(std::max(kShortList, 3 * rules_.count));
  order.resize(std::min(order.size(), std::max(held, wanted)));
  std::sort(order.begin(), order.end());
  Places places;
  for (const std::size_t i : order) places.push_back(eligible[i]);
  return places;
}

// Down to `count` stocks, or up to them when the program without a number holds fewer.
Places Search::Eliminate(Selection relaxed, const Places& shortList) const {
  Places places;
  for (std::size_t i = 0; i < relaxed.places.size(); ++i) {
    if (relaxed.weights[static_cast<Index>(i)] > kHeld) places.push_back(relaxed.places[i]);
  }
  const auto count = static_cast<std::size_t>(rules_.count);
  for (std::size_t i = 0; i < shortList.size() && places.size() < count; ++i) {
    if (std::find(places.begin(), places.end(), shortList[i]) == places.end()) places.push_back(shortList[i]);
  }
  std::sort(places.begin(), places.end());
  while (places.size() > count) {
    const std::optional<Selection> now = Weigh(places, false);
    std::vector<std::size_t> order(places.size());
    std::iota(order.begin(), order.end(), 0U);
    if (now) {
      std::stable_sort(order.begin(), order.end(), [&now](std::size_t a, std::size_t b) {
        return now->weights[static_cast<Index>(a)] < now->weights[static_cast<Index>(b)];
      });
    }
    // The smallest one without which the rest still keeps the rules; if there is none, the smallest.
    Places fewer;
    for (const std::size_t drop : order) {
      Places rest = places;
      rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(drop));
      const bool isKept = Weigh(rest, rest.size() == count).has_value();
      if (isKept || fewer.empty()) fewer = std::move(rest);
      if (isKept) break;
    }
    places = std::move(fewer);
  }
  return places;
}

bool Search::ExchangeOne(std::size_t position, Places& places, const Places& shortList,
                         std::optional<Selection>& best) const {
  bool isBetter = false;
  const Places before = places;
  for (const int other : shortList) {
    if (std::find(before.begin(), before.end(), other) != before.end()) continue;
    Places changed = before;
    changed[position] = other;
    std::sort(changed.begin(), changed.end());
    std::optional<Selection> selection = Weigh(changed, true);
    if (!selection || (best && selection->variance >= best->variance * (1 - kImprovement))) continue;
    best = std::move(selection);
    places = changed;
    isBetter = true;
  }
  return isBetter;
}

void Search::Exchange(Places& places, const Places& shortList, std::optional<Selection>& best) const {
  for (int round = 0; round < kMostRounds; ++round) {
    bool isBetter = false;
    for (std::size_t position = 0; position < places.size(); ++position) {
      if (ExchangeOne(position, places, shortList, best)) isBetter = true;
    }
    if (!isBetter) return;
  }
}

}  // namespace

std::optional<Selection> SelectStocks(const Universe& universe, const SelectionRules& rules) {
  return Search(universe, rules).Run();
}

}  // namespace holdwise
