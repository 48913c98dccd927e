// SPDX-License-Identifier: MIT
#include "views/zxpz/edit_rules.h"

#include <gtest/gtest.h>

#include <vector>

#include "views/zxpz/holding_row.h"

namespace holdwise::edit_rules {
namespace {

/// A typed key: what stands in the entry, where the caret is, the key, and what stands there afterwards.
struct Typed {
  const char* before;
  int caret;
  char key;
  const char* after;
};

/// What an entry makes of the verdict.
QString TextAfter(int column, const Typed& typed) {
  QString text = QString::fromUtf8(typed.before);
  const auto verdict = HoldingKey(column, text, typed.caret, QLatin1Char(typed.key));
  qsizetype caret = typed.caret;
  if (verdict.clearsFirst) {
    text.clear();
    caret = 0;
  }
  if (!verdict.isTaken || typed.key == '\r') return text;
  if (typed.key == '\b') return caret > 0 ? text.remove(caret - 1, 1) : text;
  return text.insert(caret, QLatin1Char(typed.key));
}

void Check(int column, const std::vector<Typed>& cases) {
  for (const Typed& typed : cases) {
    EXPECT_EQ(TextAfter(column, typed).toStdString(), typed.after)
        << "\"" << typed.before << "\" at " << typed.caret << " typed " << static_cast<int>(typed.key);
  }
}

TEST(PriceKeys, ATextThatReadsAsZeroIsReplaced) {
  Check(kHoldingPrice, {{"0", 1, '5', "5"},
                        {"0", 0, '5', "5"},
                        {"0.00", 4, '1', "1"},
                        {"", 0, '7', "7"},
                        {"0", 1, '0', "0"},
                        {"0", 1, '.', "."},
                        {".", 1, '5', "5"},    // a point alone reads as nothing
                        {"0.", 2, '5', "5"},   // so a price below 1 cannot be typed from its 0
                        {"abc", 3, '1', "1"},  // unreadable
                        {"1e", 2, '2', "2"},
                        {"0.5", 3, '1', "0.51"}});
}

TEST(PriceKeys, TheTextIsClearedEvenWhenTheKeyIsNotTaken) {
  Check(kHoldingPrice, {{"0", 1, 'x', ""}, {"0", 1, '\b', ""}, {"0", 1, '\r', ""}, {"0.00", 2, '-', ""}});
  Check(kHoldingQuantity, {{"0", 1, '.', ""}, {"000", 3, '\r', ""}});
}

TEST(PriceKeys, OnePoint) {
  Check(kHoldingPrice, {{"12", 2, '.', "12."},
                        {"12", 0, '.', ".12"},
                        {"1.2", 3, '.', "1.2"},
                        {"1.2", 0, '.', "1.2"},
                        {"12.", 3, '.', "12."}});
}

TEST(PriceKeys, TwoDecimals) {
  Check(kHoldingPrice, {{"12.3", 4, '4', "12.34"},
                        {"12.34", 5, '5', "12.34"},
                        {"12.34", 4, '5', "12.34"},
                        {"12.34", 3, '5', "12.34"},   // just behind the point
                        {"12.34", 2, '5', "125.34"},  // before it: no decimal
                        {"12.34", 0, '5', "512.34"},
                        {"12.34", 5, '\b', "12.3"},
                        {"12.34", 5, '\r', "12.34"}});
}

TEST(PriceKeys, ThousandCanBeTypedButNothingBehindIt) {
  Check(kHoldingPrice, {{"99", 2, '9', "999"},
                        {"999", 3, '9', "9999"},  // 999 is not above 999
                        {"100", 3, '0', "1000"},
                        {"1000", 4, '0', "1000"},
                        {"1000", 4, '.', "1000"},
                        {"1000", 0, '1', "1000"},
                        {"999.5", 5, '5', "999.5"},
                        {"1000", 4, '\b', "100"},
                        {"1000", 4, '\r', "1000"}});
}

TEST(PriceKeys, SixCharacters) {
  Check(kHoldingPrice, {{"123.4", 5, '5', "123.45"},
                        {"123.45", 0, '6', "123.45"},
                        {"123.45", 6, '6', "123.45"},
                        {"123.45", 6, '\b', "123.4"},
                        {"000001", 6, '1', "000001"},
                        {"00001", 5, '1', "000011"}});
}

TEST(QuantityKeys, WholeNumbersOfNineDigits) {
  Check(kHoldingQuantity, {{"100", 3, '.', "100"},
                           {"100", 0, '5', "5100"},
                           {"12345678", 8, '9', "123456789"},  // eight characters are not longer than eight
                           {"123456789", 9, '1', "123456789"},
                           {"123456789", 0, '1', "123456789"},
                           {"123456789", 9, '\b', "12345678"},
                           {"123456789", 9, '\r', "123456789"},
                           {"1000", 4, '0', "10000"}});  // no limit of 999 here
}

TEST(HoldingKeys, OnlyBackspaceEnterPointAndDigits) {
  for (const int column : {kHoldingPrice, kHoldingQuantity}) {
    for (char16_t key = 0x20; key < 0x7f; ++key) {
      const bool isDigit = key >= u'0' && key <= u'9';
      const bool isTaken = isDigit || (key == u'.' && column == kHoldingPrice);
      EXPECT_EQ(HoldingKey(column, u"12", 2, QChar(key)), (KeyVerdict{.clearsFirst = false, .isTaken = isTaken}))
          << static_cast<int>(key);
    }
    for (const char16_t key : {u'５', u'。', u'．', u'一', u'\t', u'\x1b'}) {
      EXPECT_FALSE(HoldingKey(column, u"12", 2, QChar(key)).isTaken) << static_cast<int>(key);
    }
  }
}

TEST(CodeKeys, OnlyBackspaceEnterAndDigits) {
  for (char16_t key = 0; key < 0x80; ++key) {
    const bool isTaken = key == u'\b' || key == u'\r' || (key >= u'0' && key <= u'9');
    EXPECT_EQ(IsCodeKey(QChar(key)), isTaken) << static_cast<int>(key);
  }
  EXPECT_FALSE(IsCodeKey(u'５'));
}

TEST(Initials, StandForCharactersThatFollowOneAnother) {
  const QStringList readings{QStringLiteral("Z"), QStringLiteral("CZ"), QStringLiteral("3"), QStringLiteral("XH")};
  for (const char* typed : {"z", "zc", "ZZ", "c3", "zz3x", "zc3h", "z3", "h", "3"})
    EXPECT_TRUE(IsTypedByInitials(readings, QString::fromLatin1(typed))) << typed;
  for (const char* typed : {"", "c3y", "hz", "zc3hx", "cz"})
    EXPECT_FALSE(IsTypedByInitials(readings, QString::fromLatin1(typed))) << typed;
  EXPECT_FALSE(IsTypedByInitials({}, QStringLiteral("z")));
}

}  // namespace
}  // namespace holdwise::edit_rules
