// SPDX-License-Identifier: MIT
#pragma once
#include <memory>
#include <optional>

#include "commands.h"
#include "data_switch.h"
#include "database_guard.h"
#include "day_change.h"
#include "health_side.h"
#include "parts/database_side.h"
#include "parts/market_side.h"
#include "parts/page_side.h"
#include "parts/process_parts.h"
#include "parts/window_side.h"

namespace holdwise {

/// The terminal: puts its parts together in the order of a start. Each part rests only on those above it, so that they
/// end from the last one to the first. User-interface thread.
class Terminal {
 public:
  /// The work folder exists and is locked by this process. Starts to read the data folder.
  Terminal(Options options, DatabaseOpener openDatabase);
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  /// Starts up, runs until the user, a signal or the end of a batch ends it, and says the exit code.
  int Run();
  /// The database is to be repaired and the terminal started again.
  [[nodiscard]] bool WantsRepair() const { return guard_.WantsRepair(); }
  /// The start with other data that is to follow; none: there is none.
  [[nodiscard]] const std::optional<Options>& WantedStart() const { return data_.WantedStart(); }

 private:
  [[nodiscard]] WindowActions Actions();
  [[nodiscard]] DataTargets Targets();
  /// Asks whether what has been half entered may go, if anything has. `what` the user is about to do, as "退出".
  [[nodiscard]] bool MayLose(const QString& what);
  [[nodiscard]] bool IsDisturbing() const;
  /// Waits for the data folder and loads the plug-ins; false when the views cannot be shown, which an obstacle tells.
  bool OpenPages();
  /// Has the pages say why there are no views among them.
  void AddPluginObstacle();
  void TryAgain();
  /// Loads the data folder anew and makes other pages, at the same place. Throws what loading it threw: everything is
  /// as before then.
  void ChangeDay();
  /// The same with another data folder, if the user agrees.
  void OpenFolder(const QString& folder);
  /// Makes pages for an opened market in the place of those that there are, at the same place.
  void Exchange(std::unique_ptr<MarketSide> next);
  void ShowPages();
  /// Goes to the page that the command line (or nobody) asked for, or to what stands in the way of the views, before
  /// anything is painted: the window's first picture is that page.
  void EnterFirstPage();
  /// After the first picture: connects the bus and, once, starts the rest of the command, whose progress can be seen
  /// now.
  void GoOn();

  ProcessParts process_;
  FirstLook look_;
  DatabaseSide database_;
  std::unique_ptr<MarketSide> market_;  ///< null: the data folder could not be used
  WindowSide window_;
  DataSwitch data_;
  DatabaseGuard guard_;
  std::unique_ptr<Backups> backups_;    ///< null until the database is open; ends after all who change something
  std::unique_ptr<PageSide> pages_;     ///< null: as the market
  std::unique_ptr<HealthSide> health_;  ///< null until the database is open
  std::unique_ptr<Commands> commands_;  ///< null until the database is open
  DayChange dayChange_;                 ///< after all that it looks at
  bool isReady_ = false;                ///< the views can be shown
  bool hasGoneOn_ = false;
};

}  // namespace holdwise
