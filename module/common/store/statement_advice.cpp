// SPDX-License-Identifier: MIT
#include "common/store/statement_advice.h"

#include <QDate>

#include "common/store/statements.h"

namespace holdwise::sql {

std::vector<StatementAdvice> Advice() {
  // The engine evaluates a condition "in (select ...)" anew for every row it looks at. The forms start from the inner
  // select instead; their outer joins settle which table comes first, where the engine would choose the other one.
  std::vector<StatementAdvice> advice = {
      {.statement = kSavedHoldings,
       .equalForm =
           QStringLiteral("select d.* from alg_commain m left join alg_comdetail d on d.MAINID = m.ID where m.SAVEFLAG "
                          "= 1 and d.MAINID is not null order by m.ID"),
       .mayBeKept = true},
      {.statement = kSavedHoldingsForCloses,
       .equalForm = QStringLiteral(
           "select d.MAINID, d.SECUCODE, d.PZSL from alg_commain m left join alg_comdetail d on d.MAINID = m.ID where "
           "m.SAVEFLAG = 1 and d.MAINID is not null order by m.ID")},
      {.statement = HeldCloses(PeriodType::Week, {QDate(2001, 1, 1), QDate(2001, 1, 7)}),
       .equalForm = QStringLiteral(
           "select s.SECUCODE, s.CLOSEPRICE from (select distinct SECUCODE from alg_comdetail) h join "
           "ALG_STOCKSTATISTIC s on s.SECUCODE = h.SECUCODE where s.HqType = 1 and s.HqDate >= 20010101 and s.HqDate "
           "<= 20010107")}};
  // Every price reply and every renewal of the subscription needs the holdings, every click on a portfolio its own, and
  // every move of the stress test (above) the saved ones.
  const QString anyPortfolio = QStringLiteral("1");
  for (const QString& statement : {kSavedPortfolios, kHeldCodes, kHoldingsForNowValues, kHoldingsForPreviousCloses,
                                   HoldingsOf(anyPortfolio), CodesOf(anyPortfolio)}) {
    advice.push_back({.statement = statement, .mayBeKept = true});
  }
  return advice;
}

}  // namespace holdwise::sql
