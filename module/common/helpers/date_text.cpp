// SPDX-License-Identifier: MIT
#include "common/helpers/date_text.h"

#include "holdwise/packet/dates.h"
#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

QString Padded(int number, int digits) {
  return QStringLiteral("%1").arg(number, digits, 10, QLatin1Char('0'));
}

QString Joined(QDate date, const QString& separator) {
  if (!date.isValid() || date.year() < 1 || date.year() > 9999) {
    throw Error(ErrorCategory::Refused, "not a date of the years 1 to 9999");
  }
  return Padded(date.year(), 4) + separator + Padded(date.month(), 2) + separator + Padded(date.day(), 2);
}

}  // namespace

QString DateText(QDate date) {
  return Joined(date, QStringLiteral("-"));
}

QString DayNumberText(QDate date) {
  return Joined(date, QString());
}

std::optional<QDate> ParseDate(QStringView text) {
  const std::optional<int> date = ReadIsoDate(text);
  if (!date) return std::nullopt;
  return QDate(*date / 10000, *date / 100 % 100, *date % 100);
}

}  // namespace holdwise
