// SPDX-License-Identifier: MIT
#pragma once
#include <QColor>
#include <QWidget>

namespace holdwise {

/// A thin frame around a widget while that has the focus, above whatever the widget shows. Takes no mouse events.
class FocusMark : public QWidget {
  Q_OBJECT
 public:
  /// The mark of a widget, which owns it; made on the first call.
  static FocusMark& On(QWidget& owner);
  void SetColor(const QColor& color);

  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  explicit FocusMark(QWidget& owner);

  QColor color_;
};

}  // namespace holdwise
