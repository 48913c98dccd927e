// SPDX-License-Identifier: MIT
#include "window/ongoing_work.h"

#include "window/main_window.h"

namespace holdwise {

OngoingWork::OngoingWork(MainWindow& window, const QString& what)
    : WindowWork(window, what), escape_(QKeySequence(Qt::Key_Escape), &window) {
  window.SetOngoing(what + QStringLiteral("…"),
                    QStringLiteral("在它结束以前，菜单里只有“退出”可用；“取消”或 Esc 键停止它。"));
  connect(&escape_, &QShortcut::activated, this, [this] { GiveUp(); });
}

OngoingWork::~OngoingWork() {
  Window().SetOngoing({}, {});
}

}  // namespace holdwise
