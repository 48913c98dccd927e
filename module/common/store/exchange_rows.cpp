// SPDX-License-Identifier: MIT
#include "exchange_rows.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "common/store/cell_literal.h"
#include "common/store/statements.h"
#include "holdwise/packet/entry_limits.h"
#include "holdwise/packet/number_text.h"

namespace holdwise::exchange {
namespace {

/// How a field of a file may stand in a statement, and the range of a number.
enum class Kind { Integer, Number, Quotable };

template <typename Texts>
struct FileColumn {
  const char* name;
  Kind kind;
  QString Texts::*text;
  double least = 0;
  double most = 0;
};

constexpr double kLargestFlag = 1e9;

constexpr FileColumn<sql::HoldingTexts> kHoldingColumns[] = {
    {"ID", Kind::Integer, &sql::HoldingTexts::id, 1, static_cast<double>(kLargestId)},
    {"MAINID", Kind::Integer, &sql::HoldingTexts::portfolioId, 1, static_cast<double>(kLargestId)},
    {"SecuCode", Kind::Integer, &sql::HoldingTexts::code, 1, kLargestStockNumber},
    {"PZSL", Kind::Number, &sql::HoldingTexts::quantity, 0, static_cast<double>(kLargestQuantity)},
    {"PZBL", Kind::Number, &sql::HoldingTexts::weight, 0, kLargestWeight},
    {"BUYPRICE", Kind::Number, &sql::HoldingTexts::buyPrice, 0, kLargestPrice}};
constexpr FileColumn<sql::PortfolioTexts> kPortfolioColumns[] = {
    {"ID", Kind::Integer, &sql::PortfolioTexts::id, 1, static_cast<double>(kLargestId)},
    {"COMNAME", Kind::Quotable, &sql::PortfolioTexts::name},
    {"ZSCLOSEPRICE", Kind::Number, &sql::PortfolioTexts::indexClose, 0, kLargestPrice},
    {"EDITDATE", Kind::Quotable, &sql::PortfolioTexts::editDate},
    {"SAVEFLAG", Kind::Integer, &sql::PortfolioTexts::saveFlag, -kLargestFlag, kLargestFlag}};

QString TextOf(const ResultSet& rows, int row, const char* name, Kind kind) {
  const int column = rows.Column(name);
  if (kind == Kind::Quotable) return sql::QuotableText(rows, row, column);
  return QString::fromStdString(kind == Kind::Integer ? sql::IntegerLiteral(rows, row, column)
                                                      : sql::NumberLiteral(rows, row, column));
}

template <typename Texts, std::size_t count>
void RequireInRange(const ResultSet& rows, const FileColumn<Texts> (&columns)[count]) {
  for (int row = 0; row < rows.RowCount(); ++row) {
    for (const FileColumn<Texts>& column : columns) {
      const QString text = TextOf(rows, row, column.name, column.kind);
      if (column.kind == Kind::Quotable) continue;
      const double value = RealOr(text);
      if (!(value >= column.least && value <= column.most)) {
        sql::RefuseCell(rows, row, rows.Column(column.name), QStringLiteral("的值超出范围"));
      }
    }
  }
}

std::unordered_set<std::int64_t> IdsIn(const ResultSet& rows, const char* name) {
  std::unordered_set<std::int64_t> ids;
  for (int row = 0; row < rows.RowCount(); ++row) ids.insert(IntegerOr(TextOf(rows, row, name, Kind::Integer)));
  return ids;
}

template <typename Texts, std::size_t count>
void InsertRows(DatabaseStatements& database, const ResultSet& rows, const FileColumn<Texts> (&columns)[count],
                QString (*insert)(const Texts& texts), QString (*setGenerator)(qint64 value)) {
  std::int64_t largestId = 0;
  for (int row = 0; row < rows.RowCount(); ++row) {
    Texts texts;
    for (const FileColumn<Texts>& column : columns) texts.*column.text = TextOf(rows, row, column.name, column.kind);
    largestId = std::max(largestId, IntegerOr(texts.id));
    MustExecute(database, insert(texts));
  }
  MustExecute(database, setGenerator(largestId));
}

}  // namespace

void RequirePlausible(const ResultSet& holdings, const ResultSet& portfolios) {
  RequireInRange(holdings, kHoldingColumns);
  RequireInRange(portfolios, kPortfolioColumns);
  const auto portfolioIds = IdsIn(portfolios, "ID");
  const int owner = holdings.Column("MAINID");
  std::unordered_map<std::int64_t, int> counts;
  for (int row = 0; row < holdings.RowCount(); ++row) {
    const std::int64_t id = IntegerOr(TextOf(holdings, row, "MAINID", Kind::Integer));
    if (portfolioIds.count(id) == 0) sql::RefuseCell(holdings, row, owner, QStringLiteral("指的组合不存在"));
    if (++counts[id] > kMostHoldings)
      sql::RefuseCell(holdings, row, owner, QStringLiteral("指的组合持股超过%1条").arg(kMostHoldings));
  }
}

QString WithoutHoldings(const ResultSet& holdings, const ResultSet& portfolios) {
  const auto owners = IdsIn(holdings, "MAINID");
  for (int row = 0; row < portfolios.RowCount(); ++row) {
    if (owners.count(IntegerOr(TextOf(portfolios, row, "ID", Kind::Integer))) == 0) {
      return portfolios.TextAt(row, portfolios.Column("COMNAME"));
    }
  }
  return {};
}

void Insert(DatabaseStatements& database, const ResultSet& holdings, const ResultSet& portfolios) {
  InsertRows(database, holdings, kHoldingColumns, sql::RestoreHolding, sql::SetHoldingGenerator);
  InsertRows(database, portfolios, kPortfolioColumns, sql::RestorePortfolio, sql::SetPortfolioGenerator);
}

}  // namespace holdwise::exchange
