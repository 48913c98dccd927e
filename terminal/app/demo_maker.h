// SPDX-License-Identifier: MIT
#pragma once
#include <QObject>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>

#include "parts/window_side.h"
#include "window/ongoing_work.h"

namespace holdwise {

/// What a holdwise-market that has failed gives as its reason on standard error, without the progress that it made; a
/// reason too when it gives none.
[[nodiscard]] QString ReasonOfMaker(const QByteArray& said);

/// Makes a simulated market with holdwise-market, with its progress in the window. User-interface thread.
class DemoMaker : public QObject {
 public:
  /// The window outlives it.
  explicit DemoMaker(WindowSide& window);
  /// Ends what is being made.
  ~DemoMaker() override;

  /// Is the user, or a command, at something that a market which opens now would disturb? It waits then.
  std::function<bool()> isDisturbing;
  /// Called when it stands where it was wanted.
  std::function<void()> onMade;

  /// Makes one in that folder, in the place of what stands there, and calls `onMade` later. Nothing happens while one
  /// is being made.
  /// @param beside an existing folder on the same disk, where it stands until it is done
  void Make(const QString& folder, const QString& beside);
  /// Ends what is being made. Nothing happens when nothing is made.
  void GiveUp();

 private:
  void Run(const QStringList& arguments, void (DemoMaker::*next)());
  void Build();
  /// Once nobody is disturbed.
  void PutInPlace();
  void ShowProgress();
  void End(const QString& problem);

  WindowSide& window_;
  QString folder_;                     ///< that is wanted
  std::optional<QTemporaryDir> made_;  ///< what is being made, until it stands there; gone with this
  std::unique_ptr<OngoingWork> work_;  ///< meanwhile
  QProcess maker_;
  QByteArray said_;
  QTimer wait_;
  void (DemoMaker::*next_)() = nullptr;  ///< after the running step; none: what ends does not count any more
};

}  // namespace holdwise
