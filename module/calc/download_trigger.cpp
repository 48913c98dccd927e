// SPDX-License-Identifier: MIT
#include "calc/download_trigger.h"

#include <QScopeGuard>
#include <QSet>
#include <algorithm>

#include "calc/untcalc2.h"
#include "common/host/host_access.h"
#include "common/store/database.h"
#include "common/store/statements.h"
#include "unfinished_work.h"

namespace holdwise {
namespace {

/// The portfolios calculated on a date. Those that stay unfinished lack a file, which another run would not find
/// either.
struct Calculated {
  QString date;
  QSet<QString> ids;
};
Calculated calculated;
/// Counts the calls of RetryIncomplete: what a dialog began before one calculates is to be tried again all the same.
int retries = 0;

bool WereAllCalculated(UserDataSession& session, const QString& date) {
  if (calculated.ids.isEmpty() || calculated.date != date) return false;
  const QStringList unfinished = calc::ReadUnfinishedPortfolios(session);
  return std::all_of(unfinished.begin(), unfinished.end(),
                     [](const QString& id) { return calculated.ids.contains(id); });
}

void Remember(const QString& date, const QStringList& ids) {
  if (calculated.date != date) calculated = {date, {}};
  calculated.ids.unite(QSet<QString>(ids.begin(), ids.end()));
}

/// Runs the first-calculation procedure; its effects stay only when it leaves portfolios to calculate.
bool HasUnfinished(UserDataSession& session) {
  const QString date = ModuleHost().DataCenter().CurrentDateText();
  TransactionScope transaction(session);
  session.Execute(sql::FirstCalculation(date));
  if (session.Count(sql::kCountUnfinished) == 0 || WereAllCalculated(session, date)) return false;
  transaction.Commit();
  return true;
}

void ShowCalculation() {
  frmCalc2 = std::make_unique<TfrmCalc2>();
  const auto release = qScopeGuard([date = ModuleHost().DataCenter().CurrentDateText(), before = retries] {
    if (before == retries) Remember(date, frmCalc2->Calculated());
    frmCalc2.reset();
  });
  frmCalc2->ShowModal();
}

/// The text names another routine; those who search the logs know it by this text, so it stays.
void LogDownDataFailure(const QString& text) {
  ModuleHost().Debug().WriteLog(QStringLiteral("DownDataMan.bpl->DownDataCommands->EnterAddress 发生错误!错误信息:") +
                                text);
}

}  // namespace

void DownData() {
  if (frmCalc2) return;  // it pumps messages, and a timer among them may come here again
  const std::unique_ptr<UserDataSession> session = Database().OpenSession();
  try {
    if (HasUnfinished(*session)) ShowCalculation();
  } catch (const std::exception& error) {
    LogDownDataFailure(QString::fromUtf8(error.what()));
  }
}

void RetryIncomplete() {
  calculated = {};
  ++retries;
}

}  // namespace holdwise
