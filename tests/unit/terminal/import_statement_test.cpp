// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <iconv.h>
#include <sys/stat.h>

#include <QElapsedTimer>

#include "holdings/statement_headings.h"
#include "holdwise/packet/text_file.h"
#include "import_fixture.h"
#include "import_statement_cases.h"
#include "transfer/import_report.h"

namespace holdwise {
namespace {

QByteArray Gb18030(QByteArray utf8) {
  const iconv_t converter = ::iconv_open("GB18030", "UTF-8");
  QByteArray gb(utf8.size() * 4, Qt::Uninitialized);
  char* from = utf8.data();
  char* to = gb.data();
  auto fromLeft = static_cast<std::size_t>(utf8.size());
  auto toLeft = static_cast<std::size_t>(gb.size());
  EXPECT_EQ(::iconv(converter, &from, &fromLeft, &to, &toLeft), 0U);
  ::iconv_close(converter);
  return gb.left(gb.size() - static_cast<qsizetype>(toLeft));
}

QByteArray FileOf(const test::StatementCase& statement) {
  const QByteArray text = QByteArray(statement.text).replace('|', statement.separator);
  return statement.isGb18030 ? Gb18030(text) : text;
}

QStringList LinesOf(const char* text) {
  return QString::fromUtf8(text).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

class ImportStatement : public ImportTest {
 protected:
  /// As a person's file 我的持仓.xls.
  ImportOptions Named(bool skipStrangers = false) {
    ImportOptions options;
    options.fileName = QStringLiteral("/home/who/我的持仓.xls");
    options.skipStrangers = skipStrangers;
    return options;
  }
  static constexpr char kMixed[] =
      "证券代码,证券名称,持仓数量,成本价\n600000,浦发银行,1000,8.125\n510300,沪深300ETF,100,3.9\n600036,招商银行,500,"
      "34\n";
};

class EachStatement : public ImportStatement, public testing::WithParamInterface<test::StatementCase> {};

TEST_P(EachStatement, ComesInExactlyOrIsRefusedWithLineAndReason) {
  const test::StatementCase& statement = GetParam();
  const ImportResult result = Import(FileOf(statement), {}, Named(true));
  const QString report = AnswerOf(QStringLiteral("f"), result).text;
  QStringList stored;
  for (const QString& row :
       temp_.Lines(QStringLiteral("select SecuCode-1000000,PZSL,BUYPRICE from alg_comdetail order by ID"), u' ')) {
    stored << row.section(u' ', 0, 0).rightJustified(6, u'0') + u' ' + row.section(u' ', 1);
  }
  EXPECT_EQ(stored.join(u'\n').toStdString(), statement.holdings) << report.toStdString();
  const QStringList problems = LinesOf(statement.problems);
  ASSERT_EQ(static_cast<qsizetype>(result.problems.size()), problems.size()) << report.toStdString();
  for (qsizetype place = 0; place < problems.size(); ++place) {
    const ImportProblem& problem = result.problems[static_cast<std::size_t>(place)];
    const QString text = QStringLiteral("%1: %2").arg(problem.line).arg(problem.reason);
    EXPECT_TRUE(text.startsWith(problems[place])) << text.toStdString();
  }
  for (const QString& said : LinesOf(statement.said))
    EXPECT_TRUE(report.contains(said)) << said.toStdString() << '\n' << report.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Makes, EachStatement, testing::ValuesIn(test::kStatementCases),
                         [](const auto& one) { return std::string(one.param.name); });

TEST_F(ImportStatement, BecomesOneSavedPortfolioNamedAfterTheFile) {
  ASSERT_EQ(Import(kMixed, {}, Named(true)).portfolios, 1);
  EXPECT_EQ(Dump("select COMNAME,ZSCLOSEPRICE,EDITDATE,ISFINISHED,SAVEFLAG from alg_commain"),
            "我的持仓|3111.02|2024-05-29|0|1");
  // 1000 x 8.125 = 8125 and 500 x 34 = 17000 of 25125; the shares of them by Python's shortest repr.
  EXPECT_EQ(Dump("select SecuCode,PZSL,PZBL,BUYPRICE from alg_comdetail order by ID"),
            "1600000|1000|0.32338308457711445|8.125\n1600036|500|0.6766169154228856|34");
}

TEST_F(ImportStatement, FileNamesBecomeNamesThatCanBeTaken) {
  const auto nameOf = [this](const char* file) {
    ImportOptions options = Named(true);
    options.fileName = QString::fromUtf8(file);
    EXPECT_EQ(Import(kMixed, {}, options).portfolios, 1) << file;
    return Dump("select first 1 COMNAME from alg_commain order by ID desc");
  };
  EXPECT_EQ(nameOf("/a/20240529 持仓 'A'.csv"), "20240529_持仓_A_");
  EXPECT_EQ(nameOf("Table.v2.txt"), "Table_v2");
  EXPECT_EQ(nameOf(("/a/" + std::string(50, 'x') + ".csv").c_str()), QString(40, 'x'));
  EXPECT_EQ(nameOf("/a/.csv"), "持仓");
}

TEST_F(ImportStatement, ANameMayBeGiven) {
  ImportOptions options = Named(true);
  options.name = QStringLiteral("长线");
  ASSERT_EQ(Import(kMixed, {}, options).portfolios, 1);
  EXPECT_EQ(Dump("select COMNAME from alg_commain"), "长线");
  const ImportResult again = Import(kMixed, {}, options);
  ASSERT_EQ(again.problems.size(), 1U);
  EXPECT_EQ(again.problems[0].reason, "已有名称为“长线”的组合");
  options.name = QStringLiteral("a'b");
  ASSERT_EQ(Import(kMixed, {}, options).problems.size(), 1U);
  options.name = QStringLiteral("另一个");
  const ImportResult named = Import(kGood, {}, options);
  ASSERT_EQ(named.problems.size(), 1U);
  EXPECT_TRUE(named.problems[0].reason.contains("不能用 --import-as")) << named.problems[0].reason.toStdString();
  EXPECT_EQ(Dump("select count(*) from alg_commain"), "1");
}

TEST_F(ImportStatement, NothingIsLeftOutWithoutConsent) {
  const ImportResult refused = Import(kMixed, {}, Named(false));
  ASSERT_EQ(refused.problems.size(), 2U);
  EXPECT_TRUE(refused.problems[0].reason.contains("有1行不是可以导入的沪深A股：用 --skip-unknown"))
      << refused.problems[0].reason.toStdString();
  EXPECT_EQ(refused.problems[1].line, 3);
  EXPECT_EQ(refused.problems[1].reason, "510300 沪深300ETF：基金，不能导入");
  EXPECT_EQ(Everything(), "##");
}

TEST_F(ImportStatement, ARowWithTwoFaultsIsNamedForBoth) {
  const ImportResult refused = Import("证券代码,持仓数量,成本价,交易市场\n600000,x,8,深圳A股\n", {}, Named());
  QStringList reasons;
  for (const ImportProblem& problem : refused.problems) reasons << problem.reason;
  ASSERT_EQ(reasons.size(), 2) << reasons.join('|').toStdString();
  EXPECT_TRUE(reasons.join('|').contains("不是股票600000的市场")) << reasons.join('|').toStdString();
  EXPECT_TRUE(reasons.join('|').contains("数量“x”"));
}

TEST_F(ImportStatement, OfTheDocumentsTableTooStrangersAreLeftOutWithConsent) {
  const QByteArray csv = "name,code,quantity,price\n甲,600000,100,8\n甲,510300,100,3.9\n乙,113050,10,120\n";
  EXPECT_EQ(Import(csv).problems.size(), 2U);
  const ImportResult empty = Import(csv, {}, Named(true));
  ASSERT_EQ(empty.problems.size(), 1U);
  EXPECT_EQ(empty.problems[0].reason, "组合“乙”没有可以导入的股票");
  EXPECT_EQ(empty.problems[0].line, 4);
  const ImportResult result = Import(csv.left(csv.indexOf("乙")), {}, Named(true));
  EXPECT_EQ(result.holdings, 1);
  EXPECT_TRUE(result.understood.contains("第 3 行：510300（基金）")) << result.understood.toStdString();
}

/// Of a column that is called just names.
TEST_F(ImportStatement, PortfoliosMayBeCalledLikeStocks) {
  const char* names = "select COMNAME from alg_commain order by ID";
  const char* forTwo = "名称,代码,数量,价格\n浦发银行,600000,100,8\n浦发银行,600036,100,34\n";
  ASSERT_EQ(Import(forTwo, {}, Named()).portfolios, 1);
  EXPECT_EQ(Dump(names), "浦发银行");
  const char* short1 = "名称,代码,数量,价格\n平安,000001,100,11\n招商,600036,100,34\n";
  ASSERT_EQ(Import(short1, {}, Named()).portfolios, 2);
  EXPECT_EQ(Dump(names), "浦发银行\n平安\n招商");
  const char* calledSo = "组合,代码,数量,价格\n招商银行,600036,100,34\n";
  ASSERT_EQ(Import(calledSo, {}, Named()).portfolios, 1);
  EXPECT_EQ(Dump(names), "浦发银行\n平安\n招商\n招商银行");
}

TEST_F(ImportStatement, ANameOfSomethingElseNeedsConsent) {
  const QByteArray csv = "证券代码,证券名称,持仓数量,成本价\n000001,华夏成长混合,1000,1.023\n600000,浦发银行,100,8\n";
  const ImportResult refused = Import(csv, {}, Named(false));
  ASSERT_EQ(refused.problems.size(), 2U);
  EXPECT_EQ(refused.problems[1].line, 2);
  EXPECT_TRUE(refused.problems[1].reason.startsWith("000001 华夏成长混合：名称不是这只股票的"))
      << refused.problems[1].reason.toStdString();
  EXPECT_EQ(Everything(), "##");
}

TEST_F(ImportStatement, APersonSeesItBeforeAnythingIsWrittenAndMayNameIt) {
  ImportOptions options = Named();
  int asked = 0;
  options.ask = [&](const ImportPreview& preview) {
    ++asked;
    EXPECT_EQ(Everything(), "##");
    EXPECT_FALSE(temp_.Service().InTransaction());
    EXPECT_EQ(preview.name, "我的持仓");
    EXPECT_EQ(preview.strangers, 1);
    EXPECT_TRUE(preview.text.contains("组合“我的持仓”：2 只股票，总成本 25125.00 元")) << preview.text.toStdString();
    EXPECT_TRUE(preview.text.contains("第 3 行：510300 沪深300ETF（基金）"));
    return std::optional(ImportChoice{"长线", true});
  };
  const ImportResult result = Import(kMixed, {}, options);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(result.holdings, 2);
  EXPECT_EQ(result.understood, "");
  EXPECT_EQ(Dump("select COMNAME from alg_commain"), "长线");
}

TEST_F(ImportStatement, WhatWillBeWrittenIsToldBefore) {
  ImportOptions options = Named(true);
  QStringList told;
  options.tell = [&](const QString& text) {
    EXPECT_EQ(Everything(), "##");
    EXPECT_FALSE(temp_.Service().InTransaction());
    told << text;
  };
  const ImportResult result = Import(kMixed, {}, options);
  EXPECT_EQ(result.holdings, 2);
  EXPECT_EQ(result.understood, "");
  ASSERT_EQ(told.size(), 1);
  EXPECT_TRUE(told[0].contains("组合“我的持仓”：2 只股票，总成本 25125.00 元")) << told[0].toStdString();
  EXPECT_TRUE(told[0].contains("第 3 行：510300 沪深300ETF（基金）"));
  options.ask = [](const ImportPreview&) { return std::optional<ImportChoice>(); };
  EXPECT_TRUE(Import(kMixed, {}, options).cancelled);
  EXPECT_EQ(told.size(), 1) << "who is asked has seen it";
  options.ask = nullptr;
  EXPECT_EQ(Import(kMixed, {}, options).problems.size(), 1U) << "the name is taken by now";
  EXPECT_EQ(told.size(), 1) << "nothing would be written";
}

TEST_F(ImportStatement, WhatIsNotAgreedToIsNotWritten) {
  ImportOptions options = Named();
  options.ask = [](const ImportPreview&) { return std::optional<ImportChoice>(); };
  EXPECT_TRUE(Import(kMixed, {}, options).cancelled);
  EXPECT_TRUE(Import(kGood, {}, options).cancelled);
  options.ask = [](const ImportPreview& preview) { return std::optional(ImportChoice{preview.name, false}); };
  EXPECT_EQ(Import(kMixed, {}, options).problems.size(), 2U);
  options.ask = [](const ImportPreview&) { return std::optional(ImportChoice{"a'b", true}); };
  EXPECT_EQ(Import(kMixed, {}, options).problems.size(), 1U);
  EXPECT_EQ(Everything(), "##");
}

/// Of a taken name the person is told in the question; of what no answer can mend, at once.
TEST_F(ImportStatement, APersonIsNotAskedInVain) {
  ASSERT_EQ(Import(kMixed, {}, Named(true)).portfolios, 1);
  int asked = 0;
  ImportOptions options = Named();
  options.ask = [&](const ImportPreview&) { return ++asked, std::optional(ImportChoice{"第二", true}); };
  EXPECT_EQ(Import(kMixed, {}, options).portfolios, 1);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(Import("证券代码,持仓数量,成本价\n600000,x,8\n", {}, options).problems.size(), 1U);
  EXPECT_EQ(asked, 1);
  EXPECT_NE(NewNameProblem(database_, "第二"), "");
  EXPECT_EQ(NewNameProblem(database_, "第三"), "");
}

TEST_F(ImportStatement, APipeIsRefusedAndNotWaitedFor) {
  const QString pipe = folder_.File("pipe.xls");
  ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  EXPECT_EQ(ImportPortfoliosFromFile(pipe, Services()).problems.size(), 1U);
}

/// Far more than any statement has.
TEST_F(ImportStatement, ManyRowsAreReadInTime) {
  constexpr int kRows = 50'000;
  QByteArray csv = "证券代码,证券名称,股票余额,可用余额,成本价,市价,市值,盈亏,盈亏比例\n";
  for (int row = 0; row < kRows; ++row) csv += "510300,沪深300ETF,\"1,000\",1000,3.912,3.9,3900.00,-12.00,-0.31\n";
  csv += "600000,浦发银行,100,100,8.1,8.15,815.00,5.00,0.62\n";
  QElapsedTimer timer;
  timer.start();
  const ImportResult result = Import(csv, {}, Named(true));
  EXPECT_LE(timer.elapsed(), 10'000);
  EXPECT_EQ(result.holdings, 1);
  EXPECT_TRUE(result.understood.contains("略去 50000 行")) << result.understood.left(500).toStdString();
  EXPECT_TRUE(result.understood.contains("其余 49900 行没有列出"));
}

TEST_F(ImportStatement, AWorkbookIsNamedAsWhatItIs) {
  folder_.WriteBytes("持仓.xlsx", QByteArray("PK\x03\x04\x14\x00\x06\x00\x08\xff\xfe", 11));
  const ImportResult result = ImportPortfoliosFromFile(folder_.File("持仓.xlsx"), Services());
  ASSERT_EQ(result.problems.size(), 1U);
  EXPECT_TRUE(result.problems[0].reason.contains("Excel 工作簿")) << result.problems[0].reason.toStdString();
  folder_.WriteBytes("持仓.xls", Gb18030("证券代码\t证券名称\t股票余额\t成本价\n600000\t浦发银行\t100\t8.1\n"));
  EXPECT_EQ(ImportPortfoliosFromFile(folder_.File("持仓.xls"), Services()).holdings, 1);
  EXPECT_EQ(Dump("select COMNAME from alg_commain"), "持仓");
}

/// The page for users names every heading that is known, in the order in which one is preferred.
TEST_F(ImportStatement, TheDocumentsNameEveryHeading) {
  const QString page = QString::fromUtf8(ReadTextFile(qEnvironmentVariable("HOLDWISE_SOURCE") + "/docs/statements.md"));
  for (std::size_t column = 0; column < kStatementColumns; ++column) {
    const QString words = WordsOf(static_cast<StatementColumn>(column)).join("、");
    EXPECT_TRUE(page.contains("| " + words + " |")) << words.toStdString();
  }
}

}  // namespace
}  // namespace holdwise
