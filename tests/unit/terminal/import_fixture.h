#pragma once
#include <gtest/gtest.h>

#include "datacentre/local_database.h"
#include "datacentre/market_data.h"
#include "injecting_user_data.h"
#include "market_folder.h"
#include "scripted_host.h"
#include "temp_database.h"
#include "transfer/import.h"

namespace holdwise {

inline constexpr char kGood[] =
    "name,code,quantity,price\n"
    "稳健一号,600000,1000,8.00\n"
    "进取(2)_A-b,000001,300,11.23\n"
    "稳健一号,600036,500,34\n"
    "进取(2)_A-b,300750,100,199.88\n"
    "进取(2)_A-b,600000,7,8.15\n";

inline QStringList StatisticsHeadings() {
  return QStringLiteral(
             "closeprice:real hqtype:integer rowid:integer ggqjsyl:real pjsyl:real hqdate:integer oldcloseprice:real "
             "sylbzc:real islastday:integer startdate:integer enddate:integer")
      .split(QLatin1Char(' '));
}

inline std::vector<QStringList> StatisticsRows(const char* close) {
  const QString price = QString::fromLatin1(close);
  const auto row = [&price](const char* rest) {
    return QStringList{price} + QString::fromLatin1(rest).split(QLatin1Char(','));
  };
  return {row("0,1,0.01,0.005,20240528,8.1,0.02,0,20230601,20240529"),
          row("0,2,-0.002,0.005,20240529,8.2,0.02,1,20230601,20240529"),
          row("1,1,0.003,0.001,20240529,8,0.03,1,20230601,20240529")};
}

class ImportTest : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* code : {"600000", "600036", "000001", "300750"}) {
      folder_.Write(StockFile(code), MakeTable(StatisticsHeadings(), StatisticsRows("8.15")));
    }
    std::vector<QStringList> indexRows;
    for (const char* index : {"1", "399001", "399300"}) {
      for (const QStringList& row : StatisticsRows("3111.02"))
        indexRows.push_back(QStringList{QString::fromLatin1(index)} + row);
    }
    folder_.Write(QStringLiteral("QMTL/TZZH/Day250/指数/allzs.dat"),
                  MakeTable(QStringList{QStringLiteral("SecuCode:integer")} + StatisticsHeadings(), indexRows));
    data_.Load(folder_.Path());
  }
  static QString StockFile(const char* code) {
    return QStringLiteral("QMTL/TZZH/Day250/股票/%1.dat").arg(QLatin1String(code));
  }
  [[nodiscard]] ImportServices Services() { return {database_, data_, data_, folder_.Path()}; }
  ImportResult Import(const QByteArray& csv, const ImportProgress& progress = {}) {
    return ImportPortfolios(csv, Services(), progress);
  }
  /// A whole table as text, one line a row.
  QString Dump(const char* sql) {
    const ResultSet rows = temp_.Service().Query(QString::fromLatin1(sql));
    QStringList lines;
    for (int row = 0; row < rows.RowCount(); ++row) {
      QStringList cells;
      for (int column = 0; column < rows.ColumnCount(); ++column) cells += rows.TextAt(row, column);
      lines += cells.join(QLatin1Char('|'));
    }
    return lines.join(QLatin1Char('\n'));
  }
  QString Everything() {
    return Dump("select * from alg_commain order by ID") + QLatin1Char('#') +
           Dump("select * from alg_comdetail order by ID") + QLatin1Char('#') +
           Dump("select * from alg_stockstatistic order by secucode, hqtype, hqdate, rowid");
  }

  MarketFolder folder_;
  ScriptedClock clock_;
  ScriptedDebug log_;
  test::TempDatabase temp_;
  test::InjectingUserData database_{temp_.Service()};
  LocalDatabaseReader reader_{database_};
  MarketData data_{clock_, log_, reader_};
};

}  // namespace holdwise
