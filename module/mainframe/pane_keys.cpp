// SPDX-License-Identifier: MIT
#include "pane_keys.h"

#include <QApplication>
#include <QWidget>
#include <algorithm>

namespace holdwise {

void FocusNextPane(std::vector<QWidget*> panes, int step) {
  std::erase_if(panes, [](const QWidget* pane) { return !pane->isVisible() || !pane->isEnabled(); });
  if (panes.empty()) return;
  const auto has = [](const QWidget* pane) {
    const QWidget* focused = QApplication::focusWidget();
    return focused != nullptr && (focused == pane || pane->isAncestorOf(focused));
  };
  const auto count = static_cast<int>(panes.size());
  const auto now = static_cast<int>(std::find_if(panes.begin(), panes.end(), has) - panes.begin());
  const int next = now < count ? (now + step + count) % count : step > 0 ? 0 : count - 1;
  panes[static_cast<std::size_t>(next)]->setFocus(Qt::ShortcutFocusReason);
}

}  // namespace holdwise
