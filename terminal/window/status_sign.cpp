// SPDX-License-Identifier: MIT
#include "status_sign.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionToolButton>
#include <QStylePainter>

namespace holdwise {

StatusSign::StatusSign(const QString& name, QWidget* parent) : QToolButton(parent) {
  setObjectName(name);
  setAutoRaise(true);
  SetAsked(true);
}

void StatusSign::SetWords(const QString& words) {
  QString shown = words;
  setText(shown.replace(QLatin1Char('&'), QStringLiteral("&&")));
  setAccessibleName(words);
}

QString StatusSign::Words() const {
  return accessibleName();
}

void StatusSign::SetStory(const QString& story) {
  story_ = story;
  QString shown = story;
  if (isAsked_) shown += (shown.isEmpty() ? QString() : QStringLiteral("\n")) + QStringLiteral("单击打开“状态”");
  setAccessibleDescription(shown);
  setToolTip(shown.toHtmlEscaped().replace(QLatin1Char('\n'), QStringLiteral("<br>")));
}

void StatusSign::SetAsked(bool isAsked) {
  isAsked_ = isAsked;
  setFocusPolicy(isAsked ? Qt::TabFocus : Qt::NoFocus);
  setAttribute(Qt::WA_Hover, isAsked);
  isAsked ? setCursor(Qt::PointingHandCursor) : unsetCursor();
  SetStory(story_);
}

void StatusSign::SetAmber(bool isAmber, const ThemeServices& theme) {
  QPalette colors = parentWidget()->palette();
  if (isAmber) {
    const QColor amber = theme.Colors().ColorOf(QStringLiteral("Qm_KlineYellowColor"));
    const QColor ink = theme.Colors().ColorOf(QStringLiteral("Qm_BGCorlor"));
    for (const auto role : {QPalette::Window, QPalette::Button}) colors.setColor(role, amber);
    for (const auto role : {QPalette::WindowText, QPalette::ButtonText}) colors.setColor(role, ink);
  }
  setAutoFillBackground(isAmber);
  setPalette(colors);
}

void StatusSign::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (isEnter && isAsked_) return click();
  QToolButton::keyPressEvent(event);
}

void StatusSign::mousePressEvent(QMouseEvent* event) {
  isAsked_ ? QToolButton::mousePressEvent(event) : event->ignore();
}

void StatusSign::paintEvent(QPaintEvent* /*event*/) {
  constexpr int kAir = 6;
  QStyleOptionToolButton option;
  initStyleOption(&option);
  if (!isAsked_) option.state &= ~(QStyle::State_Raised | QStyle::State_MouseOver);
  option.text = fontMetrics().elidedText(option.text, Qt::ElideRight, width() - kAir, Qt::TextShowMnemonic);
  QStylePainter(this).drawComplexControl(QStyle::CC_ToolButton, option);
}

}  // namespace holdwise
