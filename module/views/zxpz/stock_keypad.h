// SPDX-License-Identifier: MIT
#pragma once
#include <QFrame>
#include <QLabel>
#include <QString>
#include <functional>
#include <vector>

namespace holdwise {

/// A key of the keypad: sunken while it is held down; never takes the focus.
class KeypadKey : public QLabel {
  Q_OBJECT
 public:
  KeypadKey(const QString& caption, QWidget* parent);
  /// The left button was pressed on the key and released over it.
  std::function<void()> OnClick;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
};

/// A keypad for stock codes: ten digits, "000", "600", a key that takes back and a blank one that clears.
/// User-interface thread only.
class StockKeypad : public QFrame {
  Q_OBJECT
 public:
  explicit StockKeypad(QWidget* parent);

  /// The captions, as the keys show them.
  static inline const QString kBackCaption = QStringLiteral(" ← ");
  static inline const QString kClearCaption = {};

  /// A key was clicked, by its caption.
  std::function<void(const QString& caption)> OnKey;
  /// Re-reads the theme.
  void ApplyTheme();

 private:
  std::vector<KeypadKey*> keys_;
};

}  // namespace holdwise
