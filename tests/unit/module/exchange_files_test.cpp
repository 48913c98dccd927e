// SPDX-License-Identifier: MIT
#include "common/store/exchange_files.h"

#include "exchange_fixture.h"

namespace holdwise {
namespace {

TEST_F(ExchangeFiles, SavedPortfoliosComeBackInAnEmptyDatabase) {
  Run("insert into alg_commain (ID,ZHFG,MBSYL,FC,BETA,ZSCLOSEPRICE,ISFINISHED,EDITDATE,COMNAME,SAVEFLAG)values("
      "7,'成长',0.2,0.5,1.25,3111.02,1,'2024-05-29','稳健 “一号”',1)");
  Run("insert into alg_commain (ID,COMNAME,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG)values("
      "9,'draft',3000,0,0,0,0,'2024-05-28',0)");
  Run("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values (31,7,1600000,300,0.4,9.55)");
  Run("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values (12,9,1000001,200,0.123456789012,11)");
  SaveZHFile();
  EXPECT_TRUE(host_.debug.Lines().empty());

  test::TempDatabase fresh;
  Use(fresh.Service());
  EXPECT_TRUE(LoadZHFile());
  // The figures are 0 and unfinished whatever the files hold, and the style is not restored.
  EXPECT_EQ(Rows("select ID,COMNAME,ZHFG,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG from alg_commain "
                 "order by ID"),
            (QStringList{QStringLiteral("7|稳健 “一号”|-|3111.02|0|0|0|0|2024-05-29|1"),
                         QStringLiteral("9|draft|-|3000|0|0|0|0|2024-05-28|0")}));
  EXPECT_EQ(Rows("select ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE from alg_comdetail order by ID"),
            (QStringList{"12|9|1000001|200|0.123456789012|11", "31|7|1600000|300|0.4|9.55"}));
  EXPECT_EQ(Database().Count(sql::kNextPortfolioId), 10);
  EXPECT_EQ(Database().Count(QStringLiteral("select gen_id(ALG_ROWID_DETAIL,1) from rdb$database")), 32);
}

TEST_F(ExchangeFiles, TheGeneratorsMovePastTheLargestIdsWhereverTheyStand) {
  Write("TZZHDetail.dat", Details({{"5", "7", "1600000", "300", "0.4", "9.5"},
                                   {"31", "7", "1000001", "200", "0.6", "11"},
                                   {"12", "3", "1000001", "200", "0.6", "11"}}));
  Write("TZZHMerge.dat", Portfolios({{"3", "a", "1", "2024-05-29", "1"},
                                     {"7", "b", "1", "2024-05-29", "1"},
                                     {"6", "c", "1", "2024-05-29", "1"}}));
  EXPECT_TRUE(LoadZHFile());
  EXPECT_EQ(Database().Count(sql::kNextPortfolioId), 8);
  EXPECT_EQ(Database().Count(QStringLiteral("select gen_id(ALG_ROWID_DETAIL,1) from rdb$database")), 32);
}

TEST_F(ExchangeFiles, TheFilesAreTheUsersOwn) {
  SaveZHFile();
  for (const char* name : {"TZZHDetail.dat", "TZZHMerge.dat"}) {
    EXPECT_EQ(QFile::permissions(Path(name)) & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther), 0) << name;
  }
  EXPECT_FALSE(Exists("TZZHDetail.dat.new"));
  EXPECT_FALSE(Exists("TZZHMerge.dat.new"));
}

TEST_F(ExchangeFiles, APairWithoutRowsIsImportedToo) {
  SaveZHFile();
  EXPECT_TRUE(LoadZHFile());
  ExpectUntouched();
  EXPECT_EQ(Database().Count(sql::kNextPortfolioId), 1);
}

TEST_F(ExchangeFiles, NothingIsImportedBesideExistingRows) {
  WritePair();
  Run(sql::RestorePortfolio({"1", "mine", "1", "2024-05-29", "1"}));
  EXPECT_FALSE(LoadZHFile());
  EXPECT_EQ(Rows("select COMNAME from alg_commain"), QStringList{"mine"});
  Run("delete from alg_commain");
  Run(sql::RestoreHolding({"1", "1", "1600000", "100", "1", "9"}));
  EXPECT_FALSE(LoadZHFile());
  EXPECT_EQ(Database().Count(sql::kCountHoldings), 1);
  EXPECT_TRUE(host_.debug.Lines().empty());
}

TEST_F(ExchangeFiles, WithoutFilesNothingIsImported) {
  EXPECT_FALSE(LoadZHFile());
  ExpectUntouched();
  EXPECT_TRUE(host_.debug.Lines().empty());
}

TEST_F(ExchangeFiles, OneFileAloneIsNotImportedButKept) {
  const std::vector<std::pair<const char*, const char*>> cases = {{"TZZHDetail.dat", "TZZHMerge.dat"},
                                                                  {"TZZHMerge.dat", "TZZHDetail.dat"}};
  for (const auto& [missing, alone] : cases) {
    WritePair();
    QFile::remove(Path(missing));
    const QByteArray bytes = Bytes(alone);
    EXPECT_FALSE(LoadZHFile());
    ExpectUntouched();
    ASSERT_FALSE(host_.debug.Lines().empty());
    EXPECT_TRUE(host_.debug.Lines().back().contains(QString::fromLatin1(missing)));
    SaveZHFile();
    ASSERT_EQ(Kept(alone, ".bad").size(), 1);
    EXPECT_EQ(Bytes(qPrintable(Kept(alone, ".bad")[0])), bytes);
    EXPECT_TRUE(Kept(missing, ".bad").isEmpty());
    QFile::remove(Path(qPrintable(Kept(alone, ".bad")[0])));
  }
}

TEST_F(ExchangeFiles, ASingleQuoteInANameRollsTheWholeImportBack) {
  WritePair(QStringLiteral("Mark's"));
  const QByteArray pair = Bytes("TZZHDetail.dat") + Bytes("TZZHMerge.dat");
  ExpectRefused();
  // The next save writes a new pair.
  SaveZHFile();
  EXPECT_EQ(ReadPacketFile(Path("TZZHMerge.dat")).RowCount(), 0);
  EXPECT_EQ(KeptPair(".bad"), pair);
}

TEST_F(ExchangeFiles, TextsOfAFileDoNotChangeAStatement) {
  WritePair(QStringLiteral("x',0,0,0,0,0,'2024-01-01',1) -- "));
  ExpectRefused();
}

TEST_F(ExchangeFiles, MoreHoldingsThanAPortfolioCanHaveAreRefused) {
  const auto holdings = [](int count) {
    std::vector<std::vector<QString>> rows;
    for (int id = 1; id <= count; ++id)
      rows.push_back({QString::number(id), "7", QString::number(1600000 + id), "100", "0", "9.5"});
    return Details(rows);
  };
  WritePair();
  Write("TZZHDetail.dat", holdings(501));
  ExpectRefused();
  WritePair();
  Write("TZZHDetail.dat", holdings(500));
  EXPECT_TRUE(LoadZHFile());
  EXPECT_EQ(Database().Count(sql::kCountHoldings), 500);
}

// Half a megabyte that unpacks to more than portfolios can hold is not unpacked.
TEST_F(ExchangeFiles, MoreRowsThanThereCanBeAreRefusedUnread) {
  WritePair();
  ResultSet rows;
  for (const ColumnSpec& column : kDetailColumns) rows.AddColumn(column.name, column.type);
  for (int row = 0; row <= 1'000'000; ++row) rows.AppendRow();
  Write("TZZHDetail.dat", rows);
  ExpectRefused();
  EXPECT_TRUE(host_.debug.Lines()[0].contains(QStringLiteral("行数"))) << host_.debug.Lines()[0].toStdString();
}

TEST_F(ExchangeFiles, ValuesThatAreNoPlainNumbersAreRefused) {
  const std::vector<ColumnSpec> texts = {{"ID", ColumnType::Text},       {"MAINID", ColumnType::Text},
                                         {"SECUCODE", ColumnType::Text}, {"PZSL", ColumnType::Text},
                                         {"PZBL", ColumnType::Text},     {"BUYPRICE", ColumnType::Text}};
  const std::vector<QString> good = {"1", "7", "1600000", "100", "0.5", "9.5"};
  WritePair();
  Write("TZZHDetail.dat", TableOf(texts, {good}));
  EXPECT_TRUE(LoadZHFile());
  Run("delete from alg_commain");
  Run("delete from alg_comdetail");
  int lines = 0;
  for (std::size_t column = 0; column < good.size(); ++column) {
    for (const char* bad : {"", "abc", "1,1", "1)", "(select 1 from rdb$database)", "0x10", "1 ", "NaN"}) {
      std::vector<QString> cells = good;
      cells[0] = "2";
      cells[column] = QString::fromLatin1(bad);
      WritePair();
      Write("TZZHDetail.dat", TableOf(texts, {good, cells}));
      EXPECT_FALSE(LoadZHFile()) << column << bad;
      ExpectUntouched();
      ++lines;
    }
  }
  EXPECT_EQ(static_cast<int>(host_.debug.Lines().size()), lines);
}

TEST_F(ExchangeFiles, PortfolioValuesThatCannotStandInAStatementAreRefused) {
  const std::vector<ColumnSpec> texts = {{"ID", ColumnType::Text},
                                         {"COMNAME", ColumnType::Text},
                                         {"ZSCLOSEPRICE", ColumnType::Text},
                                         {"EDITDATE", ColumnType::Text},
                                         {"SAVEFLAG", ColumnType::Text}};
  const std::vector<QString> good = {"7", "a", "3111.02", "2024-05-29", "1"};
  const std::vector<std::pair<std::size_t, QString>> bad = {
      {0, "x"},           {0, "7.5"},    {1, "a'b"}, {1, QStringLiteral("a") + QChar(0)}, {2, "1,1"}, {2, "1-1"},
      {3, "2024-05-29'"}, {4, "1 or 1"}, {4, ""},
  };
  for (const auto& [column, text] : bad) {
    std::vector<QString> cells = good;
    cells[column] = text;
    WritePair();
    Write("TZZHMerge.dat", TableOf(texts, {cells}));
    EXPECT_FALSE(LoadZHFile()) << column << text.toStdString();
    ExpectUntouched();
    EXPECT_TRUE(host_.debug.Lines().back().contains(QString::fromLatin1(texts[column].name.c_str())));
  }
  WritePair();
  Write("TZZHMerge.dat", TableOf(texts, {good}));
  EXPECT_TRUE(LoadZHFile());
}

TEST_F(ExchangeFiles, AMissingColumnIsRefused) {
  WritePair();
  Write("TZZHMerge.dat", TableOf({{"ID", ColumnType::Integer}, {"COMNAME", ColumnType::Text}}, {{"7", "a"}}));
  ExpectRefused();
}

TEST_F(ExchangeFiles, DamagedFilesLeaveTheDatabaseAlone) {
  for (const char* name : {"TZZHDetail.dat", "TZZHMerge.dat"}) {
    WritePair();
    const QByteArray whole = Bytes(name);
    for (const qsizetype length : {qsizetype{0}, whole.size() / 2, whole.size() - 1}) {
      WritePair();
      WriteFileAtomically(Path(name), whole.left(length), Durability::Replaceable);
      EXPECT_FALSE(LoadZHFile()) << name << length;
      ExpectUntouched();
    }
    WritePair();
    QByteArray flipped = whole;
    flipped[whole.size() / 2] = static_cast<char>(~flipped[whole.size() / 2]);
    WriteFileAtomically(Path(name), flipped, Durability::Replaceable);
    EXPECT_FALSE(LoadZHFile()) << name;
    ExpectUntouched();
  }
  EXPECT_EQ(host_.debug.Lines().size(), 8U);
}

TEST_F(ExchangeFiles, ARowTheDatabaseRefusesRollsBack) {
  WritePair();
  Write("TZZHMerge.dat", Portfolios({{"7", "a", "1", "2024-05-29", "1"}, {"7", "b", "1", "2024-05-29", "1"}}));
  ExpectRefused();
}

TEST_F(ExchangeFiles, EveryCallOfTheImportMayFail) {
  for (const auto kind : {test::FailurePlan::Kind::Throws, test::FailurePlan::Kind::Refuses}) {
    int call = 0;
    for (;; ++call) {
      WritePair();
      Plan().FailCall(call, kind);
      const bool imported = LoadZHFile();
      const bool failed = Plan().HasFailed();
      Plan().FailNothing();
      if (!failed) {
        EXPECT_TRUE(imported);
        break;
      }
      EXPECT_FALSE(imported) << call;
      ExpectUntouched();
    }
    // Two counts, the identity's table and row, start, two holdings, generator, one portfolio, generator, commit.
    EXPECT_EQ(call, 11);
    Run("delete from alg_commain");
    Run("delete from alg_comdetail");
  }
}

TEST_F(ExchangeFiles, EveryCallOfTheSavingMayFail) {
  WritePair();
  const QByteArray earlier = Bytes("TZZHDetail.dat") + Bytes("TZZHMerge.dat");
  // Start, the two queries and those for the identity come before the files.
  for (int call = 0; call < 5; ++call) {
    Plan().FailCall(call);
    SaveZHFile();
    EXPECT_TRUE(Plan().HasFailed());
    EXPECT_EQ(Bytes("TZZHDetail.dat") + Bytes("TZZHMerge.dat"), earlier);
    EXPECT_FALSE(Database().InTransaction());
  }
  EXPECT_EQ(host_.debug.Lines().size(), 5U);
  SaveZHFile();
  EXPECT_EQ(ReadPacketFile(Path("TZZHMerge.dat")).RowCount(), 0);
}

TEST_F(ExchangeFiles, ASaveThatFailsHalfWayKeepsTheEarlierPair) {
  WritePair();
  const QByteArray earlier = Bytes("TZZHDetail.dat") + Bytes("TZZHMerge.dat");
  ASSERT_TRUE(QDir().mkdir(Path("TZZHMerge.dat.new")));
  SaveZHFile();
  EXPECT_EQ(Bytes("TZZHDetail.dat") + Bytes("TZZHMerge.dat"), earlier);
  EXPECT_FALSE(Exists("TZZHDetail.dat.new"));
  EXPECT_EQ(host_.debug.Lines().size(), 1U);
  EXPECT_FALSE(Database().InTransaction());
  ASSERT_TRUE(QDir().rmdir(Path("TZZHMerge.dat.new")));
  SaveZHFile();
  EXPECT_EQ(ReadPacketFile(Path("TZZHDetail.dat")).RowCount(), 0);
  EXPECT_EQ(ReadPacketFile(Path("TZZHMerge.dat")).RowCount(), 0);
}

/// How far a save had come when the power went; the pairs are told apart by the portfolio's name.
TEST_F(ExchangeFiles, AnInterruptedSaveLeavesOnePairOrTheOther) {
  const auto nameAfterLoading = [this] {
    EXPECT_TRUE(LoadZHFile());
    const QStringList names = Rows("select COMNAME from alg_commain");
    EXPECT_EQ(Rows("select count(*) from alg_comdetail"), QStringList{"2"});
    Run("delete from alg_commain");
    Run("delete from alg_comdetail");
    EXPECT_FALSE(Exists("TZZHDetail.dat.new"));
    EXPECT_FALSE(Exists("TZZHMerge.dat.new"));
    return names.value(0);
  };
  // Only the new detail file was written.
  WritePair("old");
  WritePair("new", "TZZHDetail.dat.new", "TZZHMerge.dat.new");
  QFile::remove(Path("TZZHMerge.dat.new"));
  EXPECT_EQ(nameAfterLoading(), QStringLiteral("old"));
  // Both were written.
  WritePair("old");
  WritePair("new", "TZZHDetail.dat.new", "TZZHMerge.dat.new");
  EXPECT_EQ(nameAfterLoading(), QStringLiteral("new"));
  // The new detail file was in its place already.
  WritePair("old");
  WritePair("new", "TZZHDetail.dat", "TZZHMerge.dat.new");
  EXPECT_EQ(nameAfterLoading(), QStringLiteral("new"));
}

}  // namespace
}  // namespace holdwise
