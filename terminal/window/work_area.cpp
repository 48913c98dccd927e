// SPDX-License-Identifier: MIT
#include "window/work_area.h"

#include <QEvent>
#include <QLayout>
#include <QTimer>
#include <utility>

namespace holdwise {

WorkArea::~WorkArea() {
  // The frame belongs to its address, which may outlive the window.
  if (Frame() != nullptr) frame_->setParent(nullptr);
}

void WorkArea::ShowFrame(QWidget* frame) {
  if (QWidget* old = Frame(); old != nullptr && old != frame) old->setParent(nullptr);
  frame_ = frame;
  if (frame == nullptr) return;
  if (frame->parentWidget() != this) frame->setParent(this);
  frame->setGeometry(rect());
  frame->installEventFilter(this);
  frame->show();
  frame->raise();
}

void WorkArea::RefreshWorkArea(QWidget* part) {
  if (part == nullptr) return;
  if (QLayout* layout = part->layout()) layout->activate();
  part->update();
}

QWidget* WorkArea::Frame() const {
  return frame_ != nullptr && frame_->parentWidget() == this ? frame_.data() : nullptr;
}

void WorkArea::resizeEvent(QResizeEvent* /*event*/) {
  if (Frame() != nullptr) frame_->setGeometry(rect());
}

bool WorkArea::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Paint && watched == frame_ && OnFirstPaint)
    QTimer::singleShot(0, this, std::exchange(OnFirstPaint, nullptr));
  return QWidget::eventFilter(watched, event);
}

}  // namespace holdwise
