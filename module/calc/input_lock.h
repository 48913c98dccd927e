// SPDX-License-Identifier: MIT
#pragma once
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <QWindow>
#include <functional>
#include <vector>

namespace holdwise {

/// Keeps mouse and keyboard from all windows that are shown when it is made, but that of one dialog: as modality does,
/// under which, however, nobody would hear of a window that the user wants to close meanwhile. User-interface thread.
class InputLock : public QObject {
 public:
  /// The dialog is shown and outlives the lock.
  explicit InputLock(QWidget& dialog);

  /// The user wants to close one of the others, which stays for the present. Called from the event loop.
  std::function<void(QPointer<QWindow> window)> OnClose;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] QWindow* LockedWindowOf(QObject* watched) const;

  QWidget& dialog_;
  std::vector<QPointer<QWindow>> locked_;
};

}  // namespace holdwise
