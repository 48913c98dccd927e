// SPDX-License-Identifier: MIT
// What becomes of exchange files that cannot be read, are fuller than what replaces them, or belong to another
// database.
#include "common/store/exchange_files.h"
#include "exchange_fixture.h"

namespace holdwise {
namespace {

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
  ASSERT_EQ(host_.debug.Lines().size(), 1U);
  EXPECT_TRUE(host_.debug.Lines()[0].contains(QStringLiteral("读不出来"))) << host_.debug.Lines()[0].toStdString();
  EXPECT_FALSE(host_.debug.Lines()[0].contains(QStringLiteral("比原先的少"))) << "nobody knows";
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
