#include "portfolio_import/import.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <functional>

#include "datacentre/local_database.h"
#include "datacentre/market_data.h"
#include "holdwise/market/data_folder_builder.h"
#include "holdwise/market/simulated_market.h"
#include "market_folder.h"
#include "scripted_host.h"
#include "temp_database.h"

namespace holdwise {
namespace {

constexpr char kGood[] =
    "name,code,quantity,price\n"
    "稳健一号,600000,1000,8.00\n"
    "进取(2)_A-b,000001,300,11.23\n"
    "稳健一号,600036,500,34\n"
    "进取(2)_A-b,300750,100,199.88\n"
    "进取(2)_A-b,600000,7,8.15\n";

/// A database that writes down what it is asked to do and fails at one call.
class FailingDatabase final : public UserDataServices {
 public:
  explicit FailingDatabase(UserDataServices& real) : real_(real) {}
  [[nodiscard]] ResultSet Query(const QString& sql) override { return Pass(sql), real_.Query(sql); }
  [[nodiscard]] std::int64_t Count(const QString& sql) override { return Pass(sql), real_.Count(sql); }
  [[nodiscard]] Value Scalar(const QString& sql) override { return Pass(sql), real_.Scalar(sql); }
  int Execute(const QString& sql) override {
    if (refuseInstead && calls.size() + 1 == failAt) {
      calls += sql;
      return 0;
    }
    Pass(sql);
    return real_.Execute(sql);
  }
  void StartTransaction() override { Pass(QStringLiteral("start")), real_.StartTransaction(); }
  void Commit() override {
    try {
      Pass(QStringLiteral("commit"));
    } catch (const Error&) {
      real_.RollBack();  // what a failed commit leaves behind
      throw;
    }
    real_.Commit();
  }
  void RollBack() override {
    calls += QStringLiteral("rollback");
    real_.RollBack();
  }
  [[nodiscard]] bool InTransaction() const override { return real_.InTransaction(); }
  [[nodiscard]] std::unique_ptr<UserDataSession> OpenSession() override { return real_.OpenSession(); }

  QStringList calls;
  qsizetype failAt = 0;  ///< counted from 1; 0: never
  bool refuseInstead = false;

 private:
  void Pass(const QString& call) {
    calls += call;
    if (calls.size() == failAt) throw Error(ErrorCategory::Database, "injected");
  }
  UserDataServices& real_;
};

QStringList StatisticsHeadings() {
  return QStringLiteral(
             "closeprice:real hqtype:integer rowid:integer ggqjsyl:real pjsyl:real hqdate:integer oldcloseprice:real "
             "sylbzc:real islastday:integer startdate:integer enddate:integer")
      .split(QLatin1Char(' '));
}

std::vector<QStringList> StatisticsRows(const char* close) {
  const QString price = QString::fromLatin1(close);
  const auto row = [&price](const char* rest) {
    return QStringList{price} + QString::fromLatin1(rest).split(QLatin1Char(','));
  };
  return {row("0,1,0.01,0.005,20240528,8.1,0.02,0,20230601,20240529"),
          row("0,2,-0.002,0.005,20240529,8.2,0.02,1,20230601,20240529"),
          row("1,1,0.003,0.001,20240529,8,0.03,1,20230601,20240529")};
}

class ImportTest : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* code : {"600000", "600036", "000001", "300750"}) {
      folder_.Write(StockFile(code), MakeTable(StatisticsHeadings(), StatisticsRows("8.15")));
    }
    std::vector<QStringList> indexRows;
    for (const char* index : {"1", "399001", "399300"}) {
      for (const QStringList& row : StatisticsRows("3111.02"))
        indexRows.push_back(QStringList{QString::fromLatin1(index)} + row);
    }
    folder_.Write(QStringLiteral("QMTL/TZZH/Day250/指数/allzs.dat"),
                  MakeTable(QStringList{QStringLiteral("SecuCode:integer")} + StatisticsHeadings(), indexRows));
    data_.Load(folder_.Path());
  }
  static QString StockFile(const char* code) {
    return QStringLiteral("QMTL/TZZH/Day250/股票/%1.dat").arg(QLatin1String(code));
  }
  [[nodiscard]] ImportServices Services() { return {database_, data_, data_, folder_.Path()}; }
  ImportResult Import(const QByteArray& csv, const ImportProgress& progress = {}) {
    return ImportPortfolios(csv, Services(), progress);
  }
  /// A whole table as text, one line a row.
  QString Dump(const char* sql) {
    const ResultSet rows = temp_.Service().Query(QString::fromLatin1(sql));
    QStringList lines;
    for (int row = 0; row < rows.RowCount(); ++row) {
      QStringList cells;
      for (int column = 0; column < rows.ColumnCount(); ++column) cells += rows.TextAt(row, column);
      lines += cells.join(QLatin1Char('|'));
    }
    return lines.join(QLatin1Char('\n'));
  }
  QString Everything() {
    return Dump("select * from alg_commain order by ID") + QLatin1Char('#') +
           Dump("select * from alg_comdetail order by ID") + QLatin1Char('#') +
           Dump("select * from alg_stockstatistic order by secucode, hqtype, hqdate, rowid");
  }
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

  MarketFolder folder_;
  ScriptedClock clock_;
  ScriptedDebug log_;
  test::TempDatabase temp_;
  FailingDatabase database_{temp_.Service()};
  LocalDatabaseReader reader_{database_};
  MarketData data_{clock_, log_, reader_};
};

TEST_F(ImportTest, PortfoliosAndHoldingsStandInTheDatabase) {
  const ImportResult result = Import(kGood);
  EXPECT_TRUE(result.problems.empty());
  EXPECT_TRUE(result.warnings.isEmpty()) << result.warnings.join(QLatin1Char('\n')).toStdString();
  EXPECT_EQ(result.portfolios, 2);
  EXPECT_EQ(result.holdings, 5);
  EXPECT_EQ(
      Dump("select COMNAME,ZHFG,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG from alg_commain order by ID"),
      QStringLiteral("稳健一号||3111.02|0|0|0|0|2024-05-29|1\n"
                     "进取(2)_A-b||3111.02|0|0|0|0|2024-05-29|1"));
  // 1000 x 8.00 = 8000 and 500 x 34 = 17000 of 25000; the other weights by Python's shortest repr.
  EXPECT_EQ(Dump("select b.COMNAME,a.SecuCode,a.PZSL,a.PZBL,a.BUYPRICE from alg_comdetail a join alg_commain b on "
                 "a.MAINID = b.ID order by a.ID"),
            QStringLiteral("稳健一号|1600000|1000|0.32|8\n"
                           "稳健一号|1600036|500|0.68|34\n"
                           "进取(2)_A-b|1000001|300|0.1438879647049528|11.23\n"
                           "进取(2)_A-b|1300750|100|0.8536754640910053|199.88\n"
                           "进取(2)_A-b|1600000|7|0.002436571204042018|8.15"));
  EXPECT_FALSE(temp_.Service().InTransaction());
}

TEST_F(ImportTest, StatementsAreTheModulesOwn) {
  ASSERT_TRUE(Import("name,code,quantity,price\n甲,600000,1000,8.00\n甲,600036,500,34\n").problems.empty());
  const QStringList expected = {
      QStringLiteral("select count(COMNAME) from alg_commain where COMNAME='甲'"),
      QStringLiteral("start"),
      QStringLiteral("select gen_id(ALG_ROWID_MAIN,1) from rdb$database"),
      QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values "
                     "(gen_id(ALG_ROWID_DETAIL,1),1,1600000,1000,0.32,8.00)"),
      QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values "
                     "(gen_id(ALG_ROWID_DETAIL,1),1,1600036,500,0.68,34)"),
      QStringLiteral("insert into alg_commain (ID,COMNAME,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG)"
                     "values(1,'甲',3111.02,0,0,0,0,'2024-05-29',1)"),
      QStringLiteral("delete from alg_stockstatistic where secucode = 1600000"),
      QStringLiteral("insert into alg_stockstatistic (secucode,closeprice,hqtype,rowid,ggqjsyl,pjsyl,hqdate,"
                     "oldcloseprice,sylbzc,islastday,startdate,enddate) "
                     "values(1600000,8.15,0,1,0.01,0.005,20240528,8.1,0.02,0,20230601,20240529)")};
  EXPECT_EQ(database_.calls.mid(0, expected.size()), expected);
  EXPECT_EQ(database_.calls.last(), QStringLiteral("commit"));
}

TEST_F(ImportTest, StatisticsAreReplaced) {
  temp_.Service().Execute(
      QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate) values(1600000,0,20200102)"));
  temp_.Service().Execute(
      QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate) values(1,0,20200102)"));
  temp_.Service().Execute(
      QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate) values(1601001,0,20200102)"));
  ASSERT_TRUE(Import(kGood).warnings.isEmpty());
  EXPECT_EQ(Dump("select secucode,count(*),min(hqdate) from alg_stockstatistic group by secucode order by secucode"),
            QStringLiteral("1|3|20240528\n399001|3|20240528\n399300|3|20240528\n1000001|3|20240528\n"
                           "1300750|3|20240528\n1600000|3|20240528\n1600036|3|20240528\n1601001|1|20200102"));
  EXPECT_EQ(Dump("select * from alg_stockstatistic where secucode = 1600036 and hqtype = 0 and rowid = 2"),
            QStringLiteral("1600036|8.15|0|2|-0.002|0.005|20240529|8.2|0.02|1|20230601|20240529"));
}

TEST_F(ImportTest, MissingAndDamagedBaseDataAreWarnings) {
  ASSERT_TRUE(QFile::remove(folder_.File(StockFile("600000"))));
  folder_.WriteBytes(StockFile("600036"), "rubbish");
  std::vector<QStringList> rows = StatisticsRows("199.88");
  rows[1][5] = QStringLiteral("20240230");
  folder_.Write(StockFile("300750"), MakeTable(StatisticsHeadings(), rows));
  QStringList headings = StatisticsHeadings();
  headings[4] = QStringLiteral("pjsyl:text");
  rows = StatisticsRows("11.23");
  rows[2][4] = QStringLiteral("1); drop table x");
  folder_.Write(StockFile("000001"), MakeTable(headings, rows));
  folder_.Write(QStringLiteral("QMTL/TZZH/Day250/指数/allzs.dat"),
                MakeTable(StatisticsHeadings(), StatisticsRows("1")));
  temp_.Service().Execute(
      QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate) values(1600000,0,20200102)"));
  const ImportResult result = Import(kGood);
  EXPECT_EQ(result.portfolios, 2);
  ASSERT_EQ(result.warnings.size(), 5);
  const char* expected[][2] = {{"000001.dat", "pjsyl"},
                               {"300750.dat", "20240230"},
                               {"600000.dat", "不存在"},
                               {"600036.dat", "无法使用"},
                               {"allzs.dat", "SecuCode"}};
  for (int i = 0; i < 5; ++i) {
    EXPECT_TRUE(result.warnings[i].contains(QString::fromUtf8(expected[i][0]))) << result.warnings[i].toStdString();
    EXPECT_TRUE(result.warnings[i].contains(QString::fromUtf8(expected[i][1]))) << result.warnings[i].toStdString();
  }
  EXPECT_EQ(Dump("select secucode from alg_stockstatistic"), QStringLiteral("1600000"));  // what was there stays
}

TEST_F(ImportTest, BaseDataOfAnUnknownIndexAreNotTaken) {
  std::vector<QStringList> rows = {QStringList{QStringLiteral("1600000")} + StatisticsRows("1")[0]};
  folder_.Write(QStringLiteral("QMTL/TZZH/Day250/指数/allzs.dat"),
                MakeTable(QStringList{QStringLiteral("SecuCode:integer")} + StatisticsHeadings(), rows));
  const ImportResult result = Import(kGood);
  ASSERT_EQ(result.warnings.size(), 1);
  EXPECT_TRUE(result.warnings[0].contains(QStringLiteral("1600000"))) << result.warnings[0].toStdString();
}

TEST_F(ImportTest, EmptyBaseDataValuesBecomeZero) {
  std::vector<QStringList> rows = {StatisticsRows("8.15")[0]};
  for (const int column : {0, 5, 9}) rows[0][column] = QStringLiteral("NULL");
  folder_.Write(StockFile("600000"), MakeTable(StatisticsHeadings(), rows));
  ASSERT_TRUE(Import(kGood).warnings.isEmpty());
  EXPECT_EQ(Dump("select * from alg_stockstatistic where secucode = 1600000"),
            QStringLiteral("1600000|0|0|1|0.01|0.005|0|8.1|0.02|0|0|20240529"));
}

TEST_F(ImportTest, HeadingsInAnyOrderAndLanguage) {
  int number = 0;
  for (const char* text : {"code,name,price,quantity\n600000,组合%1,8,100\n600036,组合%1,34,100\n",
                           "Price , QUANTITY,Code,Name\n8,100,600000,组合%1\n34,100,600036,组合%1\n",
                           "组合名称,股票代码,数量(股),买入价(元)\n组合%1,600000,100,8\n组合%1,600036,100,34\n",
                           "组合名称,证券代码,数量（股）,价格（元）\n组合%1,600000,100,8\n组合%1,600036,100,34\n",
                           "名称,代码,数量,价格\r\n组合%1,600000,100,8\r\n组合%1,600036,100,34\r\n",
                           "\xEF\xBB\xBFname,code,quantity,price\n组合%1,600000,100,8\n组合%1,600036,100,34",
                           "\"name\",\"code\",\"quantity\",\"price\"\n\"组合%1\",\"600000\",\"100\",\"8\"\n组合%1 , "
                           "600036 ,100,34\n\n,,,\n"}) {
    const QByteArray csv = QString::fromUtf8(text).arg(++number).toUtf8();
    const ImportResult result = Import(csv);
    EXPECT_EQ(result.portfolios, 1) << text << (result.problems.empty() ? "" : result.problems[0].reason.toStdString());
    EXPECT_EQ(result.holdings, 2) << text;
  }
  EXPECT_EQ(Dump("select distinct SecuCode,PZSL,BUYPRICE from alg_comdetail order by SecuCode"),
            QStringLiteral("1600000|100|8\n1600036|100|34"));
}

TEST_F(ImportTest, Gb18030FromASpreadsheet) {
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

TEST_F(ImportTest, EachKindOfBadLine) {
  ExpectBadLine(QStringLiteral(",600000,100,8"), "组合名称为空");
  ExpectBadLine(QStringLiteral("a'b,600000,100,8"), "“'”");
  ExpectBadLine(QStringLiteral("a b,600000,100,8"), "“ ”");
  ExpectBadLine(QStringLiteral("\"a\"\"b\",600000,100,8"), "“\"”");
  ExpectBadLine(QStringLiteral("\"a,b\",600000,100,8"), "“,”");
  ExpectBadLine(QStringLiteral("a.b,600000,100,8"), "“.”");
  ExpectBadLine(QString(41, u'长') + QStringLiteral(",600000,100,8"), "41个字符");
  ExpectBadLine(QStringLiteral("甲,,100,8"), "股票代码为空");
  ExpectBadLine(QStringLiteral("甲,1,100,8"), "不足六位");
  ExpectBadLine(QStringLiteral("甲,00001,100,8"), "不足六位");
  ExpectBadLine(QStringLiteral("甲,1600000,100,8"), "多于六位");
  ExpectBadLine(QStringLiteral("甲,60000O,100,8"), "不是六位数字");
  ExpectBadLine(QStringLiteral("甲,６０００００,100,8"), "不是六位数字");
  ExpectBadLine(QStringLiteral("甲,SH600000,100,8"), "不是六位数字");
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

TEST_F(ImportTest, LimitsThemselvesAreAccepted) {
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

TEST_F(ImportTest, TwoToTenHoldings) {
  EXPECT_EQ(Problems(PortfolioOf(1)), QStringList{QStringLiteral("2: 组合“甲”有1只股票，应为2到10只")});
  EXPECT_EQ(Problems(PortfolioOf(11)), QStringList{QStringLiteral("2: 组合“甲”有11只股票，应为2到10只")});
  EXPECT_EQ(Import(PortfolioOf(10)).holdings, 10);
}

TEST_F(ImportTest, AStockOnlyOnceInAPortfolio) {
  const QStringList problems = Problems(
      "name,code,quantity,price\n甲,600000,100,8\n乙,600000,100,8\n甲,600036,100,34\n甲,600000,200,8\n乙,600036,1,34\n"
      "甲,600000,bad,8\n");
  ASSERT_EQ(problems.size(), 3);
  EXPECT_EQ(problems[0], QStringLiteral("5: 组合“甲”中股票600000与第2行重复"));
  EXPECT_TRUE(problems[1].startsWith(QStringLiteral("7: 数量")));
  EXPECT_EQ(problems[2], QStringLiteral("7: 组合“甲”中股票600000与第2行重复"));
}

TEST_F(ImportTest, NamesInTheDatabaseAreTaken) {
  ASSERT_EQ(Import(kGood).portfolios, 2);
  const QStringList problems = Problems(QByteArray(kGood) + "新,600000,1,x\n");
  ASSERT_EQ(problems.size(), 4);
  EXPECT_EQ(problems[0], QStringLiteral("2: 已有名称为“稳健一号”的组合"));
  EXPECT_EQ(problems[1], QStringLiteral("3: 已有名称为“进取(2)_A-b”的组合"));
  EXPECT_TRUE(problems[2].startsWith(QStringLiteral("7: 买入价")));
  EXPECT_TRUE(problems[3].startsWith(QStringLiteral("7: 组合“新”有1只")));
}

TEST_F(ImportTest, EveryBadLineIsNamed) {
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

TEST_F(ImportTest, FilesThatAreNoTable) {
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

TEST_F(ImportTest, FromAFile) {
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

TEST_F(ImportTest, NeedsAnIndexLevel) {
  folder_.WriteQuotes({{QStringLiteral("1600000"), QStringLiteral("8.15"), QStringLiteral("8.2")}});
  MarketData bare(clock_, log_, reader_);
  bare.Load(folder_.Path());
  const ImportServices services{database_, bare, bare, folder_.Path()};
  try {
    (void)ImportPortfolios(kGood, services);
    ADD_FAILURE();
  } catch (const Error& error) {
    EXPECT_EQ(error.Category(), ErrorCategory::Refused);
  }
  EXPECT_EQ(Everything(), QStringLiteral("##"));
}

TEST_F(ImportTest, AnOpenTransactionIsNotJoined) {
  temp_.Service().StartTransaction();
  EXPECT_THROW((void)Import(kGood), Error);
  temp_.Service().RollBack();
  EXPECT_EQ(Everything(), QStringLiteral("##"));
}

TEST_F(ImportTest, ProgressRunsToItsTotal) {
  std::vector<std::pair<int, int>> seen;
  ASSERT_EQ(Import(kGood, [&](int done, int total) { return seen.emplace_back(done, total), true; }).portfolios, 2);
  ASSERT_EQ(seen.size(), 8U);  // 2 portfolios, 4 stocks, the indices, the end
  for (int i = 0; i < 8; ++i) EXPECT_EQ(seen[static_cast<std::size_t>(i)], std::pair(i, 7));
}

TEST_F(ImportTest, GivingUpAtAnyStepWritesNothing) {
  for (int stop = 0; stop <= 7; ++stop) {
    const ImportResult result = Import(kGood, [stop](int done, int) { return done < stop; });
    EXPECT_TRUE(result.cancelled) << stop;
    EXPECT_EQ(result.portfolios, 0);
    EXPECT_EQ(Everything(), QStringLiteral("##")) << stop;
    EXPECT_FALSE(temp_.Service().InTransaction());
  }
}

TEST_F(ImportTest, AnyFailingStatementRollsEverythingBack) {
  temp_.Service().Execute(
      QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate) values(1600000,0,20200102)"));
  const QString before = Everything();
  qsizetype calls = 0;
  {
    FailingDatabase probe(temp_.Service());
    const ImportServices services{probe, data_, data_, folder_.Path()};
    (void)ImportPortfolios(kGood, services, [](int done, int total) { return done < total; });  // all but the commit
    calls = probe.calls.size();  // with a roll-back in place of the commit
    ASSERT_EQ(probe.calls.last(), QStringLiteral("rollback"));
  }
  ASSERT_EQ(Everything(), before);
  ASSERT_GT(calls, 35);
  for (qsizetype failAt = 1; failAt <= calls; ++failAt) {
    for (const bool refuse : {false, true}) {
      FailingDatabase failing(temp_.Service());
      failing.failAt = failAt;
      failing.refuseInstead = refuse;
      const ImportServices services{failing, data_, data_, folder_.Path()};
      EXPECT_THROW((void)ImportPortfolios(kGood, services), Error) << failAt;
      ASSERT_EQ(Everything(), before) << failAt << ' ' << failing.calls.last().toStdString();
      ASSERT_FALSE(temp_.Service().InTransaction()) << failAt;
    }
  }
  EXPECT_EQ(Import(kGood).portfolios, 2);  // and the database is as good as ever
}

/// Close of the last line of a file of daily bars (date,open,high,low,close,volume).
double LastClose(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return -1;
  return file.readAll().trimmed().split('\n').last().split(',')[4].toDouble();
}

/// With folders as the producer makes them.
class ProducedFolderTest : public testing::Test {
 protected:
  ImportResult Import(const QByteArray& csv) {
    return ImportPortfolios(csv, {temp_.Service(), data_, data_, data_.Folder()});
  }
  std::int64_t Count(const char* sql) { return temp_.Service().Count(QString::fromLatin1(sql)); }

  QTemporaryDir folder_;
  ScriptedClock clock_;
  ScriptedDebug log_;
  test::TempDatabase temp_;
  LocalDatabaseReader reader_{temp_.Service()};
  MarketData data_{clock_, log_, reader_};
};

TEST_F(ProducedFolderTest, SimulatedMarket) {
  SimulationOptions simulation;
  simulation.securities = 20;
  simulation.days = 60;
  simulation.outFolder = folder_.filePath(QStringLiteral("csv"));
  WriteSimulatedMarket(simulation);
  BuildOptions build;
  build.barsFolder = simulation.outFolder + QStringLiteral("/bars");
  build.indicesFolder = simulation.outFolder + QStringLiteral("/indices");
  build.securitiesFile = simulation.outFolder + QStringLiteral("/securities.csv");
  build.datesFile = simulation.outFolder + QStringLiteral("/trading_dates.csv");
  build.outFolder = folder_.filePath(QStringLiteral("data"));
  build.days = 40;
  build.isSimulated = true;
  BuildDataFolder(build);
  data_.Load(build.outFolder);
  const std::vector<int> stocks = data_.CodeNumbersOf(10);
  ASSERT_EQ(stocks.size(), 20U);
  QByteArray csv = "name,code,quantity,price\n";
  for (const int stock : {stocks[0], stocks[1]}) csv += "甲," + QByteArray::number(stock).right(6) + ",100,10\n";
  const ImportResult result = Import(csv);
  EXPECT_EQ(result.holdings, 2);
  EXPECT_TRUE(result.warnings.isEmpty()) << result.warnings.join(QLatin1Char('\n')).toStdString();
  EXPECT_TRUE(data_.IsSimulated());
  EXPECT_EQ(Count("select count(*) from alg_stockstatistic where secucode = 1 and hqtype = 0"), 40);
  EXPECT_EQ(Count("select count(distinct secucode) from alg_stockstatistic"), 5);
}

TEST_F(ProducedFolderTest, RealMarket) {
  const QString source = qEnvironmentVariable("HOLDWISE_MARKET_DATA");
  if (source.isEmpty()) GTEST_SKIP() << "no real market data";
  const QString bars = folder_.filePath(QStringLiteral("bars"));
  ASSERT_TRUE(QDir().mkpath(bars));
  for (const char* file : {"600519.csv", "600036.csv"}) {
    ASSERT_TRUE(QFile::link(source + QStringLiteral("/bars/") + QLatin1String(file),
                            bars + QLatin1Char('/') + QLatin1String(file)));
  }
  BuildOptions build;
  build.barsFolder = bars;
  build.indicesFolder = source + QStringLiteral("/indices");
  build.securitiesFile = source + QStringLiteral("/securities.csv");
  build.datesFile = source + QStringLiteral("/trading_dates.csv");
  build.outFolder = folder_.filePath(QStringLiteral("data"));
  BuildDataFolder(build);
  data_.Load(build.outFolder);
  const ImportResult result = Import("名称,代码,数量,价格\n白酒,600519,100,1400.00\n白酒,600036,1000,40\n");
  EXPECT_EQ(result.portfolios, 1);
  EXPECT_TRUE(result.warnings.isEmpty()) << result.warnings.join(QLatin1Char('\n')).toStdString();
  EXPECT_EQ(data_.CurrentDate(), 20260108);
  EXPECT_EQ(Count("select count(*) from alg_stockstatistic where secucode = 1600519 and hqtype = 0"), 250);
  // The last lines of the bar files themselves.
  EXPECT_EQ(LastClose(source + QStringLiteral("/bars/600519.csv")), data_.StockNowData(1600519).currentPrice);
  EXPECT_EQ(LastClose(source + QStringLiteral("/indices/1.csv")),
            temp_.Service().Scalar(QStringLiteral("select ZSCLOSEPRICE from alg_commain")).real);
}

}  // namespace
}  // namespace holdwise
