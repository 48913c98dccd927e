// SPDX-License-Identifier: MIT
#pragma once
#include <QCoreApplication>

#include "../unit/module/engine_fixture.h"
#include "calc/download_trigger.h"
#include "calc/untcalc2.h"
#include "holdwise/packet/packet_file.h"

namespace holdwise {

inline const QString kIndexFile = QStringLiteral("QMTL\\TZZH\\Day250\\指数\\allzs.dat");
inline const QString kRatesFile = QStringLiteral("QMTL\\TZZH\\InterestRate.Dat");
inline const QString kEstimatesFile = QStringLiteral("QMTL\\TZZH\\GZ.dat");

inline QString StockFile(const char* six) {
  return QStringLiteral("QMTL\\TZZH\\Day250\\股票\\") + QString::fromLatin1(six) + QStringLiteral(".dat");
}

/// Daily rows of one or several securities: code, date, return.
inline QByteArray BaseData(const std::vector<std::vector<QString>>& rows) {
  ResultSet table;
  const int code = table.AddColumn("SecuCode", ColumnType::Integer);
  for (const char* name : {"closeprice", "ggqjsyl", "pjsyl", "oldcloseprice", "sylbzc"}) {
    table.AddColumn(name, ColumnType::Real);
  }
  for (const char* name : {"hqtype", "rowid", "hqdate", "islastday", "startdate", "enddate"}) {
    table.AddColumn(name, ColumnType::Integer);
  }
  for (const auto& cells : rows) {
    const int row = table.AppendRow();
    table.SetInteger(row, code, cells[0].toLongLong());
    table.SetInteger(row, table.Column("hqtype"), 0);
    table.SetInteger(row, table.Column("hqdate"), cells[1].toLongLong());
    table.SetReal(row, table.Column("ggqjsyl"), cells[2].toDouble());
    table.SetReal(row, table.Column("oldcloseprice"), 1);
    table.SetInteger(row, table.Column("startdate"), 20240501);
    table.SetInteger(row, table.Column("enddate"), 20240529);
  }
  return EncodePacket(table);
}

inline QByteArray IndexData() {
  return BaseData({{"1", "20240528", "0.02"}, {"1", "20240529", "-0.02"}, {"399001", "20240529", "0.01"}});
}

inline QByteArray EstimateData(const std::vector<std::vector<QString>>& rows) {
  return EncodePacket(
      TableOf({{"SECUCODE", ColumnType::Text}, {"ID", ColumnType::Integer}, {"PRICE", ColumnType::Text}}, rows));
}

inline QByteArray RateData(const char* interest, const char* term = "一年") {
  ResultSet table;
  for (const char* name : {"ID", "SOURCEID", "UPDATEID"}) table.AddColumn(name, ColumnType::Integer);
  for (const char* name : {"CTIME", "UPTIME", "INTERESTCHANGEDATE"}) table.AddColumn(name, ColumnType::DateTime);
  for (const char* name : {"SOURCEDB", "SOURCETABLE", "ISVAILD", "REMARK", "DEPOSITTYPE", "TERM", "INTERESTCODE"}) {
    table.AddColumn(name, ColumnType::Text);
  }
  const int rate = table.AddColumn("INTEREST", ColumnType::Real);
  if (*interest == '\0') return EncodePacket(table);
  const int row = table.AppendRow();
  table.SetText(row, table.Column("DEPOSITTYPE"), "定期存款整存整取");
  table.SetText(row, table.Column("TERM"), term);
  table.SetReal(row, rate, QByteArray(interest).toDouble());
  return EncodePacket(table);
}

/// Two unfinished portfolios that hold 000001 and 600000, and a finished one that holds 300750.
class CalcDialog : public EngineTest {
 protected:
  CalcDialog() {
    RetryIncomplete();
    AddPortfolio(1, 0);
    AddPortfolio(2, 0);
    AddPortfolio(3, 1);
    AddHolding(1, 1, 1600000);
    AddHolding(2, 1, 1000001);
    AddHolding(3, 2, 1600000);
    AddHolding(4, 3, 1300750);
  }

  void AddPortfolio(int id, int finished) {
    Run(QStringLiteral("insert into alg_commain (ID,COMNAME,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG,"
                       "CALCDATE)values(%1,'p%1',3000,0,0,0,%2,'2024-05-29',1,20240529)")
            .arg(id)
            .arg(finished));
  }
  void AddHolding(int id, int portfolio, int code) {
    Run(QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values (%1,%2,%3,100,0.5,9)")
            .arg(id)
            .arg(portfolio)
            .arg(code));
  }

  std::shared_ptr<ScriptedDownFile> Base() { return host_.DownFile(QStringLiteral("DownBasicData")); }
  std::shared_ptr<ScriptedDownFile> RateDown() { return host_.DownFile(QStringLiteral("infsyndwnflrlDown")); }
  std::shared_ptr<ScriptedDownFile> EstimateDown() { return host_.DownFile(QStringLiteral("infsyndwnflrl")); }

  static void Show(TfrmCalc2& dialog) {
    dialog.show();
    QCoreApplication::processEvents();
  }
  void FinishBase() {
    Base()->ReceiveStream(StockFile("000001"), BaseData({{"0", "20240528", "0.01"}, {"0", "20240529", "0"}}));
    Base()->ReceiveStream(StockFile("600000"), BaseData({{"0", "20240528", "0.03"}, {"0", "20240529", "-0.01"}}));
    Base()->ReceiveStream(kIndexFile, IndexData());
  }
  /// As FinishBase, but without 000001's file, if it is asked for at all.
  void FinishBaseBut000001() {
    if (Base()->Requests().back() == StockFile("000001")) Base()->Fail(StockFile("000001"), 1);
    Base()->ReceiveStream(StockFile("600000"), BaseData({{"0", "20240528", "0.03"}, {"0", "20240529", "-0.01"}}));
    Base()->ReceiveStream(kIndexFile, IndexData());
  }
  void FinishRates() { RateDown()->ReceiveStream(kRatesFile, RateData("1.5")); }
  void FinishEstimates() { EstimateDown()->ReceiveStream(kEstimatesFile, EstimateData({{"600000", "1", "9.5"}})); }
  void FinishAll() {
    FinishBase();
    FinishRates();
    FinishEstimates();
  }

  QStringList Unfinished() { return Rows("select ID from alg_commain where ISFINISHED = 0 order by ID"); }
  QStringList Statistics() { return Rows("select secucode,hqdate from alg_stockstatistic order by secucode,hqdate"); }
  int LogLinesWith(const QString& text) const {
    int count = 0;
    for (const QString& line : host_.debug.Lines()) count += line.contains(text) ? 1 : 0;
    return count;
  }
};

}  // namespace holdwise
