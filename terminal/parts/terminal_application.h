// SPDX-License-Identifier: MIT
#pragma once
#include <QApplication>
#include <QLibraryInfo>

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
  /// Gives the texts that Qt itself shows (the menus of entries, the buttons of dialogs) in Chinese, from the file of
  /// Debian's qt6-translations-l10n in that folder. Without the file they stay English, and a message of Qt's says so.
  /// An application object must be there.
  static void Translate(const QString& folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath));
  /// Log for escaped exceptions and Qt's messages; null before and after the log's life.
  void SetLog(DebugServers* log);
  bool notify(QObject* receiver, QEvent* event) override;

 private:
  DebugServers* log_ = nullptr;
};

}  // namespace holdwise
