// SPDX-License-Identifier: MIT
#pragma once
#include <QDate>
#include <QString>
#include <QStringView>
#include <optional>

/// Dates as texts, for the database and from the host. No locale, no process-wide setting. Pure, any thread.
namespace holdwise {

/// "YYYY-MM-DD". An invalid date is Error(Refused).
[[nodiscard]] QString DateText(QDate date);
/// "YYYYMMDD", as the statistics rows store their dates. An invalid date is Error(Refused).
[[nodiscard]] QString DayNumberText(QDate date);
/// Reads exactly "YYYY-MM-DD" of an existing day; nothing otherwise (empty, other length or separator, 30 February).
[[nodiscard]] std::optional<QDate> ParseDate(QStringView text);

}  // namespace holdwise
