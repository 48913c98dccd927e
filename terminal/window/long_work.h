// SPDX-License-Identifier: MIT
#pragma once
#include <QElapsedTimer>
#include <QObject>
#include <QString>

namespace holdwise {

class MainWindow;

/// Work of several seconds on the user-interface thread, with the window answering: progress and 取消 in the status
/// bar. Mouse and keyboard reach nothing else of the window meanwhile, timers wait, so that nobody uses what is worked
/// on. Closing the window asks whether to give the work up, and then does both. User-interface thread.
class LongWork : public QObject {
 public:
  /// @param what for the question, as "正在导入组合"; the window must outlive the work
  LongWork(MainWindow& window, const QString& what);
  /// Takes the progress away, and closes the window if the user wanted that.
  ~LongWork() override;

  /// So much is done; lets events run when the last time is a while ago. False: the user gives up.
  [[nodiscard]] bool Step(int done, int total);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool MayClose();

  MainWindow& window_;
  QString what_;
  QElapsedTimer sinceEvents_;
  bool isGivenUp_ = false;
  bool isAsking_ = false;
  bool isClosing_ = false;
};

}  // namespace holdwise
