// SPDX-License-Identifier: MIT
#pragma once
#include <map>

#include "calc/base_data_ingestion.h"
#include "engine_fixture.h"

namespace holdwise::calc {

inline const QString kStock = QStringLiteral("1600000");

/// Fields of one row; what a test does not set is a plausible daily row.
struct Row {
  QString code = "1600000", close = "10.5", type = "0", rowId = "1", periodReturn = "0.01", mean = "0.002";
  QString date = "20240529", oldClose = "10.25", deviation = "0.015", last = "0", start = "20240501", end = "20240529";
};

/// A file whose fields are all texts, so that anything may stand in them.
inline ResultSet TextFile(const std::vector<Row>& rows, bool withCode = false) {
  std::vector<ColumnSpec> columns;
  if (withCode) columns.push_back({"SecuCode", ColumnType::Text});
  for (const char* name : {"closeprice", "hqtype", "rowid", "ggqjsyl", "pjsyl", "hqdate", "oldcloseprice", "sylbzc",
                           "islastday", "startdate", "enddate"}) {
    columns.push_back({name, ColumnType::Text});
  }
  std::vector<std::vector<QString>> cells;
  for (const Row& row : rows) {
    std::vector<QString> line = {row.close,    row.type,      row.rowId, row.periodReturn, row.mean, row.date,
                                 row.oldClose, row.deviation, row.last,  row.start,        row.end};
    if (withCode) line.insert(line.begin(), row.code);
    cells.push_back(line);
  }
  return TableOf(columns, cells);
}

inline Row Dated(const char* date, const char* type = "0") {
  Row row;
  row.date = QString::fromLatin1(date);
  row.type = QString::fromLatin1(type);
  return row;
}

class Ingestion : public EngineTest {
 protected:
  static BaseDataFamily Day250() { return ClassifyBaseData("QMTL\\TZZH\\Day250\\股票\\600000.dat"); }
  static BaseDataFamily Day250Index() { return ClassifyBaseData("QMTL\\TZZH\\Day250\\指数\\allzs.dat"); }
  static BaseDataFamily Day20() { return ClassifyBaseData("QMTL\\TZZH\\Day20\\股票\\600000.dat"); }
  static BaseDataFamily Today() { return ClassifyBaseData("QMTL\\TZZH\\today\\股票\\600000.dat"); }

  void Ingest(const ResultSet& file, const BaseDataFamily& family, const QString& code = kStock) {
    IngestBaseData(Database(), file, family, code, [](int days) {
      const std::map<int, int> dates = {{20, 20240430}, {2, 20240527}};
      return dates.at(days);
    });
  }
  void Store(const char* code, const char* type, const char* date, const char* last = "0") {
    Run(QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate,islastday,closeprice) values "
                       "(%1,%2,%3,%4,1)")
            .arg(QLatin1String(code), QLatin1String(type), QLatin1String(date), QLatin1String(last)));
  }
  QStringList Stored() {
    return Rows(
        "select secucode,hqtype,hqdate,islastday from alg_stockstatistic order by secucode,hqtype,hqdate,"
        "closeprice");
  }
};

}  // namespace holdwise::calc
