// SPDX-License-Identifier: MIT
#pragma once
#include <QDate>
#include <utility>

/// Calendar periods. Pure, any thread.
namespace holdwise {

/// First and last day of a period, both included.
using TDayRange = std::pair<QDate, QDate>;
/// Monday to Sunday of the week before the week of that day.
[[nodiscard]] TDayRange PreviousWeek(QDate day);
/// First to last day of the calendar month before the month of that day.
[[nodiscard]] TDayRange PreviousMonth(QDate day);

}  // namespace holdwise
