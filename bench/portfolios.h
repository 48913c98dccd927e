// SPDX-License-Identifier: MIT
#pragma once
#include "holdwise/sdk/database.h"

namespace holdwise::bench {

inline constexpr int kHoldingsEach = 10;

/// Stores saved portfolios of ten holdings each, inside a transaction of the caller; the holdings go through
/// `securities` codes from 1600000 on, over and over.
inline void AddPortfolios(DatabaseStatements& database, int portfolios, int securities, bool isFinished) {
  int holding = 0;
  for (int id = 1; id <= portfolios; ++id) {
    MustExecute(database,
                QStringLiteral("insert into alg_commain (ID,COMNAME,ISFINISHED,SAVEFLAG)values(%1,'p%1',%2,1)")
                    .arg(id)
                    .arg(isFinished ? 1 : 0));
    for (int position = 0; position < kHoldingsEach; ++position, ++holding) {
      MustExecute(database,
                  QStringLiteral(
                      "insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values (%1,%2,%3,%4,0.1,9.5)")
                      .arg(holding + 1)
                      .arg(id)
                      .arg(1600000 + holding % securities)
                      .arg(100 + position));
    }
  }
}

}  // namespace holdwise::bench
