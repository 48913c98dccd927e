// SPDX-License-Identifier: MIT
#include "search/security_search.h"

#include <gtest/gtest.h>

#include <QStringList>

namespace holdwise {
namespace {

class SecuritySearchTest : public testing::Test {
 protected:
  [[nodiscard]] QStringList Found(const QString& typed, std::size_t most = 10) const {
    QStringList codes;
    for (const SecurityEntry* entry : search_.Find(typed, most)) codes += entry->code;
    return codes;
  }
  // 行 is read háng and xíng, 长 cháng and zhǎng, 厦 shà and xià.
  SecuritySearch search_{{{1000001, "000001", "平安银行", "P A Y HX"},
                          {1000002, "000002", "万 科Ａ", "MW K A"},
                          {1600000, "600000", "浦发银行", "P F Y HX"},
                          {1600900, "600900", "长江电力", "CZ J D L"},
                          {1600897, "600897", "厦门空港", "SX M K G"},
                          {1601988, "601988", "中国银行", "Z G Y HX"},
                          {1601860, "601860", "紫金银行", "Z J Y HX"},
                          {1000100, "000100", "TCL科技", "T C L K J"},
                          {1688001, "688001", "无拼音的", ""},
                          {1, "000001", "上证指数", "S Z Z S"},
                          {399300, "399300", "沪深300", "H S 3 0 0"}}};
};

TEST_F(SecuritySearchTest, DigitsBeginTheCodeBeforeTheyStandInsideOne) {
  EXPECT_EQ(Found("6009"), QStringList{"600900"});
  EXPECT_EQ(Found("000001"), (QStringList{"000001", "000001"})) << "the stock, then the index";
  EXPECT_EQ(Found("60"), (QStringList{"600000", "600900", "600897", "601988", "601860"}));
  EXPECT_EQ(Found("988"), QStringList{"601988"});
  EXPECT_EQ(Found("300").first(), "399300") << "also the name's own digits";
}

TEST_F(SecuritySearchTest, EachReadingOfACharacterFinds) {
  for (const char* typed : {"zgyh", "ZGYX", "zgy", "ＺＧＹＨ", "z g y h"})
    EXPECT_EQ(Found(typed), QStringList{"601988"}) << typed;
  for (const char* typed : {"cjdl", "zjdl"}) EXPECT_EQ(Found(typed), QStringList{"600900"}) << typed;
  for (const char* typed : {"xmkg", "smkg"}) EXPECT_EQ(Found(typed), QStringList{"600897"}) << typed;
  EXPECT_EQ(Found("tclkj"), QStringList{"000100"});
  EXPECT_EQ(Found("wka"), QStringList{"000002"});
  EXPECT_EQ(Found("szzs"), QStringList{"000001"});
}

TEST_F(SecuritySearchTest, ANameThatBeginsSoStandsBeforeOneThatHoldsIt) {
  EXPECT_EQ(Found("zj"), (QStringList{"600900", "601860"}));
  EXPECT_EQ(Found("p"), (QStringList{"000001", "600000"}));
  EXPECT_EQ(Found("yh"), (QStringList{"000001", "600000", "601988", "601860"}));
  EXPECT_EQ(Found("k"), (QStringList{"000002", "600897", "000100"})) << "the shorter name first";
}

TEST_F(SecuritySearchTest, NamesAreFoundWithAndWithoutInitials) {
  EXPECT_EQ(Found("银行"), (QStringList{"000001", "600000", "601988", "601860"}));
  EXPECT_EQ(Found("万科"), QStringList{"000002"});
  EXPECT_EQ(Found("无拼"), QStringList{"688001"});
  EXPECT_TRUE(Found("wpyd").isEmpty());
}

TEST_F(SecuritySearchTest, NothingIsFoundForNothing) {
  EXPECT_TRUE(Found("").isEmpty());
  EXPECT_TRUE(Found("  ").isEmpty());
  EXPECT_TRUE(Found("qqq").isEmpty());
  EXPECT_TRUE(Found("-").isEmpty());
  EXPECT_EQ(Found("60", 2), (QStringList{"600000", "600900"}));
  EXPECT_TRUE(SecuritySearch({}).Find("6", 10).empty());
}

}  // namespace
}  // namespace holdwise
