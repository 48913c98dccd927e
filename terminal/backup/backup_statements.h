// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

#include "backup/portfolio_set.h"

/// The statements of backup and restore, once. Texts of files must come back as they are: single quotes are doubled.
/// Pure.
namespace holdwise::backup::sql {

/// Both tables at one moment, in as few columns as they need: PART 0 is portfolios, whose numbers are SAVEFLAG,
/// INDEXISCLOSE, KNOWNTO, ZSCLOSEPRICE, MBSYL; PART 1 is holdings, with MAINID, SECUCODE, PZSL, PZBL, BUYPRICE there.
inline const QString kAllRows = QStringLiteral(
    "select 0 as PART,ID,SAVEFLAG as N1,INDEXISCLOSE as N2,KNOWNTO as N3,ZSCLOSEPRICE as R1,MBSYL as R2,COMNAME,ZHFG,"
    "EDITDATE from alg_commain "
    "union all select 1,ID,MAINID,SECUCODE,PZSL,PZBL,BUYPRICE,null,null,null from alg_comdetail");
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
