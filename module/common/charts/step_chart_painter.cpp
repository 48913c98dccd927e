// SPDX-License-Identifier: MIT
#include "common/charts/step_chart_painter.h"

#include <QFontMetrics>
#include <QPainter>
#include <algorithm>
#include <array>

#include "common/host/font.h"
#include "common/host/theme_colors.h"

namespace holdwise {
namespace {

constexpr int kCaptionPixels = 15;
constexpr int kLinePixels = 12;
constexpr int kTickPixels = 11;
constexpr int kSmallestPixels = 8;
constexpr double kPlotShare = 0.22;  // of the gray behind the bars
constexpr int kTickTextGap = 4;      // between a tick's text and the plot

QFont CaptionFont() {
  return DesignFont(kCaptionPixels, true);
}
QFont LineFont() {
  return DesignFont(kLinePixels);
}
QFont TickFont() {
  return DesignFont(kTickPixels);
}

/// The design font, smaller where the text would be wider than that.
QFont FittingFont(const QString& text, int width, bool bold) {
  int pixels = kLinePixels;
  while (pixels > kSmallestPixels && QFontMetrics(DesignFont(pixels, bold)).horizontalAdvance(text) > width) --pixels;
  return DesignFont(pixels, bold);
}

void PaintFormula(QPainter& painter, const ChartStep& step, const StepPlaces& places, const StepChartPalette& palette) {
  const QString formula = FormulaOf(step);
  const QFont font = FittingFont(formula, places.formula.width(), false);
  const QFontMetrics metrics(font);
  painter.setFont(font);
  painter.setPen(palette.title);
  painter.drawText(places.formula, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, formula);
  const std::array<ChartColor, kBarsOfAStep> colors{step.total.color, step.left.color, step.right.color};
  const int baseline = places.formula.top() + (places.formula.height() - metrics.height()) / 2 + metrics.ascent();
  const QRect sign = metrics.tightBoundingRect(QString(QChar(kLegendSign)));
  qsizetype at = formula.indexOf(QChar(kLegendSign));
  for (std::size_t term = 0; term < colors.size() && at >= 0; ++term) {
    const int left = places.formula.left() + metrics.horizontalAdvance(formula.left(at));
    // The blurred edges of the sign go with it.
    painter.fillRect(sign.translated(left, baseline).adjusted(-1, -1, 1, 1), palette.background);
    // The square of the sign itself, not as high as its line: intended, a legend reads as squares between the words.
    painter.fillRect(sign.translated(left, baseline), palette.Of(colors[term]));
    at = formula.indexOf(QChar(kLegendSign), at + 1);
  }
}

void PaintGrid(QPainter& painter, const StepPlaces& places, const StepChartPalette& palette) {
  const QRect& plot = places.plot;
  painter.setFont(TickFont());
  const int height = painter.fontMetrics().height();
  painter.fillRect(plot.left(), plot.top(), 1, plot.height(), palette.axis);
  for (const AxisTick& tick : places.ticks) {
    painter.fillRect(plot.left(), tick.y, plot.width(), 1, palette.gridLine);
    painter.setPen(palette.title);
    const QRect text(0, tick.y - height / 2, plot.left() - kTickTextGap, height);
    painter.drawText(text, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, tick.text);
  }
}

void PaintBar(QPainter& painter, const ChartTerm& term, const BarPlaces& place, const StepChartPalette& palette) {
  painter.fillRect(place.bar, palette.Of(term.color));
  if (!place.value.isEmpty()) {
    const QFont font = FittingFont(term.text, place.value.width(), true);
    const int width = std::min(QFontMetrics(font).horizontalAdvance(term.text) + 4, place.value.width());
    QRect ground = place.value;
    ground.setLeft(place.value.left() + (place.value.width() - width) / 2);
    ground.setWidth(width);
    painter.fillRect(ground, palette.plot);
    painter.setFont(font);
    painter.setPen(palette.title);
    painter.drawText(place.value, Qt::AlignCenter | Qt::TextSingleLine, term.text);
  }
  if (place.name.isEmpty()) return;
  painter.setFont(FittingFont(term.name, place.name.width(), false));
  painter.setPen(palette.title);
  painter.drawText(place.name, Qt::AlignCenter | Qt::TextSingleLine, term.name);
}

void PaintLine(QPainter& painter, const QString& text, const QRect& place, const StepChartPalette& palette) {
  if (place.isEmpty()) return;
  painter.setFont(LineFont());
  painter.setPen(palette.title);
  painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                   painter.fontMetrics().elidedText(text, Qt::ElideRight, place.width()));
}

void PaintStep(QPainter& painter, const ChartStep& step, const StepPlaces& places, const StepChartPalette& palette) {
  const std::array<const ChartTerm*, kBarsOfAStep> terms{&step.total, &step.left, &step.right};
  painter.fillRect(places.plot, palette.plot);
  PaintGrid(painter, places, palette);
  for (std::size_t bar = 0; bar < terms.size(); ++bar) PaintBar(painter, *terms[bar], places.bars[bar], palette);
  painter.fillRect(places.plot.left(), places.zeroY, places.plot.width(), 1, palette.zeroLine);
  painter.setFont(CaptionFont());
  painter.setPen(palette.title);
  painter.drawText(places.caption, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, step.caption);
  PaintFormula(painter, step, places, palette);
}

}  // namespace

const QColor& StepChartPalette::Of(ChartColor color) const {
  switch (color) {
    case ChartColor::Yellow:
      return yellow;
    case ChartColor::Red:
      return red;
    case ChartColor::Blue:
      break;
  }
  return blue;
}

StepChartPalette ReadStepChartPalette(const IColorSet& colors) {
  StepChartPalette palette;
  palette.background = colors.ColorOf(theme::kBackground);
  palette.title = colors.ColorOf(theme::kTitleFont);
  palette.axis = colors.ColorOf(theme::kChartAxis);
  palette.gridLine = colors.ColorOf(theme::kChartGrid);
  palette.zeroLine = colors.ColorOf(theme::kChartZeroLine);
  palette.plot = MixedColor(palette.background, colors.ColorOf(theme::kChartGray), kPlotShare);
  palette.border = colors.ColorOf(theme::kBorder);
  palette.yellow = colors.ColorOf(theme::kChartYellow);
  palette.red = colors.ColorOf(theme::kChartRed);
  palette.blue = colors.ColorOf(theme::kChartBlue);
  return palette;
}

ChartTextSizes StepChartTextSizes() {
  const QFontMetrics caption(CaptionFont());
  const QFontMetrics line(LineFont());
  const QFontMetrics tick(TickFont());
  return {.captionHeight = caption.height(),
          .lineHeight = line.height(),
          .captionWidth = [caption](const QString& text) { return caption.horizontalAdvance(text); },
          .lineWidth = [line](const QString& text) { return line.horizontalAdvance(text); },
          .tickWidth = [tick](const QString& text) { return tick.horizontalAdvance(text); }};
}

void PaintStepChart(QPainter& painter, const StepChart& chart, const StepChartPlaces& places, const QRect& area,
                    const StepChartPalette& palette) {
  painter.save();
  painter.setClipRect(area, Qt::IntersectClip);
  painter.fillRect(area, palette.background);
  for (std::size_t step = 0; step < places.steps.size(); ++step) {
    PaintStep(painter, chart.steps[step], places.steps[step], palette);
    const QRect& own = places.steps[step].area;
    painter.fillRect(own.left(), own.top(), own.width(), 1, palette.border);
  }
  PaintLine(painter, chart.subject, places.subject, palette);
  PaintLine(painter, chart.note, places.note, palette);
  painter.restore();
}

}  // namespace holdwise
