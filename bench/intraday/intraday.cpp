// SPDX-License-Identifier: MIT
// "分时走势" with a full day of ticks, one a second: what a repaint costs, with a crosshair that moves and with a
// further tick, in a window of a small and of a large screen.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>

#include "intraday/intraday_chart.h"
#include "offscreen.h"
#include "scripted_host.h"
#include "theme/theme_services.h"

namespace holdwise {
namespace {

constexpr std::int64_t kClose = 150'000;

std::vector<Tick> FullDay() {
  std::vector<Tick> ticks;
  std::uint32_t random = 1;
  std::int64_t price = kClose, volume = 0, amount = 0;
  for (int second = 0; second <= kDaySeconds; ++second) {
    random = random * 1664525 + 1013904223;
    price += static_cast<std::int64_t>(random >> 24) - 127;
    volume += 100 + (random >> 20) % 1000;
    amount = volume * kClose;
    ticks.push_back({second, price, volume, amount});
  }
  return ticks;
}

struct Shown {
  explicit Shown(benchmark::State& state) : day{FullDay(), kClose, true, kDaySeconds, Tick::kUnknown, {}} {
    ScriptedDebug log;
    chart.SetColors(LineColorsOf(ThemeServices(ThemeKind::Dark, log)));
    chart.resize(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    chart.show();
    chart.SetData(day);
    QApplication::processEvents();
  }
  void Repaint() {
    chart.viewport()->update();
    QApplication::processEvents();
  }
  IntradayData day;
  IntradayChart chart;
};

void Repaint(benchmark::State& state) {
  Shown shown(state);
  for ([[maybe_unused]] const auto step : state) shown.Repaint();
}

void MovedCrosshair(benchmark::State& state) {
  Shown shown(state);
  const QRectF plot = shown.chart.Places().plot;
  int at = 0;
  for ([[maybe_unused]] const auto step : state) {
    const QPointF place(plot.left() + at++ % static_cast<int>(plot.width()), plot.center().y());
    QMouseEvent move(QEvent::MouseMove, place, place, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(shown.chart.viewport(), &move);
    QApplication::processEvents();
  }
  if (shown.chart.Cross() == nullptr) state.SkipWithError("there was no crosshair");
}

void FurtherTick(benchmark::State& state) {
  Shown shown(state);
  for ([[maybe_unused]] const auto step : state) {
    shown.day.ticks.back().price += 1;
    shown.chart.SetData(shown.day);
    QApplication::processEvents();
  }
}

#define AT_BOTH_SIZES ->Args({1000, 560})->Args({1900, 900})->Unit(benchmark::kMillisecond)->UseRealTime()
BENCHMARK(Repaint) AT_BOTH_SIZES;
BENCHMARK(MovedCrosshair) AT_BOTH_SIZES;
BENCHMARK(FurtherTick) AT_BOTH_SIZES;

}  // namespace
}  // namespace holdwise

int main(int argc, char** argv) {
  return holdwise::bench::RunOffscreen(argc, argv);
}
