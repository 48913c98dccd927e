// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QElapsedTimer>

#include "import_fixture.h"
#include "transfer/import_report.h"

namespace holdwise {
namespace {

/// What stands in the file, and what is wrong with it.
class ImportCsv : public ImportTest {
 protected:
  /// "line: reason" of each problem; the import must have written nothing.
  QStringList Problems(const QByteArray& csv) {
    const QString before = Everything();
    const ImportResult result = Import(csv);
    EXPECT_EQ(Everything(), before);
    EXPECT_FALSE(temp_.Service().InTransaction());
    EXPECT_EQ(result.portfolios, 0);
    QStringList problems;
    for (const ImportProblem& problem : result.problems) {
      problems += QStringLiteral("%1: %2").arg(problem.line).arg(problem.reason);
    }
    return problems;
  }
  /// The file's second line is bad for this reason and nothing else is reported.
  void ExpectBadLine(const QString& badLine, const char* part) {
    const QByteArray csv =
        "name,code,quantity,price\n" + badLine.toUtf8() + "\n甲,600036,100,34.5\n甲,000001,100,11.23\n";
    const QStringList problems = Problems(csv);
    ASSERT_EQ(problems.size(), 1) << badLine.toStdString() << '\n' << problems.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(problems[0].startsWith(QLatin1String("2: "))) << problems[0].toStdString();
    EXPECT_TRUE(problems[0].contains(QString::fromUtf8(part))) << problems[0].toStdString();
  }
};

TEST_F(ImportCsv, HeadingsInAnyOrderAndLanguage) {
  int number = 0;
  for (const char* text : {"code,name,price,quantity\n600000,组合%1,8,100\n600036,组合%1,34,100\n",
                           "Price , QUANTITY,Code,Name\n8,100,600000,组合%1\n34,100,600036,组合%1\n",
                           "组合名称,股票代码,数量(股),买入价(元)\n组合%1,600000,100,8\n组合%1,600036,100,34\n",
                           "组合名称,证券代码,数量（股）,价格（元）\n组合%1,600000,100,8\n组合%1,600036,100,34\n",
                           "名称,代码,数量,价格\r\n组合%1,600000,100,8\r\n组合%1,600036,100,34\r\n",
                           "\xEF\xBB\xBFname,code,quantity,price\n组合%1,600000,100,8\n组合%1,600036,100,34",
                           R"("name","code","quantity","price"
"组合%1","600000","100","8"
组合%1 , 600036 ,100,34

,,,
)"}) {
    const QByteArray csv = QString::fromUtf8(text).arg(++number).toUtf8();
    const ImportResult result = Import(csv);
    EXPECT_EQ(result.portfolios, 1) << text << (result.problems.empty() ? "" : result.problems[0].reason.toStdString());
    EXPECT_EQ(result.holdings, 2) << text;
  }
  EXPECT_EQ(Dump("select distinct SecuCode,PZSL,BUYPRICE from alg_comdetail order by SecuCode"),
            QStringLiteral("1600000|100|8\n1600036|100|34"));
}

TEST_F(ImportCsv, Gb18030FromASpreadsheet) {
  // "组合名称,股票代码,数量（股）,买入价(元)" and two holdings of "稳健一号", encoded by Python.
  const QByteArray csv =
      "\xd7\xe9\xba\xcf\xc3\xfb\xb3\xc6\x2c\xb9\xc9\xc6\xb1\xb4\xfa\xc2\xeb\x2c\xca\xfd\xc1\xbf\xa3\xa8\xb9\xc9\xa3\xa9"
      "\x2c"
      "\xc2\xf2\xc8\xeb\xbc\xdb\x28\xd4\xaa\x29\x0a\xce\xc8\xbd\xa1\xd2\xbb\xba\xc5\x2c\x36\x30\x30\x30\x30\x30\x2c\x31"
      "\x30"
      "\x30\x30\x2c\x38\x2e\x30\x30\x0a\xce\xc8\xbd\xa1\xd2\xbb\xba\xc5\x2c\x36\x30\x30\x30\x33\x36\x2c\x35\x30\x30\x2c"
      "\x33"
      "\x34\x0a";
  EXPECT_EQ(Import(csv).portfolios, 1);
  EXPECT_EQ(Dump("select COMNAME from alg_commain"), QStringLiteral("稳健一号"));
}

TEST_F(ImportCsv, EachKindOfBadLine) {
  ExpectBadLine(QStringLiteral(",600000,100,8"), "组合名称为空");
  ExpectBadLine(QStringLiteral("a'b,600000,100,8"), "“'”");
  ExpectBadLine(QStringLiteral("a b,600000,100,8"), "“ ”");
  ExpectBadLine(QStringLiteral("\"a\"\"b\",600000,100,8"), "“\"”");
  ExpectBadLine(QStringLiteral("\"a,b\",600000,100,8"), "“,”");
  ExpectBadLine(QStringLiteral("a.b,600000,100,8"), "“.”");
  ExpectBadLine(QString(41, u'长') + QStringLiteral(",600000,100,8"), "41个字符");
  ExpectBadLine(QStringLiteral("e\u0301").repeated(41) + QStringLiteral(",600000,100,8"), "41个字符");
  ExpectBadLine(QLatin1Char('a') + QString(160, QChar(0x301)) + QStringLiteral(",600000,100,8"), "附加符号太多");
  ExpectBadLine(QStringLiteral("甲,,100,8"), "股票代码为空");
  ExpectBadLine(QStringLiteral("甲,1,100,8"), "不足六位");
  ExpectBadLine(QStringLiteral("甲,00001,100,8"), "不足六位");
  ExpectBadLine(QStringLiteral("甲,1600000,100,8"), "多于六位");
  ExpectBadLine(QStringLiteral("甲,60000O,100,8"), "不是六位数字");
  ExpectBadLine(QStringLiteral("甲,６０００００,100,8"), "不是六位数字");
  ExpectBadLine(QStringLiteral("甲,Sh600000,100,8"), "不是六位数字");
  ExpectBadLine(QStringLiteral("甲,SH300750,100,8"), "“SH300750”写的市场不是股票300750的市场");
  ExpectBadLine(QStringLiteral("甲,600000.SZ,100,8"), "“600000.SZ”写的市场不是股票600000的市场");
  ExpectBadLine(QStringLiteral("甲,BJ830799,100,8"), "没有代码为830799");
  ExpectBadLine(QStringLiteral("甲,\"600000\n\",100,8"), "不是六位数字");
  ExpectBadLine(QStringLiteral("甲,999999,100,8"), "没有代码为999999");
  ExpectBadLine(QStringLiteral("甲,900901,100,8"), "A股");  // known, but no A-share
  ExpectBadLine(QStringLiteral("甲,399001,100,8"), "没有代码为399001");
  ExpectBadLine(QStringLiteral("甲,600000,,8"), "数量为空");
  for (const char* quantity : {"0", "-100", "+100", "100.0", "1e3", "\"1,000\"", "1000000000", "0100", "一百", "nan",
                               "99999999999999999999999", "0x10", "１００"}) {
    ExpectBadLine(QStringLiteral("甲,600000,%1,8").arg(QString::fromUtf8(quantity)), "不是1到999999999的整数");
  }
  ExpectBadLine(QStringLiteral("甲,600000,100,"), "买入价为空");
  for (const char* price : {"0", "0.0", "0.00", "-8", "+8", "8.001", "8.", ".5", "100000", "100000.00", "08", "8e1",
                            "1,0", "inf", "八", "99999999999999999999.1", "8元"}) {
    ExpectBadLine(QStringLiteral("甲,600000,100,\"%1\"").arg(QString::fromUtf8(price)), "最多两位小数");
  }
  ExpectBadLine(QStringLiteral("甲,600000,100"), "有3个字段，应为4个");
  ExpectBadLine(QStringLiteral("甲,600000,100,8,9"), "有5个字段，应为4个");
}

/// Whoever mends one fault of a row at a time imports a file as often as it has faults.
TEST_F(ImportCsv, ARowWithTwoFaultsIsNamedForBoth) {
  const auto reasonsOf = [&](const QString& row, const ImportOptions& options) {
    QStringList reasons;
    const QString csv = QStringLiteral("name,code,quantity,price,date\n甲,600036,100,8,\n") + row + QLatin1Char('\n');
    for (const ImportProblem& problem : Import(csv.toUtf8(), {}, options).problems) {
      EXPECT_EQ(problem.line, 3);
      reasons << problem.reason;
    }
    return reasons;
  };
  ImportOptions inWindow;
  inWindow.ask = [](const ImportPreview&) { return std::optional<ImportChoice>(); };
  for (const ImportOptions& options : {ImportOptions(), inWindow}) {
    const QStringList unknown = reasonsOf(QStringLiteral("乙,999999,x,8,"), options);
    ASSERT_EQ(unknown.size(), 2);
    EXPECT_TRUE(unknown.join('|').contains("没有代码为999999的A股股票"));
    EXPECT_TRUE(unknown.join('|').contains("数量“x”"));
    const QStringList dated = reasonsOf(QStringLiteral("a'b,600000,100,8,2025-13-01"), options);
    ASSERT_EQ(dated.size(), 2);
    EXPECT_TRUE(dated[0].contains("“'”") && dated[1].contains("日期“2025-13-01”")) << dated.join('|').toStdString();
    EXPECT_EQ(reasonsOf(QStringLiteral("a'b,999999,x,0,2025-13-01"), options).size(), 5);
  }
}

TEST_F(ImportCsv, CodesInAnyFormWithTheMarketBesideThem) {
  const ImportResult result =
      Import("name,code,quantity,price\n甲,SH600000,1,8\n甲,600036.SH,2,34\n甲,sz.000001,3,11\n甲,XSHE.300750,4,199\n");
  EXPECT_TRUE(result.problems.empty()) << result.problems[0].reason.toStdString();
  EXPECT_EQ(Dump("select SECUCODE,PZSL from alg_comdetail order by ID"),
            QStringLiteral("1600000|1\n1600036|2\n1000001|3\n1300750|4"));
  const ImportResult twice = Import("name,code,quantity,price\n乙,SH600000,1,8\n乙,600000,1,8\n");
  ASSERT_EQ(twice.problems.size(), 1U);
  EXPECT_TRUE(twice.problems[0].reason.contains(QStringLiteral("股票600000与第2行重复")));
}

TEST_F(ImportCsv, LimitsThemselvesAreAccepted) {
  const QString name = QString(36, u'名') + QStringLiteral("(-)_");  // 40 characters
  const QString csv =
      QStringLiteral("name,code,quantity,price\n%1,600000,999999999,99999.99\n%1,600036,1,0.01\n").arg(name);
  EXPECT_EQ(Import(csv.toUtf8()).portfolios, 1);
  EXPECT_EQ(Dump("select COMNAME from alg_commain"), name);
  EXPECT_EQ(Dump("select PZSL,BUYPRICE from alg_comdetail order by ID"), QStringLiteral("999999999|99999.99\n1|0.01"));
}

QByteArray PortfolioOf(int holdings) {
  QByteArray csv = "name,code,quantity,price\n";
  for (int i = 1; i <= holdings; ++i) csv += "甲," + QByteArray::number(601000 + i) + ",100,10\n";
  return csv;
}

TEST_F(ImportCsv, OneToFiveHundredHoldings) {
  std::vector<QStringList> securities;
  for (int i = 1; i <= 501; ++i) {
    const QString code = QString::number(601000 + i);
    securities.push_back({code, "股票" + code, "综合", "1", "20200102", "1"});
  }
  folder_.Write("securities.dat", MakeTable(MarketFolder::kSecurityHeadings, securities));
  data_.Load(folder_.Path());
  EXPECT_EQ(Problems(PortfolioOf(501)), QStringList{QStringLiteral("2: 组合“甲”有501只股票，应为1到500只")});
  EXPECT_EQ(Import(PortfolioOf(500)).holdings, 500);
  EXPECT_EQ(Dump("select count(*),sum(PZSL) from alg_comdetail"), QStringLiteral("500|50000"));
  EXPECT_EQ(Import(PortfolioOf(1).replace("甲", "乙")).holdings, 1);
  EXPECT_EQ(Dump("select first 1 PZBL from alg_comdetail order by ID desc"), "1");
}

TEST_F(ImportCsv, AStockOnlyOnceInAPortfolio) {
  const QStringList problems = Problems(
      "name,code,quantity,price\n甲,600000,100,8\n乙,600000,100,8\n甲,600036,100,34\n甲,600000,200,8\n乙,600036,1,34\n"
      "甲,600000,bad,8\n");
  ASSERT_EQ(problems.size(), 3);
  EXPECT_EQ(problems[0], QStringLiteral("5: 组合“甲”中股票600000与第2行重复"));
  EXPECT_TRUE(problems[1].startsWith(QStringLiteral("7: 数量")));
  EXPECT_EQ(problems[2], QStringLiteral("7: 组合“甲”中股票600000与第2行重复"));
}

TEST_F(ImportCsv, NamesInTheDatabaseAreTaken) {
  ASSERT_EQ(Import(kGood).portfolios, 2);
  const QStringList problems = Problems(QByteArray(kGood) + "新,600000,1,x\n");
  ASSERT_EQ(problems.size(), 3);
  EXPECT_EQ(problems[0], QStringLiteral("2: 已有名称为“稳健一号”的组合"));
  EXPECT_EQ(problems[1], QStringLiteral("3: 已有名称为“进取(2)_A-b”的组合"));
  EXPECT_TRUE(problems[2].startsWith(QStringLiteral("7: 买入价")));
}

TEST_F(ImportCsv, ManyBadLinesAreRefusedInTimeAndTheFirstHundredNamed) {
  constexpr int kRows = 160'000;
  QByteArray csv = "name,code,quantity,price\n";
  for (int row = 0; row < kRows; ++row) csv += 'P' + QByteArray::number(row) + ",600000,x,y\n";
  QElapsedTimer timer;
  timer.start();
  const ImportResult result = Import(csv);
  const HandOverAnswer answer = AnswerOf("f", result);
  // Comparing every problem with every other took many minutes; a sanitizer makes half a minute of a second.
  EXPECT_LE(timer.elapsed(), 100'000);
  EXPECT_EQ(result.problems.size(), 2U * kRows);  // quantity and price
  const QStringList lines = answer.text.split('\n');
  ASSERT_EQ(lines.size(), 102);
  EXPECT_TRUE(lines[0].contains("共有 320000 处问题")) << lines[0].toStdString();
  EXPECT_TRUE(lines[1].startsWith("第 2 行：")) << lines[1].toStdString();
  EXPECT_TRUE(lines[100].startsWith("第 51 行：")) << lines[100].toStdString();  // 50 rows of two
  EXPECT_EQ(lines[101], "其余 319900 处没有列出。");
}

TEST_F(ImportCsv, EveryBadLineIsNamed) {
  const QStringList problems = Problems(
      "name,code,quantity,price\n"
      "甲,600000,100,8\n"
      "甲,1,0,0\n"
      "\n"
      "乙,600000,1.5,8\n"
      "乙,600036,100,34\n"
      "a'b,600036\n");
  QStringList starts;
  for (const QString& problem : problems) starts += problem.left(5);
  EXPECT_EQ(starts, (QStringList{QStringLiteral("3: 股票"), QStringLiteral("3: 数量"), QStringLiteral("3: 买入"),
                                 QStringLiteral("5: 数量"), QStringLiteral("7: 有2")}));
}

TEST_F(ImportCsv, ABadQuoteHidesNoOtherBadLine) {
  EXPECT_EQ(Problems("name,code,quantity,price\n甲,\"600000\"x,100,8\n甲,600036,0,8\n甲,000001,\"1\n"),
            (QStringList{"2: 引号之后有多余的字符", "3: 数量“0”不是1到999999999的整数",
                         "4: 引号没有结束，其后的内容不能读取"}));
}

TEST_F(ImportCsv, ABadQuoteInTheHeadingMakesNoHeadingOfTheNextLine) {
  EXPECT_EQ(Problems("\"name\"x,code,quantity,price\n甲,600000,100,8\n"), QStringList{"1: 引号之后有多余的字符"});
}

TEST_F(ImportCsv, ControlCharactersDoNotCutTheReport) {
  const QByteArray csv =
      QByteArrayLiteral("name,code,quantity,price\n甲\0乙,600000,100,8\n甲,600036,100,34.5\n甲,000001,\x1B,1\n");
  const QStringList problems = Problems(csv);
  ASSERT_EQ(problems.size(), 2);
  EXPECT_TRUE(problems[0].startsWith("2: 组合名称“甲\\x00乙”含有不允许的字符“\\x00”")) << problems[0].toStdString();
  EXPECT_EQ(problems[1], "4: 数量“\\x1b”不是1到999999999的整数");
}

TEST_F(ImportCsv, NamesHaveNoCharactersThatNobodySees) {
  for (const char16_t invisible : {u'\u0085', u'\u200B', u'\u202E', u'\u2028', u'\uFEFF'}) {
    ExpectBadLine(QStringLiteral("甲") + QChar(invisible) + QStringLiteral("乙,600000,100,8"), "看不见的字符");
  }
}

TEST_F(ImportCsv, FilesThatAreNoTable) {
  EXPECT_EQ(Problems(""), QStringList{QStringLiteral("0: 文件是空的")});
  EXPECT_EQ(Problems("\n\n  \n"), QStringList{QStringLiteral("0: 文件是空的")});
  EXPECT_EQ(Problems("name,code,quantity,price\n"), QStringList{QStringLiteral("0: 文件只有表头，没有持股数据")});
  EXPECT_EQ(Problems("name,code,quantity,price\n,,,\n"), QStringList{QStringLiteral("0: 文件只有表头，没有持股数据")});
  EXPECT_EQ(Problems("name,code,quantity\n甲,600000,100\n"), QStringList{QStringLiteral("1: 表头缺少“价格”列")});
  EXPECT_EQ(Problems("name,code,quantity,price,weight\n"), QStringList{QStringLiteral("1: 表头第5列“weight”不认识")});
  EXPECT_EQ(Problems("name,code,代码,quantity,price\n"), QStringList{QStringLiteral("1: 表头第3列“代码”重复")});
  EXPECT_EQ(Problems("甲,600000,100,8\n乙,600036,100,34\n").size(), 8);  // four unknown headings, four missing columns
  const QStringList unclosed = Problems("name,code,quantity,price\n甲,600000,100,8\n甲,\"600036,100,34\n");
  ASSERT_FALSE(unclosed.isEmpty());
  EXPECT_TRUE(unclosed.join(QLatin1Char('\n')).contains(QStringLiteral("3: ")))
      << unclosed.join(QLatin1Char('\n')).toStdString();
  const QStringList binary = Problems(QByteArray("\xff\xfe\x00\x80\xff", 5));
  ASSERT_EQ(binary.size(), 1);
  EXPECT_TRUE(binary[0].startsWith(QLatin1String("0: ")));
}

TEST_F(ImportCsv, FromAFile) {
  const QString path = folder_.File(QStringLiteral("in.csv"));
  const ImportResult missing = ImportPortfoliosFromFile(path, Services());
  ASSERT_EQ(missing.problems.size(), 1U);
  EXPECT_EQ(missing.problems[0].line, 0);
  EXPECT_TRUE(missing.problems[0].reason.contains(QStringLiteral("in.csv")));
  folder_.WriteBytes(QStringLiteral("in.csv"), kGood);
  EXPECT_EQ(ImportPortfoliosFromFile(path, Services()).portfolios, 2);
  folder_.WriteBytes(QStringLiteral("big.csv"), QByteArray((16 << 20) + 1, 'x'));
  EXPECT_EQ(ImportPortfoliosFromFile(folder_.File(QStringLiteral("big.csv")), Services()).problems.size(), 1U);
}

}  // namespace
}  // namespace holdwise
