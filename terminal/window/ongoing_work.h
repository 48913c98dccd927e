// SPDX-License-Identifier: MIT
#pragma once
#include <QObject>
#include <QShortcut>
#include <QString>
#include <functional>

namespace holdwise {

class MainWindow;

/// Work of several seconds that goes on along with the event loop: a sign in the status bar with 取消 beside it,
/// for which Escape stands too, and the menus offer nothing but 退出, until this object ends. Closing the window asks
/// whether to give the work up, and closes it once the work has ended. Keeps nothing else of the window from being
/// used. User-interface thread.
class OngoingWork : public QObject {
 public:
  /// @param what for sign and question, as "正在导出"; the window must outlive the work
  OngoingWork(MainWindow& window, const QString& what);
  ~OngoingWork() override;

  /// The user wants the work to end; called once. It may be called below a nested event loop.
  std::function<void()> OnGivenUp;

 private:
  void GiveUp();
  [[nodiscard]] bool MayClose();

  MainWindow& window_;
  QString what_;
  QShortcut escape_;
  bool isGivenUp_ = false;
  bool isAsking_ = false;
  bool isClosing_ = false;
};

}  // namespace holdwise
