// SPDX-License-Identifier: MIT
// One price reply, from message to both lists ready, and the series objects, for portfolios of ten holdings that hold
// every security of the market once or more. The database is a real embedded one.
#include <benchmark/benchmark.h>

#include <map>

#include "common/host/host_access.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "common/store/statement_advice.h"
#include "holdwise/packet/number_text.h"
#include "offscreen.h"
#include "portfolios.h"
#include "scripted_host.h"
#include "temp_database.h"

namespace holdwise {
namespace {

/// A market with portfolios over it, and the module's objects on them.
class Market {
 public:
  Market(int portfolios, int securities) : securities_(securities) {
    host_.SetUserData(database_.Service());
    database_.Service().Advise(sql::Advice());
    AddSecurities();
    AddPortfolios(portfolios);
    AddCloses();
  }

  /// Makes this market the module's and creates its objects.
  void Enter() {
    SetModuleHost(&host_);
    FDBServer = &database_.Service();
    g_NowPrice = std::make_unique<TNowPrice>();
    g_ClosePrice = std::make_unique<TClosePrice>();
    g_UserValue = std::make_unique<TUserValue>();
    g_NowPrice->ReGetNowPrice();
    bus_ = host_.DataDown(QStringLiteral("FDSBVexDownDataRoleNowPrice"));
  }
  static void Leave() {
    g_NowPrice.reset();
    g_ClosePrice.reset();
    g_UserValue.reset();
    FDBServer = nullptr;
    SetModuleHost(nullptr);
  }

  /// A reply with a price for every security; `round` changes them all.
  [[nodiscard]] TDReply Reply(int round) const {
    std::vector<std::pair<QString, Decimal>> prices;
    prices.reserve(static_cast<std::size_t>(securities_));
    for (int index = 0; index < securities_; ++index) {
      prices.push_back({SixDigits(CodeOf(index)), {1000 + index + round, 2}});
    }
    return PriceReply(prices);
  }
  /// Writes something that changes no figure.
  static void Change() { Database().Execute(QStringLiteral("update alg_commain set SAVEFLAG = 1 where ID = 1")); }
  ScriptedDataDown& Bus() { return *bus_; }

 private:
  static int CodeOf(int index) { return 600000 + index; }

  void AddSecurities() {
    for (int index = 0; index < securities_; ++index) {
      host_.codeNums.Add({SixDigits(CodeOf(index)), QStringLiteral("stock"), QStringLiteral("industry"), 1,
                          NowData{10.5, 10.25}, false});
    }
  }

  void AddPortfolios(int portfolios) {
    TransactionScope transaction(database_.Service());
    bench::AddPortfolios(database_.Service(), portfolios, securities_, true);
    transaction.Commit();
  }

  // The periods of a year, so that the statement has to find its week and month among them.
  void AddCloses() {
    TransactionScope transaction(database_.Service());
    for (int index = 0; index < securities_; ++index) {
      for (QDate friday(2023, 6, 2); friday <= QDate(2024, 5, 24); friday = friday.addDays(7))
        AddClose(index, 1, friday);
      for (QDate day(2023, 6, 30); day <= QDate(2024, 4, 30); day = day.addDays(1).addMonths(1).addDays(-1)) {
        AddClose(index, 2, day);
      }
    }
    transaction.Commit();
  }

  void AddClose(int index, int type, QDate day) {
    Run(QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate,closeprice) values (%1,%2,%3,9.75)")
            .arg(1000000 + CodeOf(index))
            .arg(type)
            .arg(day.year() * 10000 + day.month() * 100 + day.day()));
  }

  void Run(const QString& statement) { database_.Service().Execute(statement); }

  int securities_;
  test::TempDatabase database_;
  ScriptedHost host_;
  std::shared_ptr<ScriptedDataDown> bus_;
};

/// Markets are made once for all benchmarks: portfolios as given, 5.5 securities for each.
Market& MarketOf(std::int64_t portfolios) {
  static std::map<std::int64_t, std::unique_ptr<Market>> markets;
  auto& market = markets[portfolios];
  if (!market) market = std::make_unique<Market>(static_cast<int>(portfolios), static_cast<int>(portfolios * 11 / 2));
  return *market;
}

void CheckValues(benchmark::State& state) {
  if (g_NowPrice->GetNowValueGroupStringList()->Count() != state.range(0)) state.SkipWithError("values are missing");
}

void PriceReplyToLists(benchmark::State& state) {
  Market& market = MarketOf(state.range(0));
  market.Enter();
  const TDReply replies[] = {market.Reply(0), market.Reply(1)};
  std::size_t round = 0;
  for (auto _ : state) market.Bus().Deliver(replies[++round % 2]);
  CheckValues(state);
  Market::Leave();
}

// The first reply after something was written: the holdings come from the engine, not from the answers it keeps.
void PriceReplyAfterAChange(benchmark::State& state) {
  Market& market = MarketOf(state.range(0));
  market.Enter();
  const TDReply replies[] = {market.Reply(0), market.Reply(1)};
  std::size_t round = 0;
  for (auto _ : state) {
    state.PauseTiming();
    Market::Change();
    state.ResumeTiming();
    market.Bus().Deliver(replies[++round % 2]);
  }
  CheckValues(state);
  Market::Leave();
}

void HoldingsQueryAfterAChange(benchmark::State& state) {
  Market& market = MarketOf(state.range(0));
  market.Enter();
  for (auto _ : state) {
    state.PauseTiming();
    Market::Change();
    state.ResumeTiming();
    benchmark::DoNotOptimize(
        Database().Query(QStringLiteral("select  SECUCODE,Mainid,PZSL from alg_comdetail order by MainId")));
  }
  Market::Leave();
}

void Renewal(benchmark::State& state) {
  Market& market = MarketOf(state.range(0));
  market.Enter();
  for (auto _ : state) g_NowPrice->ReGetNowPrice();
  Market::Leave();
}

void ClosePrices(benchmark::State& state) {
  MarketOf(state.range(0)).Enter();
  for (auto _ : state) g_ClosePrice->ReGetClosePrice();
  if (g_ClosePrice->GetWeekCloseStringList_Sum()->ValueOf(u"1").isEmpty()) state.SkipWithError("sums are missing");
  Market::Leave();
}

void UserValues(benchmark::State& state) {
  MarketOf(state.range(0)).Enter();
  for (auto _ : state) g_UserValue->SetIsNeedUpdate(true);
  Market::Leave();
}

// Portfolios: the figure the views are built for, and a tenth of it to see the growth.
BENCHMARK(PriceReplyToLists)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(PriceReplyAfterAChange)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(HoldingsQueryAfterAChange)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(Renewal)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(ClosePrices)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(UserValues)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace holdwise

int main(int argc, char** argv) {
  return holdwise::bench::RunOffscreen(argc, argv);
}
