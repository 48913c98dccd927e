#include "calc/download_trigger.h"

#include <QScopeGuard>

#include "calc/untcalc2.h"
#include "common/host/host_access.h"
#include "common/store/database.h"
#include "common/store/statements.h"

namespace holdwise {
namespace {

/// Runs the first-calculation procedure; its effects stay only when it leaves portfolios to calculate.
bool HasUnfinished(UserDataSession& session) {
  TransactionScope transaction(session);
  session.Execute(sql::FirstCalculation(ModuleHost().DataCenter().CurrentDateText()));
  if (session.Count(sql::kCountUnfinished) == 0) return false;
  transaction.Commit();
  return true;
}

void ShowCalculation() {
  frmCalc2 = std::make_unique<TfrmCalc2>();
  const auto release = qScopeGuard([] { frmCalc2.reset(); });
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

}  // namespace holdwise
