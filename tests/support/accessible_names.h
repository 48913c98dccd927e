// SPDX-License-Identifier: MIT
#pragma once
#include <QAccessible>
#include <QStringList>
#include <QWidget>

namespace holdwise::test {

/// Is it something a person works with?
inline bool IsControl(QAccessible::Role role) {
  switch (role) {
    case QAccessible::PushButton:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::Table:
    case QAccessible::Tree:
    case QAccessible::List:
    case QAccessible::Slider:
    case QAccessible::SpinBox:
    case QAccessible::ProgressBar:
    case QAccessible::PageTabList:
    case QAccessible::PageTab:
    case QAccessible::MenuItem:
    case QAccessible::ButtonMenu:
      return true;
    default:
      return false;
  }
}

inline void AddUnnamed(QAccessibleInterface* one, QStringList& unnamed, int& named) {
  if (one == nullptr || !one->isValid() || one->state().invisible) return;
  const QAccessible::Role role = one->role();
  const QObject* object = one->object();
  // Widgets without a role of their own that take the keys are drawn by hand.
  const auto* widget = qobject_cast<const QWidget*>(object);
  const bool isDrawn = role == QAccessible::Client && widget != nullptr && widget->focusPolicy() != Qt::NoFocus;
  if (IsControl(role) || isDrawn) {
    if (one->text(QAccessible::Name).trimmed().isEmpty()) {
      unnamed.append(
          QStringLiteral("%1 “%2” role %3")
              .arg(QString::fromLatin1(object == nullptr ? "(no object)" : object->metaObject()->className()),
                   object == nullptr ? QString() : object->objectName())
              .arg(static_cast<int>(role)));
    } else {
      ++named;
    }
  }
  // The cells of a table are read out as they stand.
  if (role == QAccessible::Table || role == QAccessible::Tree || role == QAccessible::List) return;
  for (int index = 0; index < one->childCount(); ++index) AddUnnamed(one->child(index), unnamed, named);
}

/// The visible controls below a shown widget that a screen reader has no name for, a line each; `named` counts those
/// that it has one for, so that a test sees that there was something to look at.
inline QStringList UnnamedControls(QWidget& root, int& named) {
  QStringList unnamed;
  AddUnnamed(QAccessible::queryAccessibleInterface(&root), unnamed, named);
  return unnamed;
}

}  // namespace holdwise::test
