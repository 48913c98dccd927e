// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <cstddef>

#include "holdwise/sdk/codenum.h"

/// What a portfolio of a file must keep. Pure.
namespace holdwise {

inline constexpr int kMinHoldings = 1;

/// Why a name cannot be taken; empty when it can.
[[nodiscard]] QString NameProblem(const QString& name);
/// A name that can be taken, made from a file's: without its folder and ending, other characters as "_".
[[nodiscard]] QString NameFromFile(const QString& path);
/// Why a text has not the form of six digits; empty when it has.
[[nodiscard]] QString CodeFormProblem(const QString& code);
/// Why a text is no stock that can be held: its form, or the market has none; empty when it is one.
[[nodiscard]] QString CodeProblem(const QString& code, const CodeNumServices& codes);
/// A stock's code number as the host has it, of its six digits.
[[nodiscard]] int CodeNumberOf(const QString& sixDigits);
[[nodiscard]] QString CodeNumberText(const QString& sixDigits);
/// Is it six digits of an A-share of the market?
[[nodiscard]] bool IsHeldStock(const QString& sixDigits, const CodeNumServices& codes);
/// What six digits are that are no A-share of the market, as far as their beginning tells: 基金, 债券, ... The five
/// digits of Hong Kong are 港股.
[[nodiscard]] QString KindOfStranger(const QString& digits);

}  // namespace holdwise
