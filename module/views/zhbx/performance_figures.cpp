// SPDX-License-Identifier: MIT
#include "performance_figures.h"

#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

constexpr int kDecimals = 2;

QString Money(double value) {
  return FormatFixed(value, kDecimals);
}

QString ChangeText(double now, double base) {
  if (base == 0) return QStringLiteral("0");
  return FormatFixed((now - base) / base * 100, kDecimals);
}

QString ContributionText(double price, double base, double quantity) {
  if (base == 0) return QStringLiteral("0");
  return Money((price - base) * quantity);
}

}  // namespace

std::optional<HoldingFigures> FiguresOf(const HoldingInput& input) {
  if (input.price == 0) return std::nullopt;
  const auto quantity = static_cast<double>(input.quantity);
  HoldingFigures figures;
  figures.price = Money(input.price);
  figures.change = ChangeText(input.price, input.previousClose);
  figures.dayContribution = ContributionText(input.price, input.previousClose, quantity);
  figures.weekContribution = ContributionText(input.price, input.weekClose, quantity);
  figures.monthContribution = ContributionText(input.price, input.monthClose, quantity);
  figures.gain = Money((input.price - input.buyPrice) * quantity);
  figures.gainRate = ChangeText(input.price, input.buyPrice);
  return figures;
}

std::optional<PortfolioFigures> FiguresOf(const PortfolioInput& input) {
  if (input.value == 0) return std::nullopt;
  PortfolioFigures figures;
  figures.value = Money(input.value);
  figures.dayChange = ChangeText(input.value, input.previousCloseValue);
  figures.weekChange = ChangeText(input.value, input.weekCloseValue);
  figures.monthChange = ChangeText(input.value, input.monthCloseValue);
  figures.gain = Money(input.value - input.cost);
  if (input.cost != 0) figures.gainRate = ChangeText(input.value, input.cost);
  return figures;
}

QString WeightText(double fraction) {
  return FormatFixed(fraction * 100, kDecimals);
}

}  // namespace holdwise
