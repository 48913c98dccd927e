// SPDX-License-Identifier: MIT
#include "holdwise/packet/characters.h"

#include <QList>
#include <QTextBoundaryFinder>
#include <algorithm>
#include <array>

namespace holdwise {
namespace {

qsizetype PointsOf(const QString& text) {
  return text.size() - std::count_if(text.begin(), text.end(), [](QChar unit) { return unit.isLowSurrogate(); });
}

constexpr char32_t kJoiner = 0x200D;

/// Letters and marks by their category, and yet without a picture: joiners and fillers.
bool IsFiller(char32_t character) {
  constexpr std::array<char32_t, 8> kFillers = {0x034F, 0x115F, 0x1160, 0x17B4, 0x17B5, 0x2800, 0x3164, 0xFFA0};
  return std::find(kFillers.begin(), kFillers.end(), character) != kFillers.end();
}

bool IsInvisible(char32_t character) {
  return IsUnseen(QChar::category(character)) || IsFiller(character);
}

/// Can the character be a part of an emoji that a joiner holds together: a picture, its colour or its form?
bool IsEmojiPart(char32_t character) {
  const QChar::Category category = QChar::category(character);
  return category == QChar::Symbol_Other || category == QChar::Symbol_Modifier || category == QChar::Mark_NonSpacing;
}

}  // namespace

qsizetype CharactersOf(const QString& text) {
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
  qsizetype count = 0;
  while (finder.toNextBoundary() > 0) ++count;
  return count;
}

QString FirstCharacters(const QString& text, qsizetype count) {
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
  qsizetype end = 0;
  for (; count > 0 && end < text.size(); --count) end = finder.toNextBoundary();
  return text.left(end);
}

bool IsNameCharacter(QChar character) {
  const char16_t u = character.unicode();
  return u >= 0x80 || (u >= u'0' && u <= u'9') || (u >= u'A' && u <= u'Z') || (u >= u'a' && u <= u'z') || u == u'(' ||
         u == u')' || u == u'-' || u == u'_';
}

bool FitsAsName(const QString& name) {
  return CharactersOf(name) <= kMostNameCharacters && PointsOf(name) <= kMostNamePoints;
}

bool IsUnseen(QChar::Category category) {
  return category == QChar::Other_Control || category == QChar::Other_Format || category == QChar::Separator_Line ||
         category == QChar::Separator_Paragraph;
}

bool HasInvisible(const QString& text) {
  const QList<uint> points = text.toUcs4();
  for (qsizetype at = 0; at < points.size(); ++at) {
    const bool isInside = at > 0 && at + 1 < points.size();
    if (points[at] == kJoiner && isInside && IsEmojiPart(points[at - 1]) && IsEmojiPart(points[at + 1])) continue;
    if (IsInvisible(points[at])) return true;
  }
  return false;
}

}  // namespace holdwise
