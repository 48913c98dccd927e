// SPDX-License-Identifier: MIT
// How fast the statistics rows of one file go into the database: the literal statements through the service, the same
// literals through the Qt driver, and a hand-written loop over one prepared statement as the yardstick. Each way has a
// database of its own; the rounds are interleaved.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <vector>

#include "database/firebird_process.h"
#include "holdwise/packet/number_text.h"
#include "prepared_loop.h"
#include "rounds.h"
#include "temp_database.h"

namespace {

using namespace holdwise;
using holdwise::test::TempDatabase;

using bench::kColumns;
using bench::kRows;
using bench::Measure;
using bench::PreparedLoop;
using bench::Row;
using bench::Rows;

std::vector<QString> MakeStatements(const std::vector<Row>& rows) {
  std::vector<QString> statements;
  for (const Row& row : rows) {
    QString sql = QStringLiteral(
        "insert into alg_stockstatistic (secucode,closeprice,hqtype,rowid,ggqjsyl,pjsyl,hqdate,oldcloseprice,sylbzc,"
        "islastday,startdate,enddate) values(");
    for (int i = 0; i < kColumns; ++i) {
      if (i > 0) sql += u',';
      sql += ShortestText(row[static_cast<std::size_t>(i)]);
    }
    statements.push_back(sql + u')');
  }
  return statements;
}

const std::vector<QString>& Statements() {
  static const std::vector<QString> kAll = MakeStatements(Rows());
  return kAll;
}

/// What makes ready for the next turn. Whoever passes deleted rows first clears them away: not the next turn.
const std::array<QString, 2>& RemoveTexts() {
  static const std::array<QString, 2> kTexts = {QStringLiteral("delete from alg_stockstatistic"),
                                                QStringLiteral("update alg_stockstatistic set rowid = rowid")};
  return kTexts;
}

void Service(benchmark::State& state) {
  static TempDatabase database;
  FirebirdUserData& service = database.Service();
  Measure(
      state, kRows,
      [&] {
        TransactionScope scope(service);
        for (const QString& sql : Statements()) service.Execute(sql);
        scope.Commit();
      },
      [&] {
        for (const QString& sql : RemoveTexts()) service.Execute(sql);
      });
}

void QtDriver(benchmark::State& state) {
  static TempDatabase database(false);
  static const QSqlDatabase kConnection = [] {
    QSqlDatabase connection = QSqlDatabase::addDatabase(QStringLiteral("QIBASE"));
    connection.setDatabaseName(database.File());
    connection.setUserName(QStringLiteral("SYSDBA"));
    if (!connection.open()) std::fprintf(stderr, "%s\n", qPrintable(connection.lastError().text()));
    return connection;
  }();
  QSqlDatabase connection = kConnection;
  if (!connection.isOpen()) {
    state.SkipWithError("no Qt driver");
    return;
  }
  Measure(
      state, kRows,
      [&] {
        connection.transaction();
        QSqlQuery query(connection);
        for (const QString& sql : Statements()) {
          if (!query.exec(sql)) state.SkipWithError("insert failed");
        }
        connection.commit();
      },
      [&] {
        for (const QString& sql : RemoveTexts()) QSqlQuery(connection).exec(sql);
      });
}

void Prepared(benchmark::State& state) {
  static PreparedLoop loop;
  Measure(
      state, kRows, [&] { loop.Insert(); }, [&] { loop.Remove(); });
}

/// 10,000 holdings as the price feed reads them.
void ReadHoldings(benchmark::State& state) {
  static TempDatabase database;
  FirebirdUserData& service = database.Service();
  if (service.Count(QStringLiteral("select count(*) from alg_comdetail")) == 0) {
    service.Execute(
        QStringLiteral("execute block as declare i int = 0; begin while (i < 10000) do begin insert into alg_comdetail "
                       "values (:i, mod(:i, 1000), 1600000 + :i, 100, 0.1, 10); i = i + 1; end end"));
  }
  const QString sql = QStringLiteral("select  SECUCODE,Mainid,PZSL from alg_comdetail order by MainId");
  service.Advise({{.statement = sql, .mayBeKept = true}});
  for (auto _ : state) benchmark::DoNotOptimize(service.Query(sql).RowCount());
}

/// The portfolio procedure over ten holdings and 250 days.
void Figures(benchmark::State& state) {
  static TempDatabase database;
  FirebirdUserData& service = database.Service();
  if (service.Count(QStringLiteral("select count(*) from alg_comdetail")) == 0) {
    service.Execute(QStringLiteral("insert into alg_commain (ID,COMNAME,ISFINISHED) values (1,'A',0)"));
    service.Execute(QStringLiteral(
        "execute block as declare i int = 0; declare d int; begin while (i <= 10) do begin d = 1; while (d <= 250) do "
        "begin insert into alg_stockstatistic values (iif(:i = 0, 1, 1600000 + :i), 10, 0, :d, rand() * 0.04 - 0.02, "
        "0, "
        "20250000 + :d, 10, 0, 0, 20250001, 20250250); d = d + 1; end if (i > 0) then insert into alg_comdetail values "
        "(:i, 1, 1600000 + :i, 100, 0.1, 10); i = i + 1; end end"));
  }
  const QString sql = QStringLiteral("execute procedure SP_GETBETA(1,1)");
  for (auto _ : state) service.Execute(sql);
}

/// The usual console output, and the medians of the rounds side by side at the end.
class RatioReporter final : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      const auto rate = run.counters.find("items_per_second");
      if (run.run_type == Run::RT_Iteration && rate != run.counters.end()) {
        rates_[run.run_name.function_name].push_back(rate->second.value);
      }
    }
  }
  void Finalize() override {
    std::printf("\n%-28s %12s %12s %12s\n", "rows/s", "median", "lowest", "highest");
    for (auto& [name, rates] : rates_) {
      std::sort(rates.begin(), rates.end());
      std::printf("%-28s %12.0f %12.0f %12.0f\n", name.c_str(), Median(name), rates.front(), rates.back());
    }
    std::printf("%-28s %12.2f   (goal: at least 0.6)\n", "service / prepared", Median("service") / Median("prepared"));
    std::printf("%-28s %12.2f   (goal: at least 3)\n", "service / qt", Median("service") / Median("qt"));
  }

 private:
  double Median(const std::string& name) const {
    const auto found = rates_.find(name);
    return found == rates_.end() ? 0 : found->second[found->second.size() / 2];
  }
  std::map<std::string, std::vector<double>> rates_;
};

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  PrepareFirebirdProcess(TempDatabase::LockFolder());
  constexpr int kRounds = 9;
  for (const auto& [name, function] :
       {std::pair{"service", &Service}, std::pair{"prepared", &Prepared}, std::pair{"qt", &QtDriver}}) {
    benchmark::RegisterBenchmark(name, function)->UseManualTime()->Repetitions(kRounds)->Unit(benchmark::kMillisecond);
  }
  benchmark::RegisterBenchmark("read 10000 holdings", &ReadHoldings)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("figures 10 x 250", &Figures)->Unit(benchmark::kMillisecond);
  RatioReporter reporter;
  bench::RunInterleaved(argc, argv, reporter);
}
