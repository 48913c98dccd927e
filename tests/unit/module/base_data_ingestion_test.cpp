// SPDX-License-Identifier: MIT
#include "calc/base_data_ingestion.h"

#include <limits>
#include <map>

#include "engine_fixture.h"

namespace holdwise::calc {
namespace {

const QString kStock = QStringLiteral("1600000");

/// Fields of one row; what a test does not set is a plausible daily row.
struct Row {
  QString code = "1600000", close = "10.5", type = "0", rowId = "1", periodReturn = "0.01", mean = "0.002";
  QString date = "20240529", oldClose = "10.25", deviation = "0.015", last = "0", start = "20240501", end = "20240529";
};

/// A file whose fields are all texts, so that anything may stand in them.
ResultSet TextFile(const std::vector<Row>& rows, bool withCode = false) {
  std::vector<ColumnSpec> columns;
  if (withCode) columns.push_back({"SecuCode", ColumnType::Text});
  for (const char* name : {"closeprice", "hqtype", "rowid", "ggqjsyl", "pjsyl", "hqdate", "oldcloseprice", "sylbzc",
                           "islastday", "startdate", "enddate"}) {
    columns.push_back({name, ColumnType::Text});
  }
  std::vector<std::vector<QString>> cells;
  for (const Row& row : rows) {
    std::vector<QString> line = {row.close,    row.type,      row.rowId, row.periodReturn, row.mean, row.date,
                                 row.oldClose, row.deviation, row.last,  row.start,        row.end};
    if (withCode) line.insert(line.begin(), row.code);
    cells.push_back(line);
  }
  return TableOf(columns, cells);
}

Row Dated(const char* date, const char* type = "0") {
  Row row;
  row.date = QString::fromLatin1(date);
  row.type = QString::fromLatin1(type);
  return row;
}

class Ingestion : public EngineTest {
 protected:
  static BaseDataFamily Day250() { return ClassifyBaseData("QMTL\\TZZH\\Day250\\股票\\600000.dat"); }
  static BaseDataFamily Day250Index() { return ClassifyBaseData("QMTL\\TZZH\\Day250\\指数\\allzs.dat"); }
  static BaseDataFamily Day20() { return ClassifyBaseData("QMTL\\TZZH\\Day20\\股票\\600000.dat"); }
  static BaseDataFamily Today() { return ClassifyBaseData("QMTL\\TZZH\\today\\股票\\600000.dat"); }

  void Ingest(const ResultSet& file, const BaseDataFamily& family, const QString& code = kStock) {
    IngestBaseData(Database(), file, family, code, [](int days) {
      const std::map<int, int> dates = {{20, 20240430}, {2, 20240527}};
      return dates.at(days);
    });
  }
  void Store(const char* code, const char* type, const char* date, const char* last = "0") {
    Run(QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate,islastday,closeprice) values "
                       "(%1,%2,%3,%4,1)")
            .arg(QLatin1String(code), QLatin1String(type), QLatin1String(date), QLatin1String(last)));
  }
  QStringList Stored() {
    return Rows(
        "select secucode,hqtype,hqdate,islastday from alg_stockstatistic order by secucode,hqtype,hqdate,"
        "closeprice");
  }
};

TEST_F(Ingestion, NamesDecideTheFamily) {
  EXPECT_TRUE(Day250().is250);
  EXPECT_FALSE(Day250().is20);
  EXPECT_FALSE(Day250().isIndex);
  EXPECT_TRUE(Day250Index().is250);
  EXPECT_TRUE(Day250Index().isIndex);
  EXPECT_TRUE(Day20().is20);
  EXPECT_FALSE(Day20().is250);
  EXPECT_TRUE(Today().isToday);
  EXPECT_FALSE(Today().is20);
}

TEST_F(Ingestion, AFileReplacesTheRowsOfItsSecurity) {
  Store("1600000", "0", "20200101", "1");
  Store("1600000", "2", "20200101", "1");
  Store("1000001", "0", "20200101", "1");
  Ingest(TextFile({Dated("20240528"), Dated("20240529"), Dated("20240524", "1")}), Day250());
  EXPECT_EQ(Stored(), (QStringList{"1000001|0|20200101|1", "1600000|0|20240528|0", "1600000|0|20240529|0",
                                   "1600000|1|20240524|0"}));
  EXPECT_EQ(Rows("select first 1 closeprice,rowid,ggqjsyl,pjsyl,oldcloseprice,sylbzc,startdate,enddate from "
                 "alg_stockstatistic where secucode = 1600000"),
            QStringList{"10.5|1|0.01|0.002|10.25|0.015|20240501|20240529"});
}

TEST_F(Ingestion, TypedColumnsAreStoredAsTheyAre) {
  ResultSet file;
  for (const char* name : {"closeprice", "ggqjsyl", "pjsyl", "oldcloseprice", "sylbzc"}) {
    file.AddColumn(name, ColumnType::Real);
  }
  for (const char* name : {"HQTYPE", "rowid", "hqdate", "islastday", "startdate", "enddate"}) {
    file.AddColumn(name, ColumnType::Integer);
  }
  file.AppendRow();
  file.SetReal(0, file.Column("closeprice"), 0.1 + 0.2);
  file.SetReal(0, file.Column("ggqjsyl"), -1.5e-9);
  file.SetInteger(0, file.Column("hqtype"), 0);
  file.SetInteger(0, file.Column("hqdate"), 20240529);
  Ingest(file, Day250());
  const ResultSet stored = Database().Query(QStringLiteral("select * from alg_stockstatistic"));
  ASSERT_EQ(stored.RowCount(), 1);
  EXPECT_EQ(stored.RealAt(0, stored.Column("closeprice")), 0.1 + 0.2);
  EXPECT_EQ(stored.RealAt(0, stored.Column("ggqjsyl")), -1.5e-9);
  // Null fields take the defaults.
  EXPECT_EQ(stored.RealAt(0, stored.Column("pjsyl")), 0);
  EXPECT_EQ(stored.IntegerAt(0, stored.Column("startdate")), 0);
}

TEST_F(Ingestion, EmptyFieldsTakeTheirDefaults) {
  Row row;
  row.close = row.rowId = row.periodReturn = row.mean = row.date = row.oldClose = row.deviation = QString();
  row.last = row.start = row.end = QString();
  Ingest(TextFile({row}), Day250());
  EXPECT_EQ(Rows("select closeprice,rowid,ggqjsyl,pjsyl,hqdate,oldcloseprice,sylbzc,islastday,startdate,enddate from "
                 "alg_stockstatistic"),
            QStringList{"0|0|0|0|0|0|0|0|0|0"});
}

TEST_F(Ingestion, AnEmptyStartDateTrimsNothing) {
  Store("1600000", "0", "20200101");
  Row row;
  row.start = QString();
  Ingest(TextFile({row}), Today());
  EXPECT_EQ(Stored(), (QStringList{"1600000|0|20200101|0", "1600000|0|20240529|0"}));
}

TEST_F(Ingestion, TheIndexFileHoldsThreeSecurities) {
  for (const char* code : {"1", "399001", "399300", "1600000"}) Store(code, "0", "20200101", "1");
  std::vector<Row> rows(4, Dated("20240529"));
  rows[0].code = rows[1].code = "1";
  rows[1].type = "1";
  rows[2].code = "399001";
  rows[2].last = "1";
  rows[3].code = "399300";
  Ingest(TextFile(rows, true), Day250Index(), QStringLiteral("1"));
  EXPECT_EQ(Stored(), (QStringList{"1|0|20240529|0", "1|1|20240529|0", "399001|0|20240529|1", "399300|0|20240529|0",
                                   "1600000|0|20200101|1"}));
}

/// The switch opens a series of its own although the type stays: its first row is trimmed by its own start date.
TEST_F(Ingestion, AnotherIndexOpensASeries) {
  std::vector<Row> rows(3, Dated("20240529"));
  rows[0].code = "1";
  rows[1].code = rows[2].code = "399001";
  rows[1].date = "20240430";
  rows[1].start = "20240501";
  Ingest(TextFile(rows, true), Day250Index(), QStringLiteral("1"));
  EXPECT_EQ(Stored(), (QStringList{"1|0|20240529|0", "399001|0|20240529|0"}));
}

/// Whatever would change figures in silence is refused whole, and named.
TEST_F(Ingestion, WhatCannotBeAFileOfItsSecurityIsRefusedWhole) {
  Store("1600000", "0", "20200101", "1");
  Store("1", "0", "20200101", "1");
  const auto with = [](QString Row::*field, const char* text) {
    Row row = Dated("20240528");
    row.*field = QString::fromLatin1(text);
    return row;
  };
  struct Case {
    Row row;
    const char* field;
    bool isIndex = false;
  };
  std::vector<Case> cases = {{with(&Row::code, "1000001"), "SecuCode"},
                             {with(&Row::code, "601600000"), "SecuCode"},
                             {with(&Row::code, "1600000"), "SecuCode", true},
                             {with(&Row::code, "399002"), "SecuCode", true},
                             {Dated("20240529"), "hqdate"}};
  for (const char* type : {"3", "-1", "0.5", "1e300"}) cases.push_back({with(&Row::type, type), "hqtype"});
  for (const char* date : {"0", "20240230", "20241301", "20240500", "20240529.5", "-20240529", "120240529", "1e300"}) {
    cases.push_back({with(&Row::date, date), "hqdate"});
    if (QByteArray(date) == "0") continue;  // a window may have no dates
    cases.push_back({with(&Row::start, date), "startdate"});
    cases.push_back({with(&Row::end, date), "enddate"});
  }
  cases.push_back({with(&Row::close, "-0.01"), "closeprice"});
  for (const char* weekend : {"20240601", "20240602"}) cases.push_back({with(&Row::date, weekend), "hqdate"});
  for (const Case& one : cases) {
    Row first;
    if (one.isIndex) first.code = "1";
    try {
      Ingest(TextFile({first, one.row}, true), one.isIndex ? Day250Index() : Day250(), one.isIndex ? "1" : kStock);
      ADD_FAILURE() << one.field;
    } catch (const Error& error) {
      EXPECT_EQ(error.Category(), ErrorCategory::Refused);
      EXPECT_NE(std::string(error.what()).find("第2行"), std::string::npos) << error.what();
      EXPECT_NE(std::string(error.what()).find(one.field), std::string::npos) << error.what();
    }
    EXPECT_EQ(Stored(), (QStringList{"1|0|20200101|1", "1600000|0|20200101|1"}));
  }
}

TEST_F(Ingestion, DatesOfASeriesAscendUnderOneWindow) {
  const auto refused = [this](const std::vector<Row>& rows) {
    try {
      Ingest(TextFile(rows), Day250());
    } catch (const Error& error) {
      return QString::fromUtf8(error.what());
    }
    return QString();
  };
  const QString text = refused({Dated("20240528"), Dated("20240529"), Dated("20240527")});
  EXPECT_TRUE(text.contains(QStringLiteral("第3行")) && text.contains(QStringLiteral("hqdate"))) << text.toStdString();
  Row other = Dated("20240529");
  other.start = "20240502";
  EXPECT_TRUE(refused({Dated("20240528"), other}).contains(QStringLiteral("startdate")));
  other = Dated("20240529");
  other.end = "20240530";
  EXPECT_TRUE(refused({Dated("20240528"), other}).contains(QStringLiteral("enddate")));
  EXPECT_EQ(Stored(), QStringList());
  // Each type and each index begins anew; weeks and months may end on any day.
  EXPECT_EQ(refused({Dated("20240529"), Dated("20240525", "1"), Dated("20240526", "2")}), QString());
}

TEST_F(Ingestion, AStockFileMayNameItsSecurityOrNone) {
  for (const char* code : {"1600000", "600000", "0", ""}) {
    Row row;
    row.code = QString::fromLatin1(code);
    Ingest(TextFile({row}, true), Day250());
    EXPECT_EQ(Stored(), QStringList{"1600000|0|20240529|0"});
  }
}

TEST_F(Ingestion, TheEditionOfAFileIsKeptWithItsSecurity) {
  const auto ingest = [](const ResultSet& file, const BaseDataFamily& family, const QString& code,
                         const char* edition) {
    IngestBaseData(Database(), file, family, code, {}, QString::fromLatin1(edition));
  };
  const auto editions = [this] { return Rows("select SECUCODE,EDITION from alg_statisticedition order by SECUCODE"); };
  Row index;
  index.code = "1";
  ingest(TextFile({index}, true), Day250Index(), QStringLiteral("1"), "a1");
  ingest(TextFile({Row()}), Day250(), kStock, "a1");
  EXPECT_EQ(editions(), (QStringList{"1|a1", "1600000|a1"}));
  ingest(TextFile({Row()}), Day250(), kStock, "b2");
  ingest(TextFile({index}, true), Day250Index(), QStringLiteral("1"), "");
  EXPECT_EQ(editions(), (QStringList{"1|a1", "1600000|b2"})) << "an unknown one changes nothing";
  Row bad;
  bad.close = "abc";
  EXPECT_THROW(ingest(TextFile({bad}), Day250(), kStock, "c3"), Error);
  EXPECT_EQ(editions(), (QStringList{"1|a1", "1600000|b2"})) << "a refused file has none";
}

/// Each type trims by its own start; a later row of the same series does not trim again.
TEST_F(Ingestion, EveryTypeIsASeries) {
  Store("1600000", "0", "20240101");
  Store("1600000", "1", "20240101");
  Store("1600000", "2", "20240101");
  std::vector<Row> rows = {Dated("20240401"), Dated("20240402"), Dated("20240524", "1")};
  rows[2].start = "20230101";
  Ingest(TextFile(rows), Today());
  EXPECT_EQ(Stored(), (QStringList{"1600000|0|20240402|0", "1600000|1|20240101|0", "1600000|1|20240524|0",
                                   "1600000|2|20240101|0"}));
}

TEST_F(Ingestion, TypesAreComparedAsTexts) {
  host_.fakeUserData.ClearLog();
  IngestBaseData(host_.fakeUserData, TextFile({Dated("20240528", "0"), Dated("20240529", "0.0")}), Day250(), kStock,
                 {});
  std::vector<QString> trims;
  for (const QString& line : host_.fakeUserData.Log()) {
    if (line.startsWith(QStringLiteral("delete from alg_stockstatistic where hqdate <"))) trims.push_back(line);
  }
  EXPECT_EQ(trims,
            (std::vector<QString>{
                "delete from alg_stockstatistic where hqdate < 20240501 and secucode = 1600000 and hqtype = 0",
                "delete from alg_stockstatistic where hqdate < 20240501 and secucode = 1600000 and hqtype = 0.0"}));
}

TEST_F(Ingestion, StatementsInOrder) {
  Row row;
  row.code = "1";
  IngestBaseData(host_.fakeUserData, TextFile({row}, true), Day250Index(), QStringLiteral("1"), {});
  EXPECT_EQ(
      host_.fakeUserData.Log(),
      (std::vector<QString>{
          "start", "delete from alg_stockstatistic where secucode = 1",
          "delete from alg_stockstatistic where secucode = 399001",
          "delete from alg_stockstatistic where secucode = 399300",
          "update alg_stockstatistic set islastday = 0 where secucode = 1",
          "update alg_stockstatistic set islastday = 0 where secucode = 399001",
          "update alg_stockstatistic set islastday = 0 where secucode = 399300",
          "insert into alg_stockstatistic (secucode,closeprice,hqtype,rowid,ggqjsyl,pjsyl,hqdate,oldcloseprice,sylbzc,"
          "islastday,startdate,enddate) values(1,10.5,0,1,0.01,0.002,20240529,10.25,0.015,0,20240501,20240529)",
          "delete from alg_stockstatistic where hqdate < 20240501 and secucode = 1 and hqtype = 0", "commit"}));
}

TEST_F(Ingestion, Day20ReplacesTheDaysBetween) {
  for (const char* date : {"20240429", "20240430", "20240527", "20240528"}) Store("1600000", "0", date, "1");
  Row row = Dated("20240529");
  row.start = "20240101";
  row.last = "1";
  Ingest(TextFile({row}), Day20());
  EXPECT_EQ(Stored(), (QStringList{"1600000|0|20240429|0", "1600000|0|20240528|0", "1600000|0|20240529|1"}));
}

TEST_F(Ingestion, Day20WithoutEnoughTradingDatesChangesNothing) {
  Store("1600000", "0", "20240528", "1");
  EXPECT_THROW(IngestBaseData(Database(), TextFile({Row()}), Day20(), kStock,
                              [](int) -> int { throw Error(ErrorCategory::Refused, "out of range"); }),
               Error);
  EXPECT_EQ(Stored(), QStringList{"1600000|0|20240528|1"});
}

TEST_F(Ingestion, ALastDayOfTodayRemovesEverythingOlder) {
  Store("1600000", "0", "20240528", "1");
  Store("1600000", "1", "20240524", "1");
  Store("1000001", "0", "20240528", "1");
  Row row;
  row.last = "1";
  row.start = "20240101";
  Ingest(TextFile({row}), Today());
  EXPECT_EQ(Stored(), (QStringList{"1000001|0|20240528|1", "1600000|0|20240529|1"}));
}

TEST_F(Ingestion, AFileWithoutRowsStillClears) {
  Store("1600000", "0", "20200101", "1");
  Ingest(TextFile({}), Day250());
  EXPECT_EQ(Stored(), QStringList());
  Store("1600000", "0", "20200101", "1");
  Ingest(TextFile({}), Today());
  EXPECT_EQ(Stored(), QStringList{"1600000|0|20200101|0"});
  // Fields are looked up with the first row only.
  Ingest(ResultSet(), Day250());
  EXPECT_EQ(Stored(), QStringList());
}

TEST_F(Ingestion, BadValuesNameTheirFieldAndChangeNothing) {
  Store("1600000", "0", "20200101", "1");
  const std::vector<std::pair<QString Row::*, const char*>> fields = {
      {&Row::close, "closeprice"},       {&Row::type, "hqtype"},      {&Row::rowId, "rowid"},
      {&Row::periodReturn, "ggqjsyl"},   {&Row::mean, "pjsyl"},       {&Row::date, "hqdate"},
      {&Row::oldClose, "oldcloseprice"}, {&Row::deviation, "sylbzc"}, {&Row::last, "islastday"},
      {&Row::start, "startdate"},        {&Row::end, "enddate"}};
  for (const auto& [field, name] : fields) {
    for (const char* bad : {"abc", "1,2", "0) --", "1;delete from alg_commain", " 1", "inf", "'1'"}) {
      Row row;
      row.*field = QString::fromLatin1(bad);
      try {
        Ingest(TextFile({Dated("20240528"), row}), Day250());
        ADD_FAILURE() << name << bad;
      } catch (const Error& error) {
        EXPECT_EQ(error.Category(), ErrorCategory::Refused);
        EXPECT_NE(std::string(error.what()).find(name), std::string::npos) << error.what();
      }
      EXPECT_EQ(Stored(), QStringList{"1600000|0|20200101|1"});
    }
  }
}

TEST_F(Ingestion, ARealThatIsNoNumberIsNamed) {
  ResultSet file = TextFile({});
  ResultSet real;
  for (int column = 0; column < file.ColumnCount(); ++column) {
    real.AddColumn(file.ColumnName(column),
                   file.ColumnName(column) == "sylbzc" ? ColumnType::Real : ColumnType::Integer);
  }
  real.AppendRow();
  real.SetInteger(0, real.Column("hqtype"), 0);
  real.SetReal(0, real.Column("sylbzc"), std::numeric_limits<double>::quiet_NaN());
  try {
    Ingest(real, Day250());
    ADD_FAILURE();
  } catch (const Error& error) {
    EXPECT_NE(std::string(error.what()).find("sylbzc"), std::string::npos) << error.what();
  }
}

/// Where a field goes into a condition, an empty one breaks the statement.
TEST_F(Ingestion, AnEmptyTypeOrIndexCodeRollsBack) {
  Store("1600000", "0", "20200101", "1");
  Row row;
  row.type = QString();
  EXPECT_THROW(Ingest(TextFile({row}), Day250()), Error);
  row = Row();
  row.code = QString();
  EXPECT_THROW(Ingest(TextFile({row}, true), Day250Index(), QStringLiteral("1")), Error);
  row.code = "1 or 1=1";
  EXPECT_THROW(Ingest(TextFile({row}, true), Day250Index(), QStringLiteral("1")), Error);
  row = Row();
  row.last = "1";
  row.date = QString();
  EXPECT_THROW(Ingest(TextFile({row}), Today()), Error);
  EXPECT_EQ(Stored(), QStringList{"1600000|0|20200101|1"});
}

TEST_F(Ingestion, AMissingFieldChangesNothing) {
  Store("1600000", "0", "20200101", "1");
  const ResultSet whole = TextFile({Row()});
  for (int missing = 0; missing < whole.ColumnCount(); ++missing) {
    ResultSet part;
    for (int column = 0; column < whole.ColumnCount(); ++column) {
      if (column != missing) part.AddColumn(whole.ColumnName(column), ColumnType::Text);
    }
    part.AppendRow();
    try {
      Ingest(part, Day250());
      ADD_FAILURE() << whole.ColumnName(missing);
    } catch (const Error& error) {
      EXPECT_NE(std::string(error.what()).find(whole.ColumnName(missing)), std::string::npos) << error.what();
    }
  }
  EXPECT_THROW(Ingest(whole, Day250Index(), QStringLiteral("1")), Error);
  EXPECT_EQ(Stored(), QStringList{"1600000|0|20200101|1"});
}

TEST_F(Ingestion, AFractionInAWholeColumnChangesNothing) {
  Store("1600000", "0", "20200101", "1");
  Row row;
  row.rowId = "1.5";
  EXPECT_THROW(Ingest(TextFile({row}), Day250()), Error);
  EXPECT_EQ(Stored(), QStringList{"1600000|0|20200101|1"});
}

TEST_F(Ingestion, EveryCallMayFail) {
  Store("1600000", "0", "20200101", "1");
  const ResultSet file = TextFile({Dated("20240528"), Dated("20240529")});
  for (const auto kind : {test::FailurePlan::Kind::Throws, test::FailurePlan::Kind::Refuses}) {
    // Start, delete, clear, insert, trim, insert, commit.
    for (int call = 0; call < 7; ++call) {
      Plan().FailCall(call, kind);
      EXPECT_THROW(Ingest(file, Day250()), Error) << call;
      EXPECT_TRUE(Plan().HasFailed());
      EXPECT_FALSE(Database().InTransaction());
      EXPECT_EQ(Stored(), QStringList{"1600000|0|20200101|1"}) << call;
    }
  }
  Plan().FailNothing();
  Ingest(file, Day250());
  EXPECT_EQ(Stored(), (QStringList{"1600000|0|20240528|0", "1600000|0|20240529|0"}));
}

}  // namespace
}  // namespace holdwise::calc
