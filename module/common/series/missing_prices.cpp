// SPDX-License-Identifier: MIT
#include "common/series/missing_prices.h"

#include <algorithm>
#include <utility>

#include "common/host/host_access.h"
#include "common/series/shared_objects.h"
#include "common/store/doubtful_purchases.h"
#include "common/store/statements.h"

namespace holdwise {
namespace {

void Append(std::vector<MissingInput>& inputs, Lack lack, const QStringList& codes) {
  for (const QString& code : codes) inputs.push_back({lack, code, ModuleHost().CodeNums().NameOf(code), 0});
}

using TLacks = std::vector<std::pair<Lack, TMissingCodes>>;

/// The saved portfolios among those that lack something; what each lacks in the order of `lacks`.
std::vector<IncompletePortfolio> SavedPortfoliosOf(const TLacks& lacks, DatabaseStatements& database) {
  if (std::all_of(lacks.begin(), lacks.end(), [](const auto& lack) { return lack.second.isEmpty(); })) return {};
  const ResultSet rows = database.Query(sql::kSavedPortfolios);
  const int id = rows.Column("ID");
  const int name = rows.Column("COMNAME");
  std::vector<IncompletePortfolio> portfolios;
  for (int row = 0; row < rows.RowCount(); ++row) {
    IncompletePortfolio portfolio{rows.TextAt(row, id), rows.TextAt(row, name), 0, {}};
    for (const auto& [lack, codes] : lacks) Append(portfolio.missing, lack, codes.value(portfolio.id));
    if (!portfolio.missing.empty()) portfolios.push_back(std::move(portfolio));
  }
  return portfolios;
}

/// Do figures on that basis rest on it?
bool IsUsed(Lack lack, const TFigureBasis& basis) {
  switch (lack) {
    case Lack::NoStatistics:
    case Lack::OldStatistics:
    case Lack::NewStatistics:
    case Lack::OtherEdition:
      return basis.stored >= StoredUsed::Closes;
    case Lack::NotCalculated:
    case Lack::NoReturn:
    case Lack::OneReturn:
    case Lack::NoWeights:
      return basis.stored >= StoredUsed::Figures;
    case Lack::NoDepositRate:
      return basis.stored >= StoredUsed::FiguresWithRate;
    case Lack::CorrectedIndex:
      return basis.isIndexAtPurchaseUsed;
    default:
      return true;
  }
}

/// Is it there once a portfolio has been calculated?
bool ComesByCalculation(const MissingInput& input) {
  return !IsUsed(input.lack, {StoredUsed::None, PricesUsed::None, true});
}

bool IsClose(const MissingInput& input) {
  return input.lack == Lack::NoWeekClose || input.lack == Lack::NoMonthClose;
}

template <typename Unwanted>
void TakeOut(std::vector<IncompletePortfolio>& portfolios, const Unwanted& unwanted) {
  for (IncompletePortfolio& portfolio : portfolios) std::erase_if(portfolio.missing, unwanted);
  std::erase_if(portfolios, [](const IncompletePortfolio& portfolio) { return portfolio.missing.empty(); });
}

TMissingCodes WithoutPreviousClose() {
  return g_UserValue ? g_UserValue->HoldingsWithoutPreviousClose() : TMissingCodes();
}

TMissingCodes WithoutBeta() {
  return g_ExpectValue ? g_ExpectValue->Basis().withoutBeta : TMissingCodes();
}

}  // namespace

std::vector<IncompletePortfolio> PortfoliosLackingPrices(PricesUsed used, DatabaseStatements& database) {
  if (used == PricesUsed::None) return {};
  const TMissingCodes prices = g_NowPrice ? g_NowPrice->HoldingsWithoutPrice() : TMissingCodes();
  if (used == PricesUsed::Latest) return SavedPortfoliosOf({{Lack::NoPrice, prices}}, database);
  const TMissingCodes weekCloses = g_ClosePrice ? g_ClosePrice->HoldingsWithoutWeekClose() : TMissingCodes();
  const TMissingCodes monthCloses = g_ClosePrice ? g_ClosePrice->HoldingsWithoutMonthClose() : TMissingCodes();
  return SavedPortfoliosOf({{Lack::NoPrice, prices},
                            {Lack::NoPreviousClose, WithoutPreviousClose()},
                            {Lack::NoWeekClose, weekCloses},
                            {Lack::NoMonthClose, monthCloses}},
                           database);
}

std::vector<IncompletePortfolio> PortfoliosLackingStressInputs(DatabaseStatements& database) {
  return SavedPortfoliosOf({{Lack::NoPreviousClose, WithoutPreviousClose()}, {Lack::NoBeta, WithoutBeta()}}, database);
}

std::vector<IncompletePortfolio> Together(std::vector<IncompletePortfolio> portfolios,
                                          const std::vector<IncompletePortfolio>& more) {
  for (const IncompletePortfolio& one : more) {
    const auto same = std::find_if(portfolios.begin(), portfolios.end(),
                                   [&](const IncompletePortfolio& other) { return other.id == one.id; });
    if (same == portfolios.end()) {
      portfolios.push_back(one);
      continue;
    }
    for (const MissingInput& input : one.missing) {
      const auto& known = same->missing;
      if (std::find(known.begin(), known.end(), input) == known.end()) same->missing.push_back(input);
    }
  }
  return portfolios;
}

std::vector<IncompletePortfolio> PortfoliosLackingStoredInputs(const TFigureBasis& basis, DatabaseStatements& database,
                                                               PortfolioSet set) {
  std::vector<IncompletePortfolio> portfolios;
  if (basis.stored != StoredUsed::None) portfolios = IncompletePortfolios(database, set);
  if (set == PortfolioSet::Saved) portfolios = Together(std::move(portfolios), DoubtfulPurchases(database));
  TakeOut(portfolios, [&basis](const MissingInput& input) { return !IsUsed(input.lack, basis); });
  return portfolios;
}

QStringList TakeUncalculated(std::vector<IncompletePortfolio>& portfolios) {
  QStringList names;
  for (IncompletePortfolio& portfolio : portfolios) {
    std::vector<MissingInput>& missing = portfolio.missing;
    if (std::none_of(missing.begin(), missing.end(), ComesByCalculation)) continue;
    names.append(portfolio.name);
    std::erase_if(missing, [](const MissingInput& input) { return ComesByCalculation(input) || IsClose(input); });
  }
  TakeOut(portfolios, [](const MissingInput&) { return false; });
  return names;
}

QString UncalculatedLine(const QStringList& names) {
  constexpr qsizetype kMostNames = 20;
  if (names.isEmpty()) return {};
  QString line = names.first(std::min(kMostNames, names.size())).join(QStringLiteral("、"));
  if (names.size() > kMostNames) line += QStringLiteral(" 等 %1 个组合").arg(names.size());
  return line + QStringLiteral("：没有计算");
}

std::vector<IncompletePortfolio> WithThoseLackingPrices(std::vector<IncompletePortfolio> portfolios, PricesUsed used,
                                                        DatabaseStatements& database) {
  return Together(std::move(portfolios), PortfoliosLackingPrices(used, database));
}

}  // namespace holdwise
