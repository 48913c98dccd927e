// SPDX-License-Identifier: MIT
// Switching the theme in the terminal's window with all seven views made, and painting what is then seen.
#include <benchmark/benchmark.h>

#include <QApplication>

#include "common/host/host_access.h"
#include "common/store/statement_advice.h"
#include "mainframe/untmainfrm.h"
#include "mainframe/view_table.h"
#include "offscreen.h"
#include "portfolios.h"
#include "temp_database.h"
#include "theme/theme_services.h"
#include "window/main_window.h"
#include "wrapped_host.h"

namespace holdwise {
namespace {

constexpr int kSecurities = 500;

class HostWithTheme final : public test::WrappedHost {
 public:
  ColorThemeServices& ColorTheme() override { return theme; }
  ThemeServices theme{ThemeKind::Dark, scripted.debug};
};

QString CodeOf(int index) {
  return QString::number(600000 + index);
}

void SwitchTheme(benchmark::State& state) {
  test::TempDatabase database;
  HostWithTheme host;
  host.scripted.SetUserData(database.Service());
  database.Service().Advise(sql::Advice());
  SetModuleHost(&host);
  for (int index = 0; index < kSecurities; ++index)
    host.scripted.codeNums.Add(
        {CodeOf(index), QStringLiteral("股票%1").arg(index), QStringLiteral("银行"), 1, {10.0, 9.9}, false});
  {
    TransactionScope scope(database.Service());
    bench::AddPortfolios(database.Service(), static_cast<int>(state.range(0)), kSecurities, true);
    // Calculated today, so that no calculation dialog comes up.
    MustExecute(database.Service(), QStringLiteral("update alg_commain set CALCDATE=20240529, EDITDATE='2024-05-20'"));
    scope.Commit();
  }
  {
    MainWindow window(host.theme, {});
    window.resize(1920, 1080);
    auto frame = std::make_unique<TMainFrm>();
    window.Area().ShowFrame(frame.get());
    window.show();
    for (const TNodeData& node : Nodes) {
      if (node.make == nullptr) continue;
      frame->dxTL().setCurrentItem(frame->dxTL().FindId(node.Id));
      QApplication::processEvents();
    }
    if (frame->FrameList().size() != 7) state.SkipWithError("not every view was made");
    host.theme.OnChanged = [&] {
      QApplication::setPalette(host.theme.WindowPalette());
      window.ShowTheme();
      frame->MakeSkin();
    };
    for ([[maybe_unused]] const auto turn : state) {
      host.theme.SetKind(host.theme.Kind() == ThemeKind::Dark ? ThemeKind::Light : ThemeKind::Dark);
      QApplication::processEvents();
    }
    host.theme.OnChanged = nullptr;
    window.Area().ShowFrame(nullptr);
  }
  SetModuleHost(nullptr);
}
BENCHMARK(SwitchTheme)->Arg(20)->Arg(1000)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace holdwise

int main(int argc, char** argv) {
  return holdwise::bench::RunOffscreen(argc, argv);
}
