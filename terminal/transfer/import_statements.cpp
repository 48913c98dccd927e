// SPDX-License-Identifier: MIT
#include "import_statements.h"

namespace holdwise::import_sql {

QString InsertHolding(const Holding& holding) {
  return QStringLiteral(
             "insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values (gen_id(ALG_ROWID_DETAIL,1),%1,"
             "%2,%3,%4,%5)")
      .arg(holding.portfolioId, holding.code, holding.quantity, holding.weight, holding.buyPrice);
}

QString InsertPortfolio(const Portfolio& portfolio) {
  return QStringLiteral(
             "insert into alg_commain (ID,COMNAME,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG%5)values(%1,"
             "'%2',%3,0,0,0,0,'%4',1%6)")
      .arg(portfolio.id, portfolio.name, portfolio.indexLevel, portfolio.date,
           portfolio.isLevelClose ? QStringLiteral(",INDEXISCLOSE") : QString(),
           portfolio.isLevelClose ? QStringLiteral(",1") : QString());
}

}  // namespace holdwise::import_sql
