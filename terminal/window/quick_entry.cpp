// SPDX-License-Identifier: MIT
#include "window/quick_entry.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>

namespace holdwise {
namespace {

constexpr int kCodeDigits = 6;
constexpr int kDistanceFromEdge = 24;

bool TakesText(const QWidget* widget) {
  return widget != nullptr && (widget->testAttribute(Qt::WA_InputMethodEnabled) || widget->inherits("QComboBox"));
}

}  // namespace

QuickEntry::QuickEntry(QWidget* window, const CodeNumServices& codes)
    : QFrame(window), codes_(codes), code_(new QLineEdit(this)), name_(new QLabel(this)) {
  setFrameShape(QFrame::StyledPanel);
  setAutoFillBackground(true);
  code_->setMaxLength(kCodeDigits);
  code_->setPlaceholderText(QStringLiteral("股票代码"));
  code_->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,6}")), code_));
  name_->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("没有这只股票")) + 8);
  auto* layout = new QHBoxLayout(this);
  layout->addWidget(code_);
  layout->addWidget(name_);
  hide();
  connect(code_, &QLineEdit::textChanged, this, [this] { ShowName(); });
  connect(code_, &QLineEdit::returnPressed, this, [this] { Choose(); });
  code_->installEventFilter(this);
  qApp->installEventFilter(this);
}

void QuickEntry::SetCaptureEnabled(bool enabled) {
  isEnabled_ = enabled;
  if (!enabled) hide();
}

bool QuickEntry::eventFilter(QObject* watched, QEvent* event) {
  if (watched == code_ && event->type() == QEvent::FocusOut) hide();
  if (event->type() != QEvent::KeyPress) return false;
  auto* key = static_cast<QKeyEvent*>(event);
  if (watched == code_ && key->key() == Qt::Key_Escape) {
    hide();
    if (cameFrom_ != nullptr) cameFrom_->setFocus();
    return true;
  }
  const auto* target = qobject_cast<QWidget*>(watched);
  const bool isDigit = key->key() >= Qt::Key_0 && key->key() <= Qt::Key_9 && key->text().size() == 1;
  const bool isPlain = (key->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  if (!isEnabled_ || isVisible() || !isDigit || !isPlain || target == nullptr || target->window() != window() ||
      QApplication::activeModalWidget() != nullptr || TakesText(QApplication::focusWidget()))
    return false;
  Open(key->text());
  return true;
}

void QuickEntry::Open(const QString& firstDigit) {
  cameFrom_ = QApplication::focusWidget();
  code_->setText(firstDigit);
  adjustSize();
  const QWidget* window = parentWidget();
  move(window->width() - width() - kDistanceFromEdge, window->height() - height() - 2 * kDistanceFromEdge);
  show();
  raise();
  code_->setFocus();
  code_->setCursorPosition(static_cast<int>(firstDigit.size()));
}

void QuickEntry::ShowName() {
  if (code_->text().size() < kCodeDigits)
    name_->clear();
  else if (codes_.IsKnownSecurity(code_->text()))
    name_->setText(codes_.NameOf(code_->text()));
  else
    name_->setText(QStringLiteral("没有这只股票"));
}

void QuickEntry::Choose() {
  const QString code = code_->text();
  if (!codes_.IsKnownSecurity(code)) return ShowName();
  hide();
  if (OnChosen) OnChosen(code);
}

}  // namespace holdwise
