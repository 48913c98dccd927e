// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include "screen.h"

namespace holdwise::e2e {

/// A screen with a window manager, and a bench.
class Window : public testing::Test {
 protected:
  void SetUp() override {
    for (const QString& missing : {MissingProgram(), MissingManager()})
      if (!missing.isEmpty()) GTEST_SKIP() << missing.toStdString();
    ASSERT_TRUE(screen_.IsThere());
    manager_.setProcessEnvironment(screen_.Environment());
    manager_.start(QStringLiteral("openbox"), {});
    ASSERT_TRUE(manager_.waitForStarted());
  }
  void TearDown() override {
    manager_.kill();
    manager_.waitForFinished();
  }
  static QString MissingManager() {
    return QStandardPaths::findExecutable(QStringLiteral("openbox")).isEmpty() ? QStringLiteral("openbox") : QString();
  }
  [[nodiscard]] static bool IsGone(RunningTerminal& terminal, int milliseconds = 30'000) {
    return terminal.Process().waitForFinished(milliseconds * kSlowness);
  }
  /// The terminal's window, by the number the screen knows it by.
  [[nodiscard]] QString MainWindow() const {
    return screen_.Do({"search", "--onlyvisible", "--name", "^Holdwise"}).section('\n', 0, 0);
  }
  /// A number of its place and size: "X", "Y", "WIDTH" or "HEIGHT".
  [[nodiscard]] int Geometry(const QString& name) const {
    const QString all = screen_.Do({"getwindowgeometry", "--shell", MainWindow()});
    return ('\n' + all).section('\n' + name + '=', 1).section('\n', 0, 0).toInt();
  }
  /// On the button that the window manager has drawn at the right end of the main window's title.
  void ClickClose() const {
    (void)screen_.Do({"windowmove", "--sync", MainWindow(), "0", "60"});
    screen_.Click(Geometry("WIDTH") - 9, 50);
  }
  [[nodiscard]] bool LogSays(const char* text) const {
    return Until([&] { return Bytes(bench_.Work() + "/log/terminal.log").contains(text); }, 30'000);
  }

  const Screen screen_;
  QProcess manager_;
  Bench bench_;
};

}  // namespace holdwise::e2e
