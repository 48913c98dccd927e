// SPDX-License-Identifier: MIT
#include "common/store/exchange_files.h"

#include <QDir>
#include <QFile>

#include "engine_fixture.h"
#include "holdwise/packet/packet_file.h"

namespace holdwise {
namespace {

const std::vector<ColumnSpec> kDetailColumns = {{"ID", ColumnType::Integer},       {"MAINID", ColumnType::Integer},
                                                {"SECUCODE", ColumnType::Integer}, {"PZSL", ColumnType::Integer},
                                                {"PZBL", ColumnType::Real},        {"BUYPRICE", ColumnType::Real}};
const std::vector<ColumnSpec> kMergeColumns = {{"ID", ColumnType::Integer},
                                               {"COMNAME", ColumnType::Text},
                                               {"ZSCLOSEPRICE", ColumnType::Real},
                                               {"EDITDATE", ColumnType::Text},
                                               {"SAVEFLAG", ColumnType::Integer}};

class ExchangeFiles : public EngineTest {
 protected:
  QString Path(const char* name) const { return host_.SysWorkDataPath() + QString::fromLatin1(name); }
  void Write(const char* name, const ResultSet& rows) { WritePacketFile(Path(name), rows, Durability::Replaceable); }
  QByteArray Bytes(const char* name) const {
    QFile file(Path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  bool Exists(const char* name) const { return QFile::exists(Path(name)); }
  /// The files that were kept of one, oldest first.
  QStringList Kept(const char* name, const char* ending) const {
    const QString pattern =
        QStringLiteral("%1.2*%2").arg(QString::fromLatin1(name), QString::fromLatin1(ending));
    return QDir(host_.SysWorkDataPath()).entryList({pattern}, QDir::Files, QDir::Name);
  }
  /// Bytes of the only one that was kept of each; "(not one)" otherwise.
  QByteArray KeptPair(const char* ending) const {
    const QStringList detail = Kept("TZZHDetail.dat", ending);
    const QStringList merge = Kept("TZZHMerge.dat", ending);
    if (detail.size() != 1 || merge.size() != 1) return "(not one)";
    return Bytes(qPrintable(detail[0])) + Bytes(qPrintable(merge[0]));
  }
  QByteArray PairBytes() const { return Bytes("TZZHDetail.dat") + Bytes("TZZHMerge.dat"); }

  static ResultSet Details(const std::vector<std::vector<QString>>& rows) { return TableOf(kDetailColumns, rows); }
  static ResultSet Portfolios(const std::vector<std::vector<QString>>& rows) { return TableOf(kMergeColumns, rows); }
  /// Two holdings of one portfolio.
  void WritePair(const QString& name = QStringLiteral("稳健"), const char* detail = "TZZHDetail.dat",
                 const char* merge = "TZZHMerge.dat") {
    Write(detail, Details({{"31", "7", "1600000", "300", "0.4", "9.5"}, {"12", "7", "1000001", "200", "0.6", "11"}}));
    Write(merge, Portfolios({{"7", name, "3111.02", "2024-05-29", "1"}}));
  }
  void ExpectUntouched() {
    EXPECT_EQ(Database().Count(sql::kCountHoldings), 0);
    EXPECT_EQ(Database().Count(sql::kCountPortfolios), 0);
    EXPECT_FALSE(Database().InTransaction());
  }
  void ExpectRefused() {
    EXPECT_FALSE(LoadZHFile());
    ExpectUntouched();
    const std::vector<QString> lines = host_.debug.Lines();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_TRUE(lines[0].startsWith(QStringLiteral("Holdwise.bpl->Untcommon->LoadZHFile 发生错误!错误信息:")));
  }
};

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

TEST_F(ExchangeFiles, WhatMayPassRenamesNothingAndIsTriedAgain) {
  WritePair();
  const QByteArray merge = Bytes("TZZHMerge.dat");
  ASSERT_TRUE(QFile::rename(Path("TZZHMerge.dat"), Path("elsewhere")));
  ASSERT_TRUE(QFile::link(Path("TZZHMerge.dat"), Path("TZZHMerge.dat"))) << "cannot be opened, whoever asks";
  EXPECT_FALSE(LoadZHFile());
  ExpectUntouched();
  EXPECT_TRUE(Kept("TZZHDetail.dat", ".bad").isEmpty() && Kept("TZZHMerge.dat", ".bad").isEmpty());
  EXPECT_TRUE(ExchangeProblem().contains(QStringLiteral("下次启动再读")));
  ASSERT_EQ(host_.debug.Failures().size(), 1U);
  EXPECT_EQ(host_.debug.Failures()[0], ExchangeProblem());
  SaveZHFile();
  EXPECT_EQ(ReadPacketFile(Path("TZZHDetail.dat")).RowCount(), 2) << "the empty database is not written over it";
  ASSERT_TRUE(QFile::remove(Path("TZZHMerge.dat")) && QFile::rename(Path("elsewhere"), Path("TZZHMerge.dat")));
  EXPECT_TRUE(LoadZHFile());
  EXPECT_EQ(Rows("select COMNAME from alg_commain"), QStringList{QStringLiteral("稳健")});
  EXPECT_EQ(Bytes("TZZHMerge.dat"), merge);
  EXPECT_TRUE(ExchangeProblem().isEmpty());
}

TEST_F(ExchangeFiles, ALockMayPassToo) {
  WritePair();
  const QByteArray pair = PairBytes();
  Plan().SetCategory(ErrorCategory::Busy);
  Plan().FailCall(5);
  EXPECT_FALSE(LoadZHFile());
  EXPECT_TRUE(Plan().HasFailed());
  Plan().FailNothing();
  EXPECT_EQ(PairBytes(), pair);
  SaveZHFile();
  EXPECT_EQ(PairBytes(), pair);
  EXPECT_TRUE(LoadZHFile());
}

TEST_F(ExchangeFiles, ARefusedPairIsSaid) {
  WritePair(QStringLiteral("Mark's"));
  ExpectRefused();
  const QString time = Kept("TZZHMerge.dat", ".bad").value(0).section(QLatin1Char('.'), 2, 2);
  ASSERT_FALSE(time.isEmpty());
  ASSERT_EQ(host_.debug.Failures().size(), 1U);
  EXPECT_EQ(host_.debug.Failures()[0], ExchangeProblem());
  EXPECT_TRUE(ExchangeProblem().contains(time)) << ExchangeProblem().toStdString();
  EXPECT_TRUE(ExchangeProblem().contains(QStringLiteral("Mark's")));
}

TEST_F(ExchangeFiles, AFullerPairIsKept) {
  WritePair();
  const QByteArray fuller = PairBytes();
  SaveZHFile();
  EXPECT_EQ(KeptPair(".kept"), fuller);
  EXPECT_EQ(ReadPacketFile(Path("TZZHMerge.dat")).RowCount(), 0);
  EXPECT_TRUE(host_.debug.Failures().empty()) << "the user may have deleted it";
  ASSERT_EQ(host_.debug.Lines().size(), 1U);
  EXPECT_TRUE(host_.debug.Lines()[0].contains(Kept("TZZHMerge.dat", ".kept")[0]));
  SaveZHFile();
  EXPECT_EQ(KeptPair(".kept"), fuller) << "one that is as full is replaced";
  for (int more = 0; more < 12; ++more) {
    WritePair();
    SaveZHFile();
  }
  EXPECT_EQ(Kept("TZZHDetail.dat", ".kept").size(), 10);
  EXPECT_EQ(Kept("TZZHMerge.dat", ".kept").size(), 10);
}

TEST_F(ExchangeFiles, APairThatNobodyCanReadIsKept) {
  WritePair();
  WriteFileAtomically(Path("TZZHMerge.dat"), "rubbish", Durability::Replaceable);
  const QByteArray pair = PairBytes();
  SaveZHFile();
  EXPECT_EQ(KeptPair(".kept"), pair);
}

// What a damaged database gives: as many portfolios as before, and rows that nobody entered.
TEST_F(ExchangeFiles, RowsThatNobodyCanHaveEnteredDoNotReplaceSoundOnesForGood) {
  const QString holding = QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values ");
  for (const char* second : {"(32,8,1600000,200,0.5,9)", "(32,7,1600000,-200,0.5,9)", "(32,7,1600000,200,1e30,9)",
                             "(32,7,1600000,200,0.5,-9)", "(32,7,4,200,0.5,9)", "(2147483647,7,1600000,200,0.5,9)"}) {
    const bool isSound = QByteArray(second).startsWith("(32,7,4,");
    Run("delete from alg_commain");
    Run("delete from alg_comdetail");
    for (const QString& file : Kept("TZZHDetail.dat", ".kept") + Kept("TZZHMerge.dat", ".kept"))
      QFile::remove(Path(qPrintable(file)));
    Run(sql::RestorePortfolio({"7", "a", "1", "2024-05-29", "1"}));
    Run(holding + QStringLiteral("(31,7,1600000,300,0.4,9.5)"));
    Run(holding + QString::fromLatin1(second));
    WritePair();
    const QByteArray sound = PairBytes();
    const std::size_t told = host_.debug.Failures().size();
    SaveZHFile();
    EXPECT_EQ(KeptPair(".kept"), isSound ? QByteArray("(not one)") : sound) << second;
    EXPECT_EQ(host_.debug.Failures().size(), told + (isSound ? 0 : 1)) << second;
    EXPECT_EQ(ReadPacketFile(Path("TZZHDetail.dat")).RowCount(), 2) << "written all the same";
  }
}

TEST_F(ExchangeFiles, RowsThatNobodyCanHaveEnteredAreNotRead) {
  const std::vector<QString> good = {"31", "7", "1600000", "300", "0.4", "9.5"};
  const std::vector<std::pair<std::size_t, QString>> bad = {{0, "0"},    {0, "2147483647"}, {1, "8"},
                                                            {2, "0"},    {2, "2000000"},    {3, "-1"},
                                                            {4, "-0.1"}, {4, "2"},          {5, "10000000"}};
  for (const auto& [column, text] : bad) {
    std::vector<QString> cells = good;
    cells[column] = text;
    WritePair();
    Write("TZZHDetail.dat", Details({good, cells}));
    EXPECT_FALSE(LoadZHFile()) << column << text.toStdString();
    ExpectUntouched();
    EXPECT_TRUE(ExchangeProblem().contains(QStringLiteral("第2行")) && ExchangeProblem().contains(text));
  }
}

class PairOfADatabase : public ExchangeFiles {
 protected:
  void Identify(const char* id) {
    Run(QStringLiteral("insert into holdwise_identity values ('%1')").arg(QString::fromLatin1(id)));
  }
  void AddPortfolio(const char* id) {
    Run(sql::RestorePortfolio({QString::fromLatin1(id), "a", "1", "2024-05-29", "1"}));
    Run(sql::RestoreHolding({QString::fromLatin1(id), QString::fromLatin1(id), "1600000", "100", "1", "9"}));
  }
  static constexpr const char* kFirst = "11111111-1111-4111-8111-111111111111";
  static constexpr const char* kSecond = "22222222-2222-4222-8222-222222222222";
};

TEST_F(PairOfADatabase, AnotherOneNeitherInheritsNorOverwritesIt) {
  Identify(kFirst);
  AddPortfolio("7");
  SaveZHFile();
  EXPECT_TRUE(Bytes("TZZHOwner.txt").startsWith(kFirst));
  const QByteArray pair = PairBytes();

  test::TempDatabase other;
  Use(other.Service());
  Identify(kSecond);
  EXPECT_FALSE(LoadZHFile());
  ExpectUntouched();
  ASSERT_EQ(host_.debug.Failures().size(), 1U);
  EXPECT_TRUE(host_.debug.Failures()[0].contains(temporary_.File())) << host_.debug.Failures()[0].toStdString();
  EXPECT_TRUE(ExchangeProblem().isEmpty()) << "nothing of this database is missing";
  AddPortfolio("1");
  SaveZHFile();
  EXPECT_EQ(PairBytes(), pair);
  EXPECT_TRUE(Bytes("TZZHOwner.txt").startsWith(kFirst));
}

TEST_F(PairOfADatabase, ACopyIsAnotherOneAndAMovedOneIsNot) {
  Identify(kFirst);
  AddPortfolio("7");
  SaveZHFile();
  const QByteArray pair = PairBytes();
  test::TempDatabase copy;
  Use(copy.Service());
  Identify(kFirst);
  SaveZHFile();
  EXPECT_EQ(PairBytes(), pair) << "its original is there";
  temporary_.Close();
  ASSERT_TRUE(QFile::remove(temporary_.File()));
  EXPECT_TRUE(LoadZHFile());
  SaveZHFile();
  EXPECT_TRUE(Bytes("TZZHOwner.txt").contains(copy.File().toUtf8()));
}

TEST_F(PairOfADatabase, OneMadeAnewInItsPlaceInherits) {
  Identify(kFirst);
  AddPortfolio("7");
  SaveZHFile();
  Run("delete from holdwise_identity");
  Run("delete from alg_commain");
  Run("delete from alg_comdetail");
  Identify(kSecond);
  EXPECT_TRUE(LoadZHFile());
  SaveZHFile();
  EXPECT_TRUE(Bytes("TZZHOwner.txt").startsWith(kSecond));
}

TEST_F(PairOfADatabase, ANoteThatSaysNothingKeepsNobodyFromIt) {
  WritePair();
  WriteFileAtomically(Path("TZZHOwner.txt"), "rubbish\n/nowhere\n", Durability::Replaceable);
  Identify(kFirst);
  EXPECT_TRUE(LoadZHFile());
  SaveZHFile();
  EXPECT_TRUE(Bytes("TZZHOwner.txt").startsWith(kFirst));
}

}  // namespace
}  // namespace holdwise
