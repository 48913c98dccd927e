// SPDX-License-Identifier: MIT
#include "window/window_work.h"

#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <utility>

#include "window/main_window.h"
#include "window/message_boxes.h"

namespace holdwise {
namespace {

bool Agrees(QWidget& window, const QString& what) {
  using Box = MessageBoxService;
  MessageBoxes boxes;
  boxes.SetWindow(&window);
  return boxes.Vex_MessageBox(QStringLiteral("%1。放弃并关闭吗？").arg(what), QStringLiteral("关闭"), Box::kOkAndCancel,
                              Box::kQuestion) == Box::kOk;
}

}  // namespace

WindowWork::WindowWork(MainWindow& window, const QString& what) : window_(window), what_(what) {
  window_.MayClose = [this](bool isAgreed) { return MayClose(isAgreed); };
  connect(&window_.CancelButton(), &QPushButton::clicked, this, [this] { GiveUp(); });
}

WindowWork::~WindowWork() {
  window_.MayClose = nullptr;
  if (isClosing_) QTimer::singleShot(0, &window_, &QWidget::close);
}

void WindowWork::GiveUp() {
  if (std::exchange(isGivenUp_, true)) return;
  if (OnGivenUp) OnGivenUp();
}

bool WindowWork::MayClose(bool isAgreed) {
  if (isAsking_ || isClosing_) return false;
  if (!isAgreed) {
    isAsking_ = true;
    const QPointer<WindowWork> here(this);
    isAgreed = Agrees(window_, what_);
    if (here.isNull()) return isAgreed;  // it has come to its end meanwhile
    isAsking_ = false;
  }
  isClosing_ = isAgreed;
  if (isClosing_) GiveUp();
  return false;
}

}  // namespace holdwise
