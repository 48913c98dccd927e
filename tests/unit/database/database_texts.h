// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include <QString>
#include <QStringList>
#include <string>

#include "holdwise/sdk/database.h"

/// Statements that several of the database tests run, and how they look at what came of them.
namespace holdwise::test {

inline QString InsertPortfolio(int id, const QString& name, int isFinished = 0, int saveFlag = 0) {
  return QStringLiteral(
             "insert into alg_commain "
             "(ID,COMNAME,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG)values(%1,'%2',"
             "3012.45,0,0,0,%3,'2026-01-05',%4)")
      .arg(QString::number(id), name, QString::number(isFinished), QString::number(saveFlag));
}

/// The values as they stand in the statement.
inline QString InsertHolding(const QString& mainId, const QString& code, const QString& quantity, const QString& weight,
                             const QString& price = QStringLiteral("7.25")) {
  return QStringLiteral(
             "insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values "
             "(gen_id(ALG_ROWID_DETAIL,1),%1,%2,%3,"
             "%4,%5)")
      .arg(mainId, code, quantity, weight, price);
}

struct DailyRow {
  int code = 1;
  int date = 20260105;
  double dailyReturn = 0;
  int type = 0;
  double oldClose = 10;
  int startDate = 20260101;
  int endDate = 20261231;
};
inline QString InsertStatistic(const DailyRow& row) {
  return QStringLiteral(
             "insert into alg_stockstatistic "
             "(secucode,closeprice,hqtype,rowid,ggqjsyl,pjsyl,hqdate,oldcloseprice,sylbzc,"
             "islastday,startdate,enddate) values(%1,10,%2,1,%3,0,%4,%5,0,0,%6,%7)")
      .arg(row.code)
      .arg(row.type)
      .arg(QString::number(row.dailyReturn, 'g', 17))
      .arg(row.date)
      .arg(QString::number(row.oldClose, 'g', 17))
      .arg(row.startDate)
      .arg(row.endDate);
}

inline const QString kCountHoldings = QStringLiteral("select Count(*) from alg_comdetail");
inline const QString kCountPortfolios = QStringLiteral("select Count(*) from alg_commain");

inline const QString kIds = QStringLiteral("select ID from alg_commain order by ID");

/// The ids of all portfolios, "1,2".
inline std::string IdsOf(DatabaseStatements& database) {
  const ResultSet rows = database.Query(kIds);
  QStringList ids;
  for (int row = 0; row < rows.RowCount(); ++row) ids.append(rows.TextAt(row, 0));
  return ids.join(QLatin1Char(',')).toStdString();
}

/// What the call throws; a failure of the test when it throws nothing.
template <typename Call>
Error ErrorOf(Call&& call) {
  try {
    call();
  } catch (const Error& error) {
    return error;
  }
  ADD_FAILURE() << "no error";
  return {ErrorCategory::NotFound, "no error"};
}

}  // namespace holdwise::test
