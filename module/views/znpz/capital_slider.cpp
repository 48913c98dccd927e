// SPDX-License-Identifier: MIT
#include "capital_slider.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "common/host/event_guard.h"
#include "common/host/host_access.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

using namespace allocation;

constexpr int kDecimals = 2;
constexpr double kStep = 1;
constexpr double kBigStep = 10;
constexpr double kLeast = 1;
constexpr double kMost = 200;

/// The capital that a key goes to; the present one for another key.
double CapitalForKey(int key, double capital) {
  const double up = std::floor(capital / kStep) * kStep + kStep;
  const double down = std::ceil(capital / kStep) * kStep - kStep;
  switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Down:
      return std::min(std::max(down, kLeast), capital);
    case Qt::Key_Right:
    case Qt::Key_Up:
      return capital >= kMost ? capital : up;
    case Qt::Key_PageDown:
      return std::min(std::max(capital - kBigStep, kLeast), capital);
    case Qt::Key_PageUp:
      return capital >= kMost ? capital : std::min(capital + kBigStep, kMost);
    case Qt::Key_Home:
      return kLeast;
    case Qt::Key_End:
      return kMost;
    default:
      return capital;
  }
}

}  // namespace

CapitalSlider::CapitalSlider(const QString& unit, const QString& name, QWidget* parent)
    : QWidget(parent), unit_(unit), places_(CalcRect(0)) {
  setObjectName(name);
  setFixedHeight(kHeight);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void CapitalSlider::ApplyTheme() {
  palette_ = ReadCapitalSliderPalette(ModuleHost().ColorTheme().Colors());
  update();
}

CapitalSliderState CapitalSlider::Read() const {
  CapitalSliderState state = OnRead ? OnRead() : CapitalSliderState{};
  state.hasFocus = hasFocus();
  return state;
}

void CapitalSlider::paintEvent(QPaintEvent* /*event*/) {
  GuardEvent(unit_, objectName(), [this] {
    QPainter painter(this);
    PaintCapitalSlider(painter, Read(), places_, rect(), palette_);
  });
}

void CapitalSlider::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  places_ = CalcRect(width());
}

bool CapitalSlider::IsGrip(const QPoint& point) const {
  const double capital = Read().capital;
  if (ThumbOf(capital, places_).contains(point)) return true;
  const CapitalRange range = CalcRange(std::max(capital, 0.0), places_);
  if (range.current.right != range.current.left) return PTInRect_(range.current, point);
  return PTInRect_(places_.bars[static_cast<std::size_t>(std::max(range.index - 2, 0))], point);
}

void CapitalSlider::UpdatePosition(const QPoint& point) {
  if (const auto capital = CapitalAt(point, places_)) Choose(FormatFixed(*capital, kDecimals));
}

void CapitalSlider::Choose(const QString& capital) {
  if (OnChoose) OnChoose(capital);
  update();
}

void CapitalSlider::mousePressEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() != Qt::LeftButton) return;
  GuardEvent(unit_, objectName(), [&] {
    isDragging_ = IsGrip(event->pos());
    if (isDragging_) setCursor(Qt::SplitVCursor);  // not the horizontal one: intended
  });
}

// The ramp is a pixel high at its low end, so a drag follows the mouse at any height.
void CapitalSlider::mouseMoveEvent(QMouseEvent* event) {
  event->accept();
  if (!isDragging_) return;
  GuardEvent(unit_, objectName(), [&] { Choose(FormatFixed(CapitalAtX(event->pos().x(), places_), kDecimals)); });
}

void CapitalSlider::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() != Qt::LeftButton) return;
  isDragging_ = false;
  unsetCursor();
  if (rect().contains(event->pos())) GuardEvent(unit_, objectName(), [&] { UpdatePosition(event->pos()); });
}

void CapitalSlider::keyPressEvent(QKeyEvent* event) {
  double capital = 0;
  double next = 0;
  GuardEvent(unit_, objectName(), [&] {
    capital = std::max(Read().capital, 0.0);
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    next = isPlain ? CapitalForKey(event->key(), capital) : capital;
    if (next != capital) Choose(ShortestText(next));
  });
  if (next == capital) QWidget::keyPressEvent(event);
}

void CapitalSlider::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  update();
}

void CapitalSlider::focusOutEvent(QFocusEvent* event) {
  QWidget::focusOutEvent(event);
  update();
}

}  // namespace holdwise
