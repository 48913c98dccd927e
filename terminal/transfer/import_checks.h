// SPDX-License-Identifier: MIT
#pragma once
#include <QSet>

#include "transfer/import.h"

/// What every import keeps, whatever its file is. User-interface thread.
namespace holdwise {

/// Error(Busy) while a transaction is open: a question of the window waits for its answer.
void RequireNoQuestion(const UserDataServices& database);
/// The names that portfolios have, read once: a file may bring a thousand.
class TakenNames {
 public:
  explicit TakenNames(UserDataServices& database);
  /// Why a new portfolio cannot have the name: another one has it. Empty when none has.
  [[nodiscard]] QString ProblemOf(const QString& name) const;

 private:
  QSet<QString> names_;
};
/// A line for each of the stocks that has no price: it is worth nothing in every view that counts it.
[[nodiscard]] QStringList UnpricedStocks(std::vector<int> stocks, const TDataCenter& dataCentre);
/// Nothing written, for these problems, ascending by line.
[[nodiscard]] ImportResult Refused(std::vector<ImportProblem> problems);
/// Nothing written, because somebody gave it up.
[[nodiscard]] ImportResult Cancelled();
/// A name was asked for, of a file with names.
[[nodiscard]] ImportProblem NamesStandThere();

}  // namespace holdwise
