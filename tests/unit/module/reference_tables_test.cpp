// SPDX-License-Identifier: MIT
#include "calc/reference_tables.h"

#include "engine_fixture.h"

namespace holdwise::calc {
namespace {

const std::vector<ColumnSpec> kRateColumns = {
    {"ID", ColumnType::Integer},       {"SOURCEID", ColumnType::Integer}, {"SOURCEDB", ColumnType::Text},
    {"SOURCETABLE", ColumnType::Text}, {"UPDATEID", ColumnType::Integer}, {"CTIME", ColumnType::DateTime},
    {"UPTIME", ColumnType::DateTime},  {"ISVAILD", ColumnType::Text},     {"REMARK", ColumnType::Text},
    {"DEPOSITTYPE", ColumnType::Text}, {"TERM", ColumnType::Text},        {"INTERESTCHANGEDATE", ColumnType::DateTime},
    {"INTEREST", ColumnType::Real},    {"INTERESTCODE", ColumnType::Text}};

// Milliseconds since 1970: 20 and 20.5 days.
std::vector<QString> Rate(const char* id, const char* term, const char* interest) {
  return {id,
          "5",
          "db",
          "table",
          "3",
          "1728000000",
          "1771200000",
          "1",
          "",
          "定期存款整存整取",
          QString::fromUtf8(term),
          "1728000000",
          interest,
          "code"};
}

class ReferenceTables : public EngineTest {
 protected:
  QStringList Rates() { return Rows("select ID,TERM,INTEREST from alg_rmbinterestrate order by ID"); }
  QStringList Estimates() { return Rows("select ID,SECUCODE,CTIME,PRICE from ALG_STOCKESTIMATEVALUE order by ID"); }
  static ResultSet EstimateFile(const std::vector<std::vector<QString>>& rows) {
    return TableOf({{"SECUCODE", ColumnType::Text}, {"ID", ColumnType::Integer}, {"PRICE", ColumnType::Text}}, rows);
  }
};

TEST_F(ReferenceTables, RatesReplaceTheTable) {
  ReplaceInterestRates(Database(), TableOf(kRateColumns, {Rate("1", "一年", "1.5"), Rate("2", "二年", "2.1")}));
  EXPECT_EQ(Rates(), (QStringList{QStringLiteral("1|一年|1.5"), QStringLiteral("2|二年|2.1")}));
  ReplaceInterestRates(Database(), TableOf(kRateColumns, {Rate("3", "一年", "1.75")}));
  EXPECT_EQ(Rows("select * from alg_rmbinterestrate"),
            QStringList{QStringLiteral("3|5|db|table|3|1970-01-21|1970-01-21 12:00:00|1|-|定期存款整存整取|一年|"
                                       "1970-01-21|1.75|code")});
}

TEST_F(ReferenceTables, ANegativeEstimateIsRefusedAndNamed) {
  ReplaceEstimateValues(Database(), EstimateFile({{"600000", "1", "9"}}));
  try {
    ReplaceEstimateValues(Database(), EstimateFile({{"000001", "1", "8"}, {"600000", "2", "-9.5"}}));
    ADD_FAILURE();
  } catch (const Error& error) {
    EXPECT_EQ(error.Category(), ErrorCategory::Refused);
    const QString text = QString::fromUtf8(error.what());
    EXPECT_TRUE(text.contains(QStringLiteral("第2行")) && text.contains(QStringLiteral("PRICE"))) << text.toStdString();
  }
  EXPECT_EQ(Estimates(), QStringList{"1|600000|19910101|9"});
}

TEST_F(ReferenceTables, AFileWithoutRowsChangesNothing) {
  ReplaceInterestRates(Database(), TableOf(kRateColumns, {Rate("1", "一年", "1.5")}));
  ReplaceInterestRates(Database(), TableOf(kRateColumns, {}));
  ReplaceInterestRates(Database(), ResultSet());
  EXPECT_EQ(Rates().size(), 1);
  ReplaceEstimateValues(Database(), EstimateFile({{"600000", "1", "9"}}));
  ReplaceEstimateValues(Database(), EstimateFile({}));
  EXPECT_EQ(Estimates().size(), 1);
}

TEST_F(ReferenceTables, TextsSurviveAsTheyAre) {
  auto row = Rate("1", "one's ''year''; --", "1.5");
  row[8] = "'";
  ReplaceInterestRates(Database(), TableOf(kRateColumns, {row}));
  EXPECT_EQ(Rows("select TERM,REMARK from alg_rmbinterestrate"), QStringList{"one's ''year''; --|'"});
  ReplaceEstimateValues(Database(), EstimateFile({{"6'0", "1", "9"}}));
  EXPECT_EQ(Estimates(), QStringList{"1|6'0|19910101|9"});
}

TEST_F(ReferenceTables, TheFirstRowOfASecurityWins) {
  ReplaceEstimateValues(Database(), EstimateFile({{"000009", "9", "1"}}));
  ReplaceEstimateValues(Database(), EstimateFile({{"600000", "1", "9.5"}, {"000001", "2", ""}, {"600000", "3", "8"}}));
  // An empty price is 0, the time is always the same, and what the file does not list is gone.
  EXPECT_EQ(Estimates(), (QStringList{"1|600000|19910101|9.5", "2|000001|19910101|0"}));
}

TEST_F(ReferenceTables, APriceThatIsEmptyOrNullIsZero) {
  ResultSet file = EstimateFile({{"600000", "1", "9"}, {"000001", "2", "9"}});
  file.SetText(0, file.Column("PRICE"), "");
  file.SetNull(1, file.Column("PRICE"));
  ASSERT_FALSE(file.IsNull(0, file.Column("PRICE")));
  ReplaceEstimateValues(Database(), file);
  EXPECT_EQ(Estimates(), (QStringList{"1|600000|19910101|0", "2|000001|19910101|0"}));
}

TEST_F(ReferenceTables, BadValuesKeepTheTable) {
  ReplaceInterestRates(Database(), TableOf(kRateColumns, {Rate("1", "一年", "1.5")}));
  ReplaceEstimateValues(Database(), EstimateFile({{"600000", "1", "9"}}));
  for (const char* bad : {"abc", "1,2", "0) --", "nan"}) {
    EXPECT_THROW(ReplaceEstimateValues(Database(), EstimateFile({{"000001", "2", "8"}, {"000002", "3", bad}})), Error);
  }
  auto columns = kRateColumns;
  columns[12].type = ColumnType::Text;
  EXPECT_THROW(ReplaceInterestRates(Database(), TableOf(columns, {Rate("2", "一年", "x")})), Error);
  columns = kRateColumns;
  columns[5].type = ColumnType::Integer;
  EXPECT_THROW(ReplaceInterestRates(Database(), TableOf(columns, {Rate("2", "一年", "1")})), Error);
  for (std::size_t missing = 0; missing < kRateColumns.size(); ++missing) {
    columns = kRateColumns;
    columns.erase(columns.begin() + static_cast<std::ptrdiff_t>(missing));
    auto row = Rate("2", "一年", "1");
    row.erase(row.begin() + static_cast<std::ptrdiff_t>(missing));
    EXPECT_THROW(ReplaceInterestRates(Database(), TableOf(columns, {row})), Error) << missing;
  }
  EXPECT_EQ(Rates(), QStringList{QStringLiteral("1|一年|1.5")});
  EXPECT_EQ(Estimates(), QStringList{"1|600000|19910101|9"});
  EXPECT_FALSE(Database().InTransaction());
}

TEST_F(ReferenceTables, EveryCallMayFail) {
  ReplaceInterestRates(Database(), TableOf(kRateColumns, {Rate("1", "一年", "1.5")}));
  ReplaceEstimateValues(Database(), EstimateFile({{"600000", "1", "9"}}));
  const ResultSet rates = TableOf(kRateColumns, {Rate("2", "一年", "1"), Rate("3", "二年", "2")});
  const ResultSet estimates = EstimateFile({{"000001", "2", "8"}, {"000002", "3", "7"}});
  for (const auto kind : {test::FailurePlan::Kind::Throws, test::FailurePlan::Kind::Refuses}) {
    // Start, delete, two inserts, commit.
    for (int call = 0; call < 5; ++call) {
      Plan().FailCall(call, kind);
      EXPECT_THROW(ReplaceInterestRates(Database(), rates), Error) << call;
      Plan().FailCall(call, kind);
      EXPECT_THROW(ReplaceEstimateValues(Database(), estimates), Error) << call;
      Plan().FailNothing();
      EXPECT_EQ(Rates(), QStringList{QStringLiteral("1|一年|1.5")});
      EXPECT_EQ(Estimates(), QStringList{"1|600000|19910101|9"});
    }
  }
  ReplaceInterestRates(Database(), rates);
  ReplaceEstimateValues(Database(), estimates);
  EXPECT_EQ(Rates().size(), 2);
  EXPECT_EQ(Estimates().size(), 2);
}

TEST_F(ReferenceTables, LongFilesStepNowAndThen) {
  std::vector<std::vector<QString>> rows;
  for (int row = 0; row < 250; ++row) rows.push_back({QString::number(row), QString::number(row), "1"});
  int steps = 0;
  ReplaceEstimateValues(Database(), EstimateFile(rows), [&] { ++steps; });
  EXPECT_EQ(steps, 2);
}

}  // namespace
}  // namespace holdwise::calc
