#include "common/frames/view_frame.h"

#include <QCoreApplication>

#include "common/host/event_guard.h"

namespace holdwise {

void SendFrameMessage(QWidget& frame, FrameMessage message) {
  FrameEvent event(message);
  QCoreApplication::sendEvent(&frame, &event);
  if (event.failure) std::rethrow_exception(event.failure);
}

bool TViewFrame::SelectPortfolio(const QString& /*portfolioId*/) {
  return false;
}

bool TViewFrame::event(QEvent* event) {
  auto* message = dynamic_cast<FrameEvent*>(event);
  if (message == nullptr) return QWidget::event(event);
  try {
    switch (static_cast<FrameMessage>(event->type())) {
      case FrameMessage::Init:
        DoInit_();
        return true;
      case FrameMessage::ChangeSkin:
        msg_changeskin();
        return true;
      case FrameMessage::ReflashNowPrice:
        ReflashNowPrice();
        return true;
      case FrameMessage::Hidden:
        return false;
    }
  } catch (...) {
    message->failure = std::current_exception();
  }
  return true;
}

void TViewFrame::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  GuardEvent(UnitName(), QStringLiteral("FrameResize"), [this] { FrameResize(); });
}

}  // namespace holdwise
