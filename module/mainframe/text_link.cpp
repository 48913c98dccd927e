// SPDX-License-Identifier: MIT
#include "text_link.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include "common/host/font.h"

namespace holdwise {

TextLink::TextLink(const QString& text, QWidget* parent) : QLabel(text, parent) {
  setFont(DesignFont());
  setCursor(Qt::PointingHandCursor);
  setFocusPolicy(Qt::TabFocus);
}

void TextLink::Click() const {
  if (const auto click = OnClick) click();
}

void TextLink::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() == Qt::LeftButton && rect().contains(event->pos())) Click();
}

void TextLink::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      event->accept();
      return Click();
    default:
      QLabel::keyPressEvent(event);
  }
}

void TextLink::focusInEvent(QFocusEvent* event) {
  QLabel::focusInEvent(event);
  SetUnderlined(true);
}

void TextLink::focusOutEvent(QFocusEvent* event) {
  QLabel::focusOutEvent(event);
  SetUnderlined(false);
}

void TextLink::SetUnderlined(bool underlined) {
  QFont font = this->font();
  font.setUnderline(underlined);
  setFont(font);
}

}  // namespace holdwise
