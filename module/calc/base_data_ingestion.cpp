// SPDX-License-Identifier: MIT
#include "base_data_ingestion.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "common/helpers/edition.h"
#include "common/store/cell_literal.h"
#include "common/store/statements.h"
#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/number_text.h"

namespace holdwise::calc {
namespace {

constexpr std::string_view kEmptyWhole = "0";
constexpr std::string_view kEmptyAmount = "0.00";
constexpr const char* kOtherEdition = "是随另一份数据生成的，没有采用，请重新生成数据目录";

/// The fields of a file's rows as texts that may stand in a statement.
class StatisticRows {
 public:
  StatisticRows(const ResultSet& rows, bool hasCode)
      : rows_(rows),
        code_(hasCode ? rows.Column("SecuCode") : -1),
        closePrice_(rows.Column("closeprice")),
        hqType_(rows.Column("hqtype")),
        rowId_(rows.Column("rowid")),
        periodReturn_(rows.Column("ggqjsyl")),
        meanReturn_(rows.Column("pjsyl")),
        hqDate_(rows.Column("hqdate")),
        oldClosePrice_(rows.Column("oldcloseprice")),
        deviation_(rows.Column("sylbzc")),
        isLastDay_(rows.Column("islastday")),
        startDate_(rows.Column("startdate")),
        endDate_(rows.Column("enddate")) {}

  [[nodiscard]] std::string Code(int row) const { return sql::NumberLiteral(rows_, row, code_); }
  /// As they stand in the file: for conditions, where no default applies.
  [[nodiscard]] std::string HqType(int row) const { return sql::NumberLiteral(rows_, row, hqType_); }
  [[nodiscard]] std::string HqDate(int row) const { return sql::NumberLiteral(rows_, row, hqDate_); }
  [[nodiscard]] bool IsLastDay(int row) const { return rows_.TextAt(row, isLastDay_) == QLatin1String("1"); }

  /// The whole file, before anything is written.
  void Check(const BaseDataFamily& family, const std::string& fileCode) const {
    std::vector<std::pair<RowKey, int>> keys;
    keys.reserve(static_cast<std::size_t>(rows_.RowCount()));
    for (int row = 0; row < rows_.RowCount(); ++row) {
      if (code_ >= 0) CheckCode(row, family, fileCode);
      CheckType(row);
      CheckDate(row, hqDate_, false);
      CheckDate(row, startDate_, true);
      CheckDate(row, endDate_, true);
      if (Number(row, closePrice_) < 0) sql::RefuseCell(rows_, row, closePrice_, QStringLiteral("是负数"));
      CheckTradingDay(row);
      if (row > 0 && IsSameSeries(row - 1, row)) CheckSuccessor(row - 1, row);
      if (!sql::NumberIfAny(rows_, row, hqDate_).empty()) {
        keys.push_back({{family.isIndex ? Number(row, code_) : 0, Number(row, hqType_), Number(row, hqDate_)}, row});
      }
    }
    std::sort(keys.begin(), keys.end());
    const auto twice = std::adjacent_find(keys.begin(), keys.end(),
                                          [](const auto& one, const auto& next) { return one.first == next.first; });
    if (twice != keys.end()) {
      sql::RefuseCell(rows_, std::next(twice)->second, hqDate_, QStringLiteral("与第%1行重复").arg(twice->second + 1));
    }
  }

  [[nodiscard]] sql::StatisticTexts Texts(int row, const std::string& code) const {
    return {code,
            Defaulted(row, closePrice_, kEmptyAmount),
            Defaulted(row, hqType_, kEmptyWhole),
            Defaulted(row, rowId_, kEmptyWhole),
            Defaulted(row, periodReturn_, kEmptyAmount),
            Defaulted(row, meanReturn_, kEmptyAmount),
            Defaulted(row, hqDate_, kEmptyWhole),
            Defaulted(row, oldClosePrice_, kEmptyAmount),
            Defaulted(row, deviation_, kEmptyAmount),
            Defaulted(row, isLastDay_, kEmptyWhole),
            Defaulted(row, startDate_, kEmptyWhole),
            Defaulted(row, endDate_, kEmptyWhole)};
  }

 private:
  /// Code, type, date.
  using RowKey = std::array<double, 3>;

  [[nodiscard]] double Number(int row, int column) const {
    return ParseReal(std::string_view(sql::NumberIfAny(rows_, row, column))).value_or(0);
  }
  /// A stock's file need not name it (0, empty); the file of the indices names them in every row.
  void CheckCode(int row, const BaseDataFamily& family, const std::string& fileCode) const {
    const std::string text = sql::NumberIfAny(rows_, row, code_);
    const auto code = ParseInteger(std::string_view(text));
    if (family.isIndex) {
      if (text.empty()) sql::RefuseCell(rows_, row, code_, QStringLiteral("不是数"));
      if (!code || *code < 0 || *code > kStockBase || !IsIndexNumber(static_cast<int>(*code)))
        sql::RefuseCell(rows_, row, code_, QStringLiteral("不是指数"));
      return;
    }
    if (text.empty() || code == 0) return;
    const auto wanted = ParseInteger(std::string_view(fileCode));
    if (!code || (code != wanted && *code != *wanted % kStockBase))
      sql::RefuseCell(rows_, row, code_, QStringLiteral("是另一只证券"));
  }
  void CheckType(int row) const {
    const double type = Number(row, hqType_);
    if (type != 0 && type != 1 && type != 2)
      sql::RefuseCell(rows_, row, hqType_, QStringLiteral("不是周期类型（0、1、2）"));
  }
  void CheckDate(int row, int column, bool mayBeNone) const {
    const std::string text = sql::NumberIfAny(rows_, row, column);
    if (text.empty()) return;
    const double date = Number(row, column);
    if (mayBeNone && date == 0) return;
    const bool isWhole = std::abs(date) < 1e9 && date == std::trunc(date);
    if (!isWhole || !IsMarketDate(static_cast<std::int64_t>(date)))
      sql::RefuseCell(rows_, row, column, QStringLiteral("不是日期"));
  }
  /// Days without a date (0) and those of weeks and months may be any.
  void CheckTradingDay(int row) const {
    const auto date = static_cast<int>(Number(row, hqDate_));
    if (Number(row, hqType_) == 0 && date != 0 && !IsWeekday(date))
      sql::RefuseCell(rows_, row, hqDate_, QStringLiteral("不是交易日（周末）"));
  }
  [[nodiscard]] bool IsSameSeries(int before, int row) const {
    const bool isSameCode = code_ < 0 || Number(before, code_) == Number(row, code_);
    return isSameCode && Number(before, hqType_) == Number(row, hqType_);
  }
  /// The rows of a series stand oldest first, under one window.
  void CheckSuccessor(int before, int row) const {
    const auto isEmpty = [&](int at) { return sql::NumberIfAny(rows_, at, hqDate_).empty(); };
    if (!isEmpty(before) && !isEmpty(row) && Number(row, hqDate_) < Number(before, hqDate_))
      sql::RefuseCell(rows_, row, hqDate_, QStringLiteral("早于上一行的日期"));
    for (const int column : {startDate_, endDate_}) {
      if (Number(before, column) != Number(row, column))
        sql::RefuseCell(rows_, row, column, QStringLiteral("与同一序列的上一行不同"));
    }
  }
  [[nodiscard]] std::string Defaulted(int row, int column, std::string_view ifEmpty) const {
    std::string text = sql::NumberIfAny(rows_, row, column);
    if (text.empty()) text = ifEmpty;
    return text;
  }
  const ResultSet& rows_;
  int code_, closePrice_, hqType_, rowId_, periodReturn_, meanReturn_, hqDate_, oldClosePrice_, deviation_, isLastDay_;
  int startDate_, endDate_;
};

void RemoveOldRows(DatabaseStatements& database, const BaseDataFamily& family, const QString& code,
                   const ForwardDate& forwardDate) {
  constexpr int kOldestDaysBack = 20;
  constexpr int kLatestDaysBack = 2;
  if (family.is250) {
    MustExecute(database, sql::DeleteStatistics(code));
    if (!family.isIndex) return;
    for (const int index : kIndexNumbers) {
      if (index != kCompositeIndex) MustExecute(database, sql::DeleteStatistics(QString::number(index)));
    }
  } else if (family.is20) {
    MustExecute(database,
                sql::DeleteStatisticsBetween(code, forwardDate(kOldestDaysBack), forwardDate(kLatestDaysBack)));
  }
}

void ClearLastDays(DatabaseStatements& database, const BaseDataFamily& family, const QString& code) {
  if (!family.isIndex) {
    MustExecute(database, sql::ClearLastDay(code));
    return;
  }
  for (const int index : kIndexNumbers) MustExecute(database, sql::ClearLastDay(QString::number(index)));
}

void AddRows(DatabaseStatements& database, const ResultSet& rows, const BaseDataFamily& family,
             const QString& fileCode) {
  if (rows.IsEmpty()) return;
  const StatisticRows fields(rows, family.isIndex || rows.FindColumn("SecuCode") >= 0);
  fields.Check(family, fileCode.toStdString());
  const auto text = [](const std::string& number) { return QString::fromStdString(number); };
  std::string code = fileCode.toStdString();
  std::string lastType;
  std::string lastCode;
  for (int row = 0; row < rows.RowCount(); ++row) {
    if (family.isIndex) code = fields.Code(row);
    if (family.isToday && fields.IsLastDay(row)) {
      MustExecute(database, sql::DeleteStatisticsBefore(text(fields.HqDate(row)), text(code)));
    }
    const sql::StatisticTexts texts = fields.Texts(row, code);
    MustExecute(database, sql::InsertStatistic(texts));
    const std::string type = fields.HqType(row);
    if (type == lastType && code == lastCode) continue;
    // After the insert: a first row dated before the file's own start goes with the old ones.
    MustExecute(database, sql::DeleteSeriesBefore(text(texts.startDate), text(code), text(type)));
    lastType = type;
    lastCode = code;
  }
}

}  // namespace

BaseDataFamily ClassifyBaseData(const QString& remoteName) {
  BaseDataFamily family;
  family.is250 = remoteName.contains(QStringLiteral("QMTL\\TZZH\\Day250"));
  family.is20 = remoteName.contains(QStringLiteral("QMTL\\TZZH\\Day20"));
  family.isIndex = remoteName.contains(QStringLiteral("指数\\allzs.dat"));
  family.isToday = remoteName.contains(QStringLiteral("QMTL\\TZZH\\today\\股票"));
  return family;
}

void IngestBaseData(DatabaseStatements& database, const ResultSet& rows, const BaseDataFamily& family,
                    const QString& code, const ForwardDate& forwardDate, const QString& edition) {
  if (!ParseInteger(code)) throw Error(ErrorCategory::Refused, "not a security code: " + code.toStdString());
  if (NamesOtherEdition(rows, edition)) throw Error(ErrorCategory::Refused, kOtherEdition);
  TransactionScope transaction(database);
  RemoveOldRows(database, family, code, forwardDate);
  ClearLastDays(database, family, code);
  AddRows(database, rows, family, code);
  if (!edition.isEmpty()) MustExecute(database, sql::SetStatisticEdition(code, edition));
  transaction.Commit();
}

}  // namespace holdwise::calc
