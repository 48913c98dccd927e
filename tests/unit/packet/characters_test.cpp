// SPDX-License-Identifier: MIT
#include "holdwise/packet/characters.h"

#include <gtest/gtest.h>

namespace holdwise {
namespace {

// Counted by hand: what stands between the strokes is one character.
TEST(Characters, AreCountedAsAPersonCountsThem) {
  struct Case {
    QString text;
    int count;
  };
  const Case cases[] = {{QString(), 0},
                        {QStringLiteral("a"), 1},
                        {QStringLiteral("稳健A1"), 4},
                        {QStringLiteral("𠮷𠮷"), 2},
                        {QStringLiteral("e\u0301e"), 2},              // é|e
                        {QStringLiteral("a\u0301\u0302\u0303b"), 2},  // one letter with three marks
                        {QStringLiteral("葛\U000E0100"), 1},          // an ideographic variation
                        {QStringLiteral("👨\u200D👩\u200D👧"), 1},       // a family joined
                        {QStringLiteral("🇨🇳"), 1}};                   // two regional letters
  for (const Case& one : cases) EXPECT_EQ(CharactersOf(one.text), one.count) << one.text.toStdString();
}

TEST(Characters, TheFirstOnesKeepTheirMarks) {
  const QString text = QStringLiteral("e\u0301𠮷中");
  EXPECT_EQ(FirstCharacters(text, 0), QString());
  EXPECT_EQ(FirstCharacters(text, -1), QString());
  EXPECT_EQ(FirstCharacters(text, 1), QStringLiteral("e\u0301"));
  EXPECT_EQ(FirstCharacters(text, 2), QStringLiteral("e\u0301𠮷"));
  EXPECT_EQ(FirstCharacters(text, 9), text);
}

TEST(Characters, NobodySeesThoseWithoutAPicture) {
  for (const char16_t invisible : {u'\0', u'\t', u'\u0085', u'\u200B', u'\u200D', u'\u200E', u'\u202E', u'\u2028',
                                   u'\u2029', u'\u2060', u'\u3164', u'\uFEFF'}) {
    for (const QString& text :
         {QString(QChar(invisible)), QStringLiteral("甲") + QChar(invisible) + QStringLiteral("乙"),
          QStringLiteral("甲") + QChar(invisible)})
      EXPECT_TRUE(HasInvisible(text)) << std::hex << static_cast<int>(invisible);
  }
  EXPECT_TRUE(HasInvisible(QStringLiteral("甲\U000E0041"))) << "a tag letter";
  for (const QString& text : {QString(), QStringLiteral("稳健A1(一)-_"), QStringLiteral("𠮷e\u0301葛\U000E0100"),
                              QStringLiteral("👨\u200D👩\u200D👧"), QStringLiteral("🏳\uFE0F\u200D🌈🇨🇳")})
    EXPECT_FALSE(HasInvisible(text)) << text.toStdString();
}

TEST(Characters, ANameHasFortyAndItsColumnHoldsThem) {
  const QString marked = QStringLiteral("e\u0301");
  EXPECT_TRUE(FitsAsName(marked.repeated(40)));
  EXPECT_FALSE(FitsAsName(marked.repeated(41)));
  EXPECT_TRUE(FitsAsName(QStringLiteral("𠮷").repeated(40)));
  EXPECT_FALSE(FitsAsName(QStringLiteral("𠮷").repeated(41)));
  EXPECT_TRUE(FitsAsName(QLatin1Char('a') + QString(159, QChar(0x301))));
  EXPECT_FALSE(FitsAsName(QLatin1Char('a') + QString(160, QChar(0x301)))) << "one character, 161 points";
}

}  // namespace
}  // namespace holdwise
