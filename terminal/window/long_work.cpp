// SPDX-License-Identifier: MIT
#include "window/long_work.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <QTimer>
#include <utility>

#include "window/main_window.h"
#include "window/message_boxes.h"

namespace holdwise {
namespace {

constexpr int kEventsMilliseconds = 30;

}  // namespace

LongWork::LongWork(MainWindow& window, const QString& what) : window_(window), what_(what) {
  window_.MayClose = [this] { return MayClose(); };
  connect(&window_.CancelButton(), &QPushButton::clicked, this, [this] { isGivenUp_ = true; });
  qApp->installEventFilter(this);
  sinceEvents_.start();
}

LongWork::~LongWork() {
  window_.MayClose = nullptr;
  window_.ShowProgress(0, 0);
  if (isClosing_) QTimer::singleShot(0, &window_, &QWidget::close);
}

bool LongWork::Step(int done, int total) {
  if (sinceEvents_.elapsed() >= kEventsMilliseconds) {
    window_.ShowProgress(done, total);
    QCoreApplication::processEvents();
    sinceEvents_.restart();
  }
  return !isGivenUp_;
}

bool LongWork::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Timer:
      // One that is not told stays due. Windows use theirs to paint themselves.
      return qobject_cast<QTimer*>(watched) != nullptr;
    case QEvent::KeyPress:
      if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape && QApplication::activeModalWidget() == nullptr)
        isGivenUp_ = true;
      [[fallthrough]];
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::ContextMenu:
    case QEvent::Wheel: {
      const auto* widget = qobject_cast<QWidget*>(watched);
      return widget != nullptr && widget->window() == &window_ && widget != &window_.CancelButton();
    }
    case QEvent::Shortcut:
      return QApplication::activeModalWidget() == nullptr;
    default:
      return false;
  }
}

bool LongWork::MayClose() {
  if (isAsking_ || isClosing_) return false;
  isAsking_ = true;
  isClosing_ = AgreesToClose(window_, what_);
  isAsking_ = false;
  isGivenUp_ = isGivenUp_ || isClosing_;
  return false;
}

}  // namespace holdwise
