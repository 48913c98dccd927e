// SPDX-License-Identifier: MIT
#include "commands.h"

#include <QCoreApplication>
#include <QMenuBar>
#include <QPushButton>
#include <exception>
#include <memory>
#include <utility>

#include "datacentre/index_closes.h"
#include "holdwise/packet/code_numbers.h"
#include "process/print.h"
#include "process/signal_guard.h"
#include "transfer/import.h"
#include "transfer/import_report.h"
#include "window/dialogs.h"
#include "window/import_dialog.h"
#include "window/long_work.h"
#include "window/message_boxes.h"

namespace holdwise {
namespace {

/// What the command sets in the smart allocation and in the stress view, whose controls the catalogue calls so. The
/// index comes before the move: choosing one takes the move back to 0.
std::vector<ViewInput> InputsOf(const Command& command) {
  constexpr int kAllocationView = 1001;
  constexpr int kStressView = 2003;
  std::vector<ViewInput> inputs;
  if (!command.capital.isEmpty()) inputs.push_back({kAllocationView, QStringLiteral("Edit1"), command.capital});
  if (!command.stressIndex.isEmpty())
    inputs.push_back({kStressView, QStringLiteral("ComboBox11"), command.stressIndex});
  if (!command.stress.isEmpty()) inputs.push_back({kStressView, QStringLiteral("Edit1"), command.stress});
  return inputs;
}

}  // namespace

Commands::Commands(const CommandParts& parts)
    : parts_(parts), runner_(Targets()), handOver_(parts.process.Asked().workFolder) {
  handOver_.OnCommand = [this](const Command& command, HandOverServer::Answer answer) {
    TakeHandedOver(command, std::move(answer));
  };
}

CommandTargets Commands::Targets() {
  CommandTargets targets;
  targets.setTheme = [this](ThemeKind kind) { parts_.window.SetTheme(kind); };
  targets.goTo = [this](const QString& address, const QString& parameter) {
    return parts_.pages != nullptr && parts_.pages->GoTo(address, parameter);
  };
  targets.restorePortfolios = [this](const QString& file) { return Restore(file); };
  targets.backUpPortfolios = [this](const QString& file) { return BackUp(file); };
  targets.importPortfolios = [this](const Command& command) { return Import(command); };
  targets.exportViews = [this](const Command& command, const HandOverServer::Answer& answer) {
    Export(command, answer);
  };
  targets.raise = [this] { parts_.window.Raise(); };
  targets.awaitedAnswer = [] { return AwaitedAnswer(); };
  return targets;
}

void Commands::TakeHandedOver(const Command& command, HandOverServer::Answer answer) {
  if (const QString conflict = ConflictOf(command, parts_.process.Asked()); !conflict.isEmpty())
    return answer({conflict, 1});
  if (!command.check.isEmpty()) return answer(parts_.health.Answer());
  runner_.Run(command, std::move(answer));
}

void Commands::RunFirst() {
  const Options& asked = parts_.process.Asked();
  Command command = asked.command;
  if (!command.HasWork()) return;
  command.address.clear();  // entered already
  command.parameter.clear();
  command.theme.reset();
  command.tells = true;
  runner_.Run(command, [this, isBatch = asked.IsBatch()](const HandOverAnswer& answer) {
    if (answer.exitCode == 0) PrintOut(answer.text);
    if (answer.exitCode != 0) PrintError(answer.text);
    if (isBatch)
      QCoreApplication::exit(answer.exitCode);
    else if (answer.exitCode != 0)
      ShowReport(&parts_.window.Window(), QStringLiteral("导入组合"), answer.text);
  });
}

ViewCatalogue* Commands::EnterViews() {
  ViewCatalogue* views = parts_.pages == nullptr ? nullptr : parts_.pages->EnterViews();
  // What the plug-in has put back from its own files may be what the newest backup holds, which settles the doubt.
  if (views != nullptr && !parts_.guard.Doubt().isEmpty()) parts_.backups.Service().WriteNow();
  return views;
}

HandOverAnswer Commands::Restore(const QString& file) {
  // Without views (no data folder) the portfolios come back all the same.
  ViewCatalogue* views = EnterViews();
  HandOverAnswer answer = parts_.backups.RestoreFile(file, backup::RestoreExtent::Everything);
  if (answer.exitCode == 0 && views != nullptr) views->DataChanged();
  return answer;
}

HandOverAnswer Commands::BackUp(const QString& file) {
  // The plug-in may have portfolios to put back first.
  (void)EnterViews();
  HandOverAnswer answer = parts_.backups.WriteFile(file);
  const QString doubt = parts_.guard.Doubt();
  return doubt.isEmpty() ? answer : HandOverAnswer{answer.text + QLatin1Char('\n') + doubt, 1};
}

HandOverAnswer Commands::Import(const Command& command) {
  // Entering the page first lets the plug-in put back its own saved portfolios before others are added.
  ViewCatalogue* views = EnterViews();
  if (views == nullptr) return {QStringLiteral("没有投资组合页面，不能导入。"), 1};
  HandOverAnswer answer;
  try {
    answer = ImportFile(command);
  } catch (const std::exception& error) {
    answer = {QStringLiteral("没有导入：%1").arg(QString::fromUtf8(error.what())), 1};
  }
  if (answer.exitCode == 0 && parts_.process.Asked().IsDemo())
    answer.text += QStringLiteral("\n这里是试用的模拟行情，它的组合与自己的分开保存。");
  parts_.process.Log().WriteLog(answer.text);
  if (answer.exitCode == 0) views->DataChanged();
  return answer;
}

HandOverAnswer Commands::ImportFile(const Command& command) {
  std::unique_ptr<LongWork> work;  // from the first step on: a person may be asked before
  const ImportProgress progress = [this, &work](int done, int total) {
    if (!work && !parts_.process.Asked().IsBatch())
      work = std::make_unique<LongWork>(parts_.window.Window(), QStringLiteral("正在导入组合"));
    return (!work || work->Step(done, total)) && !signal_guard::Requested();
  };
  MarketData& market = parts_.market->Data();
  const ImportServices services{parts_.database, market, market,
                                [&market] { return ReadIndexCloses(market.Folder(), kCompositeIndex); }};
  const QString& file = command.importFile;
  ImportOptions options;
  options.name = command.importAs;
  options.skipStrangers = !command.skipUnknown.isEmpty();
  if (command.tells) {
    options.tell = [this](const QString& text) {
      PrintOut(text);
      parts_.process.Log().WriteLog(text);
    };
  }
  if (command.asks) options.ask = [this, file](const ImportPreview& preview) { return AskForImport(file, preview); };
  return AnswerOf(file, ImportPortfoliosFromFile(file, services, progress, options));
}

std::optional<ImportChoice> Commands::AskForImport(const QString& file, const ImportPreview& preview) {
  ImportDialog dialog(&parts_.window.Window(), {file, preview.text, preview.name, preview.strangers},
                      [this](const QString& name) { return NewNameProblem(parts_.database, name); });
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return ImportChoice{dialog.Name(), dialog.SkipsStrangers()};
}

void Commands::ShowExport() {
  isExportGivenUp_ = false;
  if (parts_.process.Asked().IsBatch()) return;
  shownExport_ = std::make_unique<OngoingWork>(parts_.window.Window(), QStringLiteral("正在导出"));
  shownExport_->OnGivenUp = [this] {
    isExportGivenUp_ = true;
    if (exporter_) exporter_->GiveUp();
  };
}

void Commands::Export(const Command& command, const HandOverServer::Answer& answer) {
  const QString cameFrom = parts_.pages == nullptr ? QString() : parts_.pages->CurrentAddress();
  ShowExport();
  ViewCatalogue* views = EnterViews();
  if (views == nullptr) {
    shownExport_.reset();
    return answer({QStringLiteral("没有投资组合页面，不能导出。"), 1});
  }
  MainWindow& window = parts_.window.Window();
  exporter_ = std::make_unique<ViewExporter>(*views, window.Area());
  exporter_->Spare(*window.menuBar());
  exporter_->Spare(window.CancelButton());
  exporter_->OnDone = [this, folder = command.exportFolder, cameFrom, answer](const QString& problem,
                                                                              const QString& lacking) {
    exporter_.release()->deleteLater();
    shownExport_.reset();
    if (!cameFrom.isEmpty() && parts_.pages->CurrentAddress() != cameFrom)
      (void)parts_.pages->GoTo(cameFrom, QString());
    const HandOverAnswer done = Exported(folder, problem, lacking);
    parts_.process.Log().WriteLog(done.text);
    parts_.window.Window().Tell(done.text);
    answer(done);
  };
  exporter_->Start(command.exportFolder, InputsOf(command), parts_.market->Data().IsSimulated());
  if (isExportGivenUp_) exporter_->GiveUp();  // while the page was entered
}

HandOverAnswer Commands::Exported(const QString& folder, const QString& problem, const QString& lacking) const {
  QStringList lines{parts_.guard.Doubt(), parts_.market->Connection().QuotesProblem(), lacking};
  lines.removeAll(QString());
  if (!problem.isEmpty()) {
    const QString rest = QStringLiteral("\n已导出的数据不完整：\n%1").arg(lines.join(QLatin1Char('\n')));
    return {QStringLiteral("导出没有完成：%1").arg(problem) + (lines.isEmpty() ? QString() : rest), 1};
  }
  const QString kind = parts_.market->Data().IsSimulated() ? QStringLiteral("（模拟行情）") : QString();
  if (lines.isEmpty()) return {QStringLiteral("已导出到“%1”%2。").arg(folder, kind), 0};
  return {QStringLiteral("已导出到“%1”%2，但数据不完整：\n%3").arg(folder, kind, lines.join(QLatin1Char('\n'))), 1};
}

void Commands::ImportFromMenu() {
  const QString file = AskForFile(&parts_.window.Window());
  if (file.isEmpty()) return;
  Command command;
  command.importFile = file;
  command.asks = true;
  runner_.Run(command, [this](const HandOverAnswer& answer) {
    ShowReport(&parts_.window.Window(), QStringLiteral("导入组合"), answer.text);
  });
}

void Commands::ExportPortfoliosFromMenu() {
  (void)EnterViews();
  parts_.backups.ExportFromMenu();
}

void Commands::RestoreFromMenu() {
  (void)EnterViews();
  parts_.backups.RestoreFromMenu([this] { return runner_.IsIdle(); },
                                 [this] {
                                   if (ViewCatalogue* views = EnterViews()) views->DataChanged();
                                 });
}

void Commands::ExportFromMenu() {
  const QString folder = AskForFolder(&parts_.window.Window());
  if (folder.isEmpty()) return;
  Command command;
  command.exportFolder = folder;
  runner_.Run(command, [this](const HandOverAnswer& answer) {
    const bool isNews = answer.exitCode != 0 && !isExportGivenUp_;
    if (isNews) ShowReport(&parts_.window.Window(), QStringLiteral("导出"), answer.text);
  });
}

}  // namespace holdwise
