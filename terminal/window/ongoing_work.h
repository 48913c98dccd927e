// SPDX-License-Identifier: MIT
#pragma once
#include <QShortcut>

#include "window/window_work.h"

namespace holdwise {

/// Work that goes on along with the event loop: a sign in the status bar with 取消 beside it, for which Escape stands
/// too, and the menus offer nothing but 退出, until this object ends. Keeps nothing else of the window from being used.
/// User-interface thread.
class OngoingWork : public WindowWork {
 public:
  /// @param what for the sign, too
  OngoingWork(MainWindow& window, const QString& what);
  ~OngoingWork() override;

 private:
  QShortcut escape_;
};

}  // namespace holdwise
