// SPDX-License-Identifier: MIT
// The yardstick for the terminal's start: an application with one empty main window, up to its first paint.
#include <QApplication>
#include <QMainWindow>
#include <QPaintEvent>
#include <QTimer>
#include <cstdio>

namespace {
class EmptyWindow : public QMainWindow {
 protected:
  void paintEvent(QPaintEvent* event) override {
    QMainWindow::paintEvent(event);
    if (std::exchange(painted_, true)) return;
    // After the picture has been handed to the window system, as the terminal reports it.
    QTimer::singleShot(0, this, [] {
      std::fprintf(stderr, "HOLDWISE_FIRST_PAINT_MS\n");
      std::fflush(stderr);
    });
  }

 private:
  bool painted_ = false;
};
}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  EmptyWindow window;
  window.resize(1280, 800);
  window.show();
  return QApplication::exec();
}
