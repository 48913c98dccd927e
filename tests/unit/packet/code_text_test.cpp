// SPDX-License-Identifier: MIT
#include "holdwise/packet/code_text.h"

#include <gtest/gtest.h>

namespace holdwise {
namespace {

TEST(CodeText, ReadsTheMarketBeforeAndBehindTheDigits) {
  struct Case {
    const char* text;
    const char* digits;
    int market;
  };
  const Case cases[] = {
      {"600519", "600519", 0},      {"600519.SH", "600519", 1},   {"600519.SS", "600519", 1},
      {"600519.ss", "600519", 1},   {"000001.SZ", "000001", 2},   {"sh600519", "600519", 1},
      {"SH600519", "600519", 1},    {"sh.600519", "600519", 1},   {"sz.000001", "000001", 2},
      {"SZ.000001", "000001", 2},   {"000001.XSHE", "000001", 2}, {"600519.XSHG", "600519", 1},
      {"SHSE.600519", "600519", 1}, {"SZSE.000001", "000001", 2}, {"600519.SSE", "600519", 1},
      {"830799.BJ", "830799", 3},   {"bj830799", "830799", 3},    {"sz600519", "600519", 2},
  };
  for (const Case& item : cases) {
    EXPECT_EQ(ParseNamedCode(item.text), (NamedCode{item.digits, item.market})) << item.text;
  }
}

TEST(CodeText, ReadsNothingElse) {
  for (const char* text :
       {"",           ".",           "60051",     "6005190",    "60051x",     "600519.",     ".600519",      "600519.S",
        "600519.SHX", "600519SH",    "Sh600519",  "600519.Sh",  "sh..600519", "sh600519.SH", "sh.600519.SH", "ss600519",
        "SHSE600519", "xx600519",    "sh 600519", "600519 .SH", "sh60051",    "sh6005190",   "00700.HK",     "sh.60051",
        "sh.6005190", "６００５１９"}) {
    EXPECT_FALSE(ParseNamedCode(text)) << text;
  }
}

TEST(CodeText, RefusesAStockBesideTheOtherMarket) {
  for (const char* text : {"600519", "600519.SH", "600519.SS", "sh600519", "SH600519", "sh.600519"}) {
    EXPECT_EQ(ParseStockCode(text), "600519") << text;
  }
  EXPECT_EQ(ParseStockCode("000001.SZ"), "000001");
  for (const char* text : {"600519.SZ", "sz.600519", "000001.SH", "000001.SS", "sh.000001", "600519.BJ", "bj830799",
                           "830799", "399001", "sz.399001", "399001.SZ"}) {
    EXPECT_FALSE(ParseStockCode(text)) << text;
  }
}

}  // namespace
}  // namespace holdwise
