// SPDX-License-Identifier: MIT
#pragma once
#include <functional>
#include <memory>

#include "backups.h"
#include "command_runner.h"
#include "database_guard.h"
#include "health_side.h"
#include "parts/database_side.h"
#include "parts/market_side.h"
#include "parts/page_side.h"
#include "parts/process_parts.h"
#include "parts/window_side.h"
#include "transfer/import.h"
#include "transfer/view_exporter.h"
#include "window/ongoing_work.h"

namespace holdwise {

/// What commands are carried out with; all outlives them. Market and pages are null while the data folder cannot be
/// used.
struct CommandParts {
  ProcessParts& process;
  DatabaseSide& database;
  WindowSide& window;
  const HealthSide& health;
  Backups& backups;
  const std::unique_ptr<MarketSide>& market;
  const std::unique_ptr<PageSide>& pages;
  const DatabaseGuard& guard;
};

/// Carries out what the command line, the menus and later starts on the same work folder ask for. User-interface
/// thread.
class Commands {
 public:
  /// The database is open. Error(Io) when the end point for later starts cannot be made.
  explicit Commands(const CommandParts& parts);
  Commands(const Commands&) = delete;
  Commands& operator=(const Commands&) = delete;

  /// What the command line has to be carried out, once the first page has been entered; a batch ends with its exit
  /// code.
  void RunFirst();
  /// Nothing is being carried out, and nothing waits.
  [[nodiscard]] bool IsIdle() const { return runner_.IsIdle(); }
  /// Asks for the file or folder first.
  void ImportFromMenu();
  void ExportFromMenu();
  void ExportPortfoliosFromMenu();
  void RestoreFromMenu();

 private:
  [[nodiscard]] CommandTargets Targets();
  void TakeHandedOver(const Command& command, HandOverServer::Answer answer);
  /// Null: there are none.
  [[nodiscard]] ViewCatalogue* EnterViews();
  [[nodiscard]] HandOverAnswer Restore(const QString& file);
  [[nodiscard]] HandOverAnswer BackUp(const QString& file);
  [[nodiscard]] HandOverAnswer Import(const Command& command);
  [[nodiscard]] HandOverAnswer ImportFile(const Command& command);
  [[nodiscard]] std::optional<ImportChoice> AskForImport(const QString& file, const ImportPreview& preview);
  void Export(const Command& command, const HandOverServer::Answer& answer);
  void ShowExport();
  [[nodiscard]] HandOverAnswer Exported(const QString& folder, const QString& problem, const QString& lacking) const;

  CommandParts parts_;
  CommandRunner runner_;
  HandOverServer handOver_;
  std::unique_ptr<ViewExporter> exporter_;
  std::unique_ptr<OngoingWork> shownExport_;  ///< none in a batch
  bool isExportGivenUp_ = false;              ///< the last one, by the user
};

}  // namespace holdwise
