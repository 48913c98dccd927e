// SPDX-License-Identifier: MIT
#include <random>

#include "backup_fixture.h"
#include "file_size_limit.h"

namespace holdwise::backup {
namespace {

class RestoreTest : public BackupTest {
 protected:
  RestorePlan Bring(const PortfolioSet& set, RestoreExtent extent = RestoreExtent::Everything) {
    return Restore(database_, set, extent);
  }
  std::int64_t NextId() {
    return temp_.Service().Count(QStringLiteral("select gen_id(ALG_ROWID_MAIN,1) from rdb$database"));
  }
};

TEST_F(RestoreTest, ADeletionIsUndoneAndNothingElseTouched) {
  AddThree();
  Do(QStringLiteral("update alg_commain set FC=0.5,ISFINISHED=1"));
  const PortfolioSet set = Now();
  const QString before = Everything();
  Do(QStringLiteral("delete from alg_comdetail where MAINID=2"));
  Do(QStringLiteral("delete from alg_commain where ID=2"));
  const RestorePlan plan = Bring(set);
  EXPECT_EQ(plan.added, QStringList{QStringLiteral("=进取")});
  EXPECT_EQ(plan.unchanged, 2);
  EXPECT_TRUE(plan.changed.isEmpty() && plan.removed.isEmpty());
  EXPECT_EQ(Everything(), before);
  // Figures of those that were alike stay; those of the other are to be calculated.
  EXPECT_EQ(Dump("select ID,FC,ISFINISHED from alg_commain order by ID"), QStringLiteral("1|0.5|1\n2|0|0\n3|0.5|1"));
}

TEST_F(RestoreTest, TheWholeComesBackIntoAnEmptyDatabase) {
  AddThree();
  const PortfolioSet set = Now();
  const QString before = Everything();
  Do(QStringLiteral("delete from alg_comdetail"));
  Do(QStringLiteral("delete from alg_commain"));
  Do(QStringLiteral("SET GENERATOR ALG_ROWID_MAIN TO 0"));
  Do(QStringLiteral("SET GENERATOR ALG_ROWID_DETAIL TO 0"));
  EXPECT_EQ(Bring(set).added.size(), 3);
  EXPECT_EQ(Everything(), before);
  EXPECT_EQ(NextId(), 4);
  EXPECT_EQ(ReadGenerators(temp_.Service()).holding, 9);
}

TEST_F(RestoreTest, GeneratorsNeverGoBack) {
  AddThree();
  const PortfolioSet set = Now();
  Do(QStringLiteral("SET GENERATOR ALG_ROWID_MAIN TO 500"));
  Bring(set);
  EXPECT_EQ(NextId(), 501);
}

TEST_F(RestoreTest, ThePlanSaysWhatChanges) {
  AddThree();
  const PortfolioSet set = Now();
  Do(QStringLiteral("update alg_comdetail set PZSL=999 where ID=1"));
  Do(QStringLiteral("delete from alg_comdetail where MAINID=3"));
  Do(QStringLiteral("delete from alg_commain where ID=3"));
  Do(QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values (900,77,1600000,1,1,1)"));
  Add(QStringLiteral("新的"), 2);
  const QString unchanged = Everything();
  const RestorePlan plan = PlanRestore(Now(), set, RestoreExtent::Everything);
  EXPECT_EQ(plan.Text(), QStringLiteral("恢复1个组合：老张's，\"甲\"\n改回1个组合：稳健一号\n"
                                        "“稳健一号”：600000 数量 999 → 100\n去掉1个组合：新的\n"
                                        "去掉1条不属于任何组合的持股\n不变的组合：1个"));
  EXPECT_EQ(Everything(), unchanged);  // looking at the plan has done nothing
  Bring(set);
  EXPECT_EQ(Now(), set);
  EXPECT_TRUE(PlanRestore(Now(), set, RestoreExtent::Everything).IsNothing());
}

TEST_F(RestoreTest, ThePlanShowsBothSidesOfWhatChanges) {
  AddThree();
  const PortfolioSet set = Now();
  const std::pair<const char*, const char*> cases[] = {
      {"update alg_commain set COMNAME='稳健\x01号' where ID=1", "“稳健一号”：名称 稳健\\x01号 → 稳健一号"},
      {"update alg_commain set ZSCLOSEPRICE=3123.5 where ID=1", "“稳健一号”：上证指数 3123.5 → 3123.45"},
      {"update alg_commain set ZHFG=null,MBSYL=0.13 where ID=1",
       "“稳健一号”：目标收益率 0.13 → 0.12；组合风格 无 → 稳健型"},
      {"update alg_comdetail set SECUCODE=1600008 where ID=2", "“稳健一号”：600008 代码 600008 → 600007"},
      {"delete from alg_comdetail where ID=2", "“稳健一号”：600007 无 → 200股"},
      {"insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values (900,1,1000001,5,0.1,1)",
       "“稳健一号”：000001 5股 → 无"},
      {"update alg_comdetail set PZSL=PZSL+1,BUYPRICE=1,PZBL=0.25 where MAINID=1",
       "“稳健一号”：600000 数量 101 → 100；600000 买入价 1 → 8.01；600000 比例 0.25 → 0.3333333333333333；"
       "600007 数量 201 → 200；600007 买入价 1 → 9.01；600007 比例 0.25 → 0.3333333333333333；另有3处"}};
  for (const auto& [change, expected] : cases) {
    Do(QString::fromUtf8(change));
    EXPECT_EQ(PlanRestore(Now(), set, RestoreExtent::Everything).changes, QStringList{QString::fromUtf8(expected)});
    Bring(set);
  }
}

TEST_F(RestoreTest, ThePlanShowsTenOfManyChanges) {
  for (int number = 0; number < 12; ++number) Add(QStringLiteral("组合%1").arg(number), 1);
  const PortfolioSet set = Now();
  Do(QStringLiteral("update alg_comdetail set PZSL=PZSL+1"));
  const RestorePlan plan = PlanRestore(Now(), set, RestoreExtent::Everything);
  EXPECT_EQ(plan.changed.size(), 12);
  EXPECT_EQ(plan.changes.size(), 10);
}

TEST_F(RestoreTest, MissingOnesComeBackBesideWhatIsNewer) {
  AddThree();
  const PortfolioSet set = Now();
  Do(QStringLiteral("update alg_comdetail set PZSL=999 where ID=1"));
  Do(QStringLiteral("delete from alg_comdetail where MAINID in (2,3)"));
  Do(QStringLiteral("delete from alg_commain where ID in (2,3)"));
  Add(QStringLiteral("=进取"), 2);
  const RestorePlan plan = Bring(set, RestoreExtent::MissingOnly);
  EXPECT_EQ(plan.added, QStringList{QStringLiteral("老张's，\"甲\"")});
  EXPECT_EQ(plan.leftOut, QStringList{QStringLiteral("=进取")});
  EXPECT_EQ(plan.unchanged, 2);
  EXPECT_EQ(Dump("select ID from alg_commain order by ID"), QStringLiteral("1\n3\n4"));
  EXPECT_EQ(Dump("select PZSL from alg_comdetail where ID=1"), QStringLiteral("999"));
}

TEST_F(RestoreTest, AnOpenQuestionIsAnsweredFirst) {
  AddThree();
  const PortfolioSet set = Now();
  const TransactionScope question(temp_.Service());
  try {
    Bring(set);
    FAIL() << "restored inside a transaction of another";
  } catch (const Error& error) {
    EXPECT_EQ(error.Category(), ErrorCategory::Busy);
  }
}

TEST_F(RestoreTest, ASetWithProblemsIsRefused) {
  AddThree();
  PortfolioSet set = Now();
  set.portfolios[1].holdings.clear();
  const QString before = Everything();
  EXPECT_THROW(Bring(set), Error);
  EXPECT_EQ(Everything(), before);
}

class RestoreFailureTest : public RestoreTest, public testing::WithParamInterface<test::FailurePlan::Kind> {};

TEST_P(RestoreFailureTest, WhicheverStatementFailsEitherSideIsWhole) {
  AddThree();
  const PortfolioSet set = Now();
  Do(QStringLiteral("update alg_comdetail set PZSL=999 where ID=1"));
  Do(QStringLiteral("delete from alg_comdetail where MAINID=3"));
  Do(QStringLiteral("delete from alg_commain where ID=3"));
  Add(QStringLiteral("新的"), 2);
  const QString before = Everything();
  const bool refuses = GetParam() == test::FailurePlan::Kind::Refuses;
  for (int call = 0;; ++call) {
    database_.plan.FailCall(call, GetParam());
    bool isDone = true;
    try {
      Bring(set);
    } catch (const Error&) {
      isDone = false;
    }
    if (!database_.plan.HasFailed()) {
      // Start, a reading, 2 portfolios out by 2 statements each, 2 in with 7 holdings, generators, a reading, commit.
      EXPECT_EQ(call, 1 + 1 + 4 + 9 + 1 + 1 + 1);
      break;
    }
    EXPECT_FALSE(isDone) << call << refuses;
    EXPECT_EQ(Everything(), before) << call << refuses;
  }
  EXPECT_EQ(Now(), set);
}
INSTANTIATE_TEST_SUITE_P(Ways, RestoreFailureTest,
                         testing::Values(test::FailurePlan::Kind::Throws, test::FailurePlan::Kind::Refuses));

TEST_F(RestoreTest, AHundredDrillsEndEqual) {
  std::mt19937 random(20260304);
  const auto upTo = [&random](int most) { return static_cast<int>(random() % static_cast<unsigned>(most)); };
  for (int drill = 0; drill < 100; ++drill) {
    Add(QStringLiteral("组合%1").arg(drill), 2 + upTo(9), drill % 3 == 0 ? QStringLiteral("稳健型") : QString());
    const PortfolioSet set = Now();
    const QString before = Everything();
    const QByteArray file = PortfolioFileText(set);
    switch (drill % 5) {
      case 0:
        Do(QStringLiteral("delete from alg_comdetail where mod(ID,2)=%1").arg(upTo(2)));
        break;
      case 1:
        Do(QStringLiteral("delete from alg_commain where mod(ID,2)=%1").arg(upTo(2)));
        break;
      case 2:
        Do(QStringLiteral("update alg_comdetail set PZSL=PZSL+1,BUYPRICE=0 where ID>%1").arg(upTo(2)));
        break;
      case 3:
        Do(QStringLiteral("update alg_commain set COMNAME='坏',EDITDATE='x',SAVEFLAG=7,ZSCLOSEPRICE=null"));
        break;
      default:
        Do(QStringLiteral("delete from alg_comdetail"));
        Do(QStringLiteral("delete from alg_commain"));
        Add(QStringLiteral("别的"), 2);
    }
    ASSERT_NE(Everything(), before);
    const ReadFile read = ReadPortfolioText(file);
    ASSERT_TRUE(read.problems.empty());
    Bring(read.set);
    ASSERT_EQ(Everything(), before) << "drill " << drill;
  }
}

TEST_F(RestoreTest, ADatabaseFileThatCannotGrowStaysAsItWas) {
  AddThree();
  PortfolioSet set = Now();
  for (int id = 4; id <= 1500; ++id) {
    SavedPortfolio portfolio{.id = id, .name = QStringLiteral("组合%1").arg(id), .date = QStringLiteral("2026-03-02")};
    for (int holding = 0; holding < 10; ++holding)
      portfolio.holdings.push_back({id * 10 + holding, id, 1600000 + holding, 100, 0.1, 8});
    set.portfolios.push_back(std::move(portfolio));
  }
  ASSERT_EQ(ProblemsOf(set), QStringList());
  const QString before = Everything();
  int failures = 0;
  for (int step = 0; step < 6; ++step) {
    const auto size = static_cast<rlim_t>(QFileInfo(temp_.File()).size());
    {
      const test::FileSizeLimit full(size + static_cast<rlim_t>(step) * 65536);
      try {
        Bring(set);
      } catch (const Error&) {
        ++failures;
      }
    }
    EXPECT_EQ(Everything() == before, failures == step + 1) << step;
  }
  EXPECT_GT(failures, 0);
}

TEST_F(RestoreTest, PortfoliosOfAFileCanBeAddedUnderNewNumbers) {
  AddThree();
  const PortfolioSet set = Now();
  Do(QStringLiteral("update alg_commain set COMNAME=COMNAME||'-旧'"));
  {
    TransactionScope transaction(database_);
    for (const SavedPortfolio& portfolio : set.portfolios) AddAsNew(database_, portfolio);
    transaction.Commit();
  }
  const PortfolioSet now = Now();
  ASSERT_EQ(now.portfolios.size(), 6U);
  EXPECT_EQ(now.portfolios[3].id, 4);
  EXPECT_EQ(now.portfolios[3].name, QStringLiteral("稳健一号"));
  EXPECT_EQ(now.portfolios[3].holdings[0].id, 10);
  EXPECT_EQ(now.portfolios[3].isClose, 1);
  EXPECT_EQ(now.portfolios[3].indexLevel, 3123.45);
}

}  // namespace
}  // namespace holdwise::backup
