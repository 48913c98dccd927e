// SPDX-License-Identifier: MIT
// Files that are refused, and statements that fail.
#include <limits>

#include "base_data_fixture.h"

namespace holdwise::calc {
namespace {

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
