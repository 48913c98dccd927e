// SPDX-License-Identifier: MIT
#pragma once
#include <QLineEdit>
#include <functional>
#include <vector>

#include "common/frames/frame_part.h"

class QComboBox;
class QHBoxLayout;
class QLabel;
class QPushButton;

namespace holdwise {

/// Gives a label, entry, choice or button the colours of the host's theme.
void ApplyControlTheme(QWidget& control);

/// A line entry that filters its keys and, while it has the focus, has the host leave the keyboard to it. What its
/// hooks throw goes to the debug log.
class EntryField : public QLineEdit {
  Q_OBJECT
 public:
  EntryField(QString unit, const QString& name, QWidget* parent);

  /// A key before it takes effect; false drops it. Every key comes here that types a character, deletes one to the
  /// left ('\b'), or is Enter ('\r'); keys that only move or select are never dropped. What an input method has put
  /// together comes here character by character; of a pair of surrogates the first.
  std::function<bool(QChar character)> OnKeyPress;
  /// Any key, before that; true when it has been dealt with.
  std::function<bool(int key, Qt::KeyboardModifiers modifiers)> OnKeyDown;

  /// Has the host leave the keyboard to the entry with the focus, if one has it: after somebody else has given it back.
  static void KeepKeyboard();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  [[nodiscard]] bool Takes(QChar character) const;

  QString unit_;
};

/// A row of labels, entries, drop-downs and buttons in the theme's colours. While one of its entries has the focus the
/// host's keyboard capture is off. User-interface thread only.
class EntryBar : public FramePart {
 public:
  static constexpr int kHeight = 40;  ///< pixels

  /// `unit` is named in the debug log.
  EntryBar(QString unit, QWidget* parent);

  /// Each adds a control at the right end of the row; the bar owns it. The names are object names.
  QLabel& AddLabel(const QString& text);
  EntryField& AddEntry(const QString& name, const QString& text, int width);
  /// `onChange` gets the place of the chosen item, also when the user chooses it again.
  QComboBox& AddChoice(const QString& name, const QStringList& items, std::function<void(int place)> onChange);
  QPushButton& AddButton(const QString& name, const QString& text, std::function<void()> onClick);

  void ApplyTheme() override;

 private:
  void Add(QWidget& control);

  QString unit_;
  QHBoxLayout* row_;
  std::vector<QWidget*> controls_;
};

}  // namespace holdwise
