// SPDX-License-Identifier: MIT
#include "transfer/import.h"

#include <algorithm>

#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/number_text.h"
#include "holdwise/packet/text_file.h"
#include "portfolio_csv.h"

namespace holdwise {
namespace {

constexpr std::int64_t kMaxFileBytes = 16LL << 20;
constexpr char kCountName[] = "select count(COMNAME) from alg_commain where COMNAME='";
constexpr char kNewId[] = "select gen_id(ALG_ROWID_MAIN,1) from rdb$database";
constexpr char kInsertHolding[] =
    "insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values (gen_id(ALG_ROWID_DETAIL,1),";
constexpr char kInsertPortfolio[] =
    "insert into alg_commain (ID,COMNAME,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG)values(";

/// What every portfolio of the import shares.
struct Market {
  QString indexClose;
  QString date;
};

Market ReadMarket(const TDataCenter& dataCentre) {
  const double level = dataCentre.IndexNowData(kCompositeIndex).currentPrice;
  if (!(level > 0)) throw Error(ErrorCategory::Refused, "数据中心没有上证指数的现价，无法导入组合");
  const QString date = dataCentre.CurrentDateText();
  if (date.isEmpty()) throw Error(ErrorCategory::Refused, "数据中心没有当前日期，无法导入组合");
  return {FormatFixed(level, 2), date};
}

double Cost(const CsvHolding& holding) {
  return RealOr(holding.quantity) * RealOr(holding.price);
}

void InsertPortfolio(UserDataServices& database, const CsvPortfolio& portfolio, const Market& market) {
  const std::int64_t id = database.Count(QString::fromLatin1(kNewId));
  if (id <= 0) throw Error(ErrorCategory::Database, "数据库没有给出新的组合编号");
  double total = 0;
  for (const CsvHolding& holding : portfolio.holdings) total += Cost(holding);
  for (const CsvHolding& holding : portfolio.holdings) {
    const QStringList values = {QString::number(id), QString::number(holding.codeNumber), holding.quantity,
                                ShortestText(Cost(holding) / total), holding.price};
    MustExecute(database, QLatin1String(kInsertHolding) + values.join(QLatin1Char(',')) + QLatin1Char(')'));
  }
  // The name cannot hold a quote: its characters have been checked.
  MustExecute(database, QStringLiteral("%1%2,'%3',%4,0,0,0,0,'%5',1)")
                            .arg(QLatin1String(kInsertPortfolio), QString::number(id), portfolio.name,
                                 market.indexClose, market.date));
}

std::vector<int> HeldStocks(const std::vector<CsvPortfolio>& portfolios) {
  std::vector<int> stocks;
  for (const CsvPortfolio& portfolio : portfolios) {
    for (const CsvHolding& holding : portfolio.holdings) stocks.push_back(holding.codeNumber);
  }
  std::sort(stocks.begin(), stocks.end());
  stocks.erase(std::unique(stocks.begin(), stocks.end()), stocks.end());
  return stocks;
}

/// A stock without a price is worth nothing in every view that counts it.
QStringList UnpricedStocks(const std::vector<int>& stocks, const TDataCenter& dataCentre) {
  QStringList warnings;
  for (const int stock : stocks) {
    if (dataCentre.StockNowData(stock).currentPrice > 0) continue;
    warnings.append(QStringLiteral("股票%1没有行情，组合市值暂不包括它").arg(QString::number(stock).right(6)));
  }
  return warnings;
}

void FindTakenNames(UserDataServices& database, const CsvPortfolios& file, std::vector<ImportProblem>& problems) {
  for (const CsvPortfolio& portfolio : file.portfolios) {
    if (database.Count(QLatin1String(kCountName) + portfolio.name + QLatin1Char('\'')) != 0) {
      problems.push_back({portfolio.line, QStringLiteral("已有名称为“%1”的组合").arg(portfolio.name)});
    }
  }
  std::stable_sort(problems.begin(), problems.end(),
                   [](const ImportProblem& a, const ImportProblem& b) { return a.line < b.line; });
}

ImportResult Write(const std::vector<CsvPortfolio>& portfolios, const ImportServices& services,
                   const ImportProgress& progress) {
  const Market market = ReadMarket(services.dataCentre);
  const int total = static_cast<int>(portfolios.size());
  int done = 0;
  const auto step = [&] { return !progress || progress(done++, total); };

  ImportResult result;
  TransactionScope transaction(services.database);
  for (const CsvPortfolio& portfolio : portfolios) {
    if (!step()) {
      result.cancelled = true;
      return result;
    }
    InsertPortfolio(services.database, portfolio, market);
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

ImportResult ImportPortfolios(const QByteArray& csv, const ImportServices& services, const ImportProgress& progress) {
  CsvPortfolios file = ParsePortfolioCsv(csv, services.codes);
  FindTakenNames(services.database, file, file.problems);
  if (!file.problems.empty()) {
    ImportResult refused;
    refused.problems = std::move(file.problems);
    return refused;
  }
  return Write(file.portfolios, services, progress);
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
