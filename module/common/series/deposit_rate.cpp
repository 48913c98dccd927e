// SPDX-License-Identifier: MIT
#include "common/series/deposit_rate.h"

#include "common/store/statements.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {

std::optional<double> OneYearDepositRate(DatabaseStatements& database) {
  const Value rate = database.Scalar(sql::kOneYearDepositRate);
  if (rate.isNull) return std::nullopt;
  return ParseReal(rate.ToText());
}

QString WithoutDepositRate() {
  return QStringLiteral("没有一年期定期存款利率，无风险利率按 0 计算：请检查数据目录中的利率文件。");
}

}  // namespace holdwise
