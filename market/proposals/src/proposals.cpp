// SPDX-License-Identifier: MIT
#include "holdwise/market/proposals.h"

#include <QStringList>
#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>

#include "covariance.h"
#include "holdwise/packet/error.h"
#include "parallel_for.h"
#include "selection.h"
#include "weight_units.h"

namespace holdwise {
namespace {

constexpr int kCounts = kMostStocks - kFewestStocks + 1;

struct Style {
  const char* name;
  std::optional<double> leastBeta;  // its target return is that of the deposit rate and so much of the premium
  bool isEqualWeight = false;
};
constexpr Style kStyles[] = {
    {"稳健型", std::nullopt}, {"稳进型", 0.75}, {"平衡型", 1.0}, {"进取型", 1.3}, {"等权型", std::nullopt, true}};
constexpr int kStyleCount = static_cast<int>(std::size(kStyles));

// In units, so that rounding to units keeps bounds.
double UnitsUp(double weight) {
  return std::ceil(weight * kWeightUnits - 1e-9) / kWeightUnits;
}
double UnitsDown(double weight) {
  return std::floor(weight * kWeightUnits + 1e-9) / kWeightUnits;
}

/// Yuan for the least order at the highest price a day can bring.
double LeastOrder(const StockFacts& stock) {
  return LeastShares(stock.code) * HighestNextPrice(stock.code, std::max(stock.price, stock.previousClose));
}

class Proposer {
 public:
  Proposer(const StockPool& pool, const IndexReturns& index, double yearRate, const ProposalOptions& options)
      : stocks_(pool.stocks), index_(index), yearRate_(yearRate), options_(options) {}

  Proposals Run(unsigned threads);

 private:
  void MakeUniverse();
  [[nodiscard]] SelectionRules RulesFor(int count, const Style& style) const;
  [[nodiscard]] std::optional<Proposal> Propose(int count, const Style& style) const;

  const std::vector<StockFacts>& stocks_;
  const IndexReturns& index_;
  double yearRate_;
  const ProposalOptions& options_;
  std::vector<double> capitals_;
  Universe universe_;
};

// Covariances are those of the days that all stocks have in common, each beta that of the stock's own days.
void Proposer::MakeUniverse() {
  int firstDay = 0;
  for (const StockFacts& stock : stocks_) firstDay = std::max(firstDay, stock.returns.first);
  const auto days = static_cast<Eigen::Index>(index_.returns.size()) - firstDay;
  Eigen::MatrixXd returns(days, static_cast<Eigen::Index>(stocks_.size()));
  universe_.betas.resize(returns.cols());
  std::map<std::string, int> industries;
  for (std::size_t i = 0; i < stocks_.size(); ++i) {
    const std::vector<double>& values = stocks_[i].returns.values;
    const auto first = static_cast<Eigen::Index>(values.size()) - days;
    returns.col(static_cast<Eigen::Index>(i)) =
        Eigen::Map<const Eigen::VectorXd>(values.data(), static_cast<Eigen::Index>(values.size())).segment(first, days);
    const std::string& industry = stocks_[i].industry;
    const int number = static_cast<int>(industries.size());
    const Figures figures = PortfolioFigures({{stocks_[i].code, kWeightUnits}}, {&stocks_[i].returns}, index_);
    universe_.betas[static_cast<Eigen::Index>(i)] = figures.beta;
    universe_.industries.push_back(industry.empty() ? -1 : industries.emplace(industry, number).first->second);
  }
  universe_.covariance = ShrinkCovariance(returns).matrix;
}

SelectionRules Proposer::RulesFor(int count, const Style& style) const {
  constexpr double kFewStocks = 1.5;    // equal weights that one industry may have however few stocks there are
  constexpr double kMargin = 1 + 1e-6;  // who divides by a price must not end one share below the lot
  const auto size = static_cast<Eigen::Index>(stocks_.size());
  const double equal = 1.0 / count;
  const double yuan = capitals_[static_cast<std::size_t>(count - kFewestStocks)] * 1e4;
  SelectionRules rules;
  rules.count = count;
  rules.most = Eigen::VectorXd::Constant(size, UnitsDown(std::min(1.0, options_.mostWeight / 100.0 * equal)));
  rules.least = Eigen::VectorXd::Constant(size, UnitsUp(options_.leastWeight / 100.0 * equal));
  rules.mostOfIndustry = UnitsDown(std::min(1.0, std::max(options_.mostOfIndustry / 100.0, kFewStocks * equal)));
  if (style.leastBeta) rules.leastBeta = *style.leastBeta;
  for (Eigen::Index i = 0; i < size; ++i) {
    const double affordable = UnitsUp(kMargin * LeastOrder(stocks_[static_cast<std::size_t>(i)]) / yuan);
    if (style.isEqualWeight) {
      const bool isAffordable = affordable <= UnitsDown(equal);
      rules.most[i] = isAffordable ? equal : 0;
      rules.least[i] = isAffordable ? equal : 1;
    } else {
      rules.least[i] = std::max(rules.least[i], affordable);
    }
  }
  return rules;
}

std::optional<Proposal> Proposer::Propose(int count, const Style& style) const {
  const SelectionRules rules = RulesFor(count, style);
  const std::optional<Selection> selection = SelectStocks(universe_, rules);
  if (!selection) return std::nullopt;
  std::vector<int> industries;
  std::vector<const AlignedReturns*> returns;
  for (const int place : selection->places) {
    industries.push_back(universe_.industries[static_cast<std::size_t>(place)]);
    returns.push_back(&stocks_[static_cast<std::size_t>(place)].returns);
  }
  const int mostOfIndustry = static_cast<int>(std::lround(rules.mostOfIndustry * kWeightUnits));
  const std::vector<int> units = ToUnits(selection->weights, industries, mostOfIndustry, kWeightUnits);
  Proposal proposal;
  proposal.style = style.name;
  for (std::size_t i = 0; i < units.size(); ++i) {
    proposal.holdings.push_back({stocks_[static_cast<std::size_t>(selection->places[i])].code, units[i]});
  }
  const Figures figures = PortfolioFigures(proposal.holdings, returns, index_);
  proposal.variance = figures.variance;
  proposal.beta = figures.beta;
  proposal.targetReturn = yearRate_ + options_.premium / 100.0 * figures.beta;
  return proposal;
}

Proposals Proposer::Run(unsigned threads) {
  Proposals proposals;
  if (static_cast<int>(stocks_.size()) < kFewestStocks) {
    proposals.remarks.push_back(QStringLiteral("符合条件的股票只有 %1 只，没有可供配置的组合").arg(stocks_.size()));
    return proposals;
  }
  capitals_ = PlannedCapitals(stocks_);
  MakeUniverse();
  std::array<std::optional<Proposal>, std::size_t{kCounts} * kStyleCount> found;
  ParallelFor(found.size(), threads, [&](std::size_t task) {
    const int count = kFewestStocks + static_cast<int>(task) / kStyleCount;
    found[task] = Propose(count, kStyles[task % kStyleCount]);
  });
  for (int place = 0; place < kCounts; ++place) {
    ProposalList list;
    list.count = kFewestStocks + place;
    list.leastCapital = capitals_[static_cast<std::size_t>(place)];
    QStringList missing;
    for (int style = 0; style < kStyleCount; ++style) {
      const int task = place * kStyleCount + style;
      std::optional<Proposal>& proposal = found[static_cast<std::size_t>(task)];
      const auto isSame = [&proposal](const Proposal& other) { return other.holdings == proposal->holdings; };
      if (!proposal) {
        missing.push_back(QString::fromUtf8(kStyles[style].name));
      } else if (std::none_of(list.candidates.begin(), list.candidates.end(), isSame)) {
        list.candidates.push_back(std::move(*proposal));
      }
    }
    if (!missing.isEmpty()) {
      proposals.remarks.push_back(QStringLiteral("%1 只股票的组合里没有%2：找不到符合权重、行业和风险要求的股票")
                                      .arg(list.count)
                                      .arg(missing.join(QStringLiteral("、"))));
    }
    if (!list.candidates.empty()) proposals.lists.push_back(std::move(list));
  }
  // A number of stocks that nothing is proposed for leaves its capital to the number before.
  for (std::size_t i = 0; i < proposals.lists.size(); ++i) {
    const bool isLast = i + 1 == proposals.lists.size();
    proposals.lists[i].capitalLimit = isLast ? capitals_.back() : proposals.lists[i + 1].leastCapital;
  }
  return proposals;
}

void CheckRange(const char* option, int value, int least, int most) {
  if (value >= least && value <= most) return;
  throw Error(ErrorCategory::Refused,
              std::string(option) + " 须在 " + std::to_string(least) + " 到 " + std::to_string(most) + " 之间");
}

}  // namespace

void CheckProposalOptions(const ProposalOptions& options) {
  CheckRange("--pool-returns", options.pool.leastReturns, 2, 5000);
  CheckRange("--pool-size", options.pool.most, kFewestStocks, 1000);
  CheckRange("--least-weight", options.leastWeight, 0, 100);
  CheckRange("--most-weight", options.mostWeight, 100, 1000);
  CheckRange("--industry-weight", options.mostOfIndustry, 1, 100);
  CheckRange("--premium", options.premium, 0, 30);
}

Figures PortfolioFigures(const std::vector<ProposedHolding>& holdings, const std::vector<const AlignedReturns*>& stocks,
                         const IndexReturns& index) {
  std::vector<double> returns;
  for (std::size_t day = 0; day < index.returns.size(); ++day) {
    double counting = 0;
    double change = 0;
    for (std::size_t i = 0; i < holdings.size(); ++i) {
      const auto first = static_cast<std::size_t>(stocks[i]->first);
      if (day < first || stocks[i]->values.empty()) continue;
      counting += holdings[i].units;
      change += holdings[i].units * stocks[i]->values[day - first];
    }
    // Each counts from its first day to the last: no day behind the first one here is left out.
    if (counting != 0) returns.push_back(change / counting);
  }
  return FiguresOf(returns, std::span(index.returns).last(returns.size()));
}

std::vector<double> PlannedCapitals(const std::vector<StockFacts>& stocks) {
  // The capitals up to which portfolios of 2, 3, ... stocks are usual; half of the first for the first.
  constexpr std::array<double, kCounts + 1> kUsual = {5, 10, 20, 30, 50, 60, 80, 90, 100, 200};
  std::vector<double> orders;
  orders.reserve(stocks.size());
  for (const StockFacts& stock : stocks) orders.push_back(LeastOrder(stock));
  const auto middle = orders.begin() + static_cast<std::ptrdiff_t>((orders.size() - 1) / 2);
  std::nth_element(orders.begin(), middle, orders.end());
  std::vector<double> capitals;
  for (int place = 0; place <= kCounts; ++place) {
    const double needed = std::ceil((kFewestStocks + place) * *middle / 1e4);
    const double before = capitals.empty() ? 0 : capitals.back();
    capitals.push_back(std::max({kUsual[static_cast<std::size_t>(place)], needed, before + 1}));
  }
  return capitals;
}

Proposals MakeProposals(const StockPool& pool, const IndexReturns& index, double yearRate,
                        const ProposalOptions& options, unsigned threads) {
  return Proposer(pool, index, yearRate, options).Run(threads);
}

}  // namespace holdwise
