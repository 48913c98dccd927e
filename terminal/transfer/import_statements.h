// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

/// The statements of an import, once. Values are pasted in as they stand; the characters of names have been checked:
/// there is no quote among them. Pure.
namespace holdwise::import_sql {

inline const QString kNextPortfolioId = QStringLiteral("select gen_id(ALG_ROWID_MAIN,1) from rdb$database");
/// Of all portfolios.
inline const QString kNames = QStringLiteral("select COMNAME from alg_commain");

/// Numbers as texts.
struct Holding {
  QString portfolioId, code, quantity, weight, buyPrice;
};
[[nodiscard]] QString InsertHolding(const Holding& holding);
/// A saved portfolio without figures: unfinished.
struct Portfolio {
  QString id, name, indexLevel, date;
  bool isLevelClose = false;  ///< the level is the market's close of that date
};
[[nodiscard]] QString InsertPortfolio(const Portfolio& portfolio);

}  // namespace holdwise::import_sql
