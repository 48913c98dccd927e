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

/// The fields of a file row as they may stand in a statement.
class RowTexts {
 public:
  RowTexts(const ResultSet& rows, int row) : rows_(rows), row_(row) {}

  [[nodiscard]] QString Integer(const char* name) const {
    return QString::fromStdString(sql::IntegerLiteral(rows_, row_, rows_.Column(name)));
  }
  [[nodiscard]] QString Number(const char* name) const {
    return QString::fromStdString(sql::NumberLiteral(rows_, row_, rows_.Column(name)));
  }
  [[nodiscard]] QString Quotable(const char* name) const { return sql::QuotableText(rows_, row_, rows_.Column(name)); }

 private:
  const ResultSet& rows_;
  int row_;
};

void RestoreHoldings(DatabaseStatements& database, const ResultSet& rows) {
  std::int64_t largestId = 0;
  for (int row = 0; row < rows.RowCount(); ++row) {
    const RowTexts texts(rows, row);
    sql::HoldingTexts holding;
    holding.id = texts.Integer("ID");
    holding.portfolioId = texts.Integer("MAINID");
    holding.code = texts.Integer("SecuCode");
    holding.quantity = texts.Number("PZSL");
    holding.weight = texts.Number("PZBL");
    holding.buyPrice = texts.Number("BUYPRICE");
    largestId = std::max(largestId, IntegerOr(holding.id));
    MustExecute(database, sql::RestoreHolding(holding));
  }
  MustExecute(database, sql::SetHoldingGenerator(largestId));
}

void RestorePortfolios(DatabaseStatements& database, const ResultSet& rows) {
  std::int64_t largestId = 0;
  for (int row = 0; row < rows.RowCount(); ++row) {
    const RowTexts texts(rows, row);
    sql::PortfolioTexts portfolio;
    portfolio.id = texts.Integer("ID");
    portfolio.name = texts.Quotable("COMNAME");
    portfolio.indexClose = texts.Number("ZSCLOSEPRICE");
    portfolio.editDate = texts.Quotable("EDITDATE");
    portfolio.saveFlag = texts.Integer("SAVEFLAG");
    largestId = std::max(largestId, IntegerOr(portfolio.id));
    MustExecute(database, sql::RestorePortfolio(portfolio));
  }
  MustExecute(database, sql::SetPortfolioGenerator(largestId));
}

void RequireBoth() {
  for (const QString& path : {DetailPath(), MergePath()}) {
    if (!IsFile(path)) throw Error(ErrorCategory::NotFound, (path + QStringLiteral("：文件不存在")).toStdString());
  }
}

void ImportPair(DatabaseStatements& database) {
  TransactionScope transaction(database);
  RestoreHoldings(database, ReadPacketFile(DetailPath()));
  RestorePortfolios(database, ReadPacketFile(MergePath()));
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
