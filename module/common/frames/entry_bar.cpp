// SPDX-License-Identifier: MIT
#include "common/frames/entry_bar.h"

#include <QApplication>
#include <QComboBox>
#include <QHBoxLayout>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <utility>

#include "common/frames/frame_parts.h"
#include "common/grid/focus_mark.h"
#include "common/host/event_guard.h"
#include "common/host/host_access.h"
#include "common/host/theme_colors.h"

namespace holdwise {
namespace {

constexpr int kMargin = 14;
constexpr int kGap = 8;
constexpr int kControlHeight = 24;
constexpr int kEntryMargin = 3;  // between an entry's frame and its text
constexpr float kQuietText = 0.6F;
constexpr int kFrameShade = 140;  // percent by which the style darkens it

}  // namespace

EntryField::EntryField(QString unit, const QString& name, QWidget* parent) : QLineEdit(parent), unit_(std::move(unit)) {
  setObjectName(name);
  setFont(DesignFont());
}

void EntryField::keyPressEvent(QKeyEvent* event) {
  bool isDone = false;
  if (OnKeyDown) GuardEvent(unit_, objectName(), [&] { isDone = OnKeyDown(event->key(), event->modifiers()); });
  if (isDone) return event->accept();
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const bool isBackspace = event->key() == Qt::Key_Backspace;
  QChar character = event->text().isEmpty() ? QChar() : event->text().front();
  if (isEnter) character = u'\r';
  if (isBackspace) character = u'\b';
  // With Ctrl or Alt a key is a command, with both it types what stands on its third level.
  const auto held = event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  const bool isCommand = held != Qt::NoModifier && held != (Qt::ControlModifier | Qt::AltModifier);
  const bool types = isEnter || isBackspace || (!isCommand && !character.isNull() && character.isPrint());
  const bool isTaken = !types || Takes(character);
  if (isTaken && !isEnter) return QLineEdit::keyPressEvent(event);
  event->accept();
}

bool EntryField::Takes(QChar character) const {
  bool isTaken = true;
  if (OnKeyPress) GuardEvent(unit_, objectName(), [&] { isTaken = OnKeyPress(character); });
  return isTaken;
}

void EntryField::inputMethodEvent(QInputMethodEvent* event) {
  const QString typed = event->commitString();
  if (!OnKeyPress || typed.isEmpty()) return QLineEdit::inputMethodEvent(event);
  event->setCommitString({}, event->replacementStart(), event->replacementLength());
  QLineEdit::inputMethodEvent(event);
  for (qsizetype at = 0; at < typed.size();) {
    const bool isPair = typed[at].isHighSurrogate() && at + 1 < typed.size() && typed[at + 1].isLowSurrogate();
    const QString character = typed.mid(at, isPair ? 2 : 1);
    if (Takes(character.front())) insert(character);
    at += character.size();
  }
}

void EntryField::KeepKeyboard() {
  if (qobject_cast<EntryField*>(QApplication::focusWidget()) != nullptr)
    ModuleHost().KeyCodes().SetCaptureEnabled(false);
}

void EntryField::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  ModuleHost().KeyCodes().SetCaptureEnabled(false);
}

void EntryField::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  ModuleHost().KeyCodes().SetCaptureEnabled(true);
}

EntryBar::EntryBar(QString unit, QWidget* parent)
    : FramePart(parent), unit_(std::move(unit)), row_(new QHBoxLayout(this)) {
  setFixedHeight(kHeight);
  row_->setContentsMargins(kMargin, 0, kMargin, 0);
  row_->setSpacing(kGap);
  row_->addStretch();
}

void EntryBar::Add(QWidget& control) {
  row_->insertWidget(row_->count() - 1, &control);
  controls_.push_back(&control);
}

QLabel& EntryBar::AddLabel(const QString& text) {
  auto* label = new QLabel(text, this);
  label->setFont(DesignFont());
  Add(*label);
  return *label;
}

EntryField& EntryBar::AddEntry(const QString& name, const QString& text, int width) {
  auto* entry = new EntryField(unit_, name, this);
  entry->setText(text);
  entry->setFixedSize(width, kControlHeight);
  entry->setTextMargins(kEntryMargin, 0, kEntryMargin, 0);
  // Who hears the page has the label before it as its name.
  if (auto* label = controls_.empty() ? nullptr : qobject_cast<QLabel*>(controls_.back())) label->setBuddy(entry);
  Add(*entry);
  return *entry;
}

QComboBox& EntryBar::AddChoice(const QString& name, const QStringList& items, std::function<void(int place)> onChange) {
  auto* choice = new QComboBox(this);
  choice->setObjectName(name);
  choice->setFont(DesignFont());
  choice->addItems(items);
  choice->setFixedHeight(kControlHeight);
  connect(choice, &QComboBox::activated, this, [this, name, onChange = std::move(onChange)](int place) {
    GuardEvent(unit_, name, [&] { onChange(place); });
  });
  Add(*choice);
  return *choice;
}

QPushButton& EntryBar::AddButton(const QString& name, const QString& text, std::function<void()> onClick) {
  auto* button = new QPushButton(text, this);
  button->setObjectName(name);
  button->setFont(DesignFont());
  button->setFixedHeight(kControlHeight);
  connect(button, &QPushButton::clicked, this,
          [this, name, onClick = std::move(onClick)] { GuardEvent(unit_, name, onClick); });
  Add(*button);
  return *button;
}

void EntryBar::ApplyTheme() {
  SetPanelColor(*this, ThemeBackground());
  for (QWidget* control : controls_) ApplyControlTheme(*control);
}

void ApplyControlTheme(QWidget& control) {
  const IColorSet2& colors = ModuleHost().ColorTheme().Colors();
  const QColor text = colors.ColorOf(theme::kTitleFont);
  QPalette palette = control.palette();
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) palette.setColor(role, text);
  QColor quiet = text;
  quiet.setAlphaF(kQuietText);
  palette.setColor(QPalette::PlaceholderText, quiet);
  palette.setColor(QPalette::Base, colors.ColorOf(theme::kHighLight1));
  // The style takes an entry's frame from the window's colour, which a dark theme leaves without contrast.
  const bool isEntry = qobject_cast<QLineEdit*>(&control) != nullptr;
  palette.setColor(QPalette::Window,
                   isEntry ? colors.ColorOf(theme::kEditFrame).lighter(kFrameShade) : ThemeBackground());
  palette.setColor(QPalette::Button, colors.ColorOf(theme::kHighLight2));
  palette.setColor(QPalette::Highlight, colors.ColorOf(theme::kRowSelect));
  palette.setColor(QPalette::HighlightedText, colors.ColorOf(theme::kSelectedText));
  control.setPalette(palette);
  // The style's own mark of the focus is as dark as the selection it takes its colour from.
  if (isEntry || qobject_cast<QComboBox*>(&control) != nullptr) {
    FocusMark::On(control).SetColor(colors.ColorOf(theme::kClickText));
  }
}

}  // namespace holdwise
