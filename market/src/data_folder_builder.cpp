// SPDX-License-Identifier: MIT
#include "holdwise/market/data_folder_builder.h"

#include <QDir>
#include <QElapsedTimer>
#include <algorithm>
#include <array>
#include <atomic>

#include "base_files.h"
#include "fingerprint.h"
#include "holdwise/market/folder_swap.h"
#include "holdwise/market/market_rules.h"
#include "holdwise/market/reference_files.h"
#include "holdwise/market/reference_tables.h"
#include "holdwise/market/statistics.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/packet_file.h"
#include "holdwise/packet/table_limits.h"
#include "holdwise/packet/thread_annotations.h"
#include "kept_files.h"
#include "market_file.h"
#include "market_inputs.h"
#include "parallel_for.h"
#include "proposal_files.h"

namespace holdwise {
namespace {

QString StatisticsFolder() {
  return QStringLiteral("QMTL/TZZH/Day250/");
}

QString StockName(const std::string& code) {
  return StatisticsFolder() + QStringLiteral("股票/%1.dat").arg(QString::fromStdString(code));
}

QString RiskFolder() {
  return QStringLiteral("QMTL/TZZH/风险计量/");
}

ResultSet StatisticsTable(std::span<const SecurityStatistics> securities) {
  ResultSet table = MakeStatisticsTable();
  for (const SecurityStatistics& security : securities) AppendStatistics(table, security);
  return table;
}

// File names in the order of kIndexNumbers.
constexpr const char* kRiskFiles[] = {"SH.dat", "SZ.dat", "HS.dat"};
using RiskOfIndices = std::array<Figures, std::size(kRiskFiles)>;
static_assert(std::size(kRiskFiles) == std::size(kIndexNumbers));

/// Reads the bars of all stocks, on several threads, and hands each to `use` there; what they say is reported in order.
template <typename Use>
void ReadAllStocks(MarketInputs& inputs, const BuildOptions& options, const BuildObserver& observer, const Use& use) {
  const std::size_t count = inputs.Stocks().size();
  std::vector<MarketInputs::StockBars> read(count);
  struct {
    Mutex mutex;
    int done HOLDWISE_GUARDED_BY(mutex) = 0;
  } progress;
  ParallelFor(count, ThreadsOr(options.threads), [&](std::size_t i) {
    read[i] = inputs.ReadStock(i);
    use(i, read[i].file);
    read[i].LetBarsGo();
    const MutexLock lock(progress.mutex);
    ++progress.done;
    if (observer.onProgress) observer.onProgress(progress.done, static_cast<int>(count));
  });
  for (std::size_t i = 0; i < count; ++i) inputs.Report(i, read[i]);
}

/// One run of the producer: each step fills what the next ones read.
class DataFolderBuild {
 public:
  DataFolderBuild(const BuildOptions& options, const BuildObserver& observer)
      : options_(options),
        observer_(observer),
        swap_(options.outFolder, QString::fromUtf8(kMarketFile)),
        inputs_(options, observer, summary_) {}

  BuildSummary Run();

 private:
  struct StockResult {
    bool isUsable = false;
    bool hasDays = false;  // inside the window
    BaseFile file;
    QuoteRow quote;
    StockFacts facts;
    RiskOfIndices risk;
  };

  void WriteReferences();
  void WriteIndices();
  void WriteStocks();
  StockResult FiguresOfStock(const StockFile& stock, const BarFile& file) const;
  void WriteRisk(const std::vector<StockResult>& results) const;
  void WriteQuotes();
  void WriteProposals();
  void WriteMarket();

  void Write(const QString& name, const ResultSet& table, const PacketLimits& limits) const;
  void WriteNamed(const QString& name, ResultSet table, const PacketLimits& limits) const;
  [[nodiscard]] QuoteRow ClosingQuote(const std::vector<Bar>& bars) const;

  const BuildOptions& options_;
  const BuildObserver& observer_;
  FolderSwap swap_;
  BuildSummary summary_;
  MarketInputs inputs_;
  std::array<MarketReturns, kIndexCount> indexReturns_;  // in the order of kIndexNumbers
  std::vector<StockFacts> stocks_;                       // those that have bars, if proposals are wanted
  std::map<int, QuoteRow> quotes_;                       // by code number
  BaseFiles baseFiles_;
  QString edition_;  // known when all stocks are
};

BuildSummary DataFolderBuild::Run() {
  QElapsedTimer timer;
  timer.start();
  if (!options_.mayReplaceOtherKind) RefuseOtherKind(options_.outFolder, options_.isSimulated);
  inputs_.ReadReferences();
  for (const QString& folder :
       {StatisticsFolder() + QStringLiteral("股票"), StatisticsFolder() + QStringLiteral("指数"), RiskFolder()}) {
    if (QDir(swap_.NewFolder()).mkpath(folder)) continue;
    throw Error(ErrorCategory::Io, "无法建立目录：" + swap_.NewFolder().toStdString());
  }
  WriteReferences();
  WriteIndices();
  WriteStocks();
  // Behind the stocks: a list date may be that of the first bar.
  Write(QStringLiteral("securities.dat"), SecuritiesTable(inputs_.Securities()), kSecuritiesLimits);
  baseFiles_.Write(swap_.NewFolder(), edition_, ThreadsOr(options_.threads));
  WriteQuotes();
  WriteProposals();
  WriteMarket();
  // Statistics of a stock that is gone must not outlive it, nor proposals the prices they were made at.
  KeepOtherFiles(swap_.OldFolder(), swap_.NewFolder(),
                 [](const QString& name) { return name.startsWith(StatisticsFolder()) || IsProposalFile(name); });
  swap_.Commit();
  inputs_.Finish();
  summary_.seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
  return summary_;
}

void DataFolderBuild::WriteReferences() {
  Write(QStringLiteral("trading_dates.dat"), TradingDatesTable(inputs_.TradingDates()), kTradingDatesLimits);
  baseFiles_.Add({QStringLiteral("QMTL/TZZH/InterestRate.Dat"),
                  [this] { return InterestRateTable(inputs_.Rates(), summary_.currentDate); }, kInterestRateLimits});
  baseFiles_.Add(
      {QStringLiteral("QMTL/TZZH/GZ.dat"), [this] { return EstimateTable(inputs_.Estimates()); }, kSecuritiesLimits});
}

void DataFolderBuild::WriteIndices() {
  std::vector<SecurityStatistics> statistics;
  for (std::size_t i = 0; i < std::size(kIndexNumbers); ++i) {
    const int number = kIndexNumbers[i];
    const std::vector<Bar>& bars = inputs_.Index(number).bars;
    indexReturns_[i] = ReturnsOf(bars, inputs_.GetWindow());
    statistics.push_back(
        ComputeStatistics({number, bars, {}}, indexReturns_[i], inputs_.GetWindow(), RiskFreePerDay(inputs_.Rates())));
    quotes_[number] = ClosingQuote(bars);
  }
  BaseFile file(
      StatisticsFolder() + QStringLiteral("指数/allzs.dat"),
      [statistics = std::move(statistics)] { return StatisticsTable(statistics); }, kIndexSeriesLimits);
  summary_.rows += file.rows;
  baseFiles_.Add(std::move(file));
}

void DataFolderBuild::WriteStocks() {
  inputs_.ListStocks();
  const std::vector<StockFile>& stocks = inputs_.Stocks();
  std::vector<StockResult> results(stocks.size());
  ReadAllStocks(inputs_, options_, observer_, [&](std::size_t i, const BarFile& file) {
    if (!file.bars.empty()) results[i] = FiguresOfStock(stocks[i], file);
  });
  for (std::size_t i = 0; i < stocks.size(); ++i) {
    if (!results[i].isUsable) continue;
    ++summary_.series;
    summary_.rows += results[i].file.rows;
    baseFiles_.Add(std::move(results[i].file));
    quotes_[CodeNumberOfStock(stocks[i].code)] = results[i].quote;
    if (options_.proposals.areWanted) stocks_.push_back(std::move(results[i].facts));
  }
  if (summary_.series == 0) {
    throw Error(ErrorCategory::Refused, "没有可用的证券行情：" + options_.barsFolder.toStdString());
  }
  edition_ = baseFiles_.Edition();
  WriteRisk(results);
}

void DataFolderBuild::WriteRisk(const std::vector<StockResult>& results) const {
  for (std::size_t index = 0; index < std::size(kRiskFiles); ++index) {
    std::vector<RiskRow> rows;
    for (std::size_t i = 0; i < results.size(); ++i) {
      if (results[i].hasDays) rows.push_back({inputs_.Stocks()[i].code, results[i].risk[index]});
    }
    WriteNamed(RiskFolder() + QString::fromUtf8(kRiskFiles[index]), RiskTable(rows), kSecuritiesLimits);
  }
}

DataFolderBuild::StockResult DataFolderBuild::FiguresOfStock(const StockFile& stock, const BarFile& file) const {
  StockResult result;
  result.isUsable = true;
  result.quote = ClosingQuote(file.bars);
  const double riskFree = RiskFreePerDay(inputs_.Rates());
  SecurityStatistics statistics = ComputeStatistics({CodeNumberOfStock(stock.code), file.bars, inputs_.TradingDates()},
                                                    indexReturns_.front(), inputs_.GetWindow(), riskFree);
  const auto& [days, figures] = statistics.ofTypes.front();
  result.hasDays = !days.empty();
  result.risk.front() = figures;
  for (std::size_t i = 1; i < indexReturns_.size(); ++i) {
    result.risk[i] = ComputeFigures(days, indexReturns_[i].front(), riskFree);
  }
  if (options_.proposals.areWanted) {
    result.facts.code = stock.code;
    result.facts.turnover = MeanTurnover(file, inputs_.TradingDates());
    result.facts.returns = AlignReturns(days, indexReturns_.front().front());
  }
  result.file = {StockName(stock.code),
                 [statistics = std::move(statistics)] {
                   return StatisticsTable({&statistics, 1});
                 },
                 kStockSeriesLimits};
  return result;
}

void DataFolderBuild::WriteQuotes() {
  for (const auto& [codeNumber, quote] : inputs_.ReadQuotesFile()) quotes_[codeNumber] = quote;
  ResultSet table;
  const int codeNumberColumn = table.AddColumn("code_number", ColumnType::Integer);
  const int priceColumn = table.AddColumn("price", ColumnType::Real);
  const int previousCloseColumn = table.AddColumn("prev_close", ColumnType::Real);
  for (const auto& [codeNumber, quote] : quotes_) {
    const int row = table.AppendRow();
    table.SetInteger(row, codeNumberColumn, codeNumber);
    table.SetReal(row, priceColumn, quote.price);
    table.SetReal(row, previousCloseColumn, quote.previousClose);
    if (quote.isSuspended && !IsIndexNumber(codeNumber)) ++summary_.suspended;
  }
  WriteNamed(QStringLiteral("quotes.dat"), std::move(table), kSecuritiesLimits);
}

void DataFolderBuild::WriteProposals() {
  if (!options_.proposals.areWanted) return;
  std::map<std::string, const Security*> securities;
  for (const Security& security : inputs_.Securities()) securities.emplace(security.code, &security);
  for (StockFacts& stock : stocks_) {
    CompleteFacts(stock, *securities.at(stock.code), quotes_.at(CodeNumberOfStock(stock.code)));
  }
  const ReferenceFigures reference{indexReturns_.front().front(), RiskFreePerYear(inputs_.Rates()),
                                   summary_.currentDate};
  ProposalFiles files = MakeProposalFiles(std::move(stocks_), reference, inputs_.Estimates(), options_.proposals,
                                          ThreadsOr(options_.threads));
  summary_.proposals = files.candidates;
  summary_.remarks = std::move(files.remarks);
  std::map<QString, QByteArray> digests;
  for (const auto& [name, table] : files.tables) digests.emplace(name, DigestOf(table));
  const QString proposals = FingerprintOf(digests);
  for (auto& [name, table] : files.tables) {
    NameProposals(table, proposals);
    WriteNamed(name, std::move(table), kProposalLimits);
  }
}

void DataFolderBuild::WriteMarket() {
  Write(QString::fromUtf8(kMarketFile), MarketTable(summary_.currentDate, options_.isSimulated, edition_),
        kMarketLimits);
}

// With the limits of its reader: what is written can be read.
void DataFolderBuild::Write(const QString& name, const ResultSet& table, const PacketLimits& limits) const {
  WritePacketFile(swap_.NewFolder() + u'/' + name, table, Durability::Replaceable, limits);
}

void DataFolderBuild::WriteNamed(const QString& name, ResultSet table, const PacketLimits& limits) const {
  NameEdition(table, edition_);
  Write(name, table, limits);
}

// Without a bar on the window's last day the price stood still on it.
QuoteRow DataFolderBuild::ClosingQuote(const std::vector<Bar>& bars) const {
  const Bar& last = bars.back();
  if (last.date < inputs_.GetWindow().endDate) return {last.close, last.close, true};
  return {last.close, bars.size() < 2 ? 0 : bars[bars.size() - 2].close, false};
}

}  // namespace

BuildSummary BuildDataFolder(const BuildOptions& options, const BuildObserver& observer) {
  if (options.days < 1) throw Error(ErrorCategory::Refused, "窗口至少要有一个交易日");
  CheckProposalOptions(options.proposals);
  return DataFolderBuild(options, observer).Run();
}

BuildSummary CheckInputs(const BuildOptions& options, const BuildObserver& observer) {
  if (options.days < 1) throw Error(ErrorCategory::Refused, "窗口至少要有一个交易日");
  QElapsedTimer timer;
  timer.start();
  BuildSummary summary;
  MarketInputs inputs(options, observer, summary);
  inputs.ReadReferences();
  inputs.ListStocks();
  std::atomic<int> usable = 0;
  ReadAllStocks(inputs, options, observer,
                [&usable](std::size_t, const BarFile& file) { usable += file.bars.empty() ? 0 : 1; });
  summary.series = usable;
  (void)inputs.ReadQuotesFile();
  inputs.Finish();
  summary.seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
  return summary;
}

}  // namespace holdwise
