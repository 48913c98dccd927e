// SPDX-License-Identifier: MIT
// One price message to the evaluation and to the decomposition view: every live cell is computed and written anew.
// Every price differs from the one before. Ten holdings a portfolio; the time is that of the message alone, without
// painting. And one painting of the decomposition's chart.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>

#include "common/charts/step_chart_painter.h"
#include "common/host/host_access.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "common/store/statement_advice.h"
#include "holdwise/packet/number_text.h"
#include "portfolios.h"
#include "scripted_host.h"
#include "temp_database.h"
#include "views/yjfj/yjfj.h"
#include "views/ztpj/ztpj.h"

namespace holdwise {
namespace {

constexpr int kSecurities = 500;

/// A host with portfolios, the shared objects on it, and the view.
template <typename View>
class Page {
 public:
  explicit Page(int portfolios) {
    host_.SetUserData(database_.Service());
    database_.Service().Advise(sql::Advice());
    SetModuleHost(&host_);
    host_.dataCenter.indices[1] = {2200, 2190};
    {
      TransactionScope scope(database_.Service());
      bench::AddPortfolios(database_.Service(), portfolios, kSecurities, true);
      Execute("update alg_commain set ZSCLOSEPRICE = 2000, BETA = 1.1, ZHBZC = 0.02, SHARP = 0.1, TREYNOR = 0.001");
      Execute("insert into alg_stockstatistic (secucode,hqtype,hqdate,sylbzc) values (1,0,20240528,0.025)");
      Execute(
          "insert into alg_rmbinterestrate (ID,DEPOSITTYPE,TERM,INTEREST) values (1,'定期存款整存整取','一年',2.25)");
      scope.Commit();
    }
    FDBServer = &database_.Service();
    CreateSharedObjects();
    view_ = std::make_unique<View>();
    view_->resize(1024, 640);
    g_NowPrice->ReGetNowPrice();
    Quote(0);
    SendFrameMessage(*view_, FrameMessage::Init);
  }
  ~Page() {
    view_.reset();
    FreeSharedObjects();
    FDBServer = nullptr;
    SetModuleHost(nullptr);
  }

  /// New prices arrive; `round` makes them differ.
  void Quote(int round) {
    std::vector<std::pair<QString, Decimal>> prices;
    prices.reserve(kSecurities);
    for (int index = 0; index < kSecurities; ++index) {
      prices.push_back({SixDigits(600000 + index), {1000 + 100 * index + round, 2}});
    }
    host_.DataDown(QStringLiteral("FDSBVexDownDataRoleNowPrice"))->Deliver(PriceReply(prices));
  }
  void Refresh() { SendFrameMessage(*view_, FrameMessage::ReflashNowPrice); }

 private:
  void Execute(const char* statement) { database_.Service().Execute(QString::fromUtf8(statement)); }

  test::TempDatabase database_;
  ScriptedHost host_;
  std::unique_ptr<View> view_;
};

template <typename View>
void BM_Refresh(benchmark::State& state) {
  Page<View> page(static_cast<int>(state.range(0)));
  int round = 0;
  for ([[maybe_unused]] auto turn : state) {
    state.PauseTiming();
    page.Quote(++round);
    state.ResumeTiming();
    page.Refresh();
  }
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
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
