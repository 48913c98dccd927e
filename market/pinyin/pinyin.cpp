// SPDX-License-Identifier: MIT
#include "holdwise/market/pinyin.h"

#include <QStringList>

#include "pinyin_table.h"

namespace holdwise {
namespace {

constexpr int kLetters = 26;

QString InitialsOf(QChar character) {
  const QChar capital = character.toUpper();
  if ((capital >= u'A' && capital <= u'Z') || (capital >= u'0' && capital <= u'9')) return capital;
  QString letters;
  if (character < kFirstInPinyinTable) return letters;
  const auto place = static_cast<std::size_t>(character.unicode() - kFirstInPinyinTable);
  if (place >= kPinyinTableSize) return letters;
  for (int letter = 0; letter < kLetters; ++letter) {
    if ((kPinyinTable[place] >> letter & 1U) != 0) letters += QChar(u'A' + letter);
  }
  return letters;
}

}  // namespace

QString PinyinInitials(const QString& name) {
  QStringList initials;
  for (const QChar character : name.normalized(QString::NormalizationForm_KC)) {
    if (const QString letters = InitialsOf(character); !letters.isEmpty()) initials += letters;
  }
  return initials.join(QLatin1Char(' '));
}

}  // namespace holdwise
