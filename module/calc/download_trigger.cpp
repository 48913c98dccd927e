// SPDX-License-Identifier: MIT
#include "calc/download_trigger.h"

#include <QScopeGuard>
#include <QSet>
#include <algorithm>

#include "calc/unfinished_work.h"
#include "calc/untcalc2.h"
#include "common/host/host_access.h"
#include "common/store/database.h"
#include "common/store/statements.h"

namespace holdwise {
namespace {

/// The portfolios calculated with the data of a state. Those that stay unfinished lack a file, which another run would
/// not find either.
struct Calculated {
  QString data;
  QSet<QString> ids;
};
Calculated calculated;
/// Counts the calls of RetryIncomplete: what a dialog began before one calculates is to be tried again all the same.
int retries = 0;

/// Date and edition.
QString PresentData() {
  const TDataCenter& dataCenter = ModuleHost().DataCenter();
  return dataCenter.CurrentDateText() + QLatin1Char(' ') + dataCenter.DataEdition();
}

bool WereAllCalculated(UserDataSession& session) {
  if (calculated.ids.isEmpty() || calculated.data != PresentData()) return false;
  const QStringList unfinished = calc::ReadUnfinishedPortfolios(session);
  return std::all_of(unfinished.begin(), unfinished.end(),
                     [](const QString& id) { return calculated.ids.contains(id); });
}

void Remember(const QString& data, const QStringList& ids) {
  if (calculated.data != data) calculated = {data, {}};
  calculated.ids.unite(QSet<QString>(ids.begin(), ids.end()));
}

/// Runs the first-calculation procedure; its effects stay only when it leaves portfolios to calculate.
bool HasUnfinished(UserDataSession& session) {
  TransactionScope transaction(session);
  session.Execute(sql::FirstCalculation(ModuleHost().DataCenter().CurrentDateText()));
  const QString edition = ModuleHost().DataCenter().DataEdition();
  if (!edition.isEmpty()) session.Execute(sql::MarkOtherEditions(edition));
  if (session.Count(sql::kCountUnfinished) == 0 || WereAllCalculated(session)) return false;
  transaction.Commit();
  return true;
}

void ShowCalculation() {
  frmCalc2 = std::make_unique<TfrmCalc2>();
  const auto release = qScopeGuard([data = PresentData(), before = retries] {
    if (before == retries) Remember(data, frmCalc2->Calculated());
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
