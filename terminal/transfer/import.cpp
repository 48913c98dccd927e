// SPDX-License-Identifier: MIT
#include "transfer/import.h"

#include <algorithm>

#include "backup/portfolio_file.h"
#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/number_text.h"
#include "holdwise/packet/text_file.h"
#include "import_saved.h"
#include "import_statements.h"
#include "portfolio_csv.h"

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

double Cost(const CsvHolding& holding) {
  return RealOr(holding.quantity) * RealOr(holding.price);
}

void InsertPortfolio(UserDataServices& database, const CsvPortfolio& portfolio, const Purchase& purchase) {
  const std::int64_t id = database.Count(import_sql::kNextPortfolioId);
  if (id <= 0) throw Error(ErrorCategory::Database, "数据库没有给出新的组合编号");
  double total = 0;
  for (const CsvHolding& holding : portfolio.holdings) total += Cost(holding);
  for (const CsvHolding& holding : portfolio.holdings) {
    MustExecute(database,
                import_sql::InsertHolding({QString::number(id), QString::number(holding.codeNumber), holding.quantity,
                                           ShortestText(Cost(holding) / total), holding.price}));
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
  for (const CsvPortfolio& portfolio : file.portfolios) {
    if (problems.size() >= kEnough) return;
    if (database.Count(import_sql::CountPortfolios(portfolio.name)) != 0) {
      problems.push_back({portfolio.line, QStringLiteral("已有名称为“%1”的组合").arg(portfolio.name)});
    }
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

/// The index's closes that the days of purchase need; empty when the file names no day.
std::map<int, double> CheckDays(const ImportServices& services, const CsvPortfolios& file,
                                std::vector<ImportProblem>& problems) {
  if (std::none_of(file.portfolios.begin(), file.portfolios.end(), HasDay)) return {};
  std::map<int, double> closes;
  try {
    closes = services.indexCloses();
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
  ImportResult result;
  TransactionScope transaction(services.database);
  for (const CsvPortfolio& portfolio : portfolios) {
    if (!step()) {
      result.cancelled = true;
      return result;
    }
    InsertPortfolio(services.database, portfolio,
                    HasDay(portfolio) ? PurchaseOn(*portfolio.date, closes.at(*portfolio.date)) : now);
  }
  if (!step()) {
    result.cancelled = true;
    return result;
  }
  transaction.Commit();
  result.portfolios = static_cast<int>(portfolios.size());
  for (const CsvPortfolio& portfolio : portfolios) result.holdings += static_cast<int>(portfolio.holdings.size());
  result.warnings = UnpricedStocks(HeldStocks(portfolios), services.dataCentre);
  return result;
}

}  // namespace

void RequireNoQuestion(const UserDataServices& database) {
  if (database.InTransaction())
    throw Error(ErrorCategory::Busy, "终端窗口里有一个提问还没有回答（例如是否删除组合），请先回答它，再导入一次");
}

QStringList UnpricedStocks(std::vector<int> stocks, const TDataCenter& dataCentre) {
  std::sort(stocks.begin(), stocks.end());
  stocks.erase(std::unique(stocks.begin(), stocks.end()), stocks.end());
  QStringList warnings;
  for (const int stock : stocks) {
    if (dataCentre.StockNowData(stock).currentPrice > 0) continue;
    warnings.append(QStringLiteral("股票%1没有行情，组合市值暂不包括它").arg(QString::number(stock).right(6)));
  }
  return warnings;
}

ImportResult ImportPortfolios(const QByteArray& csv, const ImportServices& services, const ImportProgress& progress) {
  if (backup::IsPortfolioText(csv)) return ImportSaved(csv, services, progress);
  CsvPortfolios file = ParsePortfolioCsv(csv, services.codes);
  FindTakenNames(services.database, file, file.problems);
  const std::map<int, double> closes = CheckDays(services, file, file.problems);
  if (!file.problems.empty()) {
    ImportResult refused;
    refused.problems = std::move(file.problems);
    std::stable_sort(refused.problems.begin(), refused.problems.end(),
                     [](const ImportProblem& a, const ImportProblem& b) { return a.line < b.line; });
    return refused;
  }
  return Write(file.portfolios, services, closes, progress);
}

ImportResult ImportPortfoliosFromFile(const QString& path, const ImportServices& services,
                                      const ImportProgress& progress) {
  QByteArray csv;
  try {
    csv = ReadTextFile(path, kMaxFileBytes);
  } catch (const Error& error) {
    ImportResult refused;
    refused.problems.push_back({0, QString::fromUtf8(error.what())});
    return refused;
  }
  return ImportPortfolios(csv, services, progress);
}

}  // namespace holdwise
