// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

namespace holdwise {

/// First letters by which a Chinese name is typed: for each of its characters the capital letters of all its Mandarin
/// readings of today in the Unihan table of Unicode, in alphabetical order, the characters apart by a blank: "Y HX" for
/// 银行, "CZ J" for 长江. Latin letters and digits, also of full width, stand for themselves; what has no reading is
/// left out. Thread-safe.
[[nodiscard]] QString PinyinInitials(const QString& name);

}  // namespace holdwise
