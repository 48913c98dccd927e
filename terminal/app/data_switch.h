// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <functional>
#include <optional>
#include <vector>

#include "demo_maker.h"
#include "pages/notice_page.h"
#include "parts/database_side.h"
#include "parts/process_parts.h"
#include "parts/window_side.h"
#include "process/demo_folder.h"

namespace holdwise {

/// What a change of the data comes to in the terminal.
struct DataTargets {
  /// Loads the data folder anew and shows what comes of it.
  std::function<void()> tryAgain;
  /// Has that data folder take the place of the one that is open, if the user agrees to what gets lost by it. Throws
  /// what keeps it from being used: everything is as before then.
  std::function<void(const QString& folder)> openFolder;
  /// Does the user agree to what gets lost by leaving for other data?
  std::function<bool()> mayLeave;
  /// Ends the terminal, to start it anew as WantedStart says.
  std::function<void()> leave;
  /// Why what is under way must not be left; empty when nothing is.
  std::function<QString()> busyWith;
  /// Is the user, or a command, at something that other data would disturb?
  std::function<bool()> isDisturbing;
};

/// The ways to other data: a simulated market to try out, which has portfolios of its own, the way back from it, and
/// another data folder for the user's own portfolios. What is chosen is opened again by the next start. User-interface
/// thread.
class DataSwitch {
 public:
  /// All outlive it.
  DataSwitch(ProcessParts& process, DatabaseSide& database, WindowSide& window, DataTargets targets);

  /// A button each, for the page that says that there are no data, and what to use them for.
  [[nodiscard]] std::vector<NoticeChoice> Choices();
  [[nodiscard]] QString Advice() const;
  /// To the simulated market, which is made when there is none, or back from it.
  void SwitchDemo();
  /// Asks for a data folder for the user's own portfolios. One that cannot be used is refused, and nothing changes.
  void ChooseFolder();
  /// Ends the making of a simulated market, because other data are there.
  void GiveUpMaking() { maker_.GiveUp(); }
  /// The start that is wanted after this one; none: this is the last.
  [[nodiscard]] const std::optional<Options>& WantedStart() const { return wanted_; }

 private:
  [[nodiscard]] bool IsDemo() const { return process_.Asked().IsDemo(); }
  void MakeDemo();
  void DemoMade();
  void OpenDemo();
  /// `folder`: the data folder that the user's own data are opened with from now on; empty: the one of before.
  void GoBack(const QString& folder);
  /// Ends this terminal for that start.
  void LeaveFor(Options next);
  /// Has the way back, and the starts after it, use that data folder. Error(Busy, Io).
  void Remember(const QString& folder, Options& back);
  void Open(const QString& folder);
  /// Throws unless it is a data folder that can be used for the user's own portfolios.
  void Require(const QString& folder);
  [[nodiscard]] bool IsFree();

  ProcessParts& process_;
  DatabaseSide& database_;
  WindowSide& window_;
  const DataTargets targets_;
  const DemoFolder demo_;
  DemoMaker maker_;
  std::optional<Options> wanted_;
};

}  // namespace holdwise
