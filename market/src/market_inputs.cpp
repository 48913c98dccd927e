// SPDX-License-Identifier: MIT
#include "market_inputs.h"

#include <algorithm>
#include <set>

#include "holdwise/market/market_rules.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/error.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {

MarketInputs::MarketInputs(const BuildOptions& options, const BuildObserver& observer, BuildSummary& summary,
                           KeptFactorFiles& factorFiles)
    : options_(options), observer_(observer), summary_(summary), factorFiles_(factorFiles) {}

void MarketInputs::ReadReferences() {
  ReadIndices();
  ReadDates();
  ReadSecurityMaster();
  std::vector<Rejection> rejections;
  QString understood;
  if (options_.ratesFile.isEmpty()) {
    rates_ = BenchmarkRates(summary_.currentDate);
  } else {
    rates_ = ReadDepositRates(options_.ratesFile, summary_.currentDate, rejections, &understood);
    report_.AddFile(options_.ratesFile, understood);
  }
  Report(rejections);
  if (securities_.empty()) {
    throw Error(ErrorCategory::Refused, "证券表没有可用的行：" + options_.securitiesFile.toStdString());
  }
  if (!options_.ratesFile.isEmpty() && rates_.effectiveDate == 0) {
    throw Error(ErrorCategory::Refused,
                "没有在 " + DateText(summary_.currentDate) + " 或之前生效的利率：" + options_.ratesFile.toStdString());
  }
  summary_.securities = static_cast<int>(securities_.size());
  ReadAccountsFile();
  if (options_.estimatesFile.isEmpty()) return;
  rejections.clear();
  estimates_ = ReadEstimates(options_.estimatesFile, KnownStocks(), rejections, &understood);
  report_.AddFile(options_.estimatesFile, understood);
  Report(rejections);
}

void MarketInputs::ReadAccountsFile() {
  if (options_.accountsFile.isEmpty()) return;
  std::vector<Rejection> rejections;
  QString understood;
  accounts_ = ReadAccounts(options_.accountsFile, KnownStocks(), summary_.currentDate, rejections, &understood);
  report_.AddFile(options_.accountsFile, understood);
  Report(rejections);
  if (accounts_.empty()) {
    throw Error(ErrorCategory::Refused, "没有可用的每股指标：" + options_.accountsFile.toStdString());
  }
}

void MarketInputs::ReadIndices() {
  summary_.currentDate = options_.currentDate;
  const IndexSources sources = ListIndexFiles(options_.indicesFolder);
  BarRules rules;
  rules.isIndex = true;
  rules.lastDate = options_.currentDate;
  for (const auto& [number, path] : sources.files) {
    rules.codeNumber = number;
    TakeIndex(number, ReadBars(path, rules), path);
  }
  if (!sources.table.isEmpty()) {
    rules.codeNumber = 0;
    LongBars table([](std::string_view code) { return ParseIndexNumber(code, true); }, rules);
    table.Read(sources.table);
    Report(table.TakeRejections());
    for (const int number : table.Numbers()) TakeIndex(number, table.Take(number, rules), sources.table);
    for (const auto& [path, understood] : table.Understood()) report_.AddFile(path, understood);
  }
  for (const int number : kIndexNumbers) {
    if (indices_.contains(number)) continue;
    throw Error(ErrorCategory::NotFound,
                std::string("缺少指数行情 ") + IndexName(number) + "：" + options_.indicesFolder.toStdString());
  }
  if (summary_.currentDate != 0) return;
  for (const auto& [number, file] : indices_) {
    summary_.currentDate = std::max(summary_.currentDate, file.bars.back().date);
  }
}

void MarketInputs::TakeIndex(int number, BarFile file, const QString& path) {
  Report(file.rejections);
  if (file.bars.empty()) {
    const std::string until = options_.currentDate == 0 ? "" : "截至 " + DateText(options_.currentDate) + "，";
    throw Error(ErrorCategory::Refused, until + "指数行情没有可用的行：" + path.toStdString());
  }
  if (!file.understood.isEmpty()) report_.AddFile(path, file.understood);
  for (const Rejection& warning : file.warnings) Warn(path, warning.reason);
  indices_.emplace(number, std::move(file));
}

void MarketInputs::ReadDates() {
  int lastOfCalendar = 0;
  if (options_.datesFile.isEmpty()) {
    std::set<int> dates;
    for (const auto& [number, file] : indices_) {
      for (const Bar& bar : file.bars) dates.insert(bar.date);
    }
    tradingDates_.assign(dates.begin(), dates.end());
  } else {
    std::vector<Rejection> rejections;
    QString understood;
    tradingDates_ = ReadTradingDates(options_.datesFile, rejections, &understood);
    report_.AddFile(options_.datesFile, understood);
    Report(rejections);
    if (!tradingDates_.empty()) lastOfCalendar = tradingDates_.back();
    std::erase_if(tradingDates_, [this](int date) { return date > summary_.currentDate; });
  }
  if (tradingDates_.empty()) {
    throw Error(ErrorCategory::Refused, "截至 " + DateText(summary_.currentDate) + " 没有交易日");
  }
  const auto count = std::min<std::size_t>(static_cast<std::size_t>(options_.days), tradingDates_.size());
  window_ = {tradingDates_[tradingDates_.size() - count], tradingDates_.back()};
  CheckIndices(lastOfCalendar);
}

void MarketInputs::CheckIndices(int lastOfCalendar) {
  const auto dayText = [](int date) { return QString::fromStdString(DateText(date)); };
  constexpr int kLongestClosure = 12;  // calendar days: the longest holidays
  constexpr double kLowestLevel = 50;  // no index of these was ever lower
  int lastBar = 0;
  for (const auto& [number, file] : indices_) lastBar = std::max(lastBar, file.bars.back().date);
  if (lastOfCalendar != 0 &&
      (lastOfCalendar < lastBar || DayNumber(summary_.currentDate) - DayNumber(lastOfCalendar) > kLongestClosure)) {
    Warn(options_.datesFile, QStringLiteral("交易日历只到 %1，早于当前日期 %2，此后的行情不在统计之内：请更新交易日历")
                                 .arg(dayText(lastOfCalendar), dayText(summary_.currentDate)));
  }
  for (const auto& [number, file] : indices_) {
    const std::vector<Bar>& bars = file.bars;
    const QString name = QString::fromUtf8(IndexName(number));
    const auto lowest =
        std::min_element(bars.begin(), bars.end(), [](const Bar& a, const Bar& b) { return a.close < b.close; });
    if (lowest->close < kLowestLevel) {
      Warn(options_.indicesFolder,
           QStringLiteral("指数 %1 在 %2 只有 %3 点，不像指数的点位（是不是同号股票的价格？）：请核对")
               .arg(name, dayText(lowest->date), FormatFixed(lowest->close, 2)));
    }
    if (bars.back().date < window_.endDate) {
      Warn(options_.indicesFolder, QStringLiteral("指数 %1 只到 %2，最后一个交易日是 %3：请更新")
                                       .arg(name, dayText(bars.back().date), dayText(window_.endDate)));
    }
    const auto isMissing = [&](int date) {
      return date > bars.front().date && date < bars.back().date &&
             !std::binary_search(bars.begin(), bars.end(), Bar{date, 0},
                                 [](const Bar& a, const Bar& b) { return a.date < b.date; });
    };
    const auto missing = std::count_if(tradingDates_.begin(), tradingDates_.end(), isMissing);
    if (missing == 0) continue;
    const int first = *std::find_if(tradingDates_.begin(), tradingDates_.end(), isMissing);
    Warn(options_.indicesFolder,
         QStringLiteral("指数 %1 中间缺 %2 个交易日，如 %3").arg(name).arg(missing).arg(dayText(first)));
  }
}

void MarketInputs::ReadSecurityMaster() {
  std::vector<Rejection> rejections;
  QString understood;
  securities_ = ReadSecurities(options_.securitiesFile, rejections, &understood);
  report_.AddFile(options_.securitiesFile, understood);
  if (!options_.industriesFile.isEmpty()) {
    ReadIndustries(options_.industriesFile, securities_, rejections, &understood);
    report_.AddFile(options_.industriesFile, understood);
  }
  for (Security& security : securities_) byCode_.emplace(security.code, &security);
  if (!options_.factorsPlace.isEmpty()) {
    std::vector<std::pair<QString, QString>> ofFiles;
    factors_ = ReadFactors(options_.factorsPlace, rejections, ofFiles, factorFiles_);
    for (const auto& [path, text] : ofFiles) report_.AddFile(path, text);
  }
  Report(rejections);
}

void MarketInputs::ListStocks() {
  std::vector<Rejection> rejections;
  BarSources sources = ListStockFiles(options_.barsFolder, rejections);
  stocks_ = std::move(sources.stocks);
  std::erase_if(stocks_, [&](const StockFile& file) {
    const bool isUnknown = !byCode_.contains(file.code);
    if (isUnknown) rejections.push_back({file.path, 0, QStringLiteral("代码不在证券表中")});
    return isUnknown;
  });
  Report(rejections);
  if (sources.tables.empty()) return;

  const auto numberOf = [this](std::string_view text) {
    const std::optional<std::string> code = ParseStockCode(text);
    return code && byCode_.contains(*code) ? CodeNumberOfStock(*code) : 0;
  };
  tables_ = std::make_unique<LongBars>(numberOf, RulesOf({}));
  for (const QString& path : sources.tables) tables_->Read(path);
  Report(tables_->TakeRejections());
  for (const auto& [path, understood] : tables_->Understood()) report_.AddFile(path, understood);
  std::set<std::string> ofFiles;
  for (const StockFile& file : stocks_) ofFiles.insert(file.code);
  for (const int number : tables_->Numbers()) {
    const std::string code = SixDigits(number - kStockBase).toStdString();
    if (ofFiles.contains(code)) {
      Report({{sources.tables.front(), 0,
               QStringLiteral("代码 %1 另有文件，这里的不用").arg(QString::fromStdString(code))}});
    } else {
      stocks_.push_back({code, sources.tables.front()});
      ofTables_.insert(code);
    }
  }
  std::stable_sort(stocks_.begin(), stocks_.end(), [](const auto& a, const auto& b) { return a.code < b.code; });
}

BarRules MarketInputs::RulesOf(const std::string& code) const {
  BarRules rules;
  rules.tradingDates = tradingDates_;
  rules.lastDate = summary_.currentDate;
  if (code.empty()) return rules;
  rules.codeNumber = CodeNumberOfStock(code);
  rules.listDate = byCode_.at(code)->listDate;
  if (const auto found = factors_.find(rules.codeNumber); found != factors_.end()) {
    rules.factors = &found->second.steps;
    rules.factorsFrom = found->second.from;
  }
  return rules;
}

std::optional<StockSource> MarketInputs::SourceOf(std::size_t place) const {
  const StockFile& stock = stocks_[place];
  if (ofTables_.contains(stock.code)) return std::nullopt;
  const std::optional<FileState> state = FileStateOf(stock.path);
  if (!state || !HasSettled(*state)) return std::nullopt;
  StockSource source{*state, byCode_.at(stock.code)->listDate, {}};
  if (const auto found = factors_.find(CodeNumberOfStock(stock.code)); found != factors_.end()) {
    source.factors = found->second;
  }
  return source;
}

MarketInputs::StockBars MarketInputs::ReadStock(std::size_t place) {
  const StockFile& stock = stocks_[place];
  StockBars bars;
  const bool isOfTable = ofTables_.contains(stock.code);
  const BarRules rules = RulesOf(stock.code);
  try {
    bars.file = isOfTable ? tables_->Take(rules.codeNumber, rules) : ReadBars(stock.path, rules);
  } catch (const Error& error) {
    // One bad file among thousands: named, and the others go on.
    const QString reason = QString::fromUtf8(error.what())
                               .remove(QStringLiteral("：") + stock.path)
                               .remove(stock.path + QStringLiteral("："));
    bars.rejections.push_back({stock.path, 0, isOfTable ? QString::fromStdString(stock.code) + u' ' + reason : reason});
    return bars;
  }
  bars.rejections = std::move(bars.file.rejections);
  if (bars.file.bars.empty()) {
    const QString what = isOfTable ? QStringLiteral("代码 %1 没有可用的行").arg(QString::fromStdString(stock.code))
                                   : QStringLiteral("没有可用的行");
    bars.rejections.push_back({stock.path, 0, what});
  }
  return bars;
}

void MarketInputs::StockBars::LetBarsGo() {
  if (file.bars.size() > 2) file.bars = std::vector<Bar>{file.bars.front(), file.bars.back()};
  file.volumes = {};
}

void MarketInputs::Report(std::size_t place, const StockBars& bars) {
  const StockFile& stock = stocks_[place];
  Report(bars.rejections);
  if (bars.file.bars.empty()) return;
  if (observer_.onWarning) {
    for (const Rejection& warning : bars.file.warnings) {
      observer_.onWarning({warning.file, warning.line, QString::fromStdString(stock.code) + u' ' + warning.reason});
    }
  }
  if (Security* security = byCode_.at(stock.code); security->listDate == 0) {
    security->listDate = bars.file.bars.front().date;
  }
  const BarCounts& counts = bars.file.counts;
  // A current date that was asked for leaves out what is later.
  const int later = counts.laterDays + (options_.currentDate == 0 ? counts.laterLines : 0);
  laterDays_ += later;
  if (later > 0) ++laterStocks_;
  report_.AddStock(stock, bars.file, window_.endDate);
}

std::unordered_map<int, QuoteRow> MarketInputs::ReadQuotesFile() {
  if (options_.quotesFile.isEmpty()) return {};
  std::vector<Rejection> rejections;
  QString understood;
  std::unordered_set<int> known = KnownStocks();
  known.insert(std::begin(kIndexNumbers), std::end(kIndexNumbers));
  auto quotes = ReadQuotes(options_.quotesFile, known, rejections, &understood);
  report_.AddFile(options_.quotesFile, understood);
  Report(rejections);
  return quotes;
}

void MarketInputs::Finish() {
  if (laterStocks_ > 0) {
    Warn(options_.barsFolder,
         QStringLiteral("%1 只股票有 %2 行晚于最后一个交易日 %3，不在统计之内：请更新指数行情和交易日历")
             .arg(laterStocks_)
             .arg(laterDays_)
             .arg(QString::fromStdString(DateText(window_.endDate))));
  }
  summary_.understood = report_.Understood(tradingDates_);
  summary_.brief = report_.Brief();
  summary_.advice = report_.Advice();
}

void MarketInputs::Warn(const QString& place, const QString& doubt) {
  report_.AddDoubt(doubt);
  if (observer_.onWarning) observer_.onWarning({place, 0, doubt});
}

void MarketInputs::Report(const std::vector<Rejection>& rejections) {
  for (const Rejection& rejection : rejections) {
    if (rejection.line == 0) {
      ++summary_.rejectedFiles;
    } else {
      summary_.rejectedLines += rejection.lines;
    }
    if (observer_.onRejection) observer_.onRejection(rejection);
  }
}

std::unordered_set<int> MarketInputs::KnownStocks() const {
  std::unordered_set<int> known;
  for (const Security& security : securities_) known.insert(CodeNumberOfStock(security.code));
  return known;
}

}  // namespace holdwise
