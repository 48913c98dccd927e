// SPDX-License-Identifier: MIT
#pragma once
#include <QPointer>
#include <QWidget>

#include "holdwise/sdk/services.h"

namespace holdwise {

/// Message boxes of the host with Chinese buttons.
class MessageBoxes : public MessageBoxService {
 public:
  void SetWindow(QWidget* window) { window_ = window; }
  int Vex_MessageBox(const QString& text, const QString& caption, int buttons, int style) override;

 private:
  QPointer<QWidget> window_;
};

/// The title of the dialog that the user has to answer or close before anything else; empty when there is none.
[[nodiscard]] QString AwaitedAnswer();

/// For runs without a user: notices go to standard error, questions are answered with Cancel.
class PrintedMessages : public MessageBoxService {
 public:
  int Vex_MessageBox(const QString& text, const QString& caption, int buttons, int style) override;
};

}  // namespace holdwise
