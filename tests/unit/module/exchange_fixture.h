// SPDX-License-Identifier: MIT
#pragma once
#include <QDir>
#include <QFile>

#include "common/store/exchange_files.h"
#include "engine_fixture.h"
#include "holdwise/packet/packet_file.h"

namespace holdwise {

inline const std::vector<ColumnSpec> kDetailColumns = {
    {"ID", ColumnType::Integer},   {"MAINID", ColumnType::Integer}, {"SECUCODE", ColumnType::Integer},
    {"PZSL", ColumnType::Integer}, {"PZBL", ColumnType::Real},      {"BUYPRICE", ColumnType::Real}};
inline const std::vector<ColumnSpec> kMergeColumns = {{"ID", ColumnType::Integer},
                                                      {"COMNAME", ColumnType::Text},
                                                      {"ZSCLOSEPRICE", ColumnType::Real},
                                                      {"EDITDATE", ColumnType::Text},
                                                      {"SAVEFLAG", ColumnType::Integer}};

class ExchangeFiles : public EngineTest {
 protected:
  QString Path(const char* name) const { return host_.SysWorkDataPath() + QString::fromLatin1(name); }
  void Write(const char* name, const ResultSet& rows) { WritePacketFile(Path(name), rows, Durability::Replaceable); }
  QByteArray Bytes(const char* name) const {
    QFile file(Path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  bool Exists(const char* name) const { return QFile::exists(Path(name)); }
  /// The files that were kept of one, oldest first.
  QStringList Kept(const char* name, const char* ending) const {
    const QString pattern = QStringLiteral("%1.2*%2").arg(QString::fromLatin1(name), QString::fromLatin1(ending));
    return QDir(host_.SysWorkDataPath()).entryList({pattern}, QDir::Files, QDir::Name);
  }
  /// Bytes of the only one that was kept of each; "(not one)" otherwise.
  QByteArray KeptPair(const char* ending) const {
    const QStringList detail = Kept("TZZHDetail.dat", ending);
    const QStringList merge = Kept("TZZHMerge.dat", ending);
    if (detail.size() != 1 || merge.size() != 1) return "(not one)";
    return Bytes(qPrintable(detail[0])) + Bytes(qPrintable(merge[0]));
  }
  QByteArray PairBytes() const { return Bytes("TZZHDetail.dat") + Bytes("TZZHMerge.dat"); }

  static ResultSet Details(const std::vector<std::vector<QString>>& rows) { return TableOf(kDetailColumns, rows); }
  static ResultSet Portfolios(const std::vector<std::vector<QString>>& rows) { return TableOf(kMergeColumns, rows); }
  /// Two holdings of one portfolio.
  void WritePair(const QString& name = QStringLiteral("稳健"), const char* detail = "TZZHDetail.dat",
                 const char* merge = "TZZHMerge.dat") {
    Write(detail, Details({{"31", "7", "1600000", "300", "0.4", "9.5"}, {"12", "7", "1000001", "200", "0.6", "11"}}));
    Write(merge, Portfolios({{"7", name, "3111.02", "2024-05-29", "1"}}));
  }
  void ExpectUntouched() {
    EXPECT_EQ(Database().Count(sql::kCountHoldings), 0);
    EXPECT_EQ(Database().Count(sql::kCountPortfolios), 0);
    EXPECT_FALSE(Database().InTransaction());
  }
  void ExpectRefused() {
    EXPECT_FALSE(LoadZHFile());
    ExpectUntouched();
    const std::vector<QString> lines = host_.debug.Lines();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_TRUE(lines[0].startsWith(QStringLiteral("Holdwise.bpl->Untcommon->LoadZHFile 发生错误!错误信息:")));
  }
};

}  // namespace holdwise
