// SPDX-License-Identifier: MIT
#pragma once
#include <benchmark/benchmark.h>

#include <QStringList>
#include <memory>
#include <utility>
#include <vector>

#include "common/frames/view_frame.h"
#include "common/host/host_access.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "common/store/statement_advice.h"
#include "holdwise/packet/number_text.h"
#include "portfolios.h"
#include "scripted_host.h"
#include "temp_database.h"

namespace holdwise::bench {

inline constexpr int kSecurities = 500;  ///< from 600000 on

/// A scripted host that knows the securities, a real database with portfolios of ten holdings each, the shared objects
/// on them, and a view, laid out and not shown. One at a time.
template <typename View>
class ViewPage {
 public:
  /// @param statements are executed before the shared objects are made
  explicit ViewPage(int portfolios, const QStringList& statements = {}) {
    host_.SetUserData(database_.Service());
    database_.Service().Advise(sql::Advice());
    SetModuleHost(&host_);
    host_.dataCenter.indices[1] = {2200, 2190};
    for (int index = 0; index < kSecurities; ++index) {
      host_.codeNums.Add({SixDigits(600000 + index),
                          QStringLiteral("股票%1").arg(index),
                          QStringLiteral("银行"),
                          1,
                          {10.0 + index, 9.9 + index}});
    }
    TransactionScope scope(database_.Service());
    AddPortfolios(database_.Service(), portfolios, kSecurities, true);
    for (const QString& statement : statements) MustExecute(database_.Service(), statement);
    scope.Commit();
    FDBServer = &database_.Service();
    CreateSharedObjects();
    view_ = std::make_unique<View>();
    view_->resize(1024, 640);
  }
  ~ViewPage() {
    view_.reset();
    FreeSharedObjects();
    FDBServer = nullptr;
    SetModuleHost(nullptr);
  }
  ViewPage(const ViewPage&) = delete;
  ViewPage& operator=(const ViewPage&) = delete;

  [[nodiscard]] ScriptedHost& Host() { return host_; }
  [[nodiscard]] View& Shown() { return *view_; }

  /// Asks for prices, which come, and shows everything.
  void Open() {
    g_NowPrice->ReGetNowPrice();
    Quote(0);
    SendFrameMessage(*view_, FrameMessage::Init);
  }
  /// New prices arrive; `round` makes them differ.
  void Quote(int round) {
    std::vector<std::pair<QString, Decimal>> prices;
    prices.reserve(kSecurities);
    for (int index = 0; index < kSecurities; ++index)
      prices.push_back({SixDigits(600000 + index), {1000 + 100 * index + round, 2}});
    host_.DataDown(QStringLiteral("FDSBVexDownDataRoleNowPrice"))->Deliver(PriceReply(prices));
  }
  void Refresh() { SendFrameMessage(*view_, FrameMessage::ReflashNowPrice); }

 private:
  test::TempDatabase database_;
  ScriptedHost host_;
  std::unique_ptr<View> view_;
};

/// The time of one price message to the view, without painting. Every price differs from the one before, so no cell
/// keeps its text.
template <typename View>
void MeasureRefresh(ViewPage<View>& page, benchmark::State& state) {
  page.Open();
  int round = 0;
  for ([[maybe_unused]] auto turn : state) {
    state.PauseTiming();
    page.Quote(++round);
    state.ResumeTiming();
    page.Refresh();
  }
}

}  // namespace holdwise::bench
