// SPDX-License-Identifier: MIT
#include "calc/reference_tables.h"

#include <QSet>
#include <QStringList>
#include <array>

#include "common/store/cell_literal.h"
#include "common/store/statements.h"

namespace holdwise::calc {
namespace {

constexpr int kRowsAStep = 100;
const QString kNull = QStringLiteral("null");
const QString kNoPrice = QStringLiteral("0");

enum class Access { Integer, Text, DateTime, Real };

struct Field {
  const char* name;
  Access access;
};

/// In the order of the insert.
constexpr std::array<Field, 14> kInterestFields = {{{"ID", Access::Integer},
                                                    {"SOURCEID", Access::Integer},
                                                    {"SOURCEDB", Access::Text},
                                                    {"SOURCETABLE", Access::Text},
                                                    {"UPDATEID", Access::Integer},
                                                    {"CTIME", Access::DateTime},
                                                    {"UPTIME", Access::DateTime},
                                                    {"ISVAILD", Access::Text},
                                                    {"REMARK", Access::Text},
                                                    {"DEPOSITTYPE", Access::Text},
                                                    {"TERM", Access::Text},
                                                    {"INTERESTCHANGEDATE", Access::DateTime},
                                                    {"INTEREST", Access::Real},
                                                    {"INTERESTCODE", Access::Text}}};

QString LiteralOf(const ResultSet& rows, int row, int column, Access access) {
  if (rows.IsNull(row, column)) return kNull;
  switch (access) {
    case Access::Integer:
      return QString::fromStdString(sql::IntegerLiteral(rows, row, column));
    case Access::Real:
      return QString::fromStdString(sql::NumberLiteral(rows, row, column));
    case Access::DateTime:
      return sql::DateTimeLiteral(rows, row, column);
    case Access::Text:
      break;
  }
  return sql::TextLiteral(rows.TextAt(row, column));
}

void MaybeStep(int row, const Step& step) {
  if (step && row % kRowsAStep == kRowsAStep - 1) step();
}

}  // namespace

void ReplaceInterestRates(DatabaseStatements& database, const ResultSet& file, const Step& step) {
  if (file.IsEmpty()) return;
  std::array<int, kInterestFields.size()> columns = {};
  for (std::size_t i = 0; i < columns.size(); ++i) columns[i] = file.Column(kInterestFields[i].name);
  TransactionScope transaction(database);
  MustExecute(database, sql::kDeleteInterestRates);
  for (int row = 0; row < file.RowCount(); ++row) {
    QStringList literals;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      literals.push_back(LiteralOf(file, row, columns[i], kInterestFields[i].access));
    }
    MustExecute(database, sql::InsertInterestRate(literals));
    MaybeStep(row, step);
  }
  transaction.Commit();
}

void ReplaceEstimateValues(DatabaseStatements& database, const ResultSet& file, const Step& step) {
  if (file.IsEmpty()) return;
  const int codeColumn = file.Column("SECUCODE");
  const int idColumn = file.Column("ID");
  const int priceColumn = file.Column("PRICE");
  TransactionScope transaction(database);
  MustExecute(database, sql::kDeleteEstimateValues);
  QSet<QString> stored;
  for (int row = 0; row < file.RowCount(); ++row) {
    const QString code = file.TextAt(row, codeColumn);
    if (stored.contains(code)) continue;
    stored.insert(code);
    const std::string price = sql::NumberIfAny(file, row, priceColumn);
    if (price.starts_with('-')) sql::RefuseCell(file, row, priceColumn, QStringLiteral("是负数"));
    MustExecute(database,
                sql::InsertEstimateValue(LiteralOf(file, row, idColumn, Access::Integer), sql::TextLiteral(code),
                                         price.empty() ? kNoPrice : QString::fromStdString(price)));
    MaybeStep(row, step);
  }
  transaction.Commit();
}

}  // namespace holdwise::calc
