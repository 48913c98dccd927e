// SPDX-License-Identifier: MIT
#include "transfer/import.h"

#include <QFile>
#include <algorithm>
#include <set>

#include "backup/portfolio_file.h"
#include "holdings/holdings_file.h"
#include "holdings/portfolio_rules.h"
#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/number_text.h"
#include "holdwise/packet/text_file.h"
#include "import_checks.h"
#include "import_preview.h"
#include "import_saved.h"
#include "import_statements.h"

namespace holdwise {
namespace {

constexpr std::int64_t kMaxFileBytes = 16LL << 20;

/// What a portfolio is measured from.
struct Purchase {
  QString indexClose;
  QString date;
  bool isClose = false;
};

Purchase PurchaseNow(const TDataCenter& dataCentre) {
  const double level = dataCentre.IndexNowData(kCompositeIndex).currentPrice;
  if (!(level > 0)) throw Error(ErrorCategory::Refused, "数据中心没有上证指数的现价，无法导入组合");
  const QString date = dataCentre.CurrentDateText();
  if (date.isEmpty()) throw Error(ErrorCategory::Refused, "数据中心没有当前日期，无法导入组合");
  return {FormatFixed(level, 2), date};
}

Purchase PurchaseOn(int date, double indexClose) {
  return {FormatFixed(indexClose, 2), QString::fromStdString(DateText(date)), true};
}

bool HasDay(const CsvPortfolio& portfolio) {
  return portfolio.date.value_or(0) != 0;
}

void InsertPortfolio(UserDataServices& database, const CsvPortfolio& portfolio, const Purchase& purchase) {
  const std::int64_t id = database.Count(import_sql::kNextPortfolioId);
  if (id <= 0) throw Error(ErrorCategory::Database, "数据库没有给出新的组合编号");
  const double total = CostOf(portfolio);
  for (const CsvHolding& holding : portfolio.holdings) {
    MustExecute(database,
                import_sql::InsertHolding({QString::number(id), QString::number(holding.codeNumber), holding.quantity,
                                           ShortestText(CostOf(holding) / total), holding.price}));
  }
  MustExecute(database, import_sql::InsertPortfolio({QString::number(id), portfolio.name, purchase.indexClose,
                                                     purchase.date, purchase.isClose}));
}

std::vector<int> HeldStocks(const std::vector<CsvPortfolio>& portfolios) {
  std::vector<int> stocks;
  for (const CsvPortfolio& portfolio : portfolios) {
    for (const CsvHolding& holding : portfolio.holdings) stocks.push_back(holding.codeNumber);
  }
  return stocks;
}

void FindTakenNames(UserDataServices& database, const CsvPortfolios& file, std::vector<ImportProblem>& problems) {
  constexpr std::size_t kEnough = 100;  // of a file that is refused anyway
  const TakenNames taken(database);
  for (const CsvPortfolio& portfolio : file.portfolios) {
    if (problems.size() >= kEnough) return;
    if (const QString problem = taken.ProblemOf(portfolio.name); !problem.isEmpty())
      problems.push_back({portfolio.line, problem});
  }
}

/// Why nothing can have been bought on that day, as far as the market's data tell; empty when it can.
QString DayProblem(int date, const TDataCenter& dataCentre, const std::map<int, double>& closes) {
  const QString day = QString::fromStdString(DateText(date));
  // The texts of both have one form, in which the later date is the greater text.
  if (day > dataCentre.CurrentDateText()) {
    return QStringLiteral("日期%1晚于行情日期%2").arg(day, dataCentre.CurrentDateText());
  }
  const std::vector<int>& tradingDates = dataCentre.TradingDates();
  const bool isReached = !tradingDates.empty() && date >= tradingDates.back();
  if (isReached && std::find(tradingDates.begin(), tradingDates.end(), date) == tradingDates.end()) {
    return QStringLiteral("日期%1不是交易日").arg(day);
  }
  if (closes.count(date) != 0) return {};
  return QStringLiteral("行情数据没有%1的上证指数收盘（最早为%2）")
      .arg(day, QString::fromStdString(DateText(closes.begin()->first)));
}

/// The index's closes that the days of purchase need; empty when the file names no day. `closes`: those that were read
/// before, if any.
std::map<int, double> CheckDays(const ImportServices& services, const CsvPortfolios& file, std::map<int, double> closes,
                                std::vector<ImportProblem>& problems) {
  if (std::none_of(file.portfolios.begin(), file.portfolios.end(), HasDay)) return {};
  try {
    if (closes.empty()) closes = services.indexCloses();
  } catch (const Error& error) {
    problems.push_back({0, QStringLiteral("不能按买入日期导入：%1").arg(QString::fromUtf8(error.what()))});
  }
  for (const CsvPortfolio& portfolio : file.portfolios) {
    if (closes.empty() || !HasDay(portfolio)) continue;
    if (const QString reason = DayProblem(*portfolio.date, services.dataCentre, closes); !reason.isEmpty()) {
      problems.push_back({portfolio.line, reason});
    }
  }
  return closes;
}

ImportResult Write(const std::vector<CsvPortfolio>& portfolios, const ImportServices& services,
                   const std::map<int, double>& closes, const ImportProgress& progress) {
  const Purchase now = PurchaseNow(services.dataCentre);
  const int total = static_cast<int>(portfolios.size());
  int done = 0;
  const auto step = [&] { return !progress || progress(done++, total); };

  RequireNoQuestion(services.database);
  TransactionScope transaction(services.database);
  for (const CsvPortfolio& portfolio : portfolios) {
    if (!step()) return Cancelled();
    InsertPortfolio(services.database, portfolio,
                    HasDay(portfolio) ? PurchaseOn(*portfolio.date, closes.at(*portfolio.date)) : now);
  }
  if (!step()) return Cancelled();
  transaction.Commit();
  ImportResult result;
  result.portfolios = static_cast<int>(portfolios.size());
  for (const CsvPortfolio& portfolio : portfolios) result.holdings += static_cast<int>(portfolio.holdings.size());
  result.warnings = UnpricedStocks(HeldStocks(portfolios), services.dataCentre);
  return result;
}

/// A word such as 持仓成本 is a share's cost to some and the whole position's to others. The market's prices tell.
void CheckCosts(const CsvPortfolios& file, const TDataCenter& dataCentre, std::vector<ImportProblem>& problems) {
  constexpr double kFar = 5;
  if (file.shape.doubtfulCost.isEmpty()) return;
  std::size_t priced = 0;
  std::size_t whole = 0;
  for (const CsvPortfolio& portfolio : file.portfolios) {
    for (const CsvHolding& holding : portfolio.holdings) {
      const double price = dataCentre.StockNowData(holding.codeNumber).currentPrice;
      if (!(price > 0)) continue;
      ++priced;
      const double ratio = RealOr(holding.price) / price;
      if (ratio > kFar && ratio / RealOr(holding.quantity, 1) < kFar) ++whole;
    }
  }
  if (priced == 0 || whole * 2 < priced) return;
  problems.push_back(
      {file.shape.headingLine, QStringLiteral("“%1”看来是全部持股的成本，不是每股的：请换成每股成本，表头写“成本价”")
                                   .arg(file.shape.doubtfulCost)});
}

/// Rows that nobody has agreed to leave out, or that have another fault, too; and portfolios of which nothing else is
/// left.
void CheckStrangers(const CsvPortfolios& file, bool isSkipped, std::vector<ImportProblem>& problems) {
  std::set<int> faulty;
  for (const ImportProblem& problem : problems) faulty.insert(problem.line);
  for (const CsvPortfolio& portfolio : file.portfolios) {
    if (portfolio.holdings.empty() && isSkipped && problems.empty())
      problems.push_back({portfolio.line, QStringLiteral("组合“%1”没有可以导入的股票").arg(portfolio.name)});
  }
  const bool isNothingLeft = file.portfolios.empty() && isSkipped && problems.empty();
  if (isNothingLeft) problems.push_back({0, QStringLiteral("文件里没有可以导入的沪深A股")});
  const bool areAllNamed = !isSkipped || isNothingLeft;
  if (file.strangers.empty()) return;
  if (file.shape.isStatement && areAllNamed && !isNothingLeft) {
    problems.push_back(
        {0, QStringLiteral("有%1行不是可以导入的沪深A股：用 --skip-unknown，或在窗口的“文件→导入组合”中同意，"
                           "可以略去它们导入其余的行")
                .arg(file.strangers.size())});
  }
  for (const LeftOutRow& row : file.strangers) {
    if (!areAllNamed && faulty.count(row.line) == 0) continue;
    problems.push_back({row.line, file.shape.isStatement ? QStringLiteral("%1：%2，不能导入").arg(row.what, row.reason)
                                                         : QStringLiteral("没有代码为%1的A股股票").arg(row.what)});
  }
}

/// Of a file that was read before: others, a pipe say, may never answer.
QByteArray BeginningOf(const QString& path) {
  constexpr qint64 kBytes = 64;
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.read(kBytes) : QByteArray();
}

/// What keeps a file that was read from being written, and the closes that are needed when nothing does.
struct Checked {
  std::vector<ImportProblem> problems;
  std::map<int, double> closes;
};

/// `choice`: none while a person has still to make it. `closes`: of an earlier check, if any.
Checked Check(const ImportServices& services, const CsvPortfolios& file, const ImportChoice* choice,
              std::map<int, double> closes = {}) {
  Checked checked{file.problems, {}};
  if (choice != nullptr || !file.isNameFree) FindTakenNames(services.database, file, checked.problems);
  checked.closes = CheckDays(services, file, std::move(closes), checked.problems);
  CheckCosts(file, services.dataCentre, checked.problems);
  CheckStrangers(file, choice == nullptr || choice->skipStrangers, checked.problems);
  return checked;
}

}  // namespace

QString NewNameProblem(UserDataServices& database, const QString& name) {
  if (QString problem = NameProblem(name); !problem.isEmpty()) return problem;
  return TakenNames(database).ProblemOf(name);
}

ImportResult ImportPortfolios(const QByteArray& csv, const ImportServices& services, const ImportProgress& progress,
                              const ImportOptions& options) {
  if (backup::IsPortfolioText(csv)) return ImportSaved(csv, services, progress, options);
  const bool isAsked = static_cast<bool>(options.ask);
  ImportChoice choice{
      options.name.isEmpty() && !options.fileName.isEmpty() ? NameFromFile(options.fileName) : options.name,
      options.skipStrangers};
  if (const QString problem = options.name.isEmpty() ? QString() : NameProblem(options.name); !problem.isEmpty())
    return Refused({{0, problem}});
  CsvPortfolios file = ParsePortfolioCsv(csv, services.codes, choice.name);
  if (!options.name.isEmpty() && !file.isNameFree && file.problems.empty()) file.problems.push_back(NamesStandThere());
  Checked checked = Check(services, file, isAsked ? nullptr : &choice);
  if (!checked.problems.empty()) return Refused(std::move(checked.problems));
  const QString understood = PreviewText(file);
  if (isAsked) {
    const std::optional<ImportChoice> answer =
        options.ask({understood, file.isNameFree ? choice.name : QString(), static_cast<int>(file.strangers.size())});
    if (!answer) return Cancelled();
    choice.skipStrangers = choice.skipStrangers || answer->skipStrangers;
    if (file.isNameFree) {
      if (const QString problem = NameProblem(answer->name); !problem.isEmpty()) return Refused({{0, problem}});
      for (CsvPortfolio& portfolio : file.portfolios) portfolio.name = answer->name;
    }
    // What was asked took its time.
    checked = Check(services, file, &choice, std::move(checked.closes));
    if (!checked.problems.empty()) return Refused(std::move(checked.problems));
  }
  const bool isToSay = !isAsked && (file.shape.isStatement || !file.strangers.empty());
  if (isToSay && options.tell) options.tell(understood);
  ImportResult result = Write(file.portfolios, services, checked.closes, progress);
  if (isToSay && !options.tell) result.understood = understood;
  return result;
}

ImportResult ImportPortfoliosFromFile(const QString& path, const ImportServices& services,
                                      const ImportProgress& progress, const ImportOptions& options) {
  QByteArray csv;
  try {
    csv = ReadTextFile(path, kMaxFileBytes);
  } catch (const Error& error) {
    const QString noTable = error.Category() == ErrorCategory::Corrupt ? NoTableProblem(BeginningOf(path)) : QString();
    return Refused({{0, noTable.isEmpty() ? QString::fromUtf8(error.what()) : noTable}});
  }
  ImportOptions named = options;
  named.fileName = path;
  return ImportPortfolios(csv, services, progress, named);
}

}  // namespace holdwise
