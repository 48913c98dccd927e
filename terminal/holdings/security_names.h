// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

/// How two programs write a security's name. Pure.
namespace holdwise {

/// Can both be names of one security: full width or not, cut off or not, with the marks of a day or a warning or not?
/// A name that is empty or only dashes can be any.
[[nodiscard]] bool MayBeSameName(const QString& one, const QString& other);

/// Is it the name of the stock that is known by the other one? As MayBeSameName, but both are there, and what is cut
/// off is longer than the two characters with which a person calls many things.
[[nodiscard]] bool IsStocksName(const QString& name, const QString& known);

/// Does a name plainly belong to something else than the stock that is known by the other one: a fund or a bond by its
/// words, or a name in Chinese that shares no Chinese character with it?
[[nodiscard]] bool IsNameOfOther(const QString& name, const QString& known);

}  // namespace holdwise
