// SPDX-License-Identifier: MIT
// One price message to the performance view: every live cell of the list and of the shown holdings is computed and
// written anew.
#include "offscreen.h"
#include "view_page.h"
#include "views/zhbx/zhbx.h"

namespace holdwise {
namespace {

/// The host's date is 2024-05-29: a close of the previous week and one of the previous month for every security.
QStringList Closes() {
  QStringList statements;
  for (int index = 0; index < bench::kSecurities; ++index) {
    for (const auto& [type, date] : {std::pair{1, 20240524}, std::pair{2, 20240430}}) {
      statements << QStringLiteral(
                        "insert into alg_stockstatistic (secucode,closeprice,hqtype,hqdate) "
                        "values (%1,%2,%3,%4)")
                        .arg(1600000 + index)
                        .arg(9 + index)
                        .arg(type)
                        .arg(date);
    }
  }
  return statements;
}

void BM_RefreshPerformanceView(benchmark::State& state) {
  bench::ViewPage<TFrm_ZHBX> page(static_cast<int>(state.range(0)), Closes());
  bench::MeasureRefresh(page, state);
}
BENCHMARK(BM_RefreshPerformanceView)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace holdwise

int main(int argc, char** argv) {
  return holdwise::bench::RunOffscreen(argc, argv);
}
