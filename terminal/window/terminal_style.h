// SPDX-License-Identifier: MIT
#pragma once
#include <QProxyStyle>

namespace holdwise {

/// Qt's Fusion, without the one picture file that every menu bar would read while it is made: looking for who can read
/// it loads the plug-ins of all picture formats, a good part of the start; and with boxes to tick that are seen on a
/// dark window, too.
class TerminalStyle : public QProxyStyle {
 public:
  TerminalStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

  [[nodiscard]] QIcon standardIcon(StandardPixmap which, const QStyleOption* option,
                                   const QWidget* widget) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};

}  // namespace holdwise
