// SPDX-License-Identifier: MIT
#pragma once
#include <functional>

#include "common/charts/step_chart.h"
#include "common/charts/step_chart_painter.h"
#include "common/charts/step_chart_places.h"
#include "common/frames/frame_part.h"

namespace holdwise {

/// A step chart as a part of a view. It reads what it shows at every drawing, so it never shows anything old. User-
/// interface thread only. What the hooks throw goes to the debug log.
class StepChartPart : public FramePart {
 public:
  /// The name is the object name. `unit` is named in the debug log.
  StepChartPart(QString unit, const QString& name, QWidget* parent);

  /// What is to be drawn now.
  std::function<StepChart()> OnRead;
  /// Hint for a bar, counted as StepChartPlaces does; shown at once while the mouse is over it.
  std::function<QString(int bar)> OnHint;

  /// Where everything stood at the last drawing.
  [[nodiscard]] const StepChartPlaces& Places() const noexcept { return places_; }

  void ApplyTheme() override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  void ShowHint(int bar);

  QString unit_;
  StepChartPalette palette_;
  StepChartPlaces places_;
};

}  // namespace holdwise
