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
  /// For a widget that shows by itself where the keys act: no frame when a click has brought the focus.
  void SetForKeysOnly(bool isOn) { isForKeysOnly_ = isOn; }

  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  explicit FocusMark(QWidget& owner);

  QColor color_;
  bool isForKeysOnly_ = false;
};

}  // namespace holdwise
