// SPDX-License-Identifier: MIT
#include "backups.h"

#include <exception>

#include "backup/portfolio_file.h"
#include "holdwise/packet/atomic_file.h"
#include "window/dialogs.h"

namespace holdwise {
namespace {

using backup::ChangedBy;
using backup::RestoreExtent;

QString TextOf(const std::exception& error) {
  return QString::fromUtf8(error.what());
}

}  // namespace

Backups::Backups(ProcessParts& process, DatabaseSide& database, WindowSide& window)
    : process_(process),
      database_(database),
      window_(window),
      folder_(process.Asked().workFolder, process.Asked().database),
      service_(database, folder_, process.Clock(), process.Log(),
               [&log = process.Log()](const backup::BackupState& state) {
                 if (!state.problem.isEmpty()) log.TellFailure(state.problem.section(QLatin1Char('\n'), 0, 0));
               }) {
  database_.SetChangeListener(
      {[this] { service_.BeforeChange(); },
       [this](bool isSession) { service_.Changed(isSession ? ChangedBy::Calculation : ChangedBy::User); }});
}

Backups::~Backups() {
  database_.SetChangeListener({});
}

HandOverAnswer Backups::Told(const HandOverAnswer& answer) {
  process_.Log().WriteLog(answer.text);
  return answer;
}

HandOverAnswer Backups::WriteFile(const QString& file) {
  try {
    const backup::PortfolioSet set = backup::ReadPortfolios(database_);
    WriteFileAtomically(file, backup::PortfolioFileText(set), Durability::Lasting);
    const QStringList problems = backup::ProblemsOf(set);
    if (!problems.isEmpty()) {
      return Told({QStringLiteral("全部组合已写到“%1”，但数据库里的组合有疑问，这个文件不能用来恢复：\n%2")
                       .arg(file, problems.join(QLatin1Char('\n'))),
                   1});
    }
    if (backup::LoadPortfolioFile(file) != set)
      return Told({QStringLiteral("写到“%1”的组合读回来与写入的不同，请换一个地方再写一次。").arg(file), 1});
    return Told({QStringLiteral("全部组合已写到“%1”：%2个组合，%3条持股。")
                     .arg(file)
                     .arg(set.portfolios.size())
                     .arg(set.HoldingCount()),
                 0});
  } catch (const std::exception& error) {
    return Told({QStringLiteral("组合没有写到“%1”：%2").arg(file, TextOf(error)), 1});
  }
}

void Backups::KeepBeforeRestore() {
  service_.Changed(ChangedBy::User);
  const bool isTried = service_.WriteNow();
  const backup::BackupState state = service_.State();
  if (isTried && !state.isLost) return;
  throw Error(ErrorCategory::Io, QStringLiteral("现在的组合要先留一份备份，但没有写成。%1")
                                     .arg(isTried ? state.problem : QStringLiteral("数据库或磁盘没有及时回答"))
                                     .toStdString());
}

HandOverAnswer Backups::RestoreFile(const QString& file, RestoreExtent extent) {
  try {
    const backup::PortfolioSet set = backup::LoadPortfolioFile(file);
    KeepBeforeRestore();
    const backup::RestorePlan plan = backup::Restore(database_, set, extent);
    if (extent == RestoreExtent::Everything) folder_.Settle();  // the user has chosen
    return Told({QStringLiteral("已从“%1”恢复：\n%2").arg(file, plan.Text()), 0});
  } catch (const std::exception& error) {
    return Told({QStringLiteral("没有恢复，组合没有改变：%1").arg(TextOf(error)), 1});
  }
}

void Backups::ExportFromMenu() {
  const QString day = process_.Clock().Now().toString(QStringLiteral("yyyyMMdd"));
  const QString file = AskForNewFile(&window_.Window(), QStringLiteral("portfolios-%1.csv").arg(day));
  if (file.isEmpty()) return;
  ShowReport(&window_.Window(), QStringLiteral("导出组合"), WriteFile(file).text);
}

RestorePreview Backups::PreviewOf(const backup::PortfolioSet& now, const QString& file, bool isMissingOnly,
                                  std::map<QString, backup::PortfolioSet>& read) {
  try {
    auto place = read.find(file);
    if (place == read.end()) place = read.emplace(file, backup::LoadPortfolioFile(file)).first;
    const RestoreExtent extent = isMissingOnly ? RestoreExtent::MissingOnly : RestoreExtent::Everything;
    const backup::RestorePlan plan = backup::PlanRestore(now, place->second, extent);
    return {plan.Text(), !plan.IsNothing()};
  } catch (const std::exception& error) {
    return {TextOf(error), false};
  }
}

void Backups::RestoreFromMenu(const std::function<bool()>& mayChange, const std::function<void()>& restored) {
  MainWindow& window = window_.Window();
  try {
    service_.WriteNow();
    const backup::PortfolioSet now = backup::ReadPortfolios(database_);
    std::vector<RestoreChoice> choices;
    for (const backup::Generation& one : folder_.List())
      choices.push_back({one.path, one.time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")),
                         QString::number(one.portfolios), QString::number(one.holdings)});
    std::map<QString, backup::PortfolioSet> read;
    RestoreDialog dialog(
        &window, choices,
        [&](const QString& file, bool isMissingOnly) { return PreviewOf(now, file, isMissingOnly, read); },
        [&window] { return AskForBackup(&window); });
    if (dialog.exec() != QDialog::Accepted) return;
    if (!mayChange())
      throw Error(ErrorCategory::Busy,
                  "没有恢复，组合没有改变：终端正在导出，或在执行别的命令。请等它结束，再试一次。");
    const HandOverAnswer answer =
        RestoreFile(dialog.Path(), dialog.IsMissingOnly() ? RestoreExtent::MissingOnly : RestoreExtent::Everything);
    if (answer.exitCode == 0) restored();
    ShowReport(&window, QStringLiteral("恢复结果"), answer.text);
  } catch (const std::exception& error) {
    ShowReport(&window, QStringLiteral("恢复组合"), TextOf(error));
  }
}

}  // namespace holdwise
