#include "base_data_ingestion.h"

#include <array>
#include <string>

#include "common/store/cell_literal.h"
#include "common/store/statements.h"
#include "holdwise/packet/number_text.h"

namespace holdwise::calc {
namespace {

const std::array<QString, 3> kIndexCodes = {QStringLiteral("1"), QStringLiteral("399001"), QStringLiteral("399300")};
constexpr std::string_view kEmptyWhole = "0";
constexpr std::string_view kEmptyAmount = "0.00";

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
    MustExecute(database, sql::DeleteStatistics(kIndexCodes[1]));
    MustExecute(database, sql::DeleteStatistics(kIndexCodes[2]));
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
  for (const QString& index : kIndexCodes) MustExecute(database, sql::ClearLastDay(index));
}

void AddRows(DatabaseStatements& database, const ResultSet& rows, const BaseDataFamily& family,
             const QString& fileCode) {
  if (rows.IsEmpty()) return;
  const StatisticRows fields(rows, family.isIndex);
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
                    const QString& code, const ForwardDate& forwardDate) {
  if (!ParseInteger(code)) throw Error(ErrorCategory::Refused, "not a security code: " + code.toStdString());
  TransactionScope transaction(database);
  RemoveOldRows(database, family, code, forwardDate);
  ClearLastDays(database, family, code);
  AddRows(database, rows, family, code);
  transaction.Commit();
}

}  // namespace holdwise::calc
