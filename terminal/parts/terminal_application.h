// SPDX-License-Identifier: MIT
#pragma once
#include <QApplication>

#include "holdwise/sdk/services.h"

namespace holdwise {

/// The application object. An exception that leaves an event handler (most view code does not guard itself) is written
/// to the debug log and the event loop goes on.
class TerminalApplication : public QApplication {
 public:
  using QApplication::QApplication;
  /// From now on what Qt remarks goes to the debug log instead of standard error, once there is one; what it cannot go
  /// on without goes to both. Call before the first Qt object is made.
  static void CatchQtMessages();
  /// Log for escaped exceptions and Qt's messages; null before and after the log's life.
  void SetLog(DebugServers* log);
  bool notify(QObject* receiver, QEvent* event) override;

 private:
  DebugServers* log_ = nullptr;
};

}  // namespace holdwise
