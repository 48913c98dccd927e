// SPDX-License-Identifier: MIT
#include "decomposition_figures.h"

#include "holdwise/packet/number_text.h"

namespace holdwise::decomposition {
namespace {

constexpr int kDecimals = 2;

QString PercentText(double fraction) {
  return FormatFixed(fraction * 100, kDecimals);
}

}  // namespace

Parts Decompose(const Inputs& inputs) {
  const double premium = inputs.marketReturn - inputs.riskFree;
  const double forTotalRisk = premium * (inputs.deviation / inputs.marketDeviation) + inputs.riskFree;
  const double forSystematicRisk = premium * inputs.beta + inputs.riskFree;
  Parts parts;
  parts.total = inputs.portfolioReturn;
  parts.excess = inputs.portfolioReturn - inputs.riskFree;
  parts.riskPremium = forSystematicRisk - inputs.riskFree;
  parts.selection = inputs.portfolioReturn - forSystematicRisk;
  parts.diversification = forTotalRisk - forSystematicRisk;
  parts.netSelection = inputs.portfolioReturn - forTotalRisk;
  return parts;
}

Texts TextsOf(const Parts& parts) {
  Texts texts;
  texts.total = PercentText(parts.total);
  texts.excess = PercentText(parts.excess);
  texts.diversification = PercentText(parts.diversification);
  texts.netSelection = PercentText(parts.netSelection);
  texts.selection = FormatFixed(RealOr(texts.netSelection) + RealOr(texts.diversification), kDecimals);
  texts.riskPremium = FormatFixed(RealOr(texts.excess) - RealOr(texts.selection), kDecimals);
  return texts;
}

std::optional<Inputs> InputsOf(const RowInput& row) {
  if (row.value == 0) return std::nullopt;
  Inputs inputs;
  inputs.riskFree = row.riskFreePercent / 100;
  inputs.beta = row.beta;
  inputs.deviation = row.deviation;
  // What is not known counts as a market deviation of 1, and as a market that has doubled: intended.
  inputs.marketDeviation = row.marketDeviation == 0 ? 1.0 : row.marketDeviation;
  inputs.marketReturn = row.indexAtPurchase == 0 ? 1.0 : (row.indexNow - row.indexAtPurchase) / row.indexAtPurchase;
  inputs.portfolioReturn = row.cost == 0 ? 0 : (row.value - row.cost) / row.cost;
  return inputs;
}

}  // namespace holdwise::decomposition
