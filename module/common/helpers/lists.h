// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <cstdint>
#include <span>

namespace holdwise {

/// Sorts values[0..highest] in ascending order; nothing happens for a highest index of 0 or less. A highest index past
/// the end is Error(Refused).
void Quick_sort(std::span<std::int32_t> values, int highest);

/// Splits a delimited text: the delimiter and blanks separate items (blanks around a delimiter count with it), an item
/// in double quotes is kept whole and a doubled quote inside it is one quote. Empty text gives no item; nothing between
/// two delimiters, or after the last one, gives an empty item.
[[nodiscard]] QStringList StrToStringList(const QString& text, QChar delimiter);

}  // namespace holdwise
