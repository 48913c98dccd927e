// SPDX-License-Identifier: MIT
#pragma once
#include <functional>
#include <map>

#include "backup/backup_service.h"
#include "backup/restore.h"
#include "parts/database_side.h"
#include "parts/process_parts.h"
#include "parts/window_side.h"
#include "process/hand_over.h"
#include "window/restore_dialog.h"

namespace holdwise {

/// Keeps the backups of the portfolios and brings them back, for the menus and the command line. User-interface thread.
class Backups {
 public:
  /// The database is open; all parts outlive it. From now on changes are written, what is waiting at its end too.
  Backups(ProcessParts& process, DatabaseSide& database, WindowSide& window);
  ~Backups();
  Backups(const Backups&) = delete;
  Backups& operator=(const Backups&) = delete;

  [[nodiscard]] backup::BackupService& Service() { return service_; }

  /// All portfolios into one file. Never throws.
  [[nodiscard]] HandOverAnswer WriteFile(const QString& file);
  /// All portfolios from one file; what was there before is kept as a generation, or beside them while it may be
  /// damage, and nothing is restored when that fails. Never throws.
  [[nodiscard]] HandOverAnswer RestoreFile(const QString& file, backup::RestoreExtent extent);
  /// Asks for the file.
  void ExportFromMenu();
  /// Shows the generations and what each would change; then the outcome. `mayChange` is asked once the user has chosen:
  /// false while another command that has come meanwhile is carried out. `restored` is called after something has
  /// changed.
  void RestoreFromMenu(const std::function<bool()>& mayChange, const std::function<void()>& restored);

 private:
  /// `read`: the files looked at before, to which this one comes.
  [[nodiscard]] static RestorePreview PreviewOf(const backup::PortfolioSet& now, const QString& file,
                                                bool isMissingOnly, std::map<QString, backup::PortfolioSet>& read);
  /// Error(Io): what is there now could not be kept.
  void KeepBeforeRestore();
  [[nodiscard]] HandOverAnswer Told(const HandOverAnswer& answer);

  ProcessParts& process_;
  DatabaseSide& database_;
  WindowSide& window_;
  backup::BackupFolder folder_;
  backup::BackupService service_;
};

}  // namespace holdwise
