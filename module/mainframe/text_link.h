// SPDX-License-Identifier: MIT
#pragma once
#include <QLabel>
#include <functional>

namespace holdwise {

/// A text that does something when it is clicked, or when Enter or Space is pressed while it has the focus; it is
/// underlined then. Over it the mouse is a hand. User-interface thread only.
class TextLink : public QLabel {
 public:
  explicit TextLink(const QString& text, QWidget* parent = nullptr);

  /// Runs inside the event; must not throw. May delete the link.
  std::function<void()> OnClick;

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void Click() const;
  void SetUnderlined(bool underlined);
};

}  // namespace holdwise
