// SPDX-License-Identifier: MIT
// One price message to the evaluation and to the decomposition view: every live cell is computed and written anew. And
// one painting of the decomposition's chart.
#include <QImage>
#include <QPainter>

#include "common/charts/step_chart_painter.h"
#include "offscreen.h"
#include "view_page.h"
#include "views/yjfj/yjfj.h"
#include "views/ztpj/ztpj.h"

namespace holdwise {
namespace {

QStringList Figures() {
  return {QStringLiteral(
              "update alg_commain set ZSCLOSEPRICE = 2000, BETA = 1.1, ZHBZC = 0.02, SHARP = 0.1, TREYNOR = 0.001"),
          QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate,sylbzc) values (1,0,20240528,0.025)"),
          QStringLiteral("insert into alg_rmbinterestrate (ID,DEPOSITTYPE,TERM,INTEREST) values "
                         "(1,'定期存款整存整取','一年',2.25)")};
}

template <typename View>
void BM_Refresh(benchmark::State& state) {
  bench::ViewPage<View> page(static_cast<int>(state.range(0)), Figures());
  bench::MeasureRefresh(page, state);
}
BENCHMARK(BM_Refresh<TFrM_ZTPJ>)->Name("BM_RefreshEvaluation")->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Refresh<TFrm_YJFJ>)->Name("BM_RefreshDecomposition")->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

void BM_PaintChart(benchmark::State& state) {
  const ScriptedHost host;
  const StepChartPalette palette = ReadStepChartPalette(host.theme);
  StepChart chart;
  for (ChartStep& step : chart.steps) {
    step.caption = QStringLiteral("超额回报率分解");
    step.total = {QStringLiteral("超额回报率"), 9.75, QStringLiteral("9.75"), ChartColor::Red};
    step.left = {QStringLiteral("风险增溢"), 12.3, QStringLiteral("12.3"), ChartColor::Yellow};
    step.right = {QStringLiteral("选择回报率"), -2.55, QStringLiteral("-2.55"), ChartColor::Blue};
  }
  QImage image(1400, 900, QImage::Format_RGB32);
  for ([[maybe_unused]] auto turn : state) {
    QPainter painter(&image);
    PaintStepChart(painter, chart, PlacesOf(chart, image.rect(), StepChartTextSizes()), image.rect(), palette);
  }
}
BENCHMARK(BM_PaintChart)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace holdwise

int main(int argc, char** argv) {
  return holdwise::bench::RunOffscreen(argc, argv);
}
