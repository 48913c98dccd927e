// SPDX-License-Identifier: MIT
#pragma once
#include <QObject>
#include <QString>
#include <functional>

namespace holdwise {

class MainWindow;

/// What all work of several seconds in the window has: 取消 in the status bar gives it up, and closing the window asks
/// whether to give it up and closes once it has ended. A close that comes out of the program asks nothing: whoever
/// closes has asked. User-interface thread.
class WindowWork : public QObject {
 public:
  /// @param what for the question, as "正在导出"; the window must outlive the work
  WindowWork(MainWindow& window, const QString& what);
  /// Closes the window if the user wanted that.
  ~WindowWork() override;

  /// The user wants the work to end; called once. It may be called below a nested event loop.
  std::function<void()> OnGivenUp;
  [[nodiscard]] bool IsGivenUp() const { return isGivenUp_; }

 protected:
  [[nodiscard]] MainWindow& Window() { return window_; }
  void GiveUp();

 private:
  [[nodiscard]] bool MayClose(bool isAgreed);

  MainWindow& window_;
  QString what_;
  bool isGivenUp_ = false;
  bool isAsking_ = false;
  bool isClosing_ = false;
};

}  // namespace holdwise
