// SPDX-License-Identifier: MIT
// From the button "配 置" until the candidate list stands in the grid, its files coming from a local folder; the fixed
// wait of 100 ms is in it. And one painting of the slider.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QPushButton>
#include <QTemporaryDir>

#include "allocation_tables.h"
#include "common/grid/string_grid.h"
#include "common/host/host_access.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "files/down_file_role.h"
#include "files/local_folder_source.h"
#include "holdwise/packet/atomic_file.h"
#include "offscreen.h"
#include "scripted_host.h"
#include "temp_database.h"
#include "views/znpz/capital_slider_painter.h"
#include "views/znpz/znpz.h"

namespace holdwise {
namespace {

/// Ten candidates of five stocks each.
void WriteProposals(const QString& dataFolder) {
  const QString folder = dataFolder + QStringLiteral("/QMTL/TZZH/");
  QDir().mkpath(folder);
  const auto write = [&folder](const QString& name, const QByteArray& packet) {
    WriteFileAtomically(folder + name, packet, Durability::Replaceable);
  };
  const QByteArray parts =
      test::CompositionFile({{"600000", 0.2}, {"600001", 0.2}, {"600002", 0.2}, {"600003", 0.2}, {"600004", 0.2}});
  std::vector<test::CandidateLine> list;
  for (int row = 0; row < 10; ++row) {
    list.push_back({"稳健型", 0.02, 0.03, 0.04, QStringLiteral("zh_5_%1.dat").arg(row)});
    write(list.back().file, parts);
  }
  write(QStringLiteral("zh_5.dat"), test::CandidateList(list));
}

void BM_ShowCandidates(benchmark::State& state) {
  test::TempDatabase database;
  const QTemporaryDir data;
  LocalFolderSource source(data.path());
  ScriptedHost host;
  host.makeDownFileRole = [&] { return std::make_unique<DownFileRole>(source, host.SysWorkDataPath()); };
  host.SetUserData(database.Service());
  for (int stock = 0; stock < 5; ++stock)
    host.codeNums.Add({QString::number(600000 + stock), QStringLiteral("股票"), {}, 1, {10, 10}});
  WriteProposals(data.path());
  SetModuleHost(&host);
  FDBServer = &database.Service();
  CreateSharedObjects();
  {
    TFrm_ZNPZ view;
    view.resize(1000, 600);
    view.show();
    const auto settle = [&] {
      while (!view.IsSettled()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    };
    settle();
    const auto& grid = *view.findChild<TStringGrid*>(QStringLiteral("strngrd"));
    auto& button = *view.findChild<QPushButton*>(QStringLiteral("btnSetting"));
    for ([[maybe_unused]] auto turn : state) {
      button.click();
      while (grid.IsEmpty()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
      QApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);  // painted
      state.PauseTiming();
      settle();
      state.ResumeTiming();
    }
  }
  FreeSharedObjects();
  FDBServer = nullptr;
  SetModuleHost(nullptr);
}
BENCHMARK(BM_ShowCandidates)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_PaintSlider(benchmark::State& state) {
  const ScriptedHost host;
  const auto palette = allocation::ReadCapitalSliderPalette(host.theme);
  const int width = static_cast<int>(state.range(0));
  const auto ratio = static_cast<int>(state.range(1));
  const allocation::CapitalPlaces places = allocation::CalcRect(width);
  QImage image(QSize(width, 160) * ratio, QImage::Format_RGB32);
  image.setDevicePixelRatio(ratio);
  double capital = 0;
  for ([[maybe_unused]] auto turn : state) {
    QPainter painter(&image);
    capital = capital > 200 ? 0 : capital + 0.37;
    allocation::PaintCapitalSlider(painter, {capital, QStringLiteral("62.5 万元：7 只股票"), true}, places,
                                   QRect(0, 0, width, 160), palette);
  }
}
BENCHMARK(BM_PaintSlider)
    ->ArgNames({"width", "ratio"})
    ->Args({840, 1})
    ->Args({1736, 1})
    ->Args({1736, 2})
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace holdwise

int main(int argc, char** argv) {
  return holdwise::bench::RunOffscreen(argc, argv);
}
