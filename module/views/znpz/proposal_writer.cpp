// SPDX-License-Identifier: MIT
#include "proposal_writer.h"

#include <algorithm>

#include "allocation_figures.h"
#include "common/host/codes.h"
#include "common/store/statements.h"
#include "holdwise/packet/number_text.h"

namespace holdwise::allocation {
namespace {

constexpr int kDone = 1;  // what Execute answers

QString OrZero(const QString& text) {
  return text.isEmpty() ? QStringLiteral("0") : text;
}

/// Of the fraction two decimals are kept: intended.
QString FractionText(const QString& percent) {
  return percent.isEmpty() ? QStringLiteral("0") : FormatFixed(RealOr(percent) / 100, 2);
}

bool Insert(DatabaseStatements& database, std::int64_t id, const Proposal& proposal, const QString& name) {
  const bool areHoldingsDone =
      std::all_of(proposal.holdings.begin(), proposal.holdings.end(), [&](const ProposedHolding& holding) {
        return database.Execute(sql::InsertHolding(id, GetCodeNum(holding.code), OrZero(holding.quantity),
                                                   OrZero(holding.weight), OrZero(holding.price))) == kDone;
      });
  if (!areHoldingsDone) return false;
  return database.Execute(
             sql::InsertProposal({QString::number(id), proposal.style.isEmpty() ? QStringLiteral(" ") : proposal.style,
                                  FractionText(proposal.targetReturn), OrZero(proposal.variance), OrZero(proposal.beta),
                                  proposal.indexClose, proposal.editDate, name})) == kDone;
}

}  // namespace

SaveResult Save(DatabaseStatements& database, const Proposal& proposal) {
  const QString name = PortfolioName(proposal.style, proposal.today, proposal.stockCount, proposal.number);
  // An exception on the way, or the end of the program, leaves no holdings without a portfolio.
  TransactionScope transaction(database);
  if (database.Count(sql::CountOfName(name)) != 0) return SaveResult::NameTaken;
  const std::int64_t id = database.Count(sql::kNextPortfolioId);
  const bool isDone = Insert(database, id, proposal, name);
  if (!isDone) database.Execute(sql::UndoHoldings(id));
  transaction.Commit();
  return isDone ? SaveResult::Saved : SaveResult::Failed;
}

}  // namespace holdwise::allocation
