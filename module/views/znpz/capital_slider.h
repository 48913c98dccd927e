// SPDX-License-Identifier: MIT
#pragma once
#include <QWidget>
#include <functional>

#include "capital_places.h"
#include "capital_slider_painter.h"

namespace holdwise {

/// The ramp on which capital is pressed and dragged. It keeps no capital: it reads what it shows at every drawing and
/// says what the user wants. Left and Right change it by 1, Page Up and Page Down by 10, Home goes to 1, End to its
/// end. User-interface thread only. What the hooks throw goes to the debug log.
class CapitalSlider : public QWidget {
  Q_OBJECT
 public:
  static constexpr int kHeight = 160;  ///< pixels

  CapitalSlider(const QString& unit, const QString& name, QWidget* parent);

  /// What is to be drawn now; the focus is the slider's own.
  std::function<allocation::CapitalSliderState()> OnRead;
  /// The user has pointed at a capital, in ten-thousands of yuan with two decimals; or, by a key, as short as can be.
  std::function<void(const QString& capital)> OnChoose;

  /// Where everything is at the present width.
  [[nodiscard]] const allocation::CapitalPlaces& Places() const noexcept { return places_; }
  [[nodiscard]] bool IsDragging() const noexcept { return isDragging_; }
  void ApplyTheme();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  [[nodiscard]] allocation::CapitalSliderState Read() const;
  /// Does a press there take hold of the capital?
  [[nodiscard]] bool IsGrip(const QPoint& point) const;
  void UpdatePosition(const QPoint& point);
  void Choose(const QString& capital);

  QString unit_;
  allocation::CapitalPlaces places_;
  allocation::CapitalSliderPalette palette_;
  bool isDragging_ = false;
};

}  // namespace holdwise
