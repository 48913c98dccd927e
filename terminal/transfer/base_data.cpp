#include "transfer/base_data.h"

#include <QDate>
#include <QDir>
#include <algorithm>

#include "holdwise/packet/number_text.h"
#include "holdwise/packet/packet_file.h"

namespace holdwise {
namespace {

constexpr char kIndexFile[] = "QMTL/TZZH/Day250/指数/allzs.dat";
constexpr char kStockFile[] = "QMTL/TZZH/Day250/股票/%1.dat";
constexpr char kDelete[] = "delete from alg_stockstatistic where secucode = ";
constexpr char kInsert[] =
    "insert into alg_stockstatistic (secucode,closeprice,hqtype,rowid,ggqjsyl,pjsyl,hqdate,oldcloseprice,sylbzc,"
    "islastday,startdate,enddate) values(";
constexpr int kIndices[] = {1, 399001, 399300};

enum class Kind { Number, Integer, Date };

struct Field {
  const char* name;
  Kind kind;
};

/// In the order of the insert, behind the code.
constexpr Field kFields[] = {
    {"closeprice", Kind::Number}, {"hqtype", Kind::Integer}, {"rowid", Kind::Integer},        {"ggqjsyl", Kind::Number},
    {"pjsyl", Kind::Number},      {"hqdate", Kind::Date},    {"oldcloseprice", Kind::Number}, {"sylbzc", Kind::Number},
    {"islastday", Kind::Integer}, {"startdate", Kind::Date}, {"enddate", Kind::Date},
};

[[noreturn]] void Refuse(int row, const char* name, const QString& text) {
  throw Error(
      ErrorCategory::Refused,
      QStringLiteral("第%1行的列“%2”不是有效的值：“%3”").arg(row + 1).arg(QLatin1String(name), text).toStdString());
}

/// The value as it stands in the statement. An empty one has the default that the statistics engine gives it.
QString Literal(const ResultSet& rows, int row, int column, const Field& field) {
  QString text = rows.TextAt(row, column);
  if (text.isEmpty()) return field.kind == Kind::Number ? QStringLiteral("0.00") : QStringLiteral("0");
  if (field.kind == Kind::Number) {
    if (!ParseReal(text)) Refuse(row, field.name, text);
    return text;
  }
  const auto number = ParseInteger(text);
  if (!number) Refuse(row, field.name, text);
  if (field.kind == Kind::Date && *number != 0) {
    const auto date = static_cast<int>(std::clamp<std::int64_t>(*number, 0, 99999999));
    if (date != *number || !QDate::isValid(date / 10000, date / 100 % 100, date % 100)) Refuse(row, field.name, text);
  }
  return text;
}

/// The inserts of one file, all checked. `codeNumber` 0: the rows name their index themselves.
QStringList Inserts(const QString& path, int codeNumber) {
  const ResultSet rows = ReadPacketFile(path);
  std::vector<int> columns;
  for (const Field& field : kFields) columns.push_back(rows.Column(field.name));
  const int codeColumn = codeNumber == 0 ? rows.Column("SecuCode") : -1;
  QStringList statements;
  statements.reserve(rows.RowCount());
  for (int row = 0; row < rows.RowCount(); ++row) {
    std::int64_t code = codeNumber;
    if (codeColumn >= 0) {
      code = rows.IntegerAt(row, codeColumn);
      if (std::find(std::begin(kIndices), std::end(kIndices), code) == std::end(kIndices)) {
        Refuse(row, "SecuCode", QString::number(code));
      }
    }
    QString statement = QString::fromLatin1(kInsert) + QString::number(code);
    for (std::size_t i = 0; i < columns.size(); ++i) {
      statement += QLatin1Char(',') + Literal(rows, row, columns[i], kFields[i]);
    }
    statements.push_back(statement + QLatin1Char(')'));
  }
  return statements;
}

void ReplaceRows(DatabaseStatements& database, const QString& path, int codeNumber, QStringList& warnings) {
  QStringList inserts;
  try {
    inserts = Inserts(path, codeNumber);
  } catch (const Error& error) {
    const QString cause = error.Category() == ErrorCategory::NotFound && !QFile::exists(path)
                              ? QStringLiteral("文件不存在")
                              : QStringLiteral("文件无法使用（%1）").arg(QString::fromUtf8(error.what()));
    warnings.push_back(
        QStringLiteral("基础数据文件“%1”：%2，统计数据没有更新").arg(QDir::toNativeSeparators(path), cause));
    return;
  }
  if (codeNumber == 0) {
    for (const int index : kIndices) MustExecute(database, QLatin1String(kDelete) + QString::number(index));
  } else {
    MustExecute(database, QLatin1String(kDelete) + QString::number(codeNumber));
  }
  for (const QString& insert : inserts) MustExecute(database, insert);
}

}  // namespace

BaseDataResult LoadBaseData(DatabaseStatements& database, const QString& dataFolder,
                            const std::vector<int>& codeNumbers, const std::function<bool()>& step) {
  const QDir folder(dataFolder);
  BaseDataResult result;
  for (const int codeNumber : codeNumbers) {
    if (step && !step()) return {result.warnings, true};
    const QString name = QString::fromUtf8(kStockFile).arg(QString::number(codeNumber).right(6));
    ReplaceRows(database, folder.filePath(name), codeNumber, result.warnings);
  }
  if (step && !step()) return {result.warnings, true};
  ReplaceRows(database, folder.filePath(QString::fromUtf8(kIndexFile)), 0, result.warnings);
  return result;
}

}  // namespace holdwise
