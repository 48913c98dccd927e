#pragma once
#include <QDateTime>
#include <QString>
#include <QWidget>

class QSplitter;

namespace holdwise {

/// Shows frames in the host's work area. User-interface thread only.
class PlugSystemInfo {
 public:
  virtual ~PlugSystemInfo() = default;
  /// Puts a frame into the work area, filling it; the host does not own it.
  virtual void ShowFrame(QWidget* frame) = 0;
  /// Lets the host re-lay and repaint a part of the work area.
  virtual void RefreshWorkArea(QWidget* part) = 0;
};

/// The host's debug log; callable from any thread.
class DebugServers {
 public:
  virtual ~DebugServers() = default;
  virtual void WriteLog(const QString& text) = 0;
};

/// The host's keyboard capture for its own quick entry. User-interface thread only.
class KeyCodeServices {
 public:
  virtual ~KeyCodeServices() = default;
  virtual void SetCaptureEnabled(bool enabled) = 0;
};

/// The host's message box. `buttons`: 0 = OK, 1 = OK and Cancel. `style`: 32 = question, 128 = notice.
/// Answers 1 for OK, 2 for Cancel or closing. Runs a nested event loop; user-interface thread only.
class MessageBoxService {
 public:
  virtual ~MessageBoxService() = default;
  virtual int Vex_MessageBox(const QString& text, const QString& caption, int buttons, int style) = 0;
};

/// Wall clock, replaceable in tests; any thread.
class ClockService {
 public:
  virtual ~ClockService() = default;
  [[nodiscard]] virtual QDateTime Now() const = 0;
};

/// Title frame of the host: a caption bar over a client panel. It is a QWidget without parent when made; the caller
/// owns it. The splitter calls let it draw and follow a splitter of its content.
class TFrmQMTitle : public QWidget {
 public:
  using QWidget::QWidget;
  virtual void SetCaptionText(const QString& text) = 0;
  /// 0 = caption above the client panel (the only layout of this host).
  virtual void SetLayoutKind(int kind) = 0;
  [[nodiscard]] virtual QWidget* ClientPanel() = 0;
  /// Re-reads the theme.
  virtual void RefreshTheme() = 0;
  virtual void SplitterMoved(QSplitter* splitter) = 0;
  virtual void SplitterPaint(QSplitter* splitter) = 0;
};

}  // namespace holdwise
