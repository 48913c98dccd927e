// SPDX-License-Identifier: MIT
#pragma once
#include <QDate>
#include <QString>
#include <cstdint>
#include <vector>

/// What a capital buys of a proposed portfolio. Pure, any thread. Capitals are in ten-thousands of yuan, prices in
/// yuan, weights fractions of the capital.
namespace holdwise::allocation {

/// Yuan for a holding: weight x capital.
[[nodiscard]] double AmountOf(double weight, double capital);
/// Yuan for one lot at a price.
[[nodiscard]] double LotCost(double price);
/// Whole lots of 100 shares for weight x capital, the odd shares dropped; 0 for a price of 0.
[[nodiscard]] std::int64_t QuantityOf(double weight, double capital, double price);

/// What of one holding was asked for and what is bought.
struct Bought {
  double weight = 0;
  double price = 0;
  std::int64_t quantity = 0;
};
/// Share of the capital that the bought shares cost, less the weight that was asked for.
[[nodiscard]] double WeightErrorOf(const Bought& holding, double capital);
/// What rounding to whole lots leaves.
struct Rounding {
  double leftOver = 0;      ///< yuan that buy nothing
  double largestError = 0;  ///< of a weight, its sign dropped
};
/// The capital must be above 0.
[[nodiscard]] Rounding RoundingOf(const std::vector<Bought>& holdings, double capital);

/// "“name”," for each name, in straight quotes, without the last comma.
[[nodiscard]] QString ShortfallText(const QStringList& names);

/// The name under which a candidate is saved: style, day, number of stocks and number in the list.
[[nodiscard]] QString PortfolioName(const QString& style, QDate today, int stockCount, const QString& number);

}  // namespace holdwise::allocation
