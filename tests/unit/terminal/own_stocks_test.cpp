// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "holdwise/packet/error.h"
#include "market_data_fixture.h"

namespace holdwise {
namespace {

class OwnStocksTest : public MarketDataTest {
 protected:
  OwnStocksTest() { Load(); }
  void LoadOwn() { data_.LoadOptionalStocks(path_); }
  [[nodiscard]] std::vector<int> Own() const { return data_.GetGroupCodeNumList(QStringLiteral("OptionalStock")); }
  [[nodiscard]] QByteArray Text() const {
    QFile file(path_);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
  }
  void Expect(const std::vector<int>& own) {
    EXPECT_EQ(Own(), own);
    MarketData again(clock_, log_, reader_);
    again.Load(folder_.Path());
    again.LoadOptionalStocks(path_);
    EXPECT_EQ(again.GetGroupCodeNumList(QStringLiteral("OptionalStock")), own) << "as the next start reads it";
  }

  const QString path_ = folder_.File(QStringLiteral("own.txt"));
};

TEST_F(OwnStocksTest, ComeAndGoAndAreThereAgain) {
  LoadOwn();
  data_.SetOptionalStock(1600036, true);
  data_.SetOptionalStock(1000001, true);
  Expect({1600036, 1000001});
  data_.SetOptionalStock(1600036, false);
  Expect({1000001});
  data_.SetOptionalStock(1000001, false);
  Expect({});
}

TEST_F(OwnStocksTest, WhatIsSoAlreadyOrUnknownChangesNothing) {
  LoadOwn();
  data_.SetOptionalStock(1600036, false);
  data_.SetOptionalStock(1999999, true);
  data_.SetOptionalStock(1, true);
  EXPECT_EQ(Text(), "no file");
  data_.SetOptionalStock(1600036, true);
  data_.SetOptionalStock(1600036, true);
  EXPECT_EQ(Text(), "600036\n");
}

TEST_F(OwnStocksTest, OtherLinesStay) {
  folder_.WriteBytes(QStringLiteral("own.txt"), "# mine\r\n600036\r\n688888\r\n 000001");
  LoadOwn();
  data_.SetOptionalStock(1600000, true);
  EXPECT_EQ(Text(), "# mine\r\n600036\r\n688888\r\n 000001\n600000\n");
  Expect({1600036, 1000001, 1600000});
  data_.SetOptionalStock(1600036, false);
  data_.SetOptionalStock(1000001, false);
  EXPECT_EQ(Text(), "# mine\r\n688888\r\n600000\n");
}

TEST_F(OwnStocksTest, TheDataFoldersGroupIsTakenOver) {
  folder_.Write(QStringLiteral("groups.dat"),
                MakeTable({QStringLiteral("name:text"), QStringLiteral("code_number:integer")},
                          {Row("OptionalStock,1600036"), Row("OptionalStock,1000001")}));
  Load();
  LoadOwn();
  data_.SetOptionalStock(1600036, false);
  EXPECT_EQ(Text(), "000001\n");
  Expect({1000001});
}

TEST_F(OwnStocksTest, AListThatCannotBeReadOrWrittenStays) {
  folder_.WriteBytes(QStringLiteral("own.txt"), "600036\n\xB4\n");  // half a character: no text
  LoadOwn();
  EXPECT_THROW(data_.SetOptionalStock(1600000, true), Error);
  EXPECT_EQ(Text(), "600036\n\xB4\n");
  EXPECT_EQ(Own(), std::vector<int>{});

  data_.LoadOptionalStocks(folder_.File(QStringLiteral("none/own.txt")));
  EXPECT_THROW(data_.SetOptionalStock(1600000, true), Error);
  EXPECT_EQ(Own(), std::vector<int>{});
}

TEST_F(MarketDataTest, InitialsAreReadWhereTheyAre) {
  Load();
  EXPECT_EQ(data_.InitialsOf(1600000), "") << "a folder that was made before there were any";
  EXPECT_EQ(data_.InitialsOf(399300), "H S 3 0 0");
  EXPECT_EQ(data_.InitialsOf(1999999), "");
  QStringList headings = MarketFolder::kSecurityHeadings;
  std::vector<QStringList> rows = MarketFolder::SecurityRows();
  headings += "pinyin:text";
  for (QStringList& row : rows) row += row[0] == "600000" ? "P F Y HX" : "NULL";
  folder_.Write(QStringLiteral("securities.dat"), MakeTable(headings, rows));
  Load();
  EXPECT_EQ(data_.InitialsOf(1600000), "P F Y HX");
  EXPECT_EQ(data_.NameOf("600000"), "浦发银行");
  EXPECT_EQ(data_.InitialsOf(1600036), "");
  rows[0].last() = "p f";
  folder_.Write(QStringLiteral("securities.dat"), MakeTable(headings, rows));
  EXPECT_THROW(Load(), Error);
}

}  // namespace
}  // namespace holdwise
