// SPDX-License-Identifier: MIT
#pragma once
#include <QElapsedTimer>

#include "window/window_work.h"

namespace holdwise {

/// Work on the user-interface thread, with the window answering: progress and 取消 in the status bar. Mouse and
/// keyboard reach nothing else of the window meanwhile, timers wait, so that nobody uses what is worked on.
/// User-interface thread.
class LongWork : public WindowWork {
 public:
  LongWork(MainWindow& window, const QString& what);
  /// Takes the progress away.
  ~LongWork() override;

  /// So much is done; lets events run when the last time is a while ago. False: the user gives up.
  [[nodiscard]] bool Step(int done, int total);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QElapsedTimer sinceEvents_;
};

}  // namespace holdwise
