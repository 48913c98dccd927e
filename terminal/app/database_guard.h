// SPDX-License-Identifier: MIT
#pragma once
#include <functional>
#include <memory>

#include "backup/backup_folder.h"
#include "first_look.h"
#include "health/health.h"
#include "parts/database_side.h"
#include "parts/process_parts.h"
#include "parts/window_side.h"

namespace holdwise {

/// A database that has just been opened, and how it stands beside the newest backup.
struct OpenedDatabase {
  std::unique_ptr<UserDataServices> database;
  FirstLook look;
};
/// Opens the database, not null; throws what opening it or looking at it threw. Called once an opening, on the
/// user-interface thread.
using DatabaseOpener = std::function<OpenedDatabase()>;

/// Opens the database and asks the user about what is not well with it: a file that is damaged, what differs from the
/// newest backup, damage found while the terminal runs. User-interface thread.
class DatabaseGuard {
 public:
  /// All must outlive it. `look`: what the opener of `database` has found.
  DatabaseGuard(ProcessParts& process, DatabaseSide& database, WindowSide& window, const FirstLook& look);

  /// False when the terminal is to end, which the user has been told. A damaged file can be set aside with one button
  /// and the newest backup restored; so can one that differs from it. What else keeps it from being opened (a full
  /// disk, another program) can be tried again.
  [[nodiscard]] bool Open();
  /// A statement has met a damaged file; said and asked about once. Any thread.
  void DamageMet(const QString& text);
  /// What an export has to say about the stored portfolios; empty when nothing.
  [[nodiscard]] QString Doubt() const;
  /// Why the file is damaged, which was found while the terminal runs; empty when that was not.
  [[nodiscard]] QString Damage() const { return isDamageTold_ ? doubt_ : QString(); }
  /// What the start has found out about the database and the newest backup, and what the user chose.
  [[nodiscard]] health::Comparison Comparison() const;
  /// The file of the database was gone, and the exchange files are there: nothing has been asked about, for they bring
  /// the portfolios back once the views are entered.
  [[nodiscard]] bool IsLeftToExchangeFiles() const { return isLeftToExchangeFiles_; }
  /// The user wants the file of the database set aside and the newest backup restored, once the terminal has ended.
  [[nodiscard]] bool WantsRepair() const { return wantsRepair_; }

 private:
  void OpenFile();
  /// A database file, not a server's.
  [[nodiscard]] bool IsCompared() const;
  /// There is something to restore: a generation or, for the work folder's own database, the exchange files.
  [[nodiscard]] bool HasBackups() const;
  /// Asks whether the damaged file is to be set aside, and does it.
  [[nodiscard]] bool SetAside(const QString& reason);
  void MoveFile();
  void Restore();
  /// True unless the file was set aside: then the database is to be opened again.
  [[nodiscard]] bool Settle();
  [[nodiscard]] bool SettleDifference();
  [[nodiscard]] bool CanBeLeftToExchangeFiles() const;
  /// `told`: how the comparison stands once it is written.
  void WriteBackup(const health::Comparison& told);
  /// Until the user has chosen, what may be damage takes no backup's place.
  void LeaveUnsettled();
  void DamageFound(const QString& text);
  /// The place of the choice, which for setting the file aside was confirmed; below 0: none.
  [[nodiscard]] int Ask(const QString& title, const QString& text, const QStringList& choices);
  void TellInBox(const QString& text);

  ProcessParts& process_;
  DatabaseSide& database_;
  WindowSide& window_;
  const FirstLook& look_;
  const backup::BackupFolder backups_;
  QString doubt_;
  bool isUnsettled_ = false;  ///< the doubt lasts until the folder of the backups is settled
  bool isLeftToExchangeFiles_ = false;
  health::Comparison comparison_;
  bool isDamageTold_ = false;
  bool wantsRepair_ = false;
};

}  // namespace holdwise
