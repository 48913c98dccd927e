// SPDX-License-Identifier: MIT
#include "common/store/statements.h"

#include <gtest/gtest.h>

#include "common/host/codes.h"
#include "common/host/host_access.h"
#include "mainframe/view_table.h"
#include "scripted_host.h"

namespace holdwise {
namespace {

TEST(Statements, TextsAreExact) {
  EXPECT_EQ(sql::kHoldingsForNowValues,
            QStringLiteral("select  SECUCODE,Mainid,PZSL from alg_comdetail order by MainId"));
  EXPECT_EQ(sql::kPortfolioCosts,
            QStringLiteral("select MainId,Sum(PZSL*BUYPRICE) as sum_value from alg_comdetail group by MainId"));
  EXPECT_EQ(sql::kSavedHoldingsForCloses,
            QStringLiteral("select MainID,SecuCode,PZSL from alg_comdetail where MainID in (select ID from alg_commain "
                           "where SAVEFLAG = 1) order by MainID"));
  EXPECT_EQ(sql::PortfolioByName(QStringLiteral("稳健")),
            QStringLiteral("select * from alg_commain where COMNAME = '稳健'"));
  EXPECT_EQ(sql::HoldingsOf(QStringLiteral("12")), QStringLiteral("select * from alg_comdetail where MAINID =12"));
  EXPECT_EQ(sql::CodesOf(QStringLiteral("12")), QStringLiteral("select SECUCODE from alg_comdetail where mainid = 12"));
}

TEST(Statements, CloseQueriesCarryTypeAndBounds) {
  EXPECT_EQ(
      sql::HeldCloses(sql::PeriodType::Week, {QDate(2024, 12, 30), QDate(2025, 1, 5)}),
      QStringLiteral("select SECUCODE, CLOSEPRICE from ALG_STOCKSTATISTIC where HqType = 1 and  SECUCODE in (select "
                     "distinct SECUCODE from alg_comdetail) and HqDate >= 20241230 and HqDate <= 20250105"));
  EXPECT_TRUE(sql::HeldCloses(sql::PeriodType::Month, {QDate(2024, 2, 1), QDate(2024, 2, 29)})
                  .contains(QStringLiteral("HqType = 2 and  SECUCODE")));
}

TEST(Statements, DeleteRecordNamesThePortfolioOnce) {
  EXPECT_EQ(sql::DeleteRecord(QStringLiteral("成长%s")),
            QStringLiteral("execute block\nas\ndeclare id int ;\nbegin\n"
                           "  select ID from alg_commain where COMNAME = '成长%s' into :id;\n"
                           "  if (:id<>0) then\n  begin\n"
                           "    delete from alg_commain where id = :id;\n"
                           "    delete from alg_comdetail where mainid = :id;\n"
                           "  end\nend"));
}

TEST(Statements, RestoringKeepsTheTextsOfTheFile) {
  EXPECT_EQ(sql::RestoreHolding({QStringLiteral("3"), QStringLiteral("1"), QStringLiteral("1600000"),
                                 QStringLiteral("100.5"), QStringLiteral("0.25"), QStringLiteral("10.23")}),
            QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values "
                           "(3,1,1600000,100.5,0.25,10.23)"));
  EXPECT_EQ(sql::RestorePortfolio({QStringLiteral("1"), QStringLiteral("稳健"), QStringLiteral("3111.02"),
                                   QStringLiteral("2024-05-29"), QStringLiteral("1")}),
            QStringLiteral(
                "insert into alg_commain (ID,COMNAME,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG)values("
                "1,'稳健',3111.02,0,0,0,0,'2024-05-29',1)"));
  EXPECT_EQ(sql::SetHoldingGenerator(42), QStringLiteral("SET GENERATOR ALG_ROWID_DETAIL TO 42"));
  EXPECT_EQ(sql::SetPortfolioGenerator(7), QStringLiteral("SET GENERATOR alg_rowid_main TO 7"));
}

class Codes : public testing::Test {
 protected:
  Codes() {
    SetModuleHost(&host_);
    host_.codeNums.Add({QStringLiteral("600000"), QStringLiteral("浦发银行"), QStringLiteral("银行"), 1, {}, false});
    host_.codeNums.Add({QStringLiteral("510300"), QStringLiteral("基金"), QString(), 1, {}, true});
  }
  ~Codes() override { SetModuleHost(nullptr); }
  ScriptedHost host_;
};

TEST_F(Codes, SixDigitsAreTheLastSixCharacters) {
  EXPECT_EQ(GetCodeCNum(QStringLiteral("1600000")), QStringLiteral("600000"));
  EXPECT_EQ(GetCodeCNum(QStringLiteral("600000")), QStringLiteral("600000"));
  EXPECT_EQ(GetCodeCNum(QStringLiteral("1")), QStringLiteral("1"));
  EXPECT_EQ(GetCodeCNum(QString()), QString());
}

TEST_F(Codes, CodeNumberFollowsTheHostsAnswers) {
  EXPECT_EQ(GetCodeNum(QString()), QString());
  EXPECT_EQ(GetCodeNum(QStringLiteral("600000")), QStringLiteral("1600000"));
  EXPECT_EQ(GetCodeNum(QStringLiteral("1600000")), QStringLiteral("1600000"));
  EXPECT_EQ(GetCodeNum(QStringLiteral("000001")), QStringLiteral("1000001"));   // unknown, no index
  EXPECT_EQ(GetCodeNum(QStringLiteral("510300")), QStringLiteral("510300"));    // a known fund
  EXPECT_EQ(GetCodeNum(QStringLiteral("1510300")), QStringLiteral("1510300"));  // unchanged, not cut and prefixed
  EXPECT_EQ(GetCodeNum(QStringLiteral("399001")), QStringLiteral("399001"));    // an index
  EXPECT_EQ(GetCodeNum(QStringLiteral("1")), QStringLiteral("1"));              // an index
  EXPECT_EQ(GetCodeNum(QStringLiteral("x399300")), QStringLiteral("x399300"));  // the index question sees 399300
}

TEST(Nodes, ParentsComeBeforeTheirChildren) {
  std::set<int> seen = {0};
  QStringList captions;
  for (const TNodeData& node : Nodes) {
    EXPECT_TRUE(seen.contains(node.ParentId)) << node.Id;
    EXPECT_EQ(node.ParentId, node.Id % 1000 == 0 ? 0 : node.Id / 1000 * 1000);
    seen.insert(node.Id);
    captions.append(QString::number(node.Id) + node.Text);
  }
  EXPECT_EQ(captions.join(QLatin1Char(' ')),
            QStringLiteral("1000资产配置 1001智能配置 1002自选配置 2000组合跟踪 2001组合表现 2002风险计量 2003压力测试 "
                           "3000组合评价 3001总体评价 3002业绩分解"));
}

}  // namespace
}  // namespace holdwise
