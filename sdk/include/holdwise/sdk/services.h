// SPDX-License-Identifier: MIT
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
  /// Puts a frame into the work area, filling it, in the place of the one before, which is left without parent; the
  /// host does not own it and lets go of one that is destroyed or taken away. Null leaves the area empty.
  virtual void ShowFrame(QWidget* frame) = 0;
  /// Lets the host re-lay and repaint a part of the work area; null is ignored.
  virtual void RefreshWorkArea(QWidget* part) = 0;
};

/// The host's debug log; callable from any thread.
class DebugServers {
 public:
  virtual ~DebugServers() = default;
  /// Adds a line with its time. Throws nothing: what cannot be written is not a reason to stop.
  virtual void WriteLog(const QString& text) = 0;
  /// What the user has to know at once: something was not done because the disk is full, the database is locked or the
  /// like. Not an addition to the log; a host shows it without asking for an answer, or ignores it. Throws nothing.
  virtual void TellFailure(const QString& /*text*/) {}
  /// What was done and how to undo it. As TellFailure in all else.
  virtual void TellOutcome(const QString& /*text*/) {}
  /// What goes on and how the user can end it, shown until the next call; empty: it has ended. As TellFailure in all
  /// else.
  virtual void TellOngoing(const QString& /*text*/) {}
};

/// The host's keyboard capture for its own quick entry. User-interface thread only.
class KeyCodeServices {
 public:
  virtual ~KeyCodeServices() = default;
  /// False while the plug-in's own entry has the keys; true gives them back. Does not count: the last call holds. On at
  /// the start.
  virtual void SetCaptureEnabled(bool enabled) = 0;
};

/// The host's message box; user-interface thread only.
class MessageBoxService {
 public:
  /// Values of `buttons`.
  static constexpr int kOkButton = 0, kOkAndCancel = 1;
  /// Values of `style`: of a question Return is Cancel.
  static constexpr int kQuestion = 32, kNotice = 128;
  /// Answers.
  static constexpr int kOk = 1, kCancel = 2;

  virtual ~MessageBoxService() = default;
  /// Shows plain text until the user has answered, in a nested event loop: whatever the caller stands on may be gone
  /// afterwards. Answers kCancel for Cancel and for closing. Without a user (a batch) the text is printed and answered:
  /// Cancel, or else OK.
  virtual int Vex_MessageBox(const QString& text, const QString& caption, int buttons, int style) = 0;
};

/// Wall clock, replaceable in tests; any thread.
class ClockService {
 public:
  virtual ~ClockService() = default;
  /// This moment; always valid.
  [[nodiscard]] virtual QDateTime Now() const = 0;
};

/// Title frame of the host: a caption bar over a client panel. It is a QWidget without parent when made; the caller
/// owns it. The splitter calls let it draw and follow a splitter of its content. User-interface thread only.
class TFrmQMTitle : public QWidget {
 public:
  using QWidget::QWidget;
  /// The text of the caption bar, plain; may be empty.
  virtual void SetCaptionText(const QString& text) = 0;
  /// 0 = caption above the client panel (the only layout of this host).
  virtual void SetLayoutKind(int kind) = 0;
  /// The panel below the caption, for the caller's content; owned by the frame, never null.
  [[nodiscard]] virtual QWidget* ClientPanel() = 0;
  /// Re-reads the theme.
  virtual void RefreshTheme() = 0;
  /// The user has dragged a handle of the caller's splitter (not null): keeps both of two panes in sight.
  virtual void SplitterMoved(QSplitter* splitter) = 0;
  /// Draws the handle that is being painted; called inside its paint event only, with its splitter (not null).
  virtual void SplitterPaint(QSplitter* splitter) = 0;
};

}  // namespace holdwise
