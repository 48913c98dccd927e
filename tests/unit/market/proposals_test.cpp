// SPDX-License-Identifier: MIT
#include "holdwise/market/proposals.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <random>

#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

constexpr int kDays = 120;

IndexReturns Index() {
  IndexReturns index;
  std::mt19937 random(7);
  for (int day = 0; day < kDays; ++day) {
    index.periods.push_back(20240000 + day);
    index.returns.push_back((static_cast<double>(random() % 2001) - 1000) / 1e5);
  }
  return index;
}

// A stock that follows the index by its beta and has moves of its own.
StockFacts Stock(int number, double price, double beta) {
  StockFacts stock;
  stock.code = std::to_string(600000 + number);
  stock.name = "甲";
  stock.industry = "行业" + std::to_string(number % 6);
  stock.price = stock.previousClose = price;
  std::mt19937 random(static_cast<unsigned>(number) + 1);
  for (const double market : Index().returns) {
    stock.returns.values.push_back(beta * market + (static_cast<double>(random() % 2001) - 1000) / 8e4);
  }
  stock.returns.traded = kDays;
  return stock;
}

StockPool Pool(int count, double price = 12) {
  StockPool pool;
  for (int i = 0; i < count; ++i) pool.stocks.push_back(Stock(i, price, 0.3 + 0.07 * (i % 20)));
  return pool;
}

Proposals Make(const StockPool& pool, unsigned threads = 2) {
  return MakeProposals(pool, Index(), 0.015, {}, threads);
}

std::string Text(const Proposals& proposals) {
  std::string text;
  for (const ProposalList& list : proposals.lists) {
    text += std::to_string(list.count) + " from " + std::to_string(list.leastCapital) + " to " +
            std::to_string(list.capitalLimit) + "\n";
    for (const Proposal& proposal : list.candidates) {
      text += proposal.style;
      for (const double figure : {proposal.targetReturn, proposal.variance, proposal.beta}) {
        text += " " + std::to_string(std::bit_cast<std::uint64_t>(figure));
      }
      for (const ProposedHolding& holding : proposal.holdings) {
        text += " " + holding.code + "=" + std::to_string(holding.units);
      }
      text += "\n";
    }
  }
  return text;
}

TEST(Proposals, AreTheSameOnOneThreadAndOnMany) {
  const StockPool pool = Pool(60);
  const std::string one = Text(Make(pool, 1));
  EXPECT_GT(one.size(), 2000U);
  for (const unsigned threads : {2U, 5U, 16U}) EXPECT_EQ(Text(Make(pool, threads)), one) << threads;
}

TEST(Proposals, HaveEveryNumberAndStyle) {
  const Proposals proposals = Make(Pool(60));
  ASSERT_EQ(proposals.lists.size(), 9U);
  EXPECT_TRUE(proposals.remarks.empty());
  for (const ProposalList& list : proposals.lists) {
    std::string styles;
    for (const Proposal& proposal : list.candidates) {
      styles += proposal.style + " ";
      EXPECT_EQ(static_cast<int>(proposal.holdings.size()), list.count);
      // One and a half percent without risk, five more for the index's risk.
      EXPECT_NEAR(proposal.targetReturn, 0.015 + 0.05 * proposal.beta, 1e-15);
    }
    EXPECT_EQ(styles, "稳健型 稳进型 平衡型 进取型 等权型 ") << list.count;
    // What a higher target costs: the variance grows with the floor under the beta.
    for (int i = 1; i < 4; ++i) {
      EXPECT_GT(list.candidates[static_cast<std::size_t>(i)].variance,
                list.candidates[static_cast<std::size_t>(i - 1)].variance * 0.999);
    }
    EXPECT_NEAR(list.candidates[2].beta, 1.0, 2e-3);
    EXPECT_NEAR(list.candidates[3].beta, 1.3, 2e-3);
  }
}

TEST(Proposals, OfAFewStocksGoAsFarAsTheyGo) {
  EXPECT_TRUE(Make({}).lists.empty());
  EXPECT_EQ(Make({}).remarks, std::vector<QString>{QStringLiteral("符合条件的股票只有 0 只，没有可供配置的组合")});
  EXPECT_TRUE(Make(Pool(1)).lists.empty());
  const Proposals proposals = Make(Pool(4));
  ASSERT_EQ(proposals.lists.size(), 3U);
  EXPECT_EQ(proposals.lists.back().count, 4);
  EXPECT_EQ(proposals.lists.back().capitalLimit, 200) << "there is no other for more capital";
  ASSERT_FALSE(proposals.remarks.empty());
  EXPECT_EQ(
      proposals.remarks.back(),
      QStringLiteral("10 只股票的组合里没有稳健型、稳进型、平衡型、进取型、等权型：找不到符合权重、行业和风险要求的"
                     "股票"));
}

TEST(Proposals, OfOneIndustryThereAreNone) {
  StockPool pool = Pool(30);
  for (StockFacts& stock : pool.stocks) stock.industry = "行业";
  const Proposals proposals = Make(pool);
  EXPECT_TRUE(proposals.lists.empty());
  EXPECT_EQ(proposals.remarks.size(), 9U);
  for (StockFacts& stock : pool.stocks) stock.industry.clear();
  EXPECT_EQ(Make(pool).lists.size(), 9U) << "what is not known is not capped";
}

TEST(Proposals, StocksThatAreAlikeAreNoTrouble) {
  StockPool pool = Pool(30);
  for (std::size_t i = 1; i < pool.stocks.size(); i += 2) pool.stocks[i].returns = pool.stocks[i - 1].returns;
  EXPECT_EQ(Make(pool).lists.size(), 9U);
  EXPECT_EQ(Text(Make(pool, 1)), Text(Make(pool, 7)));
  // All alike: their covariance has no inverse, nothing can be told apart.
  for (StockFacts& stock : pool.stocks) stock.returns = pool.stocks.front().returns;
  EXPECT_TRUE(Make(pool).lists.empty());
  EXPECT_FALSE(Make(pool).remarks.empty());
}

TEST(Proposals, ANumberOfStocksWithoutAnyLeavesItsCapitalToTheOneBefore) {
  // Six industries, each capped at one and a half equal weights: 0.9 of ten stocks, 0.9996 of nine, 1.125 of eight.
  ProposalOptions options;
  options.mostOfIndustry = 1;
  const Proposals proposals = MakeProposals(Pool(60), Index(), 0.015, options, 2);
  ASSERT_EQ(proposals.lists.size(), 7U);
  EXPECT_EQ(proposals.lists.back().count, 8);
  EXPECT_EQ(proposals.lists.back().capitalLimit, 200);
}

TEST(Proposals, CapitalsAreTheUsualOnesUnlessPricesAreHigh) {
  EXPECT_EQ(PlannedCapitals({Stock(0, 12, 1)}), (std::vector<double>{5, 10, 20, 30, 50, 60, 80, 90, 100, 200}));
  // One lot of half the stocks, at 400 x 1.1: 44,000 yuan; of n stocks n times that, in whole ten-thousands.
  std::vector<StockFacts> stocks = {Stock(1, 5, 1), Stock(2, 400, 1), Stock(3, 1500, 1)};
  EXPECT_EQ(PlannedCapitals(stocks), (std::vector<double>{9, 14, 20, 30, 50, 60, 80, 90, 100, 200}));
  for (StockFacts& stock : stocks) stock.price = 2000;
  EXPECT_EQ(PlannedCapitals(stocks), (std::vector<double>{44, 66, 88, 110, 132, 154, 176, 198, 220, 242}));
  // Twenty percent on ChiNext: 2 x 100 x 400 x 1.2 = 96,000.
  StockFacts growth = Stock(0, 400, 1);
  growth.code = "300750";
  EXPECT_EQ(PlannedCapitals({growth}).front(), 10);
}

// Shares that somebody with this capital gets, in whole lots.
double Quantity(const ProposedHolding& holding, double capital, double price) {
  const double shares = std::trunc(static_cast<double>(holding.units) / kWeightUnits * capital * 10000 / price);
  return shares - std::fmod(shares, 100);
}

TEST(Proposals, CanBeBoughtFromTheLimitBeforeOnAlsoAtTheNextDaysHighestPrice) {
  StockPool pool = Pool(80);
  const double prices[] = {3.2, 18, 45, 120, 260, 480, 900, 1500};
  for (std::size_t i = 0; i < pool.stocks.size(); ++i) pool.stocks[i].price = prices[i % 8];
  const Proposals proposals = Make(pool);
  ASSERT_EQ(proposals.lists.size(), 9U);
  double before = PlannedCapitals(pool.stocks).front();
  int holdings = 0;
  for (const ProposalList& list : proposals.lists) {
    EXPECT_EQ(list.leastCapital, before);
    EXPECT_GT(list.capitalLimit, before);
    for (const Proposal& proposal : list.candidates) {
      for (const ProposedHolding& holding : proposal.holdings) {
        const double price = pool.stocks[static_cast<std::size_t>(std::stoi(holding.code) - 600000)].price;
        for (const double capital : {before, before + 0.01, list.capitalLimit - 0.01, list.capitalLimit}) {
          EXPECT_GE(Quantity(holding, capital, price * 1.1), 100) << list.count << holding.code << " " << capital;
        }
        ++holdings;
      }
    }
    before = list.capitalLimit;
  }
  EXPECT_GT(holdings, 200);
}

TEST(Proposals, FiguresAreThoseOfThePortfoliosProcedure) {
  // The second stock counts from the third day on; until then the first is all. Weights 0.25 and 0.75.
  const IndexReturns index{{1, 2, 3, 4}, {0.01, -0.01, 0.02, 0.02}};
  const AlignedReturns first{0, {0.02, 0, 0.04, -0.04}, 4};
  const AlignedReturns second{2, {0, 0.04}, 2};
  // Returns 0.02, 0, 0.01, 0.02: mean 0.0125; centred 0.0075, -0.0125, -0.0025, 0.0075; squares 0.000275. The index's
  // mean is 0.01; centred 0, -0.02, 0.01, 0.01, squares 0.0006; products 0.00025 - 0.000025 + 0.000075 = 0.0003.
  const Figures figures = PortfolioFigures({{"600000", 2500}, {"600001", 7500}}, {&first, &second}, index);
  EXPECT_EQ(figures.count, 4);
  EXPECT_NEAR(figures.variance, 0.000275 / 3, 1e-17);
  EXPECT_NEAR(figures.beta, 0.5, 1e-13);
  // Both from the third day on: two days.
  EXPECT_EQ(PortfolioFigures({{"600001", 10000}}, {&second}, index).count, 2);
  EXPECT_EQ(PortfolioFigures({}, {}, index), Figures());
}

TEST(Proposals, OptionsOutsideTheirRangeAreRefused) {
  const auto error = [](auto set) {
    ProposalOptions options;
    set(options);
    try {
      CheckProposalOptions(options);
    } catch (const Error& refused) {
      return std::string(refused.what());
    }
    return std::string();
  };
  EXPECT_EQ(error([](ProposalOptions&) {}), "");
  EXPECT_EQ(error([](ProposalOptions& options) { options.pool.most = 1; }), "--pool-size 须在 2 到 1000 之间");
  EXPECT_EQ(error([](ProposalOptions& options) { options.pool.leastReturns = 1; }),
            "--pool-returns 须在 2 到 5000 之间");
  EXPECT_EQ(error([](ProposalOptions& options) { options.leastWeight = 101; }), "--least-weight 须在 0 到 100 之间");
  EXPECT_EQ(error([](ProposalOptions& options) { options.mostWeight = 99; }), "--most-weight 须在 100 到 1000 之间");
  EXPECT_EQ(error([](ProposalOptions& options) { options.mostOfIndustry = 0; }),
            "--industry-weight 须在 1 到 100 之间");
  EXPECT_EQ(error([](ProposalOptions& options) { options.premium = 31; }), "--premium 须在 0 到 30 之间");
}

}  // namespace
}  // namespace holdwise
