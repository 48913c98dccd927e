// SPDX-License-Identifier: MIT
// One move applied in the stress view: every expected value of all portfolios (ten holdings each) is computed, the list
// is read and filled anew and the holdings of the first portfolio are shown. Moves differ from one to the next, so no
// cell keeps its text. The time is that of the application, without painting; a second figure is with the picture.
#include <benchmark/benchmark.h>

#include <QApplication>

#include "common/host/host_access.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "common/store/statement_advice.h"
#include "holdwise/packet/number_text.h"
#include "holdwise/packet/packet_file.h"
#include "portfolios.h"
#include "scripted_host.h"
#include "temp_database.h"
#include "views/ylcs/ylcs.h"

namespace holdwise {
namespace {

constexpr int kSecurities = 500;

QByteArray RiskFile() {
  ResultSet table;
  const int code = table.AddColumn("code", ColumnType::Text);
  const int beta = table.AddColumn("beta", ColumnType::Real);
  for (int index = 0; index < kSecurities; ++index) {
    const int row = table.AppendRow();
    table.SetText(row, code, SixDigits(600000 + index));
    table.SetReal(row, beta, 0.5 + index / 400.0);
  }
  return EncodePacket(table);
}

/// A host with portfolios, the shared objects on it, and the view.
class Page {
 public:
  explicit Page(int portfolios) {
    host_.SetUserData(database_.Service());
    database_.Service().Advise(sql::Advice());
    SetModuleHost(&host_);
    for (int index = 0; index < kSecurities; ++index) {
      host_.codeNums.Add({SixDigits(600000 + index),
                          QStringLiteral("股票%1").arg(index),
                          QStringLiteral("银行"),
                          1,
                          {10.0 + index, 9.9 + index}});
    }
    TransactionScope scope(database_.Service());
    bench::AddPortfolios(database_.Service(), portfolios, kSecurities, true);
    scope.Commit();
    FDBServer = &database_.Service();
    CreateSharedObjects();
    view_ = std::make_unique<TFrm_YLCS>();
    view_->resize(1024, 640);
    view_->OnNoticeChanged = [this] { benchmark::DoNotOptimize(view_->Notice()); };
    view_->show();
    const QString file = QStringLiteral("QMTL\\TZZH\\风险计量\\SH.dat");
    host_.DownFile(QStringLiteral("FInfoAsynDownFileRole"))->WriteAndReceive(file, RiskFile());
  }
  ~Page() {
    view_.reset();
    FreeSharedObjects();
    FDBServer = nullptr;
    SetModuleHost(nullptr);
  }
  /// A move between -10 and 10 percent, another one each round. False when it was refused.
  bool Apply(int round) {
    return view_->SetInput(QStringLiteral("Edit1"), FormatFixed(round % 2001 / 100.0 - 10, 2)).isEmpty();
  }
  void Paint() { (void)view_->grab(); }

 private:
  test::TempDatabase database_;
  ScriptedHost host_;
  std::unique_ptr<TFrm_YLCS> view_;
};

void BM_ApplyMove(benchmark::State& state) {
  Page page(static_cast<int>(state.range(0)));
  int round = 0;
  for (auto _ : state) {
    if (!page.Apply(round += 7)) state.SkipWithError("a move was refused");
  }
}
BENCHMARK(BM_ApplyMove)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

void BM_ApplyMoveAndPaint(benchmark::State& state) {
  Page page(static_cast<int>(state.range(0)));
  int round = 0;
  for (auto _ : state) {
    if (!page.Apply(round += 7)) state.SkipWithError("a move was refused");
    page.Paint();
  }
}
BENCHMARK(BM_ApplyMoveAndPaint)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace holdwise

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
