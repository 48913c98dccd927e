// SPDX-License-Identifier: MIT
#include "holdwise/market/data_folder_builder.h"

#include <QDir>
#include <QElapsedTimer>
#include <algorithm>
#include <array>
#include <memory>
#include <optional>

#include "base_files.h"
#include "build_memory.h"
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
#include "stock_figures.h"

namespace holdwise {
namespace {

QString RiskFolder() {
  return QStringLiteral("QMTL/TZZH/风险计量/");
}

// File names in the order of kIndexNumbers.
constexpr const char* kRiskFiles[] = {"SH.dat", "SZ.dat", "HS.dat"};
static_assert(std::size(kRiskFiles) == std::size(kIndexNumbers));

/// What `make` gives for each stock, called on several threads; what their bars say is reported in order.
template <typename Make>
std::vector<std::shared_ptr<const MadeStock>> MakeEachStock(MarketInputs& inputs, const BuildOptions& options,
                                                            const BuildObserver& observer, const Make& make) {
  const std::size_t count = inputs.Stocks().size();
  std::vector<std::shared_ptr<const MadeStock>> made(count);
  struct {
    Mutex mutex;
    int done HOLDWISE_GUARDED_BY(mutex) = 0;
  } progress;
  ParallelFor(count, ThreadsOr(options.threads), [&](std::size_t i) {
    made[i] = make(i);
    const MutexLock lock(progress.mutex);
    ++progress.done;
    if (observer.onProgress) observer.onProgress(progress.done, static_cast<int>(count));
  });
  for (std::size_t i = 0; i < count; ++i) inputs.Report(i, made[i]->bars);
  return made;
}

/// A stock's bars, and its figures when there is a market for them.
std::shared_ptr<const MadeStock> MakeStock(MarketInputs& inputs, std::size_t place, const MarketBasis* market) {
  auto made = std::make_shared<MadeStock>();
  made->bars = inputs.ReadStock(place);
  if (market != nullptr) made->figures = FiguresOfStock(inputs.Stocks()[place].code, made->bars.file, *market);
  made->bars.LetBarsGo();
  return made;
}

/// One run of the producer: each step fills what the next ones read.
class DataFolderBuild {
 public:
  DataFolderBuild(const BuildOptions& options, const BuildObserver& observer, BuildMemory::Work& kept)
      : options_(options),
        observer_(observer),
        kept_(kept),
        swap_(options.outFolder, QString::fromUtf8(kMarketFile)),
        inputs_(options, observer, summary_, kept.factorFiles) {}

  BuildSummary Run();

 private:
  void WriteReferences();
  void WriteIndices();
  std::vector<std::shared_ptr<const MadeStock>> MakeStocks();
  void WriteStocks();
  void WriteRisk(const std::vector<std::shared_ptr<const MadeStock>>& stocks) const;
  void WriteQuotes();
  void WriteProposals();
  void WriteMarket();

  void Write(const QString& name, const ResultSet& table, const PacketLimits& limits) const;
  void WriteNamed(const QString& name, ResultSet table, const PacketLimits& limits) const;

  const BuildOptions& options_;
  const BuildObserver& observer_;
  BuildMemory::Work& kept_;
  FolderSwap swap_;
  BuildSummary summary_;
  MarketInputs inputs_;
  MarketBasis market_;
  std::vector<StockFacts> stocks_;  // those that have bars, if proposals are wanted
  std::map<int, QuoteRow> quotes_;  // by code number
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
  if (!options_.accountsFile.isEmpty()) {
    Write(QStringLiteral("accounts.dat"), AccountsTable(inputs_.Accounts()), kSecuritiesLimits);
  }
  baseFiles_.Add({QStringLiteral("QMTL/TZZH/InterestRate.Dat"),
                  [this] { return InterestRateTable(inputs_.Rates(), summary_.currentDate); }, kInterestRateLimits});
  baseFiles_.Add(
      {QStringLiteral("QMTL/TZZH/GZ.dat"), [this] { return EstimateTable(inputs_.Estimates()); }, kSecuritiesLimits});
}

void DataFolderBuild::WriteIndices() {
  market_.tradingDates = inputs_.TradingDates();
  market_.window = inputs_.GetWindow();
  market_.lastDate = summary_.currentDate;
  market_.riskFreePerDay = RiskFreePerDay(inputs_.Rates());
  market_.forProposals = options_.proposals.areWanted;
  std::vector<SecurityStatistics> statistics;
  for (std::size_t i = 0; i < std::size(kIndexNumbers); ++i) {
    const int number = kIndexNumbers[i];
    const std::vector<Bar>& bars = inputs_.Index(number).bars;
    market_.indexReturns[i] = ReturnsOf(bars, market_.window);
    statistics.push_back(
        ComputeStatistics({number, bars, {}}, market_.indexReturns[i], market_.window, market_.riskFreePerDay));
    quotes_[number] = ClosingQuote(bars, market_.window);
  }
  BaseFile file(
      StatisticsFolder() + QStringLiteral("指数/allzs.dat"),
      [statistics = std::move(statistics)] { return StatisticsTable(statistics); }, kIndexSeriesLimits);
  summary_.rows += file.rows;
  baseFiles_.Add(std::move(file));
}

// What was made before of the same files in the same market, and the rest anew.
std::vector<std::shared_ptr<const MadeStock>> DataFolderBuild::MakeStocks() {
  if (kept_.basis != market_) kept_.stocks = {};
  kept_.basis = market_;
  std::vector<std::optional<StockSource>> sources(inputs_.Stocks().size());
  auto made = MakeEachStock(inputs_, options_, observer_, [&](std::size_t i) {
    sources[i] = inputs_.SourceOf(i);  // before it is read: what changes meanwhile is another one
    auto stock = sources[i] ? kept_.stocks.Find(inputs_.Stocks()[i].path, *sources[i]) : nullptr;
    return stock != nullptr ? stock : MakeStock(inputs_, i, &market_);
  });
  Kept<StockSource, MadeStock> now;
  for (std::size_t i = 0; i < made.size(); ++i) {
    if (sources[i]) now.Add(inputs_.Stocks()[i].path, std::move(*sources[i]), made[i]);
  }
  kept_.stocks = std::move(now);
  return made;
}

void DataFolderBuild::WriteStocks() {
  inputs_.ListStocks();
  const auto stocks = MakeStocks();
  for (std::size_t i = 0; i < stocks.size(); ++i) {
    const StockFigures& figures = stocks[i]->figures;
    if (!figures.isUsable) continue;
    ++summary_.series;
    summary_.rows += figures.file.rows;
    baseFiles_.Add(figures.file);
    quotes_[CodeNumberOfStock(inputs_.Stocks()[i].code)] = figures.quote;
    if (market_.forProposals) stocks_.push_back(figures.facts);
  }
  if (summary_.series == 0) {
    throw Error(ErrorCategory::Refused, "没有可用的证券行情：" + options_.barsFolder.toStdString());
  }
  edition_ = baseFiles_.Edition();
  WriteRisk(stocks);
}

void DataFolderBuild::WriteRisk(const std::vector<std::shared_ptr<const MadeStock>>& stocks) const {
  for (std::size_t index = 0; index < std::size(kRiskFiles); ++index) {
    std::vector<RiskRow> rows;
    for (std::size_t i = 0; i < stocks.size(); ++i) {
      const StockFigures& figures = stocks[i]->figures;
      if (figures.hasDays) rows.push_back({inputs_.Stocks()[i].code, figures.risk[index]});
    }
    WriteNamed(RiskFolder() + QString::fromUtf8(kRiskFiles[index]), RiskTable(rows), kSecuritiesLimits);
  }
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
  const ReferenceFigures reference{market_.indexReturns.front().front(), RiskFreePerYear(inputs_.Rates()),
                                   summary_.currentDate};
  ProposalFiles files = MakeProposalFiles(std::move(stocks_), reference, inputs_.Estimates(), options_.proposals,
                                          ThreadsOr(options_.threads), kept_.proposals);
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

void CheckOptions(const BuildOptions& options) {
  if (options.days < 1) throw Error(ErrorCategory::Refused, "窗口至少要有一个交易日");
  CheckProposalOptions(options.proposals);
}

}  // namespace

BuildMemory::BuildMemory() : work_(std::make_unique<Work>()) {}
BuildMemory::~BuildMemory() = default;

BuildSummary BuildDataFolder(const BuildOptions& options, const BuildObserver& observer) {
  BuildMemory memory;
  return BuildDataFolder(options, observer, memory);
}

BuildSummary BuildDataFolder(const BuildOptions& options, const BuildObserver& observer, BuildMemory& memory) {
  CheckOptions(options);
  return DataFolderBuild(options, observer, memory.GetWork()).Run();
}

BuildSummary CheckInputs(const BuildOptions& options, const BuildObserver& observer) {
  CheckOptions(options);
  QElapsedTimer timer;
  timer.start();
  BuildSummary summary;
  KeptFactorFiles none;
  MarketInputs inputs(options, observer, summary, none);
  inputs.ReadReferences();
  inputs.ListStocks();
  const auto stocks =
      MakeEachStock(inputs, options, observer, [&inputs](std::size_t i) { return MakeStock(inputs, i, nullptr); });
  summary.series = static_cast<int>(
      std::count_if(stocks.begin(), stocks.end(), [](const auto& stock) { return !stock->bars.file.bars.empty(); }));
  (void)inputs.ReadQuotesFile();
  inputs.Finish();
  summary.seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
  return summary;
}

}  // namespace holdwise
