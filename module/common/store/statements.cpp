// SPDX-License-Identifier: MIT
#include "common/store/statements.h"

#include "common/helpers/date_text.h"
#include "common/helpers/day_range.h"
#include "holdwise/packet/error.h"

namespace holdwise::sql {
namespace {

QString Quoted(const QString& text) {
  return QLatin1Char('\'') + text + QLatin1Char('\'');
}

/// A quote would end the literal, and what follows it would be a statement of its own.
const QString& WithoutQuote(const QString& text, const QString& what) {
  if (text.contains(QLatin1Char('\''))) {
    throw Error(ErrorCategory::Refused, QStringLiteral("%1含有引号：“%2”，没有执行").arg(what, text).toStdString());
  }
  return text;
}

QString Named(const QString& name) {
  return Quoted(WithoutQuote(name, QStringLiteral("组合名称")));
}

}  // namespace

QString PortfolioByName(const QString& name) {
  return QStringLiteral("select * from alg_commain where COMNAME = ") + Named(name);
}

QString DeleteRecord(const QString& name) {
  static const QString kBlock = QStringLiteral(
      "execute block\n"
      "as\n"
      "declare id int ;\n"
      "begin\n"
      "  select ID from alg_commain where COMNAME = '%s' into :id;\n"
      "  if (:id<>0) then\n"
      "  begin\n"
      "    delete from alg_commain where id = :id;\n"
      "    delete from alg_comdetail where mainid = :id;\n"
      "  end\n"
      "end");
  return QString(kBlock).replace(QStringLiteral("%s"), WithoutQuote(name, QStringLiteral("组合名称")));
}

QString HoldingsOf(const QString& portfolioId) {
  return QStringLiteral("select * from alg_comdetail where MAINID =") + portfolioId;
}

QString CodesOf(const QString& portfolioId) {
  return QStringLiteral("select SECUCODE from alg_comdetail where mainid = ") + portfolioId;
}

QString CountOfName(const QString& name) {
  return QStringLiteral("select count(COMNAME) from alg_commain where COMNAME=") + Named(name);
}

QString CountOfNameElsewhere(const QString& name, std::int64_t portfolioId) {
  return CountOfName(name) + QStringLiteral(" and ID <> %1").arg(portfolioId);
}

QString IdOfName(const QString& name) {
  return QStringLiteral("select ID from alg_commain where COMNAME =") + Named(name);
}

QString FinishedOfName(const QString& name) {
  return QStringLiteral("select ISFINISHED from alg_commain where COMNAME=") + Named(name);
}

QString SavePortfolio(const QString& name) {
  return QStringLiteral("Update alg_commain set SAVEFLAG = 1 where COMNAME =") + Named(name);
}

QString DeletePortfolio(std::int64_t portfolioId) {
  return QStringLiteral("Delete from alg_commain where ID =") + QString::number(portfolioId);
}

QString DeletePortfolioByName(const QString& name) {
  return QStringLiteral("Delete from alg_commain where COMNAME =") + Named(name);
}

QString DeleteHoldings(std::int64_t portfolioId) {
  return QStringLiteral("Delete from alg_comdetail where MAINID = ") + QString::number(portfolioId);
}

QString InsertPortfolio(std::int64_t id, const QString& name, const QString& indexClose, const QString& editDate) {
  return RestorePortfolio({QString::number(id), name, indexClose, editDate, QStringLiteral("0")});
}

QString InsertHolding(std::int64_t portfolioId, const QString& code, const QString& quantity, const QString& weight,
                      const QString& buyPrice) {
  return RestoreHolding(
      {QStringLiteral("gen_id(ALG_ROWID_DETAIL,1)"), QString::number(portfolioId), code, quantity, weight, buyPrice});
}

QString UndoHoldings(std::int64_t portfolioId) {
  return QStringLiteral("delete from alg_comdetail where MAINID = ") + QString::number(portfolioId);
}

QString InsertProposal(const ProposalTexts& proposal) {
  const QStringList values{proposal.id,           Quoted(WithoutQuote(proposal.style, QStringLiteral("组合风格"))),
                           proposal.targetReturn, proposal.variance,
                           proposal.beta,         proposal.indexClose,
                           QStringLiteral("0"),   Quoted(proposal.editDate),
                           Named(proposal.name),  QStringLiteral("1")};
  return QStringLiteral(
             "insert into alg_commain "
             "(ID,ZHFG,MBSYL,FC,BETA,ZSCLOSEPRICE,ISFINISHED,EDITDATE,COMNAME,SAVEFLAG)values(") +
         values.join(QLatin1Char(',')) + QLatin1Char(')');
}

QString NameOfPortfolio(std::int64_t portfolioId) {
  return QStringLiteral("select COMNAME from alg_commain where ID = ") + QString::number(portfolioId);
}

QString CopyPortfolio(std::int64_t id, std::int64_t copyId, const QString& copyName) {
  return QStringLiteral(
             "insert into alg_commain (ID,COMNAME,ZHFG,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG) select "
             "%1,%2,ZHFG,ZSCLOSEPRICE,0,0,0,0,EDITDATE,0 from alg_commain where ID = %3")
      .arg(QString::number(copyId), Named(copyName), QString::number(id));
}

QString CopyHoldings(std::int64_t portfolioId, std::int64_t copyId) {
  return QStringLiteral(
             "insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) select gen_id(ALG_ROWID_DETAIL,1),%1,"
             "SecuCode,PZSL,PZBL,BUYPRICE from alg_comdetail where MAINID = %2")
      .arg(copyId)
      .arg(portfolioId);
}

QString LatestDayOf(const QString& code) {
  return kLatestDay + QStringLiteral(" and SecuCode = ") + code;
}

QString HeldCloses(PeriodType type, const TDayRange& range) {
  return QStringLiteral("select SECUCODE, CLOSEPRICE from ALG_STOCKSTATISTIC where HqType = ") +
         QString::number(static_cast<int>(type)) +
         QStringLiteral(" and  SECUCODE in (select distinct SECUCODE from alg_comdetail) and HqDate >= ") +
         DayNumberText(range.first) + QStringLiteral(" and HqDate <= ") + DayNumberText(range.second);
}

QString RestoreHolding(const HoldingTexts& holding) {
  return QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values (") + holding.id +
         QLatin1Char(',') + holding.portfolioId + QLatin1Char(',') + holding.code + QLatin1Char(',') +
         holding.quantity + QLatin1Char(',') + holding.weight + QLatin1Char(',') + holding.buyPrice + QLatin1Char(')');
}

QString RestorePortfolio(const PortfolioTexts& portfolio) {
  return QStringLiteral(
             "insert into alg_commain (ID,COMNAME,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG)values(") +
         portfolio.id + QLatin1Char(',') + Named(portfolio.name) + QLatin1Char(',') + portfolio.indexClose +
         QStringLiteral(",0,0,0,0,") + Quoted(portfolio.editDate) + QLatin1Char(',') + portfolio.saveFlag +
         QLatin1Char(')');
}

QString SetHoldingGenerator(qint64 value) {
  return QStringLiteral("SET GENERATOR ALG_ROWID_DETAIL TO ") + QString::number(value);
}

QString SetPortfolioGenerator(qint64 value) {
  return QStringLiteral("SET GENERATOR alg_rowid_main TO ") + QString::number(value);
}

QString TextLiteral(const QString& text) {
  return Quoted(QString(text).replace(QLatin1Char('\''), QStringLiteral("''")));
}

QString IndexCloses(int indexNumber) {
  return QStringLiteral("select ClosePrice from ALG_STOCKSTATISTIC  where (SECUCODE=") + QString::number(indexNumber) +
         QStringLiteral(") and (HqType = 0) order by HQDATE desc");
}

QString IndexOldCloses(int indexNumber) {
  return QStringLiteral("select OldClosePrice from ALG_STOCKSTATISTIC  where (SECUCODE=") +
         QString::number(indexNumber) + QStringLiteral(") and (HqType = 0) order by HQDATE desc");
}

QString IncompletePortfolios(bool areSaved) {
  return QStringLiteral(
             "select ID,COMNAME,CALCDATE from alg_commain where SAVEFLAG %1 1 and (ISFINISHED = 0 or CALCDATE is null "
             "or LACKING > 0 or CALCDATE < (select first 1 HQDATE from alg_stockstatistic where SECUCODE = 1 and "
             "HQTYPE = 0 order by HQDATE desc)) order by ID desc")
      .arg(areSaved ? QStringLiteral("=") : QStringLiteral("<>"));
}

QString DailyRowsSince(std::int64_t firstDay, std::int64_t lastButOne) {
  const QString hasReturn = QStringLiteral(
      "(select first 1 1 from alg_stockstatistic r where r.SECUCODE = c.SECUCODE and r.HQTYPE = 0 and r.HQDATE >= %1%2 "
      "and (r.OLDCLOSEPRICE <> 0 or r.GGQJSYL <> 0))");
  return QStringLiteral(
             "select c.SECUCODE,(select first 1 coalesce(nullif(s.ENDDATE, 0), s.HQDATE) from alg_stockstatistic s "
             "where s.SECUCODE = c.SECUCODE and s.HQTYPE = 0 order by s.HQDATE desc) as WINDOWEND,%1 as HASRETURN,%2 "
             "as HASTWODAYS from (select d.SECUCODE from alg_comdetail d union select 1 from rdb$database) c")
      .arg(hasReturn.arg(firstDay).arg(QString()),
           hasReturn.arg(firstDay).arg(QStringLiteral(" and r.HQDATE <= %1").arg(lastButOne)));
}

QString DoubtfulPurchases(const QString& today) {
  return QStringLiteral(
             "select m.ID,m.COMNAME,m.EDITDATE,m.KNOWNTO,m.ZSCLOSEPRICE,s.CLOSEPRICE as MARKETCLOSE from alg_commain m "
             "left join alg_stockstatistic s on s.SECUCODE = 1 and s.HQTYPE = 0 and s.HQDATE = iif(m.INDEXISCLOSE = 1, "
             "cast(replace(m.EDITDATE, '-', '') as integer), 0) and abs(s.CLOSEPRICE - m.ZSCLOSEPRICE) >= 0.0051 where "
             "m.SAVEFLAG = 1 and (s.CLOSEPRICE is not null or m.EDITDATE like '____-__-__' and m.EDITDATE > %1 and "
             "m.KNOWNTO > cast(replace(%1, '-', '') as integer)) order by m.ID desc")
      .arg(Quoted(today));
}

QString FirstCalculation(const QString& today) {
  return QStringLiteral("execute procedure INITFIRSTCALC(") + Quoted(today) + QLatin1Char(')');
}

QString CalculatePortfolio(const QString& portfolioId) {
  return QStringLiteral("execute procedure SP_GETBETA(1,") + portfolioId + QLatin1Char(')');
}

QString MarkOtherEditions(const QString& edition) {
  return QStringLiteral("update alg_commain set ISFINISHED = 0 where ISFINISHED <> 0 and EDITION is distinct from ") +
         TextLiteral(edition);
}

QString NoteEdition(const QString& portfolioId, const QString& edition, int lastDay) {
  QStringList lacking;
  QString set;
  if (!edition.isEmpty()) {
    set = QStringLiteral("EDITION = %1,").arg(TextLiteral(edition));
    lacking.append(QStringLiteral("(select count(*) from (select SECUCODE from alg_comdetail where MAINID = %1 union "
                                  "select 1 from rdb$database) c where (select e.EDITION from alg_statisticedition e "
                                  "where e.SECUCODE = c.SECUCODE) is distinct from %2)")
                       .arg(portfolioId, TextLiteral(edition)));
  }
  if (lastDay != 0) {
    lacking.append(QStringLiteral("coalesce((select first 1 iif(coalesce(nullif(s.ENDDATE, 0), s.HQDATE) <> %1, 1, 0) "
                                  "from alg_stockstatistic s where s.SECUCODE = 1 and s.HQTYPE = 0 order by s.HQDATE "
                                  "desc), 1)")
                       .arg(lastDay));
  }
  return QStringLiteral(
             "update alg_commain set %1LACKING = maxvalue(coalesce(LACKING, 0),%2) where ID = %3 and "
             "ISFINISHED <> 0")
      .arg(set, lacking.join(QLatin1Char('+')), portfolioId);
}

QString SetStatisticEdition(const QString& code, const QString& edition) {
  return QStringLiteral("update or insert into alg_statisticedition (SECUCODE,EDITION) values (") + code +
         QLatin1Char(',') + TextLiteral(edition) + QStringLiteral(") matching (SECUCODE)");
}

QString CodesOfEdition(const QString& edition) {
  return QStringLiteral("select SECUCODE from alg_statisticedition where EDITION = ") + TextLiteral(edition);
}

QString InsertStatistic(const StatisticTexts& row) {
  static const QString kBeginning = QStringLiteral(
      "insert into alg_stockstatistic (secucode,closeprice,hqtype,rowid,ggqjsyl,pjsyl,hqdate,oldcloseprice,sylbzc,"
      "islastday,startdate,enddate) values(");
  const auto latin1 = [](const std::string& text) {
    return QLatin1String(text.data(), static_cast<qsizetype>(text.size()));
  };
  QString statement;
  statement.reserve(kBeginning.size() + 160);
  statement += kBeginning;
  statement += latin1(row.code);
  for (const std::string* value :
       {&row.closePrice, &row.hqType, &row.rowId, &row.periodReturn, &row.meanReturn, &row.hqDate, &row.oldClosePrice,
        &row.deviation, &row.isLastDay, &row.startDate, &row.endDate}) {
    statement += QLatin1Char(',');
    statement += latin1(*value);
  }
  statement += QLatin1Char(')');
  return statement;
}

QString DeleteStatistics(const QString& code) {
  return QStringLiteral("delete from alg_stockstatistic where secucode = ") + code;
}

QString DeleteStatisticsBetween(const QString& code, int fromDay, int toDay) {
  return DeleteStatistics(code) + QStringLiteral(" and hqdate between ") + QString::number(fromDay) +
         QStringLiteral(" and ") + QString::number(toDay);
}

QString DeleteStatisticsBefore(const QString& day, const QString& code) {
  return QStringLiteral("delete from alg_stockstatistic where hqdate < ") + day + QStringLiteral(" and secucode = ") +
         code;
}

QString DeleteSeriesBefore(const QString& day, const QString& code, const QString& hqType) {
  return DeleteStatisticsBefore(day, code) + QStringLiteral(" and hqtype = ") + hqType;
}

QString ClearLastDay(const QString& code) {
  return QStringLiteral("update alg_stockstatistic set islastday = 0 where secucode = ") + code;
}

QString InsertInterestRate(const QStringList& literals) {
  return QStringLiteral(
             "insert into alg_rmbinterestrate (ID,SOURCEID,SOURCEDB,SOURCETABLE,UPDATEID,CTIME,UPTIME,ISVAILD,REMARK,"
             "DEPOSITTYPE,TERM,INTERESTCHANGEDATE,INTEREST,INTERESTCODE) values (") +
         literals.join(QLatin1Char(',')) + QLatin1Char(')');
}

QString InsertEstimateValue(const QString& id, const QString& codeLiteral, const QString& price) {
  return QStringLiteral("insert into ALG_STOCKESTIMATEVALUE (ID,SECUCODE,CTIME,PRICE) values (") + id +
         QLatin1Char(',') + codeLiteral + QStringLiteral(",19910101,") + price + QLatin1Char(')');
}

}  // namespace holdwise::sql
