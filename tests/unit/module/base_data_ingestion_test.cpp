// SPDX-License-Identifier: MIT
#include "base_data_fixture.h"

namespace holdwise::calc {
namespace {

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

/// A file may leave its edition out, and of data without an edition any file is taken.
TEST_F(Ingestion, AFileOfAnotherEditionIsRefused) {
  const auto file = [](const char* edition) {
    ResultSet table = TextFile({Row(), Dated("20240530")});
    const int column = table.AddColumn("edition", ColumnType::Text);
    if (*edition != '\0') table.SetText(0, column, edition);
    return table;
  };
  const auto ingest = [&](const char* named, const char* edition) {
    IngestBaseData(Database(), file(named), Day250(), kStock, {}, QString::fromLatin1(edition));
  };
  Store("1600000", "0", "20240101");
  EXPECT_THROW(ingest("b2", "a1"), Error);
  EXPECT_EQ(Stored(), QStringList{"1600000|0|20240101|0"});
  EXPECT_EQ(Rows("select SECUCODE,EDITION from alg_statisticedition"), QStringList());
  for (const auto& [named, edition] : {std::pair("b2", ""), std::pair("", "a1"), std::pair("a1", "a1")}) {
    Run("delete from alg_stockstatistic");
    ingest(named, edition);
    EXPECT_EQ(Stored(), (QStringList{"1600000|0|20240529|0", "1600000|0|20240530|0"})) << named << " " << edition;
  }
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

}  // namespace
}  // namespace holdwise::calc
