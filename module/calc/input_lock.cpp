// SPDX-License-Identifier: MIT
#include "input_lock.h"

#include <QApplication>
#include <QEvent>
#include <algorithm>

namespace holdwise {
namespace {

bool IsInput(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::DragEnter:
    case QEvent::TouchBegin:
      return true;
    default:
      return false;
  }
}

}  // namespace

InputLock::InputLock(QWidget& dialog) : dialog_(dialog) {
  for (QWindow* window : QGuiApplication::topLevelWindows()) {
    if (window->isVisible() && window != dialog.windowHandle()) locked_.emplace_back(window);
  }
  qApp->installEventFilter(this);
}

QWindow* InputLock::LockedWindowOf(QObject* watched) const {
  QWindow* window = qobject_cast<QWindow*>(watched);
  if (const auto* widget = qobject_cast<QWidget*>(watched)) window = widget->window()->windowHandle();
  const bool isLocked = window != nullptr && std::find(locked_.begin(), locked_.end(), window) != locked_.end();
  return isLocked ? window : nullptr;
}

bool InputLock::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Shortcut) {
    // Its receiver may be anything; it counts where the keyboard is.
    const QWidget* active = QApplication::activeWindow();
    return active != nullptr && LockedWindowOf(active->window()->windowHandle()) != nullptr;
  }
  QWindow* window = LockedWindowOf(watched);
  if (window == nullptr) return false;
  if (event->type() == QEvent::WindowActivate) {
    QMetaObject::invokeMethod(
        &dialog_,
        [dialog = &dialog_] {
          if (dialog->isMinimized()) dialog->showNormal();
          dialog->raise();
          dialog->activateWindow();
        },
        Qt::QueuedConnection);
    return false;
  }
  if (event->type() == QEvent::Close && event->spontaneous() && watched == window) {
    event->ignore();
    QMetaObject::invokeMethod(
        this,
        [this, wanted = QPointer(window)] {
          if (OnClose) OnClose(wanted);
        },
        Qt::QueuedConnection);
    return true;
  }
  return IsInput(event->type());
}

}  // namespace holdwise
