// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <cstdint>
#include <optional>

/// Figures of the performance view: pure functions from numbers to the texts shown. Money in yuan, changes in percent,
/// both with two decimals; the text "0" stands where a divisor is zero.
namespace holdwise {

struct HoldingInput {
  double price = 0;
  double previousClose = 0;
  double weekClose = 0;   ///< close of the previous week
  double monthClose = 0;  ///< close of the previous month
  double buyPrice = 0;
  std::int64_t quantity = 0;  ///< shares
};

struct HoldingFigures {
  QString price;
  QString change;             ///< against the previous close, percent
  QString dayContribution;    ///< (price - previous close) x quantity
  QString weekContribution;   ///< (price - week close) x quantity
  QString monthContribution;  ///< (price - month close) x quantity
  QString gain;               ///< (price - buy price) x quantity
  QString gainRate;           ///< against the buy price, percent
};

/// None for a price of 0: the holding keeps what it shows.
[[nodiscard]] std::optional<HoldingFigures> FiguresOf(const HoldingInput& input);

struct PortfolioInput {
  double value = 0;
  double previousCloseValue = 0;  ///< 0 also when a holding has no previous close
  double weekCloseValue = 0;
  double monthCloseValue = 0;
  double cost = 0;
};

struct PortfolioFigures {
  QString value;
  QString dayChange;
  QString weekChange;
  QString monthChange;
  QString gain;                     ///< value - cost
  std::optional<QString> gainRate;  ///< none for a cost of 0: the cell keeps its text, unlike the other percentages
};

/// None for a value of 0: the portfolio keeps what it shows.
[[nodiscard]] std::optional<PortfolioFigures> FiguresOf(const PortfolioInput& input);

/// Weight of a holding, a fraction, in percent.
[[nodiscard]] QString WeightText(double fraction);

}  // namespace holdwise
