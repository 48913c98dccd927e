// SPDX-License-Identifier: MIT
#pragma once
#include <QFrame>
#include <QPointer>
#include <functional>

#include "holdwise/sdk/codenum.h"
#include "holdwise/sdk/services.h"

class QLabel;
class QLineEdit;

namespace holdwise {

/// Quick entry of a security: digits typed anywhere in the window, outside an edit box, open a small box in which the
/// code is completed; Enter chooses it, Escape closes and gives the keyboard back to where it was. While a frame has
/// switched the capture off, keys go to the frame.
class QuickEntry : public QFrame, public KeyCodeServices {
 public:
  /// @param window the main window, whose keys are captured; `codes` must outlive the entry
  QuickEntry(QWidget* window, const CodeNumServices& codes);

  void SetCaptureEnabled(bool enabled) override;
  /// A known security has been chosen; six digits.
  std::function<void(const QString& code)> OnChosen;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Open(const QString& firstDigit);
  void ShowName();
  void Choose();

  const CodeNumServices& codes_;
  QLineEdit* code_;
  QLabel* name_;
  QPointer<QWidget> cameFrom_;
  bool isEnabled_ = true;
};

}  // namespace holdwise
