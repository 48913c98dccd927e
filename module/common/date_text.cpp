#include "common/date_text.h"

#include <algorithm>

#include "holdwise/packet/error.h"
#include "holdwise/packet/number_text.h"

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
  if (text.size() != 10 || text[4] != u'-' || text[7] != u'-') return std::nullopt;
  const auto isDigit = [](QChar character) { return character >= u'0' && character <= u'9'; };
  const QStringView year = text.first(4);
  const QStringView month = text.sliced(5, 2);
  const QStringView day = text.sliced(8, 2);
  for (const QStringView part : {year, month, day}) {
    if (!std::all_of(part.begin(), part.end(), isDigit)) return std::nullopt;
  }
  const QDate date(static_cast<int>(IntegerOr(year)), static_cast<int>(IntegerOr(month)),
                   static_cast<int>(IntegerOr(day)));
  if (!date.isValid()) return std::nullopt;
  return date;
}

}  // namespace holdwise
