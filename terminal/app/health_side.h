// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QTimer>
#include <functional>
#include <memory>

#include "database_guard.h"
#include "health/health.h"
#include "parts/market_side.h"
#include "parts/page_side.h"
#include "parts/process_parts.h"
#include "parts/window_side.h"
#include "process/hand_over.h"

namespace holdwise {

/// Watches over the running terminal: the amber sign of the window, the page of the help menu and the answer to
/// --check. User-interface thread.
class HealthSide {
 public:
  /// All outlive it; market and pages are null while the data folder cannot be used.
  HealthSide(ProcessParts& process, WindowSide& window, const DatabaseGuard& guard,
             const std::unique_ptr<MarketSide>& market, const std::unique_ptr<PageSide>& pages);
  HealthSide(const HealthSide&) = delete;
  HealthSide& operator=(const HealthSide&) = delete;

  /// Why the latest change is in no backup, empty when it is; null: nobody is asked.
  std::function<QString()> backupProblem;

  /// The table as text; exit code 0 when all is well, else 1.
  [[nodiscard]] HandOverAnswer Answer() const;
  void Show() const;

 private:
  [[nodiscard]] health::Table Now() const;
  void Look();

  ProcessParts& process_;
  WindowSide& window_;
  const DatabaseGuard& guard_;
  const std::unique_ptr<MarketSide>& market_;
  const std::unique_ptr<PageSide>& pages_;
  mutable health::MirrorReader mirror_;  ///< only remembers
  QTimer timer_;
};

/// The same for a work folder on which no terminal runs, with a full reading of its database and a comparison with the
/// newest backup, none of which changes anything; prints the table and returns the exit code. The caller holds the work
/// folder's lock; a QCoreApplication is there.
[[nodiscard]] int CheckAtRest(const Options& asked);

}  // namespace holdwise
