// SPDX-License-Identifier: MIT
// One price message to the performance view: every live cell of the list and of the shown holdings is computed and
// written anew. Every price differs from the one before, so no cell keeps its text. Ten holdings a portfolio; the time
// is that of the message alone, without painting.
#include <benchmark/benchmark.h>

#include <QApplication>

#include "common/host/host_access.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "common/store/statement_advice.h"
#include "holdwise/packet/number_text.h"
#include "scripted_host.h"
#include "temp_database.h"
#include "views/zhbx/zhbx.h"

namespace holdwise {
namespace {

constexpr int kHoldingsEach = 10;
constexpr int kSecurities = 500;

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
    Fill(portfolios);
    FDBServer = &database_.Service();
    g_NowPrice = std::make_unique<TNowPrice>();
    g_ClosePrice = std::make_unique<TClosePrice>();
    g_UserValue = std::make_unique<TUserValue>();
    view_ = std::make_unique<TFrm_ZHBX>();
    view_->resize(1024, 640);
    g_NowPrice->ReGetNowPrice();
    Quote(0);
    SendFrameMessage(*view_, FrameMessage::Init);
  }
  ~Page() {
    view_.reset();
    g_NowPrice.reset();
    g_ClosePrice.reset();
    g_UserValue.reset();
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
  void Fill(int portfolios) {
    TransactionScope scope(database_.Service());
    // The host's date is 2024-05-29: a close of the previous week and one of the previous month for every security.
    for (int index = 0; index < kSecurities; ++index) {
      for (const auto& [type, date] : {std::pair{1, 20240524}, std::pair{2, 20240430}}) {
        database_.Service().Execute(QStringLiteral("insert into alg_stockstatistic (secucode,closeprice,hqtype,hqdate) "
                                                   "values (%1,%2,%3,%4)")
                                        .arg(1600000 + index)
                                        .arg(9 + index)
                                        .arg(type)
                                        .arg(date));
      }
    }
    int detail = 0;
    for (int id = 1; id <= portfolios; ++id) {
      database_.Service().Execute(QStringLiteral("insert into alg_commain (ID,COMNAME,ISFINISHED,EDITDATE,SAVEFLAG) "
                                                 "values (%1,'组合%1',1,'2024-05-20',1)")
                                      .arg(id));
      for (int holding = 0; holding < kHoldingsEach; ++holding) {
        const int code = 1600000 + (id * 7 + holding * 13) % kSecurities;
        database_.Service().Execute(QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) "
                                                   "values (%1,%2,%3,%4,0.1,9.5)")
                                        .arg(++detail)
                                        .arg(id)
                                        .arg(code)
                                        .arg(100 + holding));
      }
    }
    scope.Commit();
  }

  test::TempDatabase database_;
  ScriptedHost host_;
  std::unique_ptr<TFrm_ZHBX> view_;
};

void BM_RefreshPerformanceView(benchmark::State& state) {
  Page page(static_cast<int>(state.range(0)));
  int round = 0;
  for (auto _ : state) {
    state.PauseTiming();
    page.Quote(++round);
    state.ResumeTiming();
    page.Refresh();
  }
}
BENCHMARK(BM_RefreshPerformanceView)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace holdwise

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
