// SPDX-License-Identifier: MIT
#pragma once
#include <QDialog>
#include <functional>

namespace holdwise {

/// Something the user should not miss, above the window, which can still be used beside it. User-interface thread.
class UrgentNotice : public QDialog {
 public:
  /// @param action what its button does, which leaves it open; `actionText` stands on the button. Empty: no button
  UrgentNotice(QWidget* window, const QString& title, const QString& text, const QString& actionText,
               std::function<void()> action);
};

}  // namespace holdwise
