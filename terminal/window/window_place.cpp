// SPDX-License-Identifier: MIT
#include "window/window_place.h"

#include <QScreen>
#include <QWidget>

namespace holdwise {
namespace {

constexpr QSize kSmallest{480, 320};

bool IsUsable(const QSize& size, const QSize& screen) {
  return size.boundedTo(screen) == size && size.expandedTo(kSmallest) == size;
}

}  // namespace

void RestorePlace(QWidget& window, const QByteArray& saved) {
  const QSize own = window.size();
  if (!window.restoreGeometry(saved)) return;
  const bool isWhole = window.isMaximized() || window.isFullScreen();
  // That it is on the screen has been seen to.
  if (IsUsable((isWhole ? window.normalGeometry() : window.geometry()).size(), window.screen()->availableVirtualSize()))
    return;
  window.setWindowState(Qt::WindowNoState);
  QRect place({}, own);
  place.moveCenter(window.screen()->availableGeometry().center());
  window.setGeometry(place);
}

}  // namespace holdwise
