// SPDX-License-Identifier: MIT
// What confirming a portfolio of ten holdings costs in the editor, from the click to the list read again, on a real
// embedded database, without the calculation of its figures; "commit_ms" of it is the commit to disk. And what opening
// the view for the first time costs with as many shares as the two markets have: made, shown and painted.
#include <benchmark/benchmark.h>

#include <QLineEdit>
#include <QPushButton>
#include <chrono>
#include <memory>

#include "common/host/host_access.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "common/store/statement_advice.h"
#include "common/store/statements.h"
#include "holdwise/packet/number_text.h"
#include "injecting_user_data.h"
#include "offscreen.h"
#include "scripted_host.h"
#include "temp_database.h"
#include "views/zxpz/editor_band.h"
#include "views/zxpz/holdings_editor.h"
#include "views/zxpz/zxpz.h"

namespace holdwise {
namespace {

constexpr int kShares = 5500;
constexpr int kHoldings = 10;
const QString kName = QStringLiteral("基准");

/// Measures its commits.
class CommitClock final : public test::Injecting<UserDataServices> {
 public:
  explicit CommitClock(UserDataServices& inner) : Injecting(inner, plan_), services_(inner) {}
  std::unique_ptr<UserDataSession> OpenSession() override { return services_.OpenSession(); }
  void Commit() override {
    const auto start = std::chrono::steady_clock::now();
    services_.Commit();
    milliseconds += std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
  }
  double milliseconds = 0;

 private:
  test::FailurePlan plan_;
  UserDataServices& services_;
};

/// A host with all shares, the shared objects on it, and a database of some unsaved portfolios.
class Page {
 public:
  Page() {
    host_.SetUserData(database_.Service());
    database_.Service().Advise(sql::Advice());
    SetModuleHost(&host_);
    for (int share = 0; share < kShares; ++share) {
      host_.codeNums.Add(
          {SixDigits(600000 + share), QStringLiteral("股票%1").arg(share), {}, 1, {10.0 + share, 9.9 + share}});
    }
    host_.dataCenter.indices[1] = {3111.02, 3100};
    FDBServer = &clock;
    CreateSharedObjects();
  }
  ~Page() {
    view.reset();
    FreeSharedObjects();
    FDBServer = nullptr;
    SetModuleHost(nullptr);
  }
  void Open() {
    view = std::make_unique<TFrm_ZXPZ>();
    view->resize(1024, 640);
    view->show();
    (void)view->grab();
  }
  [[nodiscard]] EditorBand& Band() const {
    return *static_cast<EditorBand*>(view->findChild<QWidget*>(QStringLiteral("RzPanel1")));
  }
  void Fill() const {
    std::vector<HoldingRow> rows;
    rows.reserve(kHoldings);
    for (int row = 0; row < kHoldings; ++row) {
      rows.push_back({SixDigits(600000 + row), QStringLiteral("股票"), QStringLiteral("10.50"), QStringLiteral("100")});
    }
    Band().Holdings->SetRows(rows);
    view->findChild<QLineEdit*>(QStringLiteral("RzEdit1"))->setText(kName);
  }
  /// Takes the confirmed portfolio away again; false when it was not stored.
  bool Forget() {
    UserDataServices& service = database_.Service();
    const auto id = service.Count(sql::IdOfName(kName));
    service.Execute(sql::DeleteHoldings(id));
    service.Execute(sql::DeletePortfolioByName(kName));
    view->DoInit_();
    return id > 0;
  }

  std::unique_ptr<TFrm_ZXPZ> view;

 private:
  test::TempDatabase database_;
  ScriptedHost host_;

 public:
  CommitClock clock{database_.Service()};
};

void BM_Confirm(benchmark::State& state) {
  Page page;
  page.Open();
  for ([[maybe_unused]] auto turn : state) {
    state.PauseTiming();
    page.Fill();
    state.ResumeTiming();
    page.Band().btnOK->click();
    state.PauseTiming();
    if (!page.Forget()) state.SkipWithError("nothing was stored");
    state.ResumeTiming();
  }
  state.counters["commit_ms"] = benchmark::Counter(page.clock.milliseconds, benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_Confirm)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_OpenView(benchmark::State& state) {
  Page page;
  for ([[maybe_unused]] auto turn : state) {
    page.Open();
    state.PauseTiming();
    page.view.reset();
    state.ResumeTiming();
  }
}
BENCHMARK(BM_OpenView)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace holdwise

int main(int argc, char** argv) {
  return holdwise::bench::RunOffscreen(argc, argv);
}
