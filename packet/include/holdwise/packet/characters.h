// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

/// Characters as a person counts them: a letter with the marks that belong to it is one, and so is a character outside
/// the basic plane (grapheme clusters of Unicode Standard Annex 29). Pure; any thread.
namespace holdwise {

/// What the name of a portfolio may have.
inline constexpr qsizetype kMostNameCharacters = 40;
/// And what its column holds, in Unicode code points: marks count there.
inline constexpr qsizetype kMostNamePoints = 160;

[[nodiscard]] qsizetype CharactersOf(const QString& text);
/// So many characters from the beginning; the whole text when it has no more, none for a count below 1.
[[nodiscard]] QString FirstCharacters(const QString& text, qsizetype count);
/// May the unit of UTF-16 stand in a name: digits, Latin letters, ( ) - _ and whatever is beyond ASCII?
[[nodiscard]] bool IsNameCharacter(QChar character);
/// Is the name short enough in characters and for its column?
[[nodiscard]] bool FitsAsName(const QString& name);
/// Does no character of the category leave a mark on the screen: control, format, line or paragraph separator?
[[nodiscard]] bool IsUnseen(QChar::Category category);
/// Is there a character among them that nobody sees: control, zero width, direction mark, line or paragraph separator,
/// filler? A name with one cannot be told from another name or read back from a file. The joiner inside an emoji is
/// none.
[[nodiscard]] bool HasInvisible(const QString& text);

}  // namespace holdwise
