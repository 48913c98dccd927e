// SPDX-License-Identifier: MIT
#include "holdwise/market/data_folder_builder.h"

#include <QDir>
#include <QElapsedTimer>
#include <algorithm>
#include <array>
#include <set>
#include <unordered_set>

#include "bar_folder.h"
#include "base_files.h"
#include "fingerprint.h"
#include "holdwise/market/bar_reader.h"
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

/// One run of the producer: each step fills what the next ones read.
class DataFolderBuild {
 public:
  DataFolderBuild(const BuildOptions& options, const BuildObserver& observer)
      : options_(options), observer_(observer), swap_(options.outFolder, QString::fromUtf8(kMarketFile)) {}

  BuildSummary Run();

 private:
  struct StockResult {
    bool isUsable = false;
    bool hasDays = false;  // inside the window
    BaseFile file;
    QuoteRow quote;
    StockFacts facts;
    RiskOfIndices risk;
    std::vector<Rejection> rejections;
  };

  void ReadIndices();
  void ReadDates();
  void WriteIndices();
  void WriteStocks();
  StockResult ReadStock(const StockFile& file) const;
  void WriteRisk(const std::vector<StockFile>& files, const std::vector<StockResult>& results) const;
  void WriteReferences();
  void WriteEstimates();
  void WriteQuotes();
  void WriteProposals();
  void WriteMarket();

  void Report(const std::vector<Rejection>& rejections);
  void Write(const QString& name, const ResultSet& table, const PacketLimits& limits) const;
  void WriteNamed(const QString& name, ResultSet table, const PacketLimits& limits) const;
  [[nodiscard]] std::unordered_set<int> KnownStocks() const;
  [[nodiscard]] QuoteRow ClosingQuote(const std::vector<Bar>& bars) const;

  const BuildOptions& options_;
  const BuildObserver& observer_;
  FolderSwap swap_;
  BuildSummary summary_;
  std::vector<Security> securities_;
  std::vector<int> tradingDates_;
  Window window_;
  std::map<int, BarFile> indices_;
  std::array<MarketReturns, kIndexCount> indexReturns_;  // in the order of kIndexNumbers
  DepositRates rates_;
  std::vector<EstimateValue> estimates_;
  std::vector<StockFacts> stocks_;  // those that have bars, if proposals are wanted
  std::map<int, QuoteRow> quotes_;  // by code number
  BaseFiles baseFiles_;
  QString edition_;  // known when all stocks are
};

BuildSummary DataFolderBuild::Run() {
  QElapsedTimer timer;
  timer.start();
  if (!options_.mayReplaceOtherKind) RefuseOtherKind(options_.outFolder, options_.isSimulated);
  ReadIndices();
  ReadDates();
  for (const QString& folder :
       {StatisticsFolder() + QStringLiteral("股票"), StatisticsFolder() + QStringLiteral("指数"), RiskFolder()}) {
    if (QDir(swap_.NewFolder()).mkpath(folder)) continue;
    throw Error(ErrorCategory::Io, "无法建立目录：" + swap_.NewFolder().toStdString());
  }
  WriteReferences();
  WriteEstimates();
  WriteIndices();
  WriteStocks();
  baseFiles_.Write(swap_.NewFolder(), edition_, ThreadsOr(options_.threads));
  WriteQuotes();
  WriteProposals();
  WriteMarket();
  // Statistics of a stock that is gone must not outlive it, nor proposals the prices they were made at.
  KeepOtherFiles(swap_.OldFolder(), swap_.NewFolder(),
                 [](const QString& name) { return name.startsWith(StatisticsFolder()) || IsProposalFile(name); });
  swap_.Commit();
  summary_.seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
  return summary_;
}

void DataFolderBuild::ReadIndices() {
  summary_.currentDate = options_.currentDate;
  int lastDate = 0;
  for (const auto& [number, path] : ListIndexFiles(options_.indicesFolder)) {
    BarFile file = ReadBars(path, {}, options_.currentDate);
    Report(file.rejections);
    if (file.bars.empty()) {
      const std::string until = options_.currentDate == 0 ? "" : "截至 " + DateText(options_.currentDate) + "，";
      throw Error(ErrorCategory::Refused, until + "指数行情没有可用的行：" + path.toStdString());
    }
    lastDate = std::max(lastDate, file.bars.back().date);
    indices_.emplace(number, std::move(file));
  }
  if (summary_.currentDate == 0) summary_.currentDate = lastDate;
}

void DataFolderBuild::ReadDates() {
  if (options_.datesFile.isEmpty()) {
    std::set<int> dates;
    for (const auto& [number, file] : indices_) {
      for (const Bar& bar : file.bars) dates.insert(bar.date);
    }
    tradingDates_.assign(dates.begin(), dates.end());
  } else {
    std::vector<Rejection> rejections;
    tradingDates_ = ReadTradingDates(options_.datesFile, rejections);
    Report(rejections);
    std::erase_if(tradingDates_, [this](int date) { return date > summary_.currentDate; });
  }
  if (tradingDates_.empty()) {
    throw Error(ErrorCategory::Refused, "截至 " + DateText(summary_.currentDate) + " 没有交易日");
  }
  const auto count = std::min<std::size_t>(static_cast<std::size_t>(options_.days), tradingDates_.size());
  window_ = {tradingDates_[tradingDates_.size() - count], tradingDates_.back()};
}

void DataFolderBuild::WriteReferences() {
  std::vector<Rejection> rejections;
  securities_ = ReadSecurities(options_.securitiesFile, rejections);
  rates_ = options_.ratesFile.isEmpty() ? BenchmarkRates(summary_.currentDate)
                                        : ReadDepositRates(options_.ratesFile, summary_.currentDate, rejections);
  Report(rejections);
  if (securities_.empty()) {
    throw Error(ErrorCategory::Refused, "证券表没有可用的行：" + options_.securitiesFile.toStdString());
  }
  if (!options_.ratesFile.isEmpty() && rates_.effectiveDate == 0) {
    throw Error(ErrorCategory::Refused,
                "没有在 " + DateText(summary_.currentDate) + " 或之前生效的利率：" + options_.ratesFile.toStdString());
  }
  summary_.securities = static_cast<int>(securities_.size());
  Write(QStringLiteral("securities.dat"), SecuritiesTable(securities_), kSecuritiesLimits);
  Write(QStringLiteral("trading_dates.dat"), TradingDatesTable(tradingDates_), kTradingDatesLimits);
  baseFiles_.Add({QStringLiteral("QMTL/TZZH/InterestRate.Dat"),
                  [this] { return InterestRateTable(rates_, summary_.currentDate); }, kInterestRateLimits});
}

void DataFolderBuild::WriteEstimates() {
  if (!options_.estimatesFile.isEmpty()) {
    std::vector<Rejection> rejections;
    estimates_ = ReadEstimates(options_.estimatesFile, KnownStocks(), rejections);
    Report(rejections);
  }
  baseFiles_.Add({QStringLiteral("QMTL/TZZH/GZ.dat"), [this] { return EstimateTable(estimates_); }, kSecuritiesLimits});
}

void DataFolderBuild::WriteIndices() {
  std::vector<SecurityStatistics> statistics;
  for (std::size_t i = 0; i < std::size(kIndexNumbers); ++i) {
    const int number = kIndexNumbers[i];
    const std::vector<Bar>& bars = indices_.at(number).bars;
    indexReturns_[i] = ReturnsOf(bars, window_);
    statistics.push_back(ComputeStatistics({number, bars, {}}, indexReturns_[i], window_, RiskFreePerDay(rates_)));
    quotes_[number] = ClosingQuote(bars);
  }
  BaseFile file(
      StatisticsFolder() + QStringLiteral("指数/allzs.dat"),
      [statistics = std::move(statistics)] { return StatisticsTable(statistics); }, kIndexSeriesLimits);
  summary_.rows += file.rows;
  baseFiles_.Add(std::move(file));
}

void DataFolderBuild::WriteStocks() {
  std::vector<Rejection> rejections;
  std::vector<StockFile> files = ListStockFiles(options_.barsFolder, rejections);
  std::unordered_set<std::string> known;
  for (const Security& security : securities_) known.insert(security.code);
  std::erase_if(files, [&](const StockFile& file) {
    const bool isUnknown = !known.contains(file.code);
    if (isUnknown) rejections.push_back({file.path, 0, QStringLiteral("代码不在证券表中")});
    return isUnknown;
  });
  Report(rejections);

  std::vector<StockResult> results(files.size());
  struct {
    Mutex mutex;
    int done HOLDWISE_GUARDED_BY(mutex) = 0;
  } progress;
  ParallelFor(files.size(), ThreadsOr(options_.threads), [&](std::size_t i) {
    results[i] = ReadStock(files[i]);
    const MutexLock lock(progress.mutex);
    ++progress.done;
    if (observer_.onProgress) observer_.onProgress(progress.done, static_cast<int>(files.size()));
  });
  for (std::size_t i = 0; i < files.size(); ++i) {
    Report(results[i].rejections);
    if (!results[i].isUsable) continue;
    ++summary_.series;
    summary_.rows += results[i].file.rows;
    baseFiles_.Add(std::move(results[i].file));
    quotes_[CodeNumberOfStock(files[i].code)] = results[i].quote;
    if (options_.proposals.areWanted) stocks_.push_back(std::move(results[i].facts));
  }
  if (summary_.series == 0) {
    throw Error(ErrorCategory::Refused, "没有可用的证券行情：" + options_.barsFolder.toStdString());
  }
  edition_ = baseFiles_.Edition();
  WriteRisk(files, results);
}

void DataFolderBuild::WriteRisk(const std::vector<StockFile>& files, const std::vector<StockResult>& results) const {
  for (std::size_t index = 0; index < std::size(kRiskFiles); ++index) {
    std::vector<RiskRow> rows;
    for (std::size_t i = 0; i < files.size(); ++i) {
      if (results[i].hasDays) rows.push_back({files[i].code, results[i].risk[index]});
    }
    WriteNamed(RiskFolder() + QString::fromUtf8(kRiskFiles[index]), RiskTable(rows), kSecuritiesLimits);
  }
}

DataFolderBuild::StockResult DataFolderBuild::ReadStock(const StockFile& stock) const {
  StockResult result;
  BarFile file;
  try {
    file = ReadBars(stock.path, tradingDates_, summary_.currentDate);
  } catch (const Error& error) {
    // One bad file among thousands: named, and the others go on.
    const QString reason = QString::fromUtf8(error.what())
                               .remove(QStringLiteral("：") + stock.path)
                               .remove(stock.path + QStringLiteral("："));
    result.rejections.push_back({stock.path, 0, reason});
    return result;
  }
  result.rejections = std::move(file.rejections);
  if (file.bars.empty()) {
    result.rejections.push_back({stock.path, 0, QStringLiteral("没有可用的行")});
    return result;
  }
  result.isUsable = true;
  result.quote = ClosingQuote(file.bars);
  const double riskFree = RiskFreePerDay(rates_);
  SecurityStatistics statistics = ComputeStatistics({CodeNumberOfStock(stock.code), file.bars, tradingDates_},
                                                    indexReturns_.front(), window_, riskFree);
  const auto& [days, figures] = statistics.ofTypes.front();
  result.hasDays = !days.empty();
  result.risk.front() = figures;
  for (std::size_t i = 1; i < indexReturns_.size(); ++i) {
    result.risk[i] = ComputeFigures(days, indexReturns_[i].front(), riskFree);
  }
  if (options_.proposals.areWanted) {
    result.facts.code = stock.code;
    result.facts.turnover = MeanTurnover(file, tradingDates_);
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
  if (!options_.quotesFile.isEmpty()) {
    std::vector<Rejection> rejections;
    std::unordered_set<int> known = KnownStocks();
    known.insert(std::begin(kIndexNumbers), std::end(kIndexNumbers));
    for (const auto& [codeNumber, quote] : ReadQuotes(options_.quotesFile, known, rejections)) {
      quotes_[codeNumber] = quote;
    }
    Report(rejections);
  }
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
  for (const Security& security : securities_) securities.emplace(security.code, &security);
  for (StockFacts& stock : stocks_) {
    CompleteFacts(stock, *securities.at(stock.code), quotes_.at(CodeNumberOfStock(stock.code)));
  }
  const ReferenceFigures reference{indexReturns_.front().front(), RiskFreePerYear(rates_), summary_.currentDate};
  ProposalFiles files =
      MakeProposalFiles(std::move(stocks_), reference, estimates_, options_.proposals, ThreadsOr(options_.threads));
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

void DataFolderBuild::Report(const std::vector<Rejection>& rejections) {
  for (const Rejection& rejection : rejections) {
    if (rejection.line == 0) {
      ++summary_.rejectedFiles;
    } else {
      ++summary_.rejectedLines;
    }
    if (observer_.onRejection) observer_.onRejection(rejection);
  }
}

// With the limits of its reader: what is written can be read.
void DataFolderBuild::Write(const QString& name, const ResultSet& table, const PacketLimits& limits) const {
  WritePacketFile(swap_.NewFolder() + u'/' + name, table, Durability::Replaceable, limits);
}

void DataFolderBuild::WriteNamed(const QString& name, ResultSet table, const PacketLimits& limits) const {
  NameEdition(table, edition_);
  Write(name, table, limits);
}

std::unordered_set<int> DataFolderBuild::KnownStocks() const {
  std::unordered_set<int> known;
  for (const Security& security : securities_) known.insert(CodeNumberOfStock(security.code));
  return known;
}

// Without a bar on the window's last day the price stood still on it.
QuoteRow DataFolderBuild::ClosingQuote(const std::vector<Bar>& bars) const {
  const Bar& last = bars.back();
  if (last.date < window_.endDate) return {last.close, last.close, true};
  return {last.close, bars.size() < 2 ? 0 : bars[bars.size() - 2].close, false};
}

}  // namespace

BuildSummary BuildDataFolder(const BuildOptions& options, const BuildObserver& observer) {
  if (options.days < 1) throw Error(ErrorCategory::Refused, "窗口至少要有一个交易日");
  CheckProposalOptions(options.proposals);
  return DataFolderBuild(options, observer).Run();
}

}  // namespace holdwise
