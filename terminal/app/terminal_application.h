#pragma once
#include <QApplication>

#include "holdwise/sdk/services.h"

namespace holdwise {

/// The application object. An exception that leaves an event handler (most view code does not guard itself) is written
/// to the debug log and the event loop goes on.
class TerminalApplication : public QApplication {
 public:
  using QApplication::QApplication;
  /// Log for escaped exceptions; null before and after the log's life.
  void SetLog(DebugServers* log) { log_ = log; }
  bool notify(QObject* receiver, QEvent* event) override;

 private:
  DebugServers* log_ = nullptr;
};

}  // namespace holdwise
