// SPDX-License-Identifier: MIT
#include "window/terminal_style.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <QStyleOption>
#include <QWidget>

namespace holdwise {
namespace {

constexpr float kOutlineShare = 0.6F;

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

void TerminalStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                  const QWidget* widget) const {
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  const bool isPopup = widget != nullptr && widget->windowType() == Qt::Popup;
  if (isPopup && (element == PE_PanelMenu || element == PE_FrameMenu || element == PE_Frame)) {
    // Its outline of what pops up is darker than the window, too.
    QColor outline = option->palette.color(QPalette::PlaceholderText);
    outline.setAlphaF(kOutlineShare);
    painter->setPen(outline);
    painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
    return;
  }
  if (element != PE_IndicatorCheckBox && element != PE_IndicatorRadioButton) return;
  // Fusion draws their outline in the window's colour made darker, which nobody sees on a dark one.
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(option->palette.color(QPalette::PlaceholderText));
  painter->setBrush(Qt::NoBrush);
  const QRectF outline = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
  if (element == PE_IndicatorCheckBox)
    painter->drawRoundedRect(outline, 2, 2);
  else
    painter->drawEllipse(outline);
  painter->restore();
}

}  // namespace holdwise
