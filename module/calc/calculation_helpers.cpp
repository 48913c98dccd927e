// SPDX-License-Identifier: MIT
#include "calculation_helpers.h"

#include "common/store/statements.h"
#include "holdwise/packet/number_text.h"

namespace holdwise::calc {

int GetForwardDate(const std::vector<int>& tradingDates, int today, int n) {
  const bool startsToday = !tradingDates.empty() && tradingDates.front() == today;
  const int index = startsToday ? n : n - 1;
  if (index < 0 || index >= static_cast<int>(tradingDates.size())) {
    throw Error(ErrorCategory::Refused, "trading date out of range (" + std::to_string(index) + ")");
  }
  return tradingDates[static_cast<std::size_t>(index)];
}

QString GetCodeCNum(const QString& code) {
  if (code.isEmpty()) throw Error(ErrorCategory::Refused, "empty security code");
  return code.startsWith(QLatin1Char('1')) ? code.mid(1) : code;
}

QString GetCodeNum(const QString& code) {
  return code.startsWith(QLatin1Char('0')) ? code + QLatin1Char('1') : code;
}

QString IntDateToStrDate(int date) {
  constexpr int kFirst = 19000101;
  constexpr int kLast = 20991231;
  if (date < kFirst || date > kLast) return QStringLiteral("1900-01-01");
  return QStringLiteral("%1-%2-%3").arg(date / 10000).arg(date % 10000 / 100).arg(date % 100);
}

std::int64_t GetMaxHqDate(DatabaseStatements& database, const QString& code) {
  if (code.isEmpty()) return database.Count(sql::kLatestDay);
  if (!ParseInteger(code)) throw Error(ErrorCategory::Refused, "not a security code: " + code.toStdString());
  return database.Count(sql::LatestDayOf(code));
}

}  // namespace holdwise::calc
