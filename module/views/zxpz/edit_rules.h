// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <QStringView>

/// Which typed keys the entries of the portfolio editor take, and what is found by them. Pure; any thread.
namespace holdwise::edit_rules {

inline constexpr QChar kBackspace = u'\b';
inline constexpr QChar kEnter = u'\r';

/// What becomes of a key.
struct KeyVerdict {
  bool clearsFirst = false;  ///< the entry is emptied before the key takes effect, also when that is refused
  bool isTaken = false;
  bool operator==(const KeyVerdict&) const = default;
};

/// A key typed into the edit box over a cell of the holdings grid. `caret` is the number of characters before the
/// caret; of a selection, before its beginning. A text that reads as 0, an empty or unreadable one too, is cleared
/// first, so "0.5" cannot be typed after its 0: intended. In columns other than price and quantity only backspace,
/// Enter, "." and digits are looked at.
[[nodiscard]] KeyVerdict HoldingKey(int column, QStringView text, qsizetype caret, QChar key);

/// Does the code field take the key? Backspace, Enter and the digits 0 to 9.
[[nodiscard]] bool IsCodeKey(QChar key);

/// Can the text come to stand in the edit box over such a cell, whichever way (pasted, dropped)? What can be typed can:
/// a quantity of 9 digits, a price of 6 characters with 2 decimals that was not above 999 before its last character;
/// and so can what is left of `opened`, the text that the cell had, when characters are taken out of it.
[[nodiscard]] bool MayStand(int column, const QString& text, const QString& opened);

/// Do the typed letters stand for characters of the name that follow one another? `readings`: for each character the
/// letters it can be typed by; capitals and small letters are the same. False for a text that is empty.
[[nodiscard]] bool IsTypedByInitials(const QStringList& readings, const QString& typed);

/// What the code field can hold by other ways than typing, as a regular expression.
inline const QString kCodeTexts = QStringLiteral("[0-9]*");

}  // namespace holdwise::edit_rules
