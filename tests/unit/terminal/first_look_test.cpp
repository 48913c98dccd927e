// SPDX-License-Identifier: MIT
#include "app/first_look.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "app/database_repair.h"
#include "temp_database.h"

namespace holdwise {
namespace {

class FirstLookTest : public testing::Test {
 protected:
  void SetUp() override {
    AddPortfolio(1, QStringLiteral("稳健"));
    AddPortfolio(2, QStringLiteral("进取"));
  }
  UserDataServices& Data() { return temporary_.Service(); }
  void Run(const QString& statement) { ASSERT_EQ(Data().Execute(statement), 1) << statement.toStdString(); }
  void AddPortfolio(int id, const QString& name) {
    Run(QStringLiteral(
            "insert into alg_commain (ID,COMNAME,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG)values("
            "%1,'%2',3111.02,0,0,0,0,'2024-05-29',1)")
            .arg(id)
            .arg(name));
    for (const int code : {1600000, 1000001}) {
      Run(QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values "
                         "(gen_id(ALG_ROWID_DETAIL,1),%1,%2,300,0.5,9.5)")
              .arg(id)
              .arg(code));
    }
    Run(QStringLiteral("SET GENERATOR ALG_ROWID_MAIN TO %1").arg(id));
  }
  void WriteBackup() {
    (void)folder_.Write(backup::ReadPortfolios(Data()), QDateTime(QDate(2024, 5, 30), QTime(15, 1, 2)));
  }
  static void Spoil(const QString& path) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write("rubbish");
  }
  [[nodiscard]] FirstLook Look(bool wasClosed = true) { return LookAtDatabase(Data(), folder_, wasClosed); }

  test::TempDatabase temporary_;
  QTemporaryDir work_;
  backup::BackupFolder folder_{work_.path()};
};

TEST_F(FirstLookTest, WithoutABackupItIsUncomparedUnlessNothingWasEntered) {
  EXPECT_EQ(Look().finding, FirstLook::Finding::Uncompared);
  EXPECT_TRUE(Look().Line().contains(QStringLiteral("数据库：2 个组合，4 条持股；没有可用的备份")));
  for (const char* table : {"alg_comdetail", "alg_commain"})
    Data().Execute(QStringLiteral("delete from ") + QString::fromUtf8(table));
  EXPECT_EQ(Look().finding, FirstLook::Finding::Sound);
  EXPECT_EQ(Look().Text(), QString());
}

TEST_F(FirstLookTest, AFolderOfBackupsThatIsNoneIsSaid) {
  QFile inTheWay(folder_.Path());
  ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
  EXPECT_EQ(Look().finding, FirstLook::Finding::Uncompared);
  EXPECT_TRUE(Look().Line().contains(QStringLiteral("不是目录"))) << Look().Line().toStdString();
}

TEST_F(FirstLookTest, AlikeIsSoundHoweverItEnded) {
  WriteBackup();
  EXPECT_EQ(Look(true).finding, FirstLook::Finding::Sound);
  EXPECT_EQ(Look(false).finding, FirstLook::Finding::Sound);
}

TEST_F(FirstLookTest, FiguresAreNoDifference) {
  WriteBackup();
  Run(QStringLiteral("update alg_commain set FC = 1, BETA = 2, ISFINISHED = 1"));
  EXPECT_EQ(Look().finding, FirstLook::Finding::Sound);
}

TEST_F(FirstLookTest, ADifferenceAfterAnOrderlyEndHasBothSides) {
  WriteBackup();
  Run(QStringLiteral("delete from alg_commain where ID = 2"));
  Run(QStringLiteral("delete from alg_comdetail where MAINID = 2"));
  const FirstLook look = Look();
  EXPECT_EQ(look.finding, FirstLook::Finding::Differs);
  EXPECT_TRUE(look.Text().contains(QStringLiteral("数据库：1 个组合，2 条持股"))) << look.Text().toStdString();
  EXPECT_TRUE(look.Text().contains(QStringLiteral("最近的备份：2024-05-30 15:01:02（2 个组合，4 条持股）")));
  EXPECT_TRUE(look.Text().contains(QStringLiteral("进取")));
}

TEST_F(FirstLookTest, AChangedValueHasBothSides) {
  WriteBackup();
  Run(QStringLiteral("update alg_commain set COMNAME = '进去' where ID = 2"));
  const FirstLook look = Look();
  EXPECT_TRUE(look.Text().contains(QStringLiteral("“进取”：名称 进去 → 进取"))) << look.Text().toStdString();
}

TEST_F(FirstLookTest, EveryEnteredValueCounts) {
  for (const char* change :
       {"update alg_commain set COMNAME = '别名' where ID = 1",
        "update alg_commain set ZSCLOSEPRICE = 3111.03 where ID = 1",
        "update alg_commain set EDITDATE = '2024-05-28' where ID = 1",
        "update alg_commain set SAVEFLAG = 0 where ID = 1", "update alg_comdetail set PZSL = 301 where ID = 1",
        "update alg_comdetail set BUYPRICE = 9.51 where ID = 1",
        "update alg_comdetail set SECUCODE = 1600001 where ID = 1",
        "update alg_comdetail set PZBL = 0.51 where ID = 1"}) {
    WriteBackup();
    Run(QString::fromUtf8(change));
    EXPECT_EQ(Look().finding, FirstLook::Finding::Differs) << change;
    (void)RestoreNewest(Data(), folder_);
    EXPECT_EQ(Look().finding, FirstLook::Finding::Sound) << change;
    QDir(folder_.Path()).removeRecursively();
  }
}

TEST_F(FirstLookTest, AfterAnUncleanEndTheDatabaseMayBeNewer) {
  WriteBackup();
  AddPortfolio(3, QStringLiteral("后来"));
  EXPECT_EQ(Look(false).finding, FirstLook::Finding::Newer);
}

TEST_F(FirstLookTest, WhatNobodyCanHaveEnteredIsDoubtfulWithOrWithoutABackup) {
  for (const char* change : {"delete from alg_comdetail where MAINID = 2", "delete from alg_commain where ID = 2",
                             "update alg_comdetail set PZSL = -5 where ID = 1", "SET GENERATOR ALG_ROWID_MAIN TO 1",
                             "update alg_commain set EDITDATE = '20240529' where ID = 1"}) {
    WriteBackup();
    Run(QString::fromUtf8(change));
    for (const bool wasClosed : {true, false}) {
      const FirstLook look = Look(wasClosed);
      EXPECT_EQ(look.finding, FirstLook::Finding::Doubtful) << change;
      EXPECT_FALSE(look.problems.isEmpty());
      EXPECT_TRUE(look.Text().contains(look.problems[0]));
    }
    (void)RestoreNewest(Data(), folder_);
    EXPECT_EQ(Look().finding, FirstLook::Finding::Sound) << change;
    QDir(folder_.Path()).removeRecursively();
  }
}

TEST_F(FirstLookTest, AnOlderBackupTakesThePlaceOfOneThatCannotBeRead) {
  WriteBackup();
  const QString older = folder_.Newest()->path;
  (void)folder_.Write(backup::PortfolioSet{}, QDateTime(QDate(2024, 5, 31), QTime(15, 0)));
  const QString newest = folder_.Newest()->path;
  Spoil(newest);
  FirstLook look = Look();
  EXPECT_EQ(look.finding, FirstLook::Finding::Uncompared) << "alike the older one";
  EXPECT_TRUE(look.Line().contains(newest)) << look.Line().toStdString();
  Run(QStringLiteral("update alg_comdetail set PZSL = 301 where ID = 1"));
  look = Look();
  EXPECT_EQ(look.finding, FirstLook::Finding::Differs);
  EXPECT_TRUE(look.Text().contains(newest)) << look.Text().toStdString();
  EXPECT_TRUE(look.Text().contains(QStringLiteral("之前的备份：2024-05-30 15:01:02（2 个组合，4 条持股）")));
  EXPECT_EQ(Look(false).finding, FirstLook::Finding::Newer);
  Spoil(older);
  look = Look();
  EXPECT_EQ(look.finding, FirstLook::Finding::Uncompared);
  EXPECT_TRUE(look.Text().contains(newest)) << look.Text().toStdString();
  EXPECT_TRUE(look.Text().contains(QStringLiteral("没有可用的备份")));
}

TEST_F(FirstLookTest, ADifferenceThatNobodyHasDecidedOutlivesAnUncleanEnd) {
  WriteBackup();
  Run(QStringLiteral("update alg_comdetail set PZSL = 301 where ID = 1"));
  folder_.MarkUnsettled();
  EXPECT_EQ(Look(false).finding, FirstLook::Finding::Differs);
  (void)RestoreNewest(Data(), folder_);
  EXPECT_FALSE(folder_.IsUnsettled()) << "the user has chosen";
  EXPECT_EQ(Look(false).finding, FirstLook::Finding::Sound);
}

// --- repair ---

TEST_F(FirstLookTest, AFileSetAsideComesBackFromTheNewestBackupThatCanBeRead) {
  WriteBackup();
  (void)folder_.Write(backup::PortfolioSet{}, QDateTime(QDate(2024, 5, 31), QTime(15, 0)));
  QFile newest(folder_.Newest()->path);
  ASSERT_TRUE(newest.open(QIODevice::WriteOnly | QIODevice::Truncate));
  newest.close();
  EXPECT_TRUE(SafeText(folder_).contains(QStringLiteral("2024-05-30 15:01:02（2 个组合，4 条持股）")));
  const backup::PortfolioSet before = backup::ReadPortfolios(Data());
  temporary_.Close();
  const QDateTime now(QDate(2024, 6, 1), QTime(8, 0));
  const QString record = FirebirdUserData::CheckRecordOf(temporary_.File());
  ASSERT_TRUE(QFile(record).open(QIODevice::WriteOnly));
  const QString first = SetDatabaseAside(temporary_.File(), now);
  EXPECT_EQ(first, temporary_.File() + QStringLiteral(".20240601-080000.damaged"));
  EXPECT_FALSE(QFile::exists(record)) << "the check was of the other file";
  EXPECT_TRUE(QFile::exists(first));
  EXPECT_FALSE(QFile::exists(temporary_.File()));
  temporary_.Open();
  EXPECT_TRUE(temporary_.Service().WasClosed());
  EXPECT_TRUE(RestoreNewest(Data(), folder_).contains(QStringLiteral("2024-05-30")));
  EXPECT_EQ(backup::ReadPortfolios(Data()), before);
  temporary_.Close();
  EXPECT_NE(SetDatabaseAside(temporary_.File(), now), first) << "nothing is replaced";
  EXPECT_TRUE(QFile::exists(first));
}

TEST_F(FirstLookTest, WithoutABackupNothingIsRestored) {
  EXPECT_TRUE(SafeText(folder_).contains(QStringLiteral("没有可用的备份")));
  EXPECT_EQ(RestoreNewest(Data(), folder_), QString());
  EXPECT_EQ(Data().Count(QStringLiteral("select count(*) from alg_commain")), 2);
}

}  // namespace
}  // namespace holdwise
