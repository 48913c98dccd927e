// SPDX-License-Identifier: MIT
#include "holdwise/packet/characters.h"

#include <QTextBoundaryFinder>
#include <algorithm>

namespace holdwise {
namespace {

qsizetype PointsOf(const QString& text) {
  return text.size() - std::count_if(text.begin(), text.end(), [](QChar unit) { return unit.isLowSurrogate(); });
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

}  // namespace holdwise
