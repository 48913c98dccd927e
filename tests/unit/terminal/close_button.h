// SPDX-License-Identifier: MIT
#pragma once
#include <QtTest/qtestspontaneevent.h>

#include <QApplication>
#include <QCloseEvent>
#include <QWidget>

namespace holdwise {

/// What the button of a window's title brings: unlike the program's own QWidget::close, an event from outside.
inline void ClickCloseOf(QWidget& window) {
  QCloseEvent event;
  QSpontaneKeyEvent::setSpontaneous(&event);
  qApp->notify(&window, &event);
  if (event.isAccepted()) window.hide();
}

}  // namespace holdwise
