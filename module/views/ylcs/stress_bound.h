// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <optional>

#include "holdwise/sdk/database.h"

/// Which security bounds the moves that the stress test accepts.
namespace holdwise::stress {

struct Bound {
  QString code;     ///< six digits
  double beta = 0;  ///< against the current index, not 0
  double move =
      0;  ///< -1 / beta, a fraction: this move and every greater one of its sign leaves nothing of the security
};

/// Of the securities that saved portfolios hold, the one that leaves the least room for a move with the sign of `move`,
/// by the betas of the current risk table; none when no beta bounds such moves. What a failing statement throws reaches
/// the caller. User-interface thread.
[[nodiscard]] std::optional<Bound> BoundOf(double move, DatabaseStatements& database);

/// "浦发银行(600000)相对上证指数的贝塔系数是 1.5，涨跌幅要大于 -66.67%": the bound away from zero with two decimals, so
/// that it is one itself. User-interface thread: the host is asked for the name.
[[nodiscard]] QString BoundText(const Bound& bound, const QString& index);

}  // namespace holdwise::stress
