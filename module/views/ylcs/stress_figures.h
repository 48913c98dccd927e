// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>

#include "common/series/expect_value.h"

/// Texts of the stress view: pure functions.
namespace holdwise::stress {

/// gain / cost x 100 with four decimals; "0.00" for a cost of 0, a different format: intended.
[[nodiscard]] QString ReturnRateText(double gain, double cost);

/// A move (a fraction) in percent as a person would write it: 15 significant digits at most, so that 7 percent is "7"
/// and not what dividing and multiplying by 100 has left of it.
[[nodiscard]] QString PercentText(double move);

/// The move as a fraction that a text in percent stands for; 0 for a text that is no number.
[[nodiscard]] double MoveOf(const QString& percent);
/// Is the text one that the entry can hold: at most kMostCharacters of "-", "." and digits, and a number?
[[nodiscard]] bool IsMove(const QString& text);
inline constexpr int kMostCharacters = 12;
/// What the entry takes, as a regular expression.
inline const QString kMoveCharacters = QStringLiteral("[-.0-9]*");

/// Code numbers of the reference indices in the order of the choice, which is that of TZS_TYPE.
[[nodiscard]] const QStringList& IndexNumbers();

/// "上证指数 -10%".
[[nodiscard]] QString ScenarioText(TIndexType index, double move);

}  // namespace holdwise::stress
