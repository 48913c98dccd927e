// SPDX-License-Identifier: MIT
#include "window/ongoing_work.h"

#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <utility>

#include "window/main_window.h"
#include "window/message_boxes.h"

namespace holdwise {

OngoingWork::OngoingWork(MainWindow& window, const QString& what)
    : window_(window), what_(what), escape_(QKeySequence(Qt::Key_Escape), &window) {
  window_.SetOngoing(what_ + QStringLiteral("…"),
                     QStringLiteral("在它结束以前，菜单里只有“退出”可用；“取消”或 Esc 键停止它。"));
  window_.MayClose = [this] { return MayClose(); };
  connect(&window_.CancelButton(), &QPushButton::clicked, this, [this] { GiveUp(); });
  connect(&escape_, &QShortcut::activated, this, [this] { GiveUp(); });
}

OngoingWork::~OngoingWork() {
  window_.MayClose = nullptr;
  window_.SetOngoing({}, {});
  if (isClosing_) QTimer::singleShot(0, &window_, &QWidget::close);
}

void OngoingWork::GiveUp() {
  if (std::exchange(isGivenUp_, true)) return;
  if (OnGivenUp) OnGivenUp();
}

bool OngoingWork::MayClose() {
  if (isAsking_ || isClosing_) return false;
  isAsking_ = true;
  const QPointer<OngoingWork> here(this);
  const bool isAgreed = AgreesToClose(window_, what_);
  if (here.isNull()) return isAgreed;  // it has come to its end meanwhile
  isAsking_ = false;
  isClosing_ = isAgreed;
  if (isClosing_) GiveUp();
  return false;
}

}  // namespace holdwise
