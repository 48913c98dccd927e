// SPDX-License-Identifier: MIT
#include <QSet>
#include <algorithm>

#include "holdings/holdings_file.h"
#include "holdings/portfolio_rules.h"
#include "holdwise/packet/characters.h"
#include "holdwise/packet/csv_result_set.h"
#include "holdwise/packet/entry_limits.h"
#include "holdwise/packet/number_text.h"
#include "properties.h"
#include "targets.h"
#include "text_encoding.h"

namespace holdwise::fuzz {
namespace {

/// Knows every six digits that look like a stock's.
class AllStocks final : public CodeNumServices {
 public:
  bool IsFundOrBond(const QString&) const override { return false; }
  bool IsKnownSecurity(const QString&) const override { return true; }
  bool IsIndex(const QString&) const override { return false; }
  bool IsCodeNumber(const QString&) const override { return true; }
  bool IsShanghaiStock(const QString& codeNumber) const override { return codeNumber.startsWith(QLatin1String("16")); }
  bool IsShenzhenStock(const QString& codeNumber) const override { return codeNumber.startsWith(QLatin1String("10")); }
  QString NameOf(const QString&) const override { return {}; }
  QString IndustryOf(int) const override { return {}; }
  int MarketTypeOf(const QString&) const override { return 1; }
  std::vector<int> CodeNumbersOf(int) const override { return {}; }
  int CurrentDate() const override { return 20240529; }
  void SetCurrentCode(const QString&) override {}
  QString CurrentCode() const override { return {}; }
};

void CheckPortfolio(const CsvPortfolio& portfolio) {
  Require(!portfolio.name.isEmpty() && FitsAsName(portfolio.name), "a portfolio has a name");
  Require(!portfolio.name.contains(QLatin1Char('\'')), "a name can stand in a statement");
  Require(portfolio.rows >= kMinHoldings && portfolio.rows <= kMostHoldings, "a portfolio has a portfolio's size");
  QSet<int> codes;
  for (const CsvHolding& holding : portfolio.holdings) {
    const bool isStock = (holding.codeNumber >= 1600000 && holding.codeNumber <= 1699999) ||
                         (holding.codeNumber >= 1000000 && holding.codeNumber <= 1099999);
    Require(isStock && !codes.contains(holding.codeNumber), "a portfolio holds a stock once");
    codes.insert(holding.codeNumber);
    const std::int64_t quantity = IntegerOr(holding.quantity, -1);
    Require(quantity >= 1 && quantity <= 999'999'999, "a quantity is a number of shares");
    const double price = RealOr(holding.price, -1);
    Require(price > 0 && price < 100'000, "a price is a price");
  }
}

/// What the portfolios hold, without the lines they stood on.
QStringList Holdings(const std::vector<CsvPortfolio>& portfolios) {
  QStringList rows;
  for (const CsvPortfolio& portfolio : portfolios) {
    for (const CsvHolding& holding : portfolio.holdings) {
      rows += QStringList{CsvField(portfolio.name), QString::number(holding.codeNumber).mid(1), holding.quantity,
                          holding.price}
                  .join(QLatin1Char(','));
    }
  }
  return rows;
}

const QString kFreeName = QStringLiteral("甲");

void CheckSameAs(const CsvPortfolios& expected, const QByteArray& csv) {
  const CsvPortfolios again = ParsePortfolioCsv(csv, AllStocks(), kFreeName);
  Require(again.problems.size() == expected.problems.size(), "another writing has the same problems");
  Require(Holdings(again.portfolios) == Holdings(expected.portfolios), "another writing has the same holdings");
}

void CheckRows(const CsvPortfolios& read, std::int64_t lines) {
  std::size_t rows = 0;
  std::size_t holdings = 0;
  for (const CsvPortfolio& portfolio : read.portfolios) {
    CheckPortfolio(portfolio);
    rows += static_cast<std::size_t>(portfolio.rows);
    holdings += portfolio.holdings.size();
  }
  Require(rows == holdings + (read.shape.isStatement ? 0 : read.strangers.size()), "no holding is lost");
  for (const auto* leftOut : {&read.strangers, &read.sold, &read.others}) {
    for (const LeftOutRow& row : *leftOut) {
      Require(row.line > read.shape.headingLine && row.line <= lines, "what is left out is a line below the heading");
      Require(!row.reason.isEmpty(), "what is left out has a reason");
    }
  }
}

/// The same holdings under the headings of the documents and under a broker's.
void CheckOtherHeadings(const CsvPortfolios& read) {
  const QStringList rows = Holdings(read.portfolios);
  if (rows.isEmpty() || !read.strangers.empty()) return;
  CsvPortfolios plain;
  plain.portfolios = read.portfolios;
  const QString own = QStringLiteral("组合名称,股票代码,数量（股）,买入价(元)\r\n");
  if (!read.shape.isStatement) CheckSameAs(plain, (own + rows.join(QStringLiteral("\r\n"))).toUtf8());
  // A statement's cells lose every blank around them, a name's full-width ones too.
  const bool isPlain = std::all_of(read.portfolios.begin(), read.portfolios.end(),
                                   [](const CsvPortfolio& one) { return one.name.trimmed() == one.name; });
  const QString broker = QStringLiteral("资金账号：1\n组合名称,证券代码,持仓数量,参考成本价\n");
  if (isPlain) CheckSameAs(plain, (broker + rows.join(QLatin1Char('\n'))).toUtf8());
}

}  // namespace

void PortfolioCsv(std::string_view input) {
  const CsvPortfolios read = ParsePortfolioCsv(Raw(input), AllStocks(), kFreeName);
  const auto lines = 1 + std::count(input.begin(), input.end(), '\n');
  int lastLine = 0;
  for (const ImportProblem& problem : read.problems) {
    Require(problem.line >= lastLine && problem.line <= lines, "problems name lines of the file, in order");
    Require(!problem.reason.isEmpty(), "a problem has a reason");
    lastLine = problem.line;
  }
  // A text of rare characters may be taken for the other encoding.
  if (FindEncoding(Raw(input)).encoding == TextEncoding::Utf8) {
    const auto gb = ToGb18030(Raw(input));
    if (gb && FindEncoding(*gb).encoding == TextEncoding::Gb18030) CheckSameAs(read, *gb);
  }
  if (!read.problems.empty()) return;
  Require(!read.portfolios.empty() || !read.strangers.empty(), "a file without holdings is a problem");
  CheckRows(read, lines);
  CheckOtherHeadings(read);
}

}  // namespace holdwise::fuzz
