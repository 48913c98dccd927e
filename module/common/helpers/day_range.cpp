// SPDX-License-Identifier: MIT
#include "common/helpers/day_range.h"

namespace holdwise {

TDayRange PreviousWeek(QDate day) {
  const QDate weekBefore = day.addDays(-7);
  const QDate monday = weekBefore.addDays(Qt::Monday - weekBefore.dayOfWeek());
  return {monday, monday.addDays(6)};
}

TDayRange PreviousMonth(QDate day) {
  const QDate inMonthBefore = QDate(day.year(), day.month(), 1).addDays(-10);
  return {QDate(inMonthBefore.year(), inMonthBefore.month(), 1),
          QDate(inMonthBefore.year(), inMonthBefore.month(), inMonthBefore.daysInMonth())};
}

}  // namespace holdwise
