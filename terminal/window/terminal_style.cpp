// SPDX-License-Identifier: MIT
#include "window/terminal_style.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>

namespace holdwise {
namespace {

/// The button at the end of a menu bar that has no room for all its menus: a double arrow.
QIcon ExtensionIcon(const QPalette& palette) {
  constexpr int kSize = 16;
  QPixmap picture(kSize, kSize);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(palette.color(QPalette::WindowText), 1.5));
  for (const int left : {4, 8}) painter.drawPolyline(QPolygon({{left, 4}, {left + 4, 8}, {left, 12}}));
  return {picture};
}

}  // namespace

QIcon TerminalStyle::standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const {
  if (which == SP_ToolBarHorizontalExtensionButton) return ExtensionIcon(QApplication::palette());
  return QProxyStyle::standardIcon(which, option, widget);
}

}  // namespace holdwise
