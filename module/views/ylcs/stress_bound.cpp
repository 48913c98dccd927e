// SPDX-License-Identifier: MIT
#include "stress_bound.h"

#include <cmath>

#include "common/host/host_access.h"
#include "common/series/holding_rows.h"
#include "common/series/shared_objects.h"
#include "common/store/statements.h"
#include "holdwise/packet/number_text.h"
#include "stress_figures.h"

namespace holdwise::stress {

std::optional<Bound> BoundOf(double move, DatabaseStatements& database) {
  const TTextGrid& table = g_AllStockData->GetCurStringGrid();
  const ResultSet holdings = database.Query(sql::kSavedHoldings);
  const int codeColumn = holdings.Column("SECUCODE");
  std::optional<Bound> bound;
  for (int row = 0; row < holdings.RowCount(); ++row) {
    const QString code = SixDigitCode(holdings, row, codeColumn).View().toString();
    const double beta = BetaOf(table, code).value_or(0);
    if (beta * move >= 0) continue;
    if (!bound || std::abs(beta) > std::abs(bound->beta)) bound = Bound{code, beta, -1 / beta};
  }
  return bound;
}

QString BoundText(const Bound& bound, const QString& index) {
  constexpr int kDigits = 6;
  constexpr int kExact = 12;  // significant digits, so that a bound of 50 percent is not one of 50.01
  const double hundredths = std::ceil(RoundToDigits(std::abs(bound.move) * 1e4, kExact));
  const double shown = std::copysign(hundredths / 1e4, bound.move);
  return QStringLiteral("%1(%2)相对%3的贝塔系数是 %4，涨跌幅要%5 %6%")
      .arg(ModuleHost().CodeNums().NameOf(bound.code), bound.code, index,
           ShortestText(RoundToDigits(bound.beta, kDigits)),
           bound.move < 0 ? QStringLiteral("大于") : QStringLiteral("小于"), PercentText(shown));
}

}  // namespace holdwise::stress
