// SPDX-License-Identifier: MIT
#include "window/long_work.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <QTimer>

#include "window/main_window.h"

namespace holdwise {
namespace {

constexpr int kEventsMilliseconds = 30;

}  // namespace

LongWork::LongWork(MainWindow& window, const QString& what) : WindowWork(window, what) {
  qApp->installEventFilter(this);
  sinceEvents_.start();
}

LongWork::~LongWork() {
  Window().ShowProgress(0, 0);
}

bool LongWork::Step(int done, int total) {
  if (sinceEvents_.elapsed() >= kEventsMilliseconds) {
    Window().ShowProgress(done, total);
    QCoreApplication::processEvents();
    sinceEvents_.restart();
  }
  return !IsGivenUp();
}

bool LongWork::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Timer:
      // One that is not told stays due. Windows use theirs to paint themselves.
      return qobject_cast<QTimer*>(watched) != nullptr;
    case QEvent::KeyPress:
      if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape && QApplication::activeModalWidget() == nullptr)
        GiveUp();
      [[fallthrough]];
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::ContextMenu:
    case QEvent::Wheel: {
      const auto* widget = qobject_cast<QWidget*>(watched);
      return widget != nullptr && widget->window() == &Window() && widget != &Window().CancelButton();
    }
    case QEvent::Shortcut:
      return QApplication::activeModalWidget() == nullptr;
    default:
      return false;
  }
}

}  // namespace holdwise
