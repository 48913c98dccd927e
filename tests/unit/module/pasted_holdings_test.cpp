// SPDX-License-Identifier: MIT
#include "views/zxpz/pasted_holdings.h"

#include <gtest/gtest.h>

#include <map>

namespace holdwise {

void PrintTo(const HoldingRow& row, std::ostream* out) {
  *out << QStringList({row.code, row.name, row.price, row.quantity}).join(QLatin1Char('|')).toStdString();
}
void PrintTo(const RefusedHolding& one, std::ostream* out) {
  *out << one.line << ' ' << one.what.toStdString() << ": " << one.reason.toStdString();
}

namespace {

std::optional<KnownStock> Lookup(const QString& six) {
  static const std::map<QString, KnownStock> stocks = {{"600519", {QStringLiteral("贵州茅台"), true}},
                                                       {"600000", {QStringLiteral("浦发银行"), true}},
                                                       {"000001", {QStringLiteral("平安银行"), false}},
                                                       {"000002", {QStringLiteral("万科A"), false}},
                                                       {"300750", {QStringLiteral("宁德时代"), false}}};
  const auto found = stocks.find(six);
  return found == stocks.end() ? std::nullopt : std::optional(found->second);
}

PastedHoldings Read(const QString& text, const QStringList& present = {}) {
  return ReadPastedHoldings(text, present, Lookup);
}

HoldingRow Row(const char* code, const char* name, const char* price, const char* quantity) {
  return {QString::fromUtf8(code), QString::fromUtf8(name), QString::fromUtf8(price), QString::fromUtf8(quantity)};
}

const HoldingRow kMaotai = Row("600519", "贵州茅台", "1700.00", "100");
const HoldingRow kPudong = Row("600000", "浦发银行", "9.80", "2000");

/// The reason why the only line is refused; empty when it is taken.
QString ReasonFor(const char* text) {
  const PastedHoldings pasted = Read(text);
  EXPECT_EQ(pasted.rows.size() + pasted.refused.size(), 1U) << text;
  return pasted.refused.empty() ? QString() : pasted.refused.front().reason;
}

TEST(PastedHoldings, TabsOrCommasWithAndWithoutATitleRow) {
  for (const char* text : {"600519\t100\t1700\n600000\t2000\t9.8\n", "600519,100,1700\r\n600000,2000,9.8\r\n",
                           "代码\t数量\t价格\n600519\t100\t1700\n600000\t2000\t9.8",
                           "证券代码,持股数量,买入价\n600519,100,1700\n600000,2000,9.80",
                           "Code,Shares,Price\n600519,100,1700\n600000,2000,9.80",
                           "600519\t贵州茅台\t100\t1700\n600000\t浦发银行\t2000\t9.8\n",
                           "\xEF\xBB\xBF"
                           "600519,100,1700\n\n   \n600000, 2000 , 9.8\n"}) {
    const PastedHoldings pasted = Read(text);
    EXPECT_EQ(pasted.rows, (std::vector{kMaotai, kPudong})) << text;
    EXPECT_TRUE(pasted.refused.empty()) << text;
    EXPECT_EQ(PasteMessage(pasted), QString()) << text;
  }
}

TEST(PastedHoldings, OtherFiguresBesideAreNotTaken) {
  // A total, a change and a quantity that cannot be sold are not what is asked for.
  EXPECT_EQ(Read("Code\tShares\tTotal Cost\n600519\t100\t170000").rows,
            std::vector{Row("600519", "贵州茅台", "", "100")});
  for (const char* titles :
       {"Symbol,Quantity,Price Change,Price", "证券代码,持仓数量,涨跌价,成本价(元)", "代码,数量(股),最新价,买入价",
        "股票代码,持仓,总价,价格", "ts_code,volume,浮动盈亏,avg_price", "代码,股票余额,市价,参考成本价"}) {
    EXPECT_EQ(Read(QStringLiteral("%1\n600519,100,1.2,1700").arg(QString::fromUtf8(titles))).rows,
              std::vector{Row("600519", "贵州茅台", "1700.00", "100")})
        << titles;
  }
  for (const char* titles : {"代码,冻结数量,数量,价格", "代码,可用数量,持仓数量,成本价", "code,frozen,shares,cost"}) {
    EXPECT_EQ(Read(QStringLiteral("%1\n600519,0,100,1700").arg(QString::fromUtf8(titles))).rows,
              std::vector{Row("600519", "贵州茅台", "1700.00", "100")})
        << titles;
  }
}

TEST(PastedHoldings, RunningTextIsQuotedByItsBeginning) {
  const QString text = QStringLiteral("字").repeated(100000);
  EXPECT_LT(PasteMessage(Read(text)).size(), 200);
  EXPECT_LT(PasteMessage(Read("600519\t" + text + "\t1")).size(), 200);
  EXPECT_LT(PasteMessage(Read("600519\t1\t" + text)).size(), 200);
}

TEST(PastedHoldings, TheTitlesSayWhereTheColumnsStand) {
  // As the grid itself is copied: price before quantity.
  EXPECT_EQ(Read("股票代码\t股票名称\t买入价(元)\t数量(股)\n600519\t贵州茅台\t1700.00\t100\n").rows,
            std::vector{kMaotai});
  // The price paid goes before today's, a value is no price, and what is left over does not matter.
  EXPECT_EQ(Read("名称,代码,现价,成本价,股数,总价值\n茅台,600519,1800,1700,100,170000\n").rows, std::vector{kMaotai});
  EXPECT_EQ(Read("代码\n600519\n").rows, std::vector{Row("600519", "贵州茅台", "", "")});
}

TEST(PastedHoldings, PriceAndQuantityMayBeMissing) {
  EXPECT_EQ(Read("600519\n000001\n").rows,
            (std::vector{Row("600519", "贵州茅台", "", ""), Row("000001", "平安银行", "", "")}));
  EXPECT_EQ(Read("600519,100").rows, std::vector{Row("600519", "贵州茅台", "", "100")});
  EXPECT_EQ(Read("600519\t\t12.3").rows, std::vector{Row("600519", "贵州茅台", "12.30", "")});
}

TEST(PastedHoldings, FormsOfACode) {
  for (const char* code : {"600519", "600519.SH", "600519.sh", "600519.SS", "600519.XSHG", "sh600519", "SH600519",
                           "sh.600519", "'600519", "\"600519\"", " 600519 "}) {
    EXPECT_EQ(Read((std::string(code) + "\t100\t1700").c_str()).rows, std::vector{kMaotai}) << code;
  }
  for (const char* code : {"000001", "000001.SZ", "sz000001", "000001.XSHE", "1", "00001"}) {
    const auto rows = Read((std::string(code) + ",1,2").c_str()).rows;
    EXPECT_EQ(rows, std::vector{Row("000001", "平安银行", "2.00", "1")}) << code;
  }
}

TEST(PastedHoldings, AnIndexDoesNotBecomeTheStockOfItsNumber) {
  for (const char* code : {"000001.SH", "sh000001", "600519.SZ", "sz600519"}) {
    EXPECT_EQ(ReasonFor((std::string(code) + ",1,2").c_str()), QStringLiteral("这个市场没有这只股票")) << code;
  }
}

TEST(PastedHoldings, ANumberOfTheLineDoesNotBecomeACode) {
  for (const char* line : {"1\t600519\t100", "1\t600519", "2\tsh600519\t100\t1700", "1\t600000\t12.3"}) {
    EXPECT_EQ(ReasonFor(line), QStringLiteral("看不出哪一个是代码，请写全六位代码或加上标题行")) << line;
  }
  EXPECT_EQ(Read("序号\t代码\t数量\n1\t600519\t100").rows, std::vector{Row("600519", "贵州茅台", "", "100")});
  EXPECT_EQ(Read("代码\t数量\n1\t600000").rows, std::vector{Row("000001", "平安银行", "", "600000")});
}

TEST(PastedHoldings, WhatIsNoCode) {
  for (const char* code : {"abc", "6005190", "60051x", "", "sh600519.SZ", "贵州茅台"}) {
    EXPECT_EQ(ReasonFor((std::string(code) + ",1,2").c_str()), QStringLiteral("不是股票代码")) << code;
  }
  EXPECT_EQ(ReasonFor("601398,1,2"), QStringLiteral("没有这只股票"));
}

TEST(PastedHoldings, Quantities) {
  const auto quantity = [](const char* cell) {
    const auto rows = Read((std::string("600519\t") + cell + "\t1").c_str()).rows;
    return rows.empty() ? std::string("refused") : rows.front().quantity.toStdString();
  };
  EXPECT_EQ(quantity("100"), "100");
  EXPECT_EQ(quantity("1,000"), "1000");
  EXPECT_EQ(quantity("12,345,678"), "12345678");
  EXPECT_EQ(quantity("1000.00"), "1000");
  EXPECT_EQ(quantity("0100"), "100");
  EXPECT_EQ(quantity("0"), "0");
  EXPECT_EQ(quantity("123456789"), "123456789");
  for (const char* refused : {"1234567890", "1.5", "-100", "+100", "1e3", "1,00", "10 0", "100股", "."}) {
    EXPECT_EQ(quantity(refused), "refused") << refused;
  }
  EXPECT_EQ(ReasonFor("600519,abc,1700"), QStringLiteral("数量“abc”不是九位以内的整数")) << "nor is abc a name";
  EXPECT_EQ(ReasonFor("600519,1.5,1"), QStringLiteral("数量“1.5”不是九位以内的整数"));
}

TEST(PastedHoldings, Prices) {
  const auto price = [](const char* cell) {
    const auto rows = Read((std::string("600519\t1\t") + cell).c_str()).rows;
    return rows.empty() ? std::string("refused") : rows.front().price.toStdString();
  };
  EXPECT_EQ(price("1700"), "1700.00");
  EXPECT_EQ(price("1,700.5"), "1700.50");
  EXPECT_EQ(price("¥12.30"), "12.30");
  EXPECT_EQ(price("12.340"), "12.34");
  EXPECT_EQ(price("0.55"), "0.55");
  EXPECT_EQ(price("9999.99"), "9999.99");
  for (const char* refused : {"10000", "12.345", "-1", "abc", "1..2", ".5", "1e2"}) {
    EXPECT_EQ(price(refused), "refused") << refused;
  }
  EXPECT_EQ(ReasonFor("600519,1,12.345"), QStringLiteral("价格“12.345”多于两位小数"));
  EXPECT_EQ(ReasonFor("600519,1,10000"), QStringLiteral("价格“10000”不是 10000 以内的正数"));
}

TEST(PastedHoldings, QuotedFieldsOfACommaSeparatedText) {
  EXPECT_EQ(Read("\"600519\",\"1,000\",\"1,700.00\"").rows, std::vector{Row("600519", "贵州茅台", "1700.00", "1000")});
  // Without quotes the grouping comma makes a fourth cell: nobody can say which is the price.
  EXPECT_EQ(ReasonFor("600519,1,000,1700"), QStringLiteral("列数多于“代码、数量、价格”，无法判断"));
  const PastedHoldings broken = Read("600519,100,1700\n\"600000,5\n");
  EXPECT_EQ(broken.rows, std::vector{kMaotai});
  ASSERT_EQ(broken.refused.size(), 1U);
  EXPECT_EQ(broken.refused.front().line, 2);
}

TEST(PastedHoldings, NoStockTwice) {
  const PastedHoldings pasted = Read("600519,100,1700\n600000,1,2\nsh600519,5,6\n", {QStringLiteral("600000")});
  EXPECT_EQ(pasted.rows, std::vector{kMaotai});
  EXPECT_EQ(pasted.refused, (std::vector<RefusedHolding>{
                                {2, QStringLiteral("600000 浦发银行"), QStringLiteral("在组合里已经存在")},
                                {3, QStringLiteral("sh600519 贵州茅台"), QStringLiteral("在组合里已经存在")}}));
}

TEST(PastedHoldings, TenStocksAtMost) {
  QStringList present;
  for (int code = 0; code < 8; ++code) present << QString::number(601000 + code);
  const PastedHoldings pasted = Read("600519,100,1700\n600000,2000,9.8\n000001,1,2\n000002,1,2\n", present);
  EXPECT_EQ(pasted.rows, (std::vector{kMaotai, kPudong}));
  EXPECT_EQ(pasted.refused,
            (std::vector<RefusedHolding>{{3, QStringLiteral("000001 平安银行"), QStringLiteral("组合最多 10 只股票")},
                                         {4, QStringLiteral("000002 万科A"), QStringLiteral("组合最多 10 只股票")}}));
}

TEST(PasteMessages, OneMessageNamesWhatWasRefused) {
  EXPECT_EQ(PasteMessage(Read("600519,100,1700\nabc,1,2\n\n000001.SH,1,2\n")),
            QStringLiteral("粘贴了 1 只股票，2 行没有采用：\n第 2 行 abc：不是股票代码\n"
                           "第 4 行 000001.SH：这个市场没有这只股票"));
  EXPECT_EQ(PasteMessage(Read("")), QStringLiteral("剪贴板里没有持仓。请复制“代码、数量、价格”三列后再粘贴。"));
  EXPECT_EQ(PasteMessage(Read("代码\t数量\t价格\n")), PasteMessage(Read(" \n\t\n")));
}

TEST(PasteMessages, OfManyTheFirstTen) {
  QString text;
  for (int line = 0; line < 5000; ++line) text += QStringLiteral("x,1,2\n");
  const QStringList lines = PasteMessage(ReadPastedHoldings(text, {}, Lookup)).split(u'\n');
  ASSERT_EQ(lines.size(), 12);
  EXPECT_EQ(lines[10], QStringLiteral("第 10 行 x：不是股票代码"));
  EXPECT_EQ(lines[11], QStringLiteral("另有 4990 行。"));
}

}  // namespace
}  // namespace holdwise
