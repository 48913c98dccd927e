// SPDX-License-Identifier: MIT
#include "common/store/portfolio_copy.h"

#include "common/store/statements.h"
#include "holdwise/packet/characters.h"

namespace holdwise {
namespace {

QString FreeName(DatabaseStatements& database, const QString& name) {
  const QString base = QString(name).remove(QLatin1Char('\''));
  for (int number = 1;; ++number) {
    const QString ending = QStringLiteral("-副本") + (number == 1 ? QString() : QString::number(number));
    qsizetype kept = kMostNameCharacters - CharactersOf(ending);
    QString candidate;
    do {
      candidate = FirstCharacters(base, kept--) + ending;
    } while (!FitsAsName(candidate));
    if (database.Count(sql::CountOfName(candidate)) == 0) return candidate;
  }
}

}  // namespace

QString CopyToEditor(DatabaseStatements& database, std::int64_t portfolioId) {
  TransactionScope transaction(database);
  const Value name = database.Scalar(sql::NameOfPortfolio(portfolioId));
  if (name.isNull) return {};
  QString copyName = FreeName(database, name.ToText());
  const std::int64_t copyId = database.Count(sql::kNextPortfolioId);
  MustExecute(database, sql::CopyHoldings(portfolioId, copyId));
  MustExecute(database, sql::CopyPortfolio(portfolioId, copyId, copyName));
  transaction.Commit();
  return copyName;
}

}  // namespace holdwise
