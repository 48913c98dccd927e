// SPDX-License-Identifier: MIT
#include "common/charts/step_chart_part.h"

#include <QCursor>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <utility>

#include "common/host/event_guard.h"
#include "common/host/host_access.h"

namespace holdwise {
namespace {

constexpr QSize kSmallest{240, 150};  // pixels

}  // namespace

StepChartPart::StepChartPart(QString unit, const QString& name, QWidget* parent)
    : FramePart(parent), unit_(std::move(unit)) {
  setObjectName(name);
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void StepChartPart::ApplyTheme() {
  palette_ = ReadStepChartPalette(ModuleHost().ColorTheme().Colors());
  update();
}

QSize StepChartPart::minimumSizeHint() const {
  return kSmallest;
}

bool StepChartPart::event(QEvent* event) {
  // A mouse that rests asks for the widget's own tool tip, which would take the hint away: there is none.
  if (event->type() == QEvent::ToolTip) return true;
  return FramePart::event(event);
}

void StepChartPart::paintEvent(QPaintEvent* /*event*/) {
  GuardEvent(unit_, objectName(), [this] {
    const StepChart chart = OnRead ? OnRead() : StepChart{};
    places_ = PlacesOf(chart, rect(), StepChartTextSizes());
    QPainter painter(this);
    PaintStepChart(painter, chart, places_, rect(), palette_);
  });
}

void StepChartPart::mouseMoveEvent(QMouseEvent* event) {
  event->accept();
  GuardEvent(unit_, objectName(), [&] { ShowHint(places_.BarAt(event->pos())); });
}

void StepChartPart::leaveEvent(QEvent* event) {
  FramePart::leaveEvent(event);
  ShowHint(-1);
}

void StepChartPart::ShowHint(int bar) {
  if (bar >= 0 && OnHint) {
    QToolTip::showText(QCursor::pos(), OnHint(bar), this);
  } else if (QToolTip::isVisible()) {
    QToolTip::hideText();
  }
}

}  // namespace holdwise
