#include "common/statements.h"

#include "common/date_text.h"

namespace holdwise::sql {
namespace {

QString Quoted(const QString& text) {
  return QLatin1Char('\'') + text + QLatin1Char('\'');
}

}  // namespace

QString PortfolioByName(const QString& name) {
  return QStringLiteral("select * from alg_commain where COMNAME = ") + Quoted(name);
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
  return QString(kBlock).replace(QStringLiteral("%s"), name);
}

QString HoldingsOf(const QString& portfolioId) {
  return QStringLiteral("select * from alg_comdetail where MAINID =") + portfolioId;
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
         portfolio.id + QLatin1Char(',') + Quoted(portfolio.name) + QLatin1Char(',') + portfolio.indexClose +
         QStringLiteral(",0,0,0,0,") + Quoted(portfolio.editDate) + QLatin1Char(',') + portfolio.saveFlag +
         QLatin1Char(')');
}

QString SetHoldingGenerator(qint64 value) {
  return QStringLiteral("SET GENERATOR ALG_ROWID_DETAIL TO ") + QString::number(value);
}

QString SetPortfolioGenerator(qint64 value) {
  return QStringLiteral("SET GENERATOR alg_rowid_main TO ") + QString::number(value);
}

}  // namespace holdwise::sql
