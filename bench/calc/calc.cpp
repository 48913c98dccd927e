// SPDX-License-Identifier: MIT
// One base-data file through the dialog's receive routine beside a hand-written prepared loop, and a thousand files
// beside it; the decoding alone; the portfolio procedure; the whole dialog over a local folder; and the stress test.
// The database is a real embedded one.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

#include "calc/unfinished_work.h"
#include "calc/untcalc2.h"
#include "common/host/host_access.h"
#include "common/series/all_stock_data.h"
#include "common/series/expect_value.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "common/store/statement_advice.h"
#include "common/store/statements.h"
#include "database/firebird_process.h"
#include "files/down_file_role.h"
#include "files/local_folder_source.h"
#include "holdwise/packet/number_text.h"
#include "holdwise/packet/packet_file.h"
#include "portfolios.h"
#include "prepared_loop.h"
#include "rounds.h"
#include "scripted_host.h"

namespace holdwise {
namespace {

const QString kStockFolder = QStringLiteral("QMTL\\TZZH\\Day250\\股票\\");

constexpr int kFirstStock = 1600000;

/// The rows of the yardstick as a base-data file.
ResultSet BaseDataRows(const std::vector<int>& indices = {kFirstStock}) {
  constexpr std::array kNames = {"secucode", "closeprice",    "hqtype", "rowid",     "ggqjsyl",   "pjsyl",
                                 "hqdate",   "oldcloseprice", "sylbzc", "islastday", "startdate", "enddate"};
  ResultSet table;
  for (int column = 0; column < bench::kColumns; ++column) {
    const auto at = static_cast<std::size_t>(column);
    table.AddColumn(kNames[at], bench::kIsReal[at] ? ColumnType::Real : ColumnType::Integer);
  }
  for (const int index : indices) {
    for (const bench::Row& values : bench::Rows()) {
      const int row = table.AppendRow();
      for (int column = 0; column < bench::kColumns; ++column) {
        const auto at = static_cast<std::size_t>(column);
        if (bench::kIsReal[at]) {
          table.SetReal(row, column, values[at]);
        } else {
          table.SetInteger(row, column, column == 0 ? index : static_cast<int>(values[at]));
        }
      }
    }
  }
  return table;
}

/// A module on a database with saved, unfinished portfolios of ten holdings each.
class Module {
 public:
  Module(int portfolios, int securities) {
    host.SetUserData(database.Service());
    database.Service().Advise(sql::Advice());
    SetModuleHost(&host);
    FDBServer = &database.Service();
    TransactionScope transaction(database.Service());
    bench::AddPortfolios(database.Service(), portfolios, securities, false);
    for (int index = 0; index < securities; ++index) {
      host.codeNums.Add({SixDigits(600000 + index), {}, {}, 1, NowData{10.5, 10.25}, false});
    }
    transaction.Commit();
  }
  ~Module() {
    g_ExpectValue.reset();
    g_AllStockData.reset();
    g_UserValue.reset();
    FDBServer = nullptr;
    SetModuleHost(nullptr);
  }
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;
  void Run(const QString& statement) { database.Service().Execute(statement); }

  test::TempDatabase database;
  ScriptedHost host;
};

void Receive(benchmark::State& state) {
  Module module(1, bench::kHoldingsEach);
  const QByteArray file = EncodePacket(BaseDataRows());
  std::unique_ptr<TfrmCalc2> dialog;
  const auto renew = [&] {
    module.Run(QStringLiteral("delete from alg_stockstatistic"));
    // Whoever passes deleted rows first clears them away; neither way is to pay for the other's or its own last round.
    module.Run(QStringLiteral("update alg_stockstatistic set rowid = rowid"));
    dialog.reset();
    dialog = std::make_unique<TfrmCalc2>();
    dialog->show();
    QCoreApplication::processEvents();
  };
  renew();
  bench::Measure(
      state, bench::kRows, [&] { dialog->BasicDataRecv(kStockFolder + QStringLiteral("600000.dat"), 0, file, 1); },
      renew);
  if (!module.host.debug.Lines().empty()) state.SkipWithError("the file was refused");
}

constexpr int kMany = 1000;

/// A file each of as many securities, into a database that has none of them.
void ReceiveMany(benchmark::State& state) {
  Module module(kMany / bench::kHoldingsEach, kMany);
  std::vector<QByteArray> files;
  files.reserve(kMany);
  for (int index = 0; index < kMany; ++index) files.push_back(EncodePacket(BaseDataRows({kFirstStock + index})));
  TfrmCalc2 dialog;
  dialog.show();
  QCoreApplication::processEvents();
  bench::Measure(
      state, kMany * bench::kRows,
      [&] {
        for (int index = 0; index < kMany; ++index) {
          dialog.BasicDataRecv(kStockFolder + SixDigits(600000 + index) + QStringLiteral(".dat"), 0,
                               files[static_cast<std::size_t>(index)], 1);
        }
      },
      [] {});
  const qint64 stored = module.database.Service().Count(QStringLiteral("select count(*) from alg_stockstatistic"));
  if (!module.host.debug.Lines().empty() || stored != std::int64_t{kMany} * bench::kRows)
    state.SkipWithError("a file was refused");
}

/// The portfolio procedure for every one of that many portfolios of ten holdings each, over 250 days.
void Figures(benchmark::State& state) {
  const int portfolios = static_cast<int>(state.range(0));
  const int securities = std::min(portfolios * bench::kHoldingsEach, 500);
  Module module(portfolios, securities);
  module.Run(QStringLiteral("execute block as declare i int = 0; declare d int; begin while (i <= %1) do begin d = 1; "
                            "while (d <= 250) do begin insert into alg_stockstatistic values (iif(:i = 0, 1, 1599999 + "
                            ":i), 10, 0, :d, rand() * 0.04 - 0.02, 0, 20250000 + :d, 10, 0, 0, 20250001, 20250250); "
                            "d = d + 1; end i = i + 1; end end")
                 .arg(securities));
  const QStringList ids = calc::ReadUnfinishedPortfolios(Database());
  for ([[maybe_unused]] auto turn : state) {
    for (const QString& id : ids) calc::CalculatePortfolio(Database(), id);
  }
  if (Database().Count(QStringLiteral("select count(*) from alg_commain where ISFINISHED = 1 and BETA <> 0")) !=
      portfolios) {
    state.SkipWithError("portfolios are missing");
  }
}

void Prepared(benchmark::State& state) {
  bench::PreparedLoop loop;
  bench::Measure(
      state, bench::kRows, [&] { loop.Insert(); }, [&] { loop.Remove(); });
}

void Decode(benchmark::State& state) {
  const QByteArray file = EncodePacket(BaseDataRows());
  bench::Measure(
      state, bench::kRows, [&] { benchmark::DoNotOptimize(DecodePacket(file).RowCount()); }, [] {});
}

/// The longest time between two repaints of the progress bar.
class PaintWatch final : public QObject {
 public:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() != QEvent::Paint) return false;
    if (timer_.isValid()) longest_ = std::max(longest_, timer_.nsecsElapsed());
    timer_.start();
    return false;
  }
  [[nodiscard]] double LongestMilliseconds() const { return static_cast<double>(longest_) / 1e6; }

 private:
  QElapsedTimer timer_;
  qint64 longest_ = 0;
};

void WriteFolder(const QDir& folder, int securities) {
  folder.mkpath(QStringLiteral("QMTL/TZZH/Day250/股票"));
  folder.mkpath(QStringLiteral("QMTL/TZZH/Day250/指数"));
  const auto write = [&](const QString& name, const QByteArray& bytes) {
    WriteFileAtomically(folder.filePath(name), bytes, Durability::Replaceable);
  };
  for (int index = 0; index < securities; ++index) {
    write(QStringLiteral("QMTL/TZZH/Day250/股票/%1.dat").arg(SixDigits(600000 + index)),
          EncodePacket(BaseDataRows({kFirstStock + index})));
  }
  ResultSet indices = BaseDataRows({1, 399001, 399300});
  write(QStringLiteral("QMTL/TZZH/Day250/指数/allzs.dat"), EncodePacket(indices));
  write(QStringLiteral("QMTL/TZZH/InterestRate.Dat"), EncodePacket(ResultSet()));
  ResultSet estimates;
  estimates.AddColumn("SECUCODE", ColumnType::Text);
  estimates.AddColumn("ID", ColumnType::Integer);
  estimates.AddColumn("PRICE", ColumnType::Real);
  for (int row = 0; row < 5500; ++row) {
    estimates.AppendRow();
    estimates.SetText(row, 0, SixDigits(600000 + row));
    estimates.SetInteger(row, 1, row);
    estimates.SetReal(row, 2, 0.01 * row);
  }
  write(QStringLiteral("QMTL/TZZH/GZ.dat"), EncodePacket(estimates));
}

/// The second round replaces the rows of the first.
void WholeDialog(benchmark::State& state) {
  const int securities = static_cast<int>(state.range(1));
  Module module(static_cast<int>(state.range(0)), securities);
  const QTemporaryDir folder;
  WriteFolder(QDir(folder.path()), securities);
  LocalFolderSource source(folder.path());
  module.host.makeDownFileRole = [&] { return std::make_unique<DownFileRole>(source, module.host.SysWorkDataPath()); };
  double longest = 0;
  for ([[maybe_unused]] auto turn : state) {
    PaintWatch watch;
    TfrmCalc2 dialog;
    dialog.findChild<QProgressBar*>()->installEventFilter(&watch);
    dialog.ShowModal();
    longest = std::max(longest, watch.LongestMilliseconds());
    state.PauseTiming();
    if (module.database.Service().Count(QStringLiteral("select count(*) from alg_commain where ISFINISHED = 0")) != 0 ||
        !module.host.debug.Lines().empty()) {
      state.SkipWithError("the calculation did not finish");
    }
    module.Run(QStringLiteral("update alg_commain set ISFINISHED = 0"));
    state.ResumeTiming();
  }
  state.counters["longest_ms_between_repaints"] = longest;
}

void StressTest(benchmark::State& state) {
  const int portfolios = static_cast<int>(state.range(0));
  constexpr int kSecurities = 5500;
  Module module(portfolios, kSecurities);
  g_UserValue = std::make_unique<TUserValue>();
  g_AllStockData = std::make_unique<TAllStockData>();
  g_ExpectValue = std::make_unique<TExpectValue>();
  ResultSet risk;
  risk.AddColumn("code", ColumnType::Text);
  for (const char* name : {"beta", "alpha", "treynor", "sharp"}) risk.AddColumn(name, ColumnType::Real);
  for (int row = 0; row < kSecurities; ++row) {
    risk.AppendRow();
    risk.SetText(row, 0, SixDigits(600000 + row));
    for (int column = 1; column < 5; ++column) risk.SetReal(row, column, 0.5 + 0.000123456789 * row);
  }
  g_AllStockData->Set_SHZS();
  module.host.DownFile(QStringLiteral("FInfoAsynDownFileRole"))
      ->WriteAndReceive(QStringLiteral("QMTL\\TZZH\\风险计量\\SH.dat"), EncodePacket(risk));
  double move = 0.2;
  for ([[maybe_unused]] auto turn : state) g_ExpectValue->SetExpectAdd(move = -move);
  if (g_ExpectValue->GetGroupValueStringList()->Count() != portfolios) state.SkipWithError("portfolios are missing");
}

/// The query inside the stress test.
void SavedHoldings(benchmark::State& state) {
  Module module(static_cast<int>(state.range(0)), 5500);
  for ([[maybe_unused]] auto turn : state) benchmark::DoNotOptimize(Database().Query(sql::kSavedHoldings).RowCount());
}

/// The usual console output, and how the ways compare at the end.
class RatioReporter final : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      times_[run.run_name.function_name + run.run_name.args].push_back(run.GetAdjustedRealTime());
    }
  }
  void Finalize() override {
    Compare("receive / prepared", Median("prepared") / Median("receive"), "at least 0.6");
    Compare("decode / receive", Median("decode") / Median("receive"), "at most 0.05");
    Compare("1,000 files / 1,000 x one", Median("receive many") / (kMany * Median("receive")), "at most 1.2");
    Compare("figures of a portfolio, ms", Median("figures1"), "at most 5");
    Compare("1,000 figures / 1,000 x one", Median("figures1000") / (kMany * Median("figures1")), "at most 1.2");
  }

 private:
  /// Nothing when one of the two was not measured.
  static void Compare(const char* what, double figure, const char* goal) {
    if (std::isfinite(figure) && figure > 0) std::printf("%-28s %6.3f   (goal: %s)\n", what, figure, goal);
  }
  double Median(const std::string& name) {
    auto& times = times_[name];
    std::sort(times.begin(), times.end());
    return times.empty() ? 0 : times[times.size() / 2];
  }
  std::map<std::string, std::vector<double>> times_;
};

}  // namespace
}  // namespace holdwise

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  holdwise::PrepareFirebirdProcess(holdwise::test::TempDatabase::LockFolder());
  constexpr int kRounds = 9;
  for (const auto& [name, function] :
       {std::pair{"receive", &holdwise::Receive}, std::pair{"prepared", &holdwise::Prepared},
        std::pair{"decode", &holdwise::Decode}}) {
    benchmark::RegisterBenchmark(name, function)->UseManualTime()->Repetitions(kRounds)->Unit(benchmark::kMillisecond);
  }
  benchmark::RegisterBenchmark("receive many", &holdwise::ReceiveMany)
      ->UseManualTime()
      ->Iterations(1)
      ->Repetitions(3)
      ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("figures", &holdwise::Figures)
      ->Arg(1)
      ->Arg(holdwise::kMany)
      ->Repetitions(3)
      ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("dialog", &holdwise::WholeDialog)
      ->Args({100, 500})
      ->Iterations(2)
      ->UseRealTime()
      ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("stress test", &holdwise::StressTest)
      ->Arg(100)
      ->Arg(1000)
      ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("saved holdings", &holdwise::SavedHoldings)->Arg(1000)->Unit(benchmark::kMillisecond);
  holdwise::RatioReporter reporter;
  holdwise::bench::RunInterleaved(argc, argv, reporter);
}
