// SPDX-License-Identifier: MIT
#include "common/store/exchange_files.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <utility>

#include "common/host/debug_log.h"
#include "common/host/host_access.h"
#include "common/store/cell_literal.h"
#include "common/store/database.h"
#include "common/store/statements.h"
#include "holdwise/packet/number_text.h"
#include "holdwise/packet/packet_file.h"

namespace holdwise {
namespace {

const QString kUnit = QStringLiteral("Untcommon");

QString DetailPath() {
  return ModuleHost().SysWorkDataPath() + QStringLiteral("TZZHDetail.dat");
}

QString MergePath() {
  return ModuleHost().SysWorkDataPath() + QStringLiteral("TZZHMerge.dat");
}

/// A file of a pair that is still being replaced.
QString NewName(const QString& path) {
  return path + QStringLiteral(".new");
}

bool IsFile(const QString& path) {
  return QFileInfo(path).isFile();
}

/// Puts the new pair in the place of the old one. The detail file goes first, so a new merge file that stands alone
/// means that the pair was complete and only its second half is not in place yet.
void PlaceNewPair() {
  RenameFileAtomically(NewName(DetailPath()), DetailPath(), Durability::Lasting);
  RenameFileAtomically(NewName(MergePath()), MergePath(), Durability::Lasting);
}

/// Brings a replacement to its end that was interrupted between its steps.
void FinishInterruptedSave() {
  const bool hasDetail = IsFile(NewName(DetailPath()));
  const bool hasMerge = IsFile(NewName(MergePath()));
  if (hasDetail && hasMerge) {
    PlaceNewPair();
  } else if (hasMerge) {
    RenameFileAtomically(NewName(MergePath()), MergePath(), Durability::Lasting);
  } else if (hasDetail) {
    QFile::remove(NewName(DetailPath()));
  }
}

void WritePair(const ResultSet& holdings, const ResultSet& portfolios) {
  FinishInterruptedSave();
  WritePacketFile(NewName(DetailPath()), holdings, Durability::Lasting);
  try {
    WritePacketFile(NewName(MergePath()), portfolios, Durability::Lasting);
  } catch (...) {
    // The merge file first: left alone it would pass for the second half of a complete pair.
    QFile::remove(NewName(MergePath()));
    if (!IsFile(NewName(MergePath()))) QFile::remove(NewName(DetailPath()));
    throw;
  }
  PlaceNewPair();
}

/// How a field of a file may stand in a statement.
enum class Kind { Integer, Number, Quotable };

template <typename Texts>
struct FileColumn {
  const char* name;
  Kind kind;
  QString Texts::*text;
};

constexpr FileColumn<sql::HoldingTexts> kHoldingColumns[] = {
    {"ID", Kind::Integer, &sql::HoldingTexts::id},         {"MAINID", Kind::Integer, &sql::HoldingTexts::portfolioId},
    {"SecuCode", Kind::Integer, &sql::HoldingTexts::code}, {"PZSL", Kind::Number, &sql::HoldingTexts::quantity},
    {"PZBL", Kind::Number, &sql::HoldingTexts::weight},    {"BUYPRICE", Kind::Number, &sql::HoldingTexts::buyPrice}};
constexpr FileColumn<sql::PortfolioTexts> kPortfolioColumns[] = {
    {"ID", Kind::Integer, &sql::PortfolioTexts::id},
    {"COMNAME", Kind::Quotable, &sql::PortfolioTexts::name},
    {"ZSCLOSEPRICE", Kind::Number, &sql::PortfolioTexts::indexClose},
    {"EDITDATE", Kind::Quotable, &sql::PortfolioTexts::editDate},
    {"SAVEFLAG", Kind::Integer, &sql::PortfolioTexts::saveFlag}};

QString TextOf(const ResultSet& rows, int row, const char* name, Kind kind) {
  const int column = rows.Column(name);
  if (kind == Kind::Quotable) return sql::QuotableText(rows, row, column);
  return QString::fromStdString(kind == Kind::Integer ? sql::IntegerLiteral(rows, row, column)
                                                      : sql::NumberLiteral(rows, row, column));
}

/// Inserts every row of a file and moves the generator of its table past the ids.
template <typename Texts, std::size_t count>
void Restore(DatabaseStatements& database, const ResultSet& rows, const FileColumn<Texts> (&columns)[count],
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

void RequireBoth() {
  for (const QString& path : {DetailPath(), MergePath()}) {
    if (!IsFile(path)) throw Error(ErrorCategory::NotFound, (path + QStringLiteral("：文件不存在")).toStdString());
  }
}

void ImportPair(DatabaseStatements& database) {
  TransactionScope transaction(database);
  Restore(database, ReadPacketFile(DetailPath()), kHoldingColumns, sql::RestoreHolding, sql::SetHoldingGenerator);
  Restore(database, ReadPacketFile(MergePath()), kPortfolioColumns, sql::RestorePortfolio, sql::SetPortfolioGenerator);
  transaction.Commit();
}

/// Renamed and not copied: that works on a full disk too.
void KeepRefusedPair() {
  for (const QString& path : {DetailPath(), MergePath()}) {
    if (IsFile(path)) RenameFileAtomically(path, path + QStringLiteral(".bad"), Durability::Lasting);
  }
}

}  // namespace

void SaveZHFile() {
  try {
    UserDataServices& database = Database();
    TransactionScope transaction(database);
    const ResultSet holdings = database.Query(sql::kAllHoldings);
    const ResultSet portfolios = database.Query(sql::kAllPortfolios);
    WritePair(holdings, portfolios);
    transaction.Commit();
  } catch (...) {
    LogCurrentException(kUnit, QStringLiteral("SaveZHFile"));
  }
}

bool LoadZHFile() {
  try {
    UserDataServices& database = Database();
    if (database.Count(sql::kCountHoldings) + database.Count(sql::kCountPortfolios) > 0) return false;
    FinishInterruptedSave();
    if (!IsFile(DetailPath()) && !IsFile(MergePath())) return false;
    try {
      RequireBoth();
      ImportPair(database);
      return true;
    } catch (...) {
      KeepRefusedPair();
      throw;
    }
  } catch (...) {
    LogCurrentException(kUnit, QStringLiteral("LoadZHFile"));
    return false;
  }
}

}  // namespace holdwise
