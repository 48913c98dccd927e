// SPDX-License-Identifier: MIT
#include "calc/download_trigger.h"

#include <QApplication>
#include <QScopeGuard>
#include <QSet>
#include <cstdint>

#include "calc/unfinished_work.h"
#include "calc/untcalc2.h"
#include "common/host/host_access.h"
#include "common/store/database.h"
#include "common/store/statements.h"

namespace holdwise {
namespace {

/// What was tried with the data of a state and stayed incomplete: another run would not find what is missing either.
struct Tried {
  QString data;              ///< date and edition
  QSet<QString> unfinished;  ///< ids of portfolios still marked unfinished
  QSet<QString> lacking;     ///< of those with figures that lack something: marked again, they are asked for again
};
Tried tried;
/// Counts the calls of RetryIncomplete: what a dialog began before one calculates is to be tried again all the same.
int retries = 0;
/// Of the last dialog.
QString problem;

QString PresentData() {
  const TDataCenter& dataCenter = ModuleHost().DataCenter();
  return dataCenter.CurrentDateText() + QLatin1Char(' ') + dataCenter.DataEdition();
}

QSet<QString> UnfinishedIn(UserDataSession& session) {
  const QStringList ids = calc::ReadUnfinishedPortfolios(session);
  return {ids.begin(), ids.end()};
}

/// Marks what is to be calculated with the present data.
void MarkUnfinished(UserDataSession& session) {
  const TDataCenter& dataCenter = ModuleHost().DataCenter();
  session.Execute(sql::FirstCalculation(dataCenter.CurrentDateText()));
  const QString edition = dataCenter.DataEdition();
  if (!edition.isEmpty()) session.Execute(sql::MarkOtherEditions(edition));
}

/// True when nobody but MarkUnfinished can have marked what is unfinished. To be asked before it runs.
bool IsNothingNew(UserDataSession& session) {
  if (tried.data != PresentData() || (tried.unfinished.isEmpty() && tried.lacking.isEmpty())) return false;
  return tried.unfinished.contains(UnfinishedIn(session));
}

void Remember(UserDataSession& session, const QString& data, const TfrmCalc2& dialog) {
  QSet<QString> known(dialog.Calculated().begin(), dialog.Calculated().end());
  const bool lacksReference = !dialog.ReferenceProblem().isEmpty();
  if (known.isEmpty() && !lacksReference) return;
  if (tried.data == data) known += tried.unfinished + tried.lacking;
  const TransactionScope onlyToLook(session);
  const QSet<QString> unfinished = UnfinishedIn(session);
  MarkUnfinished(session);
  if (lacksReference) known += unfinished;
  tried = {data, unfinished & known, (UnfinishedIn(session) - unfinished) & known};
}

/// Runs the first-calculation procedure; its effects stay only when it leaves portfolios to calculate.
bool HasUnfinished(UserDataSession& session) {
  TransactionScope transaction(session);
  const bool isNothingNew = IsNothingNew(session);
  MarkUnfinished(session);
  if (session.Count(sql::kCountUnfinished) == 0) return false;
  if (isNothingNew && (tried.unfinished + tried.lacking).contains(UnfinishedIn(session))) return false;
  transaction.Commit();
  return true;
}

void SayGivenUp(UserDataSession& session) {
  const std::int64_t left = session.Count(sql::kCountUnfinished);
  if (left == 0) return;
  problem = QStringLiteral("风险计算未完成：计算窗口被关闭，还有 %1 个组合没有算完。再打开一次这个页面就接着计算。")
                .arg(left);
  ModuleHost().Debug().WriteLog(problem);
  ModuleHost().Debug().TellFailure(problem);
}

void ShowCalculation(UserDataSession& session) {
  const QString data = PresentData();
  const int before = retries;
  frmCalc2 = std::make_unique<TfrmCalc2>();
  const auto release = qScopeGuard([] { frmCalc2.reset(); });
  ModuleHost().Debug().TellOngoing(QStringLiteral("正在计算风险数据，按 Esc 可取消"));
  const auto ended = qScopeGuard([] { ModuleHost().Debug().TellOngoing({}); });
  frmCalc2->ShowModal();
  problem = frmCalc2->ReferenceProblem();
  if (frmCalc2->IsGivenUp()) SayGivenUp(session);
  if (before == retries && !frmCalc2->IsWorthAnotherTry()) Remember(session, data, *frmCalc2);
}

/// The text names another routine; those who search the logs know it by this text, so it stays.
void LogDownDataFailure(const QString& text) {
  ModuleHost().Debug().WriteLog(QStringLiteral("DownDataMan.bpl->DownDataCommands->EnterAddress 发生错误!错误信息:") +
                                text);
}

}  // namespace

bool DownData() {
  if (frmCalc2) return true;  // it pumps messages, and a timer among them may come here again
  if (QApplication::activeModalWidget() != nullptr) return false;
  const std::unique_ptr<UserDataSession> session = Database().OpenSession();
  try {
    if (!HasUnfinished(*session)) return true;
    if (Database().InTransaction()) return false;
    ShowCalculation(*session);
  } catch (const std::exception& error) {
    LogDownDataFailure(QString::fromUtf8(error.what()));
  }
  return true;
}

QString CalculationProblem() {
  return problem;
}

void ForgetCalculations() {
  problem.clear();
  RetryIncomplete();
}

void RetryIncomplete() {
  tried = {};
  ++retries;
}

}  // namespace holdwise
