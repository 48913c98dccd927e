// SPDX-License-Identifier: MIT
#include "holdwise/market/pinyin.h"

#include <gtest/gtest.h>

#include "holdwise/market/reference_tables.h"

namespace holdwise {
namespace {

// The readings stand in any dictionary: 银 yín, 行 háng xíng, 长 cháng zhǎng, 江 jiāng, 厦 shà xià, 门 mén.
TEST(PinyinTest, EveryReadingOfACharacterCounts) {
  EXPECT_EQ(PinyinInitials("银行"), "Y HX");
  EXPECT_EQ(PinyinInitials("长江"), "CZ J");
  EXPECT_EQ(PinyinInitials("厦门"), "SX M");
}

TEST(PinyinTest, LettersAndDigitsStandForThemselves) {
  EXPECT_EQ(PinyinInitials("TCL科技"), "T C L K " + PinyinInitials("技"));
  EXPECT_EQ(PinyinInitials("万  科Ａ"), PinyinInitials("万") + " K A");
  EXPECT_EQ(PinyinInitials("*ST海马"), "S T H M");
  EXPECT_EQ(PinyinInitials("沪深300"), "H S 3 0 0");
}

TEST(PinyinTest, WhatHasNoReadingIsLeftOut) {
  EXPECT_EQ(PinyinInitials(""), "");
  EXPECT_EQ(PinyinInitials("-！é"), "");
  EXPECT_EQ(PinyinInitials("、"), "");
  EXPECT_EQ(PinyinInitials(QString(QChar(0xA000))), "");
  EXPECT_EQ(PinyinInitials(QString::fromUtf8("𠀀门")), "M") << "beyond the table";
}

TEST(PinyinTest, StandsInTheSecurityMaster) {
  Security security;
  security.code = "600000";
  security.name = "浦发银行";
  const ResultSet table = SecuritiesTable({security});
  EXPECT_EQ(table.TextAt(0, table.Column("pinyin")), PinyinInitials("浦发") + " Y HX");
}

}  // namespace
}  // namespace holdwise
