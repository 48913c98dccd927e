// SPDX-License-Identifier: MIT
// One move applied in the stress view: every expected value of all portfolios (ten holdings each) is computed, the list
// is read and filled anew and the holdings of the first portfolio are shown. Moves differ from one to the next, so no
// cell keeps its text. The time is that of the application, without painting; a second figure is with the picture.
#include "holdwise/packet/packet_file.h"
#include "offscreen.h"
#include "view_page.h"
#include "views/ylcs/ylcs.h"

namespace holdwise {
namespace {

QByteArray RiskFile() {
  ResultSet table;
  const int code = table.AddColumn("code", ColumnType::Text);
  const int beta = table.AddColumn("beta", ColumnType::Real);
  for (int index = 0; index < bench::kSecurities; ++index) {
    const int row = table.AppendRow();
    table.SetText(row, code, SixDigits(600000 + index));
    table.SetReal(row, beta, 0.5 + index / 400.0);
  }
  return EncodePacket(table);
}

/// The shown view, its notice read as the main frame does, with the risk file.
class Page : public bench::ViewPage<TFrm_YLCS> {
 public:
  explicit Page(int portfolios) : ViewPage(portfolios) {
    TFrm_YLCS& view = Shown();
    view.OnNoticeChanged = [&view] { benchmark::DoNotOptimize(view.Notice()); };
    view.show();
    const QString file = QStringLiteral("QMTL\\TZZH\\风险计量\\SH.dat");
    Host().DownFile(QStringLiteral("FInfoAsynDownFileRole"))->WriteAndReceive(file, RiskFile());
  }
  /// A move between -10 and 10 percent, another one each round. False when it was refused.
  bool Apply(int round) {
    return Shown().SetInput(QStringLiteral("Edit1"), FormatFixed(round % 2001 / 100.0 - 10, 2)).isEmpty();
  }
  void Paint() { (void)Shown().grab(); }
};

void BM_ApplyMove(benchmark::State& state) {
  Page page(static_cast<int>(state.range(0)));
  int round = 0;
  for ([[maybe_unused]] auto turn : state) {
    if (!page.Apply(round += 7)) state.SkipWithError("a move was refused");
  }
}
BENCHMARK(BM_ApplyMove)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

void BM_ApplyMoveAndPaint(benchmark::State& state) {
  Page page(static_cast<int>(state.range(0)));
  int round = 0;
  for ([[maybe_unused]] auto turn : state) {
    if (!page.Apply(round += 7)) state.SkipWithError("a move was refused");
    page.Paint();
  }
}
BENCHMARK(BM_ApplyMoveAndPaint)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace holdwise

int main(int argc, char** argv) {
  return holdwise::bench::RunOffscreen(argc, argv);
}
