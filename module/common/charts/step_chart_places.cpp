// SPDX-License-Identifier: MIT
#include "common/charts/step_chart_places.h"

#include <algorithm>

#include "common/helpers/drawing.h"

namespace holdwise {
namespace {

constexpr int kSideMargin = 14;
constexpr int kStepMargin = 8;     // above and below what belongs to a step
constexpr int kGap = 3;            // between a bar and its value
constexpr int kTickGap = 6;        // between a tick's text and the plot
constexpr int kWideEnough = 700;   // caption and formula beside the bars
constexpr int kLeastBarRoom = 44;  // names below the plot only when the bars keep that much
constexpr int kLeastTickGap = 15;
constexpr int kLeastBarHeight = 2;
constexpr int kWidestSlot = 300;
constexpr int kNarrowestBar = 6;
constexpr int kWidestBar = 84;
constexpr double kZeroPart = 0.001;
constexpr double kLeastSpan = 0.05;  // percent; so that what counts as 0.001 is a line, not a bar

/// What stands beside or above the bars of every step, the same for all.
struct Columns {
  bool isWide = false;
  int textLeft = 0;
  int textWidth = 0;
  int plotLeft = 0;
  int plotRight = 0;
};

Columns ColumnsOf(const StepChart& chart, const QRect& area, const ChartTextSizes& sizes) {
  int widest = 0;
  for (const ChartStep& step : chart.steps) {
    widest = std::max({widest, sizes.captionWidth(step.caption), sizes.lineWidth(FormulaOf(step))});
  }
  Columns columns;
  columns.isWide = area.width() >= kWideEnough;
  columns.textLeft = area.left() + kSideMargin;
  columns.plotRight = area.right() - kSideMargin;
  columns.textWidth = columns.isWide ? widest : std::max(columns.plotRight - columns.textLeft, 0);
  columns.plotLeft = columns.isWide ? columns.textLeft + widest + 2 * kSideMargin : columns.textLeft;
  return columns;
}

QRect Kept(int left, int top, int width, int height) {
  return {left, top, std::max(width, 0), std::max(height, 0)};
}

/// Places caption and formula. @return where the plot with its texts begins
int PlaceTexts(const ChartStep& step, const Columns& columns, const ChartTextSizes& sizes, StepPlaces& places) {
  const QRect& area = places.area;
  const int caption = sizes.captionWidth(step.caption);
  const int formula = sizes.lineWidth(FormulaOf(step));
  if (columns.isWide) {
    const int top = area.top() + (area.height() - sizes.captionHeight - kGap - sizes.lineHeight) / 2;
    places.caption = {columns.textLeft, top, caption, sizes.captionHeight};
    places.formula = {columns.textLeft, top + sizes.captionHeight + kGap, formula, sizes.lineHeight};
    return area.top() + kStepMargin;
  }
  const int top = area.top() + kStepMargin;
  places.caption = Kept(columns.textLeft, top, std::min(caption, columns.textWidth), sizes.captionHeight);
  const int beside = columns.textLeft + caption + kSideMargin;
  if (beside + formula <= columns.textLeft + columns.textWidth) {
    places.formula = {beside, top + (sizes.captionHeight - sizes.lineHeight) / 2, formula, sizes.lineHeight};
    return top + sizes.captionHeight + kGap;
  }
  places.formula =
      Kept(columns.textLeft, top + sizes.captionHeight, std::min(formula, columns.textWidth), sizes.lineHeight);
  return top + sizes.captionHeight + sizes.lineHeight + kGap;
}

/// The bar of a value that stands on (hangs from) the zero line without covering it.
QRect BarOf(const ValueAxis& axis, double value, int left, int width) {
  const int zero = axis.ZeroY();
  if (value < 0) return {left, zero + 1, width, std::max(axis.YOf(value) - zero, kLeastBarHeight)};
  const int height = std::max(zero - axis.YOf(value), kLeastBarHeight);
  return {left, zero - height, width, height};
}

struct Slots {
  int left = 0;
  int width = 0;
};

Slots SlotsOf(const QRect& plot) {
  const int width = std::min(plot.width() / kBarsOfAStep, kWidestSlot);
  return {plot.left() + (plot.width() - width * kBarsOfAStep) / 2, width};
}

/// The scale of a step, whose ends leave room for the values' texts.
ValueAxis AxisOf(const ChartStep& step, const QRect& plot, const ChartTextSizes& sizes) {
  const BarValues values = SizingValuesOf(step);
  const auto [low, high] = std::minmax({values.total, values.left, values.right});
  const int room = sizes.lineHeight + 2 * kGap;
  const int bottom = plot.top() + plot.height() - 1;
  return {low, high, kLeastSpan, plot.top() + (high >= 0 ? room : 0), bottom - (low < 0 ? room : 0)};
}

/// From left to right stand left part, total, right part; they are counted total, left part, right part.
constexpr std::array<int, kBarsOfAStep> kSlotOfBar{1, 0, 2};

void PlaceBars(const ChartStep& step, bool isEmpty, const ValueAxis& axis, const ChartTextSizes& sizes,
               StepPlaces& places) {
  const Slots slots = SlotsOf(places.plot);
  const int width = std::clamp(slots.width * 2 / 5, kNarrowestBar, kWidestBar);
  const BarValues values = SizingValuesOf(step);
  const std::array<double, kBarsOfAStep> sized{values.total, values.left, values.right};
  for (std::size_t bar = 0; bar < sized.size(); ++bar) {
    BarPlaces& place = places.bars[bar];
    const int slot = slots.left + kSlotOfBar[bar] * slots.width;
    place.bar = BarOf(axis, sized[bar], slot + (slots.width - width) / 2, width);
    const int above = place.bar.top() - kGap - sizes.lineHeight;
    const int below = place.bar.top() + place.bar.height() + kGap;
    place.value = Kept(slot, sized[bar] < 0 ? below : above, slots.width, sizes.lineHeight);
    if (isEmpty) place.bar = {};
    if (isEmpty && bar != 0) place.value = {};
  }
}

void PlaceNames(const ChartTextSizes& sizes, StepPlaces& places) {
  const Slots slots = SlotsOf(places.plot);
  const int top = places.plot.top() + places.plot.height() + kGap;
  for (std::size_t bar = 0; bar < kSlotOfBar.size(); ++bar) {
    places.bars[bar].name = Kept(slots.left + kSlotOfBar[bar] * slots.width, top, slots.width, sizes.lineHeight);
  }
}

int WidestTickOf(const StepPlaces& places, const ChartTextSizes& sizes) {
  int widest = 0;
  for (const AxisTick& tick : places.ticks) widest = std::max(widest, sizes.tickWidth(tick.text));
  return widest;
}

}  // namespace

QString FormulaOf(const ChartStep& step) {
  const QChar sign(kLegendSign);
  return step.total.name + sign + QStringLiteral(" = ") + step.left.name + sign + QStringLiteral(" + ") +
         step.right.name + sign;
}

BarValues SizingValuesOf(const ChartStep& step) {
  // A bar of nothing could neither be seen nor pointed at: intended.
  BarValues values;
  values.left = step.left.value == 0 ? kZeroPart : step.left.value;
  values.right = step.right.value == 0 ? kZeroPart : step.right.value;
  values.total = values.left + values.right;
  return values;
}

int StepChartPlaces::BarAt(const QPoint& point) const {
  for (int bar = 0; bar < kBars; ++bar) {
    const QRect& place =
        steps[static_cast<std::size_t>(bar / kBarsOfAStep)].bars[static_cast<std::size_t>(bar % kBarsOfAStep)].bar;
    if (place.isEmpty()) continue;
    const TRect edges{place.left(), place.top(), place.left() + place.width(), place.top() + place.height()};
    if (PTInRect_(edges, point)) return bar;
  }
  return -1;
}

StepChartPlaces PlacesOf(const StepChart& chart, const QRect& whole, const ChartTextSizes& sizes) {
  StepChartPlaces places;
  QRect area = whole;
  if (!chart.note.isEmpty()) {
    places.note = Kept(area.left() + kSideMargin, area.top() + kGap, area.width() - 2 * kSideMargin, sizes.lineHeight);
    area.setTop(std::min(area.top() + sizes.lineHeight + 2 * kGap, area.bottom() + 1));
  }
  const Columns columns = ColumnsOf(chart, area, sizes);
  std::vector<ValueAxis> axes;
  std::array<bool, kSteps> haveNames{};
  int tickWidth = 0;
  for (std::size_t index = 0; index < places.steps.size(); ++index) {
    StepPlaces& step = places.steps[index];
    const auto edge = [&](std::size_t number) {
      return area.top() + area.height() * static_cast<int>(number) / kSteps;
    };
    step.area = Kept(area.left(), edge(index), area.width(), edge(index + 1) - edge(index));
    const int top = PlaceTexts(chart.steps[index], columns, sizes, step);
    int height = edge(index + 1) - kStepMargin - top;
    const int withoutNames = height - sizes.lineHeight - kGap;
    haveNames[index] = withoutNames - 2 * (sizes.lineHeight + 2 * kGap) >= kLeastBarRoom;
    if (haveNames[index]) height = withoutNames;
    step.plot = Kept(columns.plotLeft, top, columns.plotRight - columns.plotLeft, height);
    axes.push_back(AxisOf(chart.steps[index], step.plot, sizes));
    step.zeroY = axes.back().ZeroY();
    if (!chart.isEmpty) step.ticks = axes.back().Ticks(kLeastTickGap);
    tickWidth = std::max(tickWidth, WidestTickOf(step, sizes));
  }
  for (std::size_t index = 0; index < places.steps.size(); ++index) {
    StepPlaces& step = places.steps[index];
    step.plot.setLeft(std::min(columns.plotLeft + tickWidth + kTickGap, step.plot.left() + step.plot.width()));
    PlaceBars(chart.steps[index], chart.isEmpty, axes[index], sizes, step);
    if (haveNames[index]) PlaceNames(sizes, step);
  }
  const int subjectTop = area.top() + kStepMargin;
  if (columns.isWide && subjectTop + sizes.lineHeight + kGap <= places.steps.front().caption.top())
    places.subject = {columns.textLeft, subjectTop, columns.textWidth, sizes.lineHeight};
  return places;
}

}  // namespace holdwise
