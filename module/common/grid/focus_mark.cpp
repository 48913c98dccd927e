// SPDX-License-Identifier: MIT
#include "common/grid/focus_mark.h"

#include <QFocusEvent>
#include <QPainter>

namespace holdwise {

FocusMark& FocusMark::On(QWidget& owner) {
  auto* mark = owner.findChild<FocusMark*>(QString(), Qt::FindDirectChildrenOnly);
  return mark != nullptr ? *mark : *new FocusMark(owner);
}

FocusMark::FocusMark(QWidget& owner) : QWidget(&owner) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setVisible(owner.hasFocus());
  setGeometry(owner.rect());
  owner.installEventFilter(this);
}

void FocusMark::SetColor(const QColor& color) {
  color_ = color;
  update();
}

bool FocusMark::eventFilter(QObject* watched, QEvent* event) {
  const auto type = event->type();
  if (type == QEvent::Resize) setGeometry(parentWidget()->rect());
  if (type == QEvent::FocusIn) {
    const auto reason = static_cast<QFocusEvent*>(event)->reason();
    const bool isByKey =
        reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
    if (isForKeysOnly_ && !isByKey) return QWidget::eventFilter(watched, event);
    raise();
    show();
  }
  if (type == QEvent::FocusOut) hide();
  return QWidget::eventFilter(watched, event);
}

void FocusMark::paintEvent(QPaintEvent* /*event*/) {
  constexpr double kRadius = 2;  // of the style's entries
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(color_);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
}

}  // namespace holdwise
