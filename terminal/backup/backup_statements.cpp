// SPDX-License-Identifier: MIT
#include "backup_statements.h"

#include <QStringList>

#include "holdwise/packet/number_text.h"

namespace holdwise::backup::sql {
namespace {

QString Quoted(const QString& text) {
  return QLatin1Char('\'') + QString(text).replace(QLatin1Char('\''), QStringLiteral("''")) + QLatin1Char('\'');
}

QString OrNull(const std::optional<std::int64_t>& value) {
  return value ? QString::number(*value) : QStringLiteral("null");
}

}  // namespace

QString InsertPortfolio(const SavedPortfolio& portfolio) {
  const QStringList values{QString::number(portfolio.id),
                           Quoted(portfolio.name),
                           portfolio.style ? Quoted(*portfolio.style) : QStringLiteral("null"),
                           ShortestText(portfolio.indexLevel),
                           ShortestText(portfolio.targetReturn),
                           QStringLiteral("0,0,0"),
                           Quoted(portfolio.date),
                           QString::number(portfolio.saveFlag),
                           OrNull(portfolio.isClose),
                           OrNull(portfolio.knownTo)};
  return QStringLiteral(
             "insert into alg_commain (ID,COMNAME,ZHFG,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG,"
             "INDEXISCLOSE,KNOWNTO) values (") +
         values.join(QLatin1Char(',')) + QLatin1Char(')');
}

QString InsertHolding(const SavedHolding& holding) {
  const QStringList values{QString::number(holding.id),   QString::number(holding.portfolioId),
                           QString::number(holding.code), QString::number(holding.quantity),
                           ShortestText(holding.weight),  ShortestText(holding.buyPrice)};
  return QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values (") +
         values.join(QLatin1Char(',')) + QLatin1Char(')');
}

QString DeletePortfolio(std::int64_t id) {
  return QStringLiteral("delete from alg_commain where ID = %1").arg(id);
}

QString DeleteHoldingsOf(std::int64_t portfolioId) {
  return QStringLiteral("delete from alg_comdetail where MAINID = %1").arg(portfolioId);
}

QString SetPortfolioGenerator(std::int64_t value) {
  return QStringLiteral("SET GENERATOR ALG_ROWID_MAIN TO %1").arg(value);
}

QString SetHoldingGenerator(std::int64_t value) {
  return QStringLiteral("SET GENERATOR ALG_ROWID_DETAIL TO %1").arg(value);
}

}  // namespace holdwise::backup::sql
