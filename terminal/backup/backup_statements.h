// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

#include "backup/portfolio_set.h"

/// The statements of backup and restore, once. Texts of files must come back as they are: single quotes are doubled.
/// Pure.
namespace holdwise::backup::sql {

/// Both tables at one moment: PART 0 for portfolios, 1 for holdings. Columns that the other part has are null.
inline const QString kAllRows = QStringLiteral(
    "select 0 as PART,ID,COMNAME,ZHFG,ZSCLOSEPRICE,MBSYL,EDITDATE,SAVEFLAG,INDEXISCLOSE,KNOWNTO,"
    "cast(null as integer) as MAINID,cast(null as integer) as SECUCODE,cast(null as integer) as PZSL,"
    "cast(null as double precision) as PZBL,cast(null as double precision) as BUYPRICE from alg_commain "
    "union all select 1,ID,null,null,null,null,null,null,null,null,MAINID,SECUCODE,PZSL,PZBL,BUYPRICE "
    "from alg_comdetail");
/// One row: MAINGEN and DETAILGEN, without moving them.
inline const QString kGenerators = QStringLiteral(
    "select gen_id(ALG_ROWID_MAIN,0) as MAINGEN,gen_id(ALG_ROWID_DETAIL,0) as DETAILGEN from rdb$database");

inline const QString kNextPortfolioId = QStringLiteral("select gen_id(ALG_ROWID_MAIN,1) from rdb$database");
inline const QString kNextHoldingId = QStringLiteral("select gen_id(ALG_ROWID_DETAIL,1) from rdb$database");

/// A portfolio without figures, unfinished.
[[nodiscard]] QString InsertPortfolio(const SavedPortfolio& portfolio);
[[nodiscard]] QString InsertHolding(const SavedHolding& holding);
[[nodiscard]] QString DeletePortfolio(std::int64_t id);
[[nodiscard]] QString DeleteHoldingsOf(std::int64_t portfolioId);
/// Holdings of no portfolio.
inline const QString kDeleteOrphans =
    QStringLiteral("delete from alg_comdetail d where not exists (select 1 from alg_commain m where m.ID = d.MAINID)");
[[nodiscard]] QString SetPortfolioGenerator(std::int64_t value);
[[nodiscard]] QString SetHoldingGenerator(std::int64_t value);

}  // namespace holdwise::backup::sql
