// SPDX-License-Identifier: MIT
#include "portfolio_writer.h"

#include "common/helpers/date_text.h"
#include "common/host/codes.h"
#include "common/host/debug_log.h"
#include "common/host/host_access.h"
#include "common/store/statements.h"

namespace holdwise::editor {
namespace {

constexpr int kDone = 1;  // what Execute answers
const QString kUnit = QStringLiteral("Zxpz");

/// Writes holdings and header. @return did the header's statement answer 1? The holdings' are not asked.
bool Insert(DatabaseStatements& database, std::int64_t id, const PortfolioDraft& draft, const QString& editDate) {
  const double cost = CostOf(draft.holdings);
  for (const HoldingRow& holding : draft.holdings) {
    database.Execute(
        sql::InsertHolding(id, GetCodeNum(holding.code), holding.quantity, WeightOf(holding, cost), holding.price));
  }
  return database.Execute(sql::InsertPortfolio(id, draft.name, draft.indexClose, editDate)) == kDone;
}

QString MarketDateText() {
  const auto date = ParseDate(ModuleHost().DataCenter().CurrentDateText());
  if (!date) throw Error(ErrorCategory::NotFound, "行情的当前日期还不知道");
  return DateText(*date);
}

}  // namespace

CreateResult Create(DatabaseStatements& database, const PortfolioDraft& draft) {
  try {
    TransactionScope transaction(database);
    if (database.Count(sql::CountOfName(draft.name)) != 0) {
      transaction.Commit();
      return CreateResult::NameTaken;
    }
    const std::int64_t id = database.Count(sql::kNextPortfolioId);
    const bool isDone = Insert(database, id, draft, DateText(ModuleHost().Clock().Now().date()));
    transaction.Commit();
    return isDone ? CreateResult::Created : CreateResult::Failed;
  } catch (...) {
    LogCurrentException(kUnit, QStringLiteral("Create"));
    return CreateResult::Failed;
  }
}

RewriteResult Rewrite(DatabaseStatements& database, std::int64_t portfolioId, const PortfolioDraft& draft,
                      SharedName sharedName) {
  try {
    TransactionScope transaction(database);
    if (sharedName == SharedName::Refused && database.Count(sql::CountOfNameElsewhere(draft.name, portfolioId)) != 0) {
      return RewriteResult::NameShared;
    }
    if (database.Execute(sql::DeleteHoldings(portfolioId)) != kDone) return RewriteResult::Refused;
    // A header that cannot be deleted skips what follows and still counts as done: intended.
    if (database.Execute(sql::DeletePortfolio(portfolioId)) == kDone &&
        !Insert(database, portfolioId, draft, MarketDateText())) {
      return RewriteResult::Failed;
    }
    transaction.Commit();
    return RewriteResult::Rewritten;
  } catch (...) {
    LogCurrentException(kUnit, QStringLiteral("Rewrite"));
    return RewriteResult::Failed;
  }
}

SaveState SaveStateOf(DatabaseStatements& database, const QString& name) {
  if (database.Count(sql::FinishedOfName(name)) == 0) return SaveState::Unfinished;
  const bool isOne = database.Scalar(sql::CountOfName(name)).ToText() == QLatin1String("1");
  return isOne ? SaveState::Fit : SaveState::NotOne;
}

bool Save(DatabaseStatements& database, const QString& name) {
  return database.Execute(sql::SavePortfolio(name)) == kDone;
}

Deletion::Result Deletion::Run(const QString& name) {
  // Namesakes go with the portfolio; what they hold must not stay behind without one.
  const ResultSet ids = database_.Query(sql::IdOfName(name));
  for (int row = 0; row < ids.RowCount(); ++row) {
    if (database_.Execute(sql::DeleteHoldings(ids.IntegerAt(row, 0))) != kDone) return Result::HoldingsRefused;
  }
  if (database_.Execute(sql::DeletePortfolioByName(name)) != kDone) return Result::HeaderRefused;
  transaction_.Commit();
  return Result::Deleted;
}

}  // namespace holdwise::editor
