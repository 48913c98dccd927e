// SPDX-License-Identifier: MIT
#include "capital_slider_painter.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPolygonF>
#include <algorithm>

#include "common/host/font.h"
#include "common/host/theme_colors.h"

namespace holdwise::allocation {
namespace {

constexpr int kThumbWidth = 13;
constexpr int kThumbHeight = 11;
constexpr int kThumbGap = 2;  // below the base line
constexpr int kCaptionPixels = 15;
constexpr int kCaptionBottom = 48;

void PaintRamp(QPainter& painter, const CapitalRange& range, const CapitalPlaces& places,
               const CapitalSliderPalette& palette) {
  for (int bar = 0; bar < kBars; ++bar) {
    const TRect rect = ShownBar(bar, places);
    const bool isFilled = bar + 1 < range.index;
    GradientFillCanvas(painter, isFilled ? palette.filledEnd : palette.rampEnd,
                       isFilled ? palette.filledStart : palette.rampStart, rect, gdVertical);
    if (bar + 1 != range.index) continue;
    TRect filled = rect;
    filled.right = std::min(range.current.right, rect.right);
    GradientFillCanvas(painter, palette.filledEnd, palette.filledStart, filled, gdVertical);
  }
}

void PaintThumb(QPainter& painter, const CapitalSliderState& state, const CapitalPlaces& places,
                const CapitalSliderPalette& palette) {
  const QRectF area = ThumbOf(state.capital, places);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(state.hasFocus ? QPen(palette.focus, 2) : QPen(Qt::NoPen));
  painter.setBrush(palette.filledEnd);
  painter.drawPolygon(QPolygonF{QPointF(area.center().x(), area.top()), QPointF(area.right(), area.top() + 5),
                                area.bottomRight(), area.bottomLeft(), QPointF(area.left(), area.top() + 5)});
  painter.setRenderHint(QPainter::Antialiasing, false);
}

}  // namespace

CapitalSliderPalette ReadCapitalSliderPalette(const IColorSet& colors) {
  return {colors.ColorOf(theme::kBackground),      colors.ColorOf(theme::kTitleFont),
          colors.ColorOf(theme::kSectionBigText),  colors.ColorOf(theme::kRowSelect),
          colors.ColorOf(theme::kSliderHeadStart), colors.ColorOf(theme::kSliderHeadEnd),
          colors.ColorOf(theme::kSliderBodyStart), colors.ColorOf(theme::kSliderBodyEnd),
          colors.ColorOf(theme::kClickText)};
}

QRect ThumbOf(double capital, const CapitalPlaces& places) {
  return {PositionOf(capital, places) - kThumbWidth / 2, places.slider.bottom + kThumbGap, kThumbWidth, kThumbHeight};
}

void PaintCapitalSlider(QPainter& painter, const CapitalSliderState& state, const CapitalPlaces& places,
                        const QRect& area, const CapitalSliderPalette& palette) {
  painter.save();
  painter.fillRect(area, palette.background);
  PaintRamp(painter, CalcRange(std::max(state.capital, 0.0), places), places, palette);
  const TRect& slider = places.slider;
  DrawLine_(painter, {slider.left, slider.bottom}, {slider.right, slider.bottom}, Qt::SolidLine, palette.baseLine);
  PaintThumb(painter, state, places, palette);

  painter.setFont(DesignFont());
  painter.setPen(palette.text);
  const QFontMetrics sizes(painter.font());
  const int top = slider.bottom + kThumbGap + kThumbHeight + 1;
  const int height = sizes.size(Qt::TextSingleLine, QStringLiteral("100")).height();
  for (const auto& [text, centre] : MarksOf(places)) {
    const int width = sizes.horizontalAdvance(text);
    painter.drawText(QRect(centre - width / 2, top, width + 1, height), Qt::AlignCenter, text);
  }
  painter.setFont(DesignFont(kCaptionPixels, true));
  painter.setPen(palette.caption);
  const QRect line(places.bars.front().left, 0, area.right() - places.bars.front().left, kCaptionBottom);
  painter.drawText(line, Qt::AlignLeft | Qt::AlignBottom | Qt::TextSingleLine, state.caption);
  painter.restore();
}

}  // namespace holdwise::allocation
