// SPDX-License-Identifier: MIT
// What the portfolio editor writes, on a real database that fails where the test says so.
#include <gtest/gtest.h>

#include "common/host/host_access.h"
#include "common/store/statements.h"
#include "holdwise/packet/number_text.h"
#include "injecting_user_data.h"
#include "scripted_host.h"
#include "temp_database.h"
#include "views/zxpz/portfolio_writer.h"

namespace holdwise::test {
namespace {

using namespace editor;

class EditorWriter : public testing::Test {
 protected:
  EditorWriter() {
    SetModuleHost(&host);
    host.SetUserData(database);
    host.clock.now = QDateTime(QDate(2024, 6, 3), QTime(10, 0));
    host.dataCenter.currentDateText = QStringLiteral("2024-05-31");
    for (const char* code : {"600000", "000001", "600519"})
      host.codeNums.Add({QString::fromLatin1(code), QString::fromLatin1(code), {}, 1, {}});
  }
  ~EditorWriter() override { SetModuleHost(nullptr); }

  static PortfolioDraft Draft(const char* name = "稳健") {
    return {QString::fromUtf8(name),
            QStringLiteral("3111.02"),
            {{QStringLiteral("600000"), {}, QStringLiteral("10.50"), QStringLiteral("100")},
             {QStringLiteral("000001"), {}, QStringLiteral("8"), QStringLiteral("200")}}};
  }
  static PortfolioDraft Other() {
    return {QStringLiteral("改名"),
            QStringLiteral("3200.00"),
            {{QStringLiteral("600519"), {}, QStringLiteral("1700"), QStringLiteral("3")},
             {QStringLiteral("600000"), {}, QStringLiteral("9.9"), QStringLiteral("500")},
             {QStringLiteral("000001"), {}, QStringLiteral("8.01"), QStringLiteral("200")}}};
  }
  QStringList Rows(const QString& select) {
    QStringList lines;
    const ResultSet rows = real.Service().Query(select);
    for (int row = 0; row < rows.RowCount(); ++row) {
      QStringList cells;
      for (int column = 0; column < rows.ColumnCount(); ++column) cells << rows.TextAt(row, column);
      lines << cells.join(QLatin1Char(' '));
    }
    return lines;
  }
  QStringList Headers() {
    return Rows(QStringLiteral(
        "select ID,COMNAME,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG from alg_commain order by ID"));
  }
  QStringList Holdings() {
    return Rows(QStringLiteral("select MAINID,SecuCode,PZSL,BUYPRICE from alg_comdetail order by ID"));
  }
  QStringList Tables() { return Headers() + Holdings(); }
  std::int64_t IdOf(const char* name) { return real.Service().Count(sql::IdOfName(QString::fromUtf8(name))); }
  /// Stores the first draft, finished; the calls so far are forgotten.
  std::int64_t Stored() {
    EXPECT_EQ(Create(real.Service(), Draft()), CreateResult::Created);
    real.Service().Execute(QStringLiteral("update alg_commain set ISFINISHED = 1"));
    return IdOf("稳健");
  }
  TempDatabase real;
  InjectingUserData database{real.Service()};
  ScriptedHost host;
};

TEST_F(EditorWriter, TheStatementsStandAsTheyAreAsked) {
  EXPECT_EQ(sql::kUnsavedPortfolios, QStringLiteral("select * from alg_commain where SAVEFLAG <> 1 order by ID"));
  ASSERT_EQ(Create(database, Draft()), CreateResult::Created);
  const auto id = QString::number(IdOf("稳健"));
  // 100 x 10.5 of 100 x 10.5 + 200 x 8, and the rest; digits by Python's repr.
  EXPECT_EQ(database.plan.Calls(),
            (QStringList{
                QStringLiteral("start"), QStringLiteral("select count(COMNAME) from alg_commain where COMNAME='稳健'"),
                QStringLiteral("select gen_id(ALG_ROWID_MAIN,1) from rdb$database"),
                QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values "
                               "(gen_id(ALG_ROWID_DETAIL,1),%1,1600000,100,0.39622641509433965,10.50)")
                    .arg(id),
                QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values "
                               "(gen_id(ALG_ROWID_DETAIL,1),%1,1000001,200,0.6037735849056604,8)")
                    .arg(id),
                QStringLiteral("insert into alg_commain (ID,COMNAME,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,"
                               "SAVEFLAG)values(%1,'稳健',3111.02,0,0,0,0,'2024-06-03',0)")
                    .arg(id),
                QStringLiteral("commit")}));
}

TEST_F(EditorWriter, ANewPortfolioIsUnsavedUnfinishedAndBoughtToday) {
  ASSERT_EQ(Create(database, Draft()), CreateResult::Created);
  const auto id = QString::number(IdOf("稳健"));
  EXPECT_EQ(Headers(), QStringList{id + QStringLiteral(" 稳健 3111.02 0 0 0 0 2024-06-03 0")});
  EXPECT_EQ(Holdings(), (QStringList{id + QStringLiteral(" 1600000 100 10.5"), id + QStringLiteral(" 1000001 200 8")}));
  const double sum = RealOr(Rows(QStringLiteral("select sum(PZBL) from alg_comdetail")).value(0));
  EXPECT_NEAR(sum, 1, 1e-12);
}

TEST_F(EditorWriter, EveryFailureOfACreationLeavesNothing) {
  constexpr int kCalls = 7;  // start, name, id, two holdings, header, commit
  for (int number = 0; number < kCalls; ++number) {
    database.plan.FailCall(number);
    EXPECT_EQ(Create(database, Draft()), CreateResult::Failed) << number;
    EXPECT_TRUE(database.plan.HasFailed()) << number;
    EXPECT_EQ(Tables(), QStringList()) << number;
    EXPECT_FALSE(database.InTransaction()) << number;
    EXPECT_TRUE(
        host.debug.Lines().back().contains(QStringLiteral("->Zxpz->Create 发生错误!错误信息:injected failure")));
  }
  database.plan.FailCall(kCalls);
  EXPECT_EQ(Create(database, Draft()), CreateResult::Created);
  EXPECT_FALSE(database.plan.HasFailed()) << "there is no further call";
}

TEST_F(EditorWriter, AHoldingThatIsRefusedIsNotAskedAbout) {
  database.plan.FailCall(3, FailurePlan::Kind::Refuses);
  EXPECT_EQ(Create(database, Draft()), CreateResult::Created);
  EXPECT_EQ(Headers().size(), 1);
  EXPECT_EQ(Holdings().size(), 1);
}

TEST_F(EditorWriter, AHeaderThatIsRefusedFailsAndItsHoldingsStay) {
  database.plan.FailCall(5, FailurePlan::Kind::Refuses);
  EXPECT_EQ(Create(database, Draft()), CreateResult::Failed);
  EXPECT_EQ(database.plan.Calls().back(), QStringLiteral("commit"));
  EXPECT_EQ(Headers().size(), 0);
  EXPECT_EQ(Holdings().size(), 2);
}

TEST_F(EditorWriter, ANameIsTakenByASavedPortfolioToo) {
  Stored();
  ASSERT_TRUE(Save(database, QStringLiteral("稳健")));
  const QStringList before = Tables();
  EXPECT_EQ(Create(database, Draft()), CreateResult::NameTaken);
  EXPECT_EQ(database.plan.Calls().back(), QStringLiteral("commit"));
  EXPECT_EQ(Tables(), before);
}

TEST_F(EditorWriter, ANameWithAQuoteBreaksItsStatementAndWritesNothing) {
  EXPECT_EQ(Create(database, Draft("it's")), CreateResult::Failed);
  EXPECT_EQ(Tables(), QStringList());
  EXPECT_FALSE(database.InTransaction());
}

TEST_F(EditorWriter, NumbersAreTakenAsTheyCanBeTyped) {
  PortfolioDraft draft = Draft();
  draft.holdings[0].price = QStringLiteral("12.");
  draft.holdings[0].quantity = QStringLiteral("007");
  draft.holdings[1].price = QStringLiteral(".5");
  draft.holdings[1].quantity = QStringLiteral("999999999");
  EXPECT_EQ(Create(database, draft), CreateResult::Created);
  const auto id = QString::number(IdOf("稳健"));
  EXPECT_EQ(Holdings(),
            (QStringList{id + QStringLiteral(" 1600000 7 12"), id + QStringLiteral(" 1000001 999999999 0.5")}));
}

TEST_F(EditorWriter, FortyCharactersBeyondTheBasicPlaneFit) {
  PortfolioDraft draft = Draft();
  draft.name = QStringLiteral("𠮷").repeated(40);
  EXPECT_EQ(Create(database, draft), CreateResult::Created);
  EXPECT_EQ(Headers().size(), 1);
}

TEST_F(EditorWriter, RewritingKeepsTheIdAndTakesTheMarketsDate) {
  const auto id = Stored();
  ASSERT_EQ(Rewrite(database, id, Other()), RewriteResult::Rewritten);
  const auto number = QString::number(id);
  EXPECT_EQ(Headers(), QStringList{number + QStringLiteral(" 改名 3200 0 0 0 0 2024-05-31 0")});
  EXPECT_EQ(Holdings(),
            (QStringList{number + QStringLiteral(" 1600519 3 1700"), number + QStringLiteral(" 1600000 500 9.9"),
                         number + QStringLiteral(" 1000001 200 8.01")}));
  EXPECT_EQ(database.plan.Calls().mid(0, 3),
            (QStringList{QStringLiteral("start"), QStringLiteral("Delete from alg_comdetail where MAINID = ") + number,
                         QStringLiteral("Delete from alg_commain where ID =") + number}));
}

TEST_F(EditorWriter, EveryExceptionOfARewriteLeavesThePortfolioAsItWas) {
  const auto id = Stored();
  const QStringList before = Tables();
  constexpr int kCalls = 8;  // start, two deletions, three holdings, header, commit
  for (int number = 0; number < kCalls; ++number) {
    database.plan.FailCall(number);
    EXPECT_EQ(Rewrite(database, id, Other()), RewriteResult::Failed) << number;
    EXPECT_TRUE(database.plan.HasFailed()) << number;
    EXPECT_EQ(Tables(), before) << number;
    EXPECT_FALSE(database.InTransaction()) << number;
  }
  database.plan.FailCall(kCalls);
  EXPECT_EQ(Rewrite(database, id, Other()), RewriteResult::Rewritten);
  EXPECT_FALSE(database.plan.HasFailed()) << "there is no further call";
}

TEST_F(EditorWriter, EveryRefusalOfARewriteHasItsOwnEnd) {
  const auto id = Stored();
  const QStringList before = Tables();
  const auto refuse = [&](int number) {
    database.plan.FailCall(number, FailurePlan::Kind::Refuses);
    return Rewrite(database, id, Other());
  };
  EXPECT_EQ(refuse(1), RewriteResult::Refused) << "the deletion of the holdings";
  EXPECT_EQ(Tables(), before);
  EXPECT_EQ(refuse(6), RewriteResult::Failed) << "the header's insertion";
  EXPECT_EQ(Tables(), before);
  EXPECT_EQ(refuse(2), RewriteResult::Rewritten) << "the header's deletion";
  EXPECT_EQ(database.plan.Calls().back(), QStringLiteral("commit"));
  EXPECT_EQ(Headers(), before.mid(0, 1)) << "the old header stays, and nothing is inserted";
  EXPECT_EQ(Holdings(), QStringList());
  EXPECT_EQ(refuse(4), RewriteResult::Rewritten) << "a holding's insertion";
  EXPECT_EQ(Holdings().size(), 2);
  EXPECT_FALSE(database.InTransaction());
}

TEST_F(EditorWriter, WithoutADateOfTheMarketNothingIsRewritten) {
  const auto id = Stored();
  const QStringList before = Tables();
  for (const char* date : {"", "2024-02-30", "31.05.2024"}) {
    host.dataCenter.currentDateText = QString::fromLatin1(date);
    EXPECT_EQ(Rewrite(database, id, Other()), RewriteResult::Failed) << date;
    EXPECT_EQ(Tables(), before) << date;
  }
}

TEST_F(EditorWriter, ADeletionTakesHoldingsAndHeader) {
  const auto id = Stored();
  ASSERT_EQ(Create(real.Service(), Draft("另一个")), CreateResult::Created);
  Deletion deletion(database);
  EXPECT_TRUE(database.InTransaction()) << "before the user has answered";
  EXPECT_EQ(deletion.Run(QStringLiteral("稳健")), Deletion::Result::Deleted);
  EXPECT_EQ(database.plan.Calls(),
            (QStringList{QStringLiteral("start"), QStringLiteral("select ID from alg_commain where COMNAME ='稳健'"),
                         QStringLiteral("Delete from alg_comdetail where MAINID = %1").arg(id),
                         QStringLiteral("Delete from alg_commain where COMNAME ='稳健'"), QStringLiteral("commit")}));
  EXPECT_EQ(Headers().size(), 1);
  EXPECT_EQ(Holdings().size(), 2);
}

TEST_F(EditorWriter, ADeletionLeavesNoHoldingsOfNamesakes) {
  Stored();
  // An exchange file may bring two portfolios of one name.
  ASSERT_EQ(Create(real.Service(), Draft("另一个")), CreateResult::Created);
  real.Service().Execute(QStringLiteral("update alg_commain set COMNAME = '稳健'"));
  EXPECT_EQ(Deletion(database).Run(QStringLiteral("稳健")), Deletion::Result::Deleted);
  EXPECT_TRUE(Headers().isEmpty());
  EXPECT_TRUE(Holdings().isEmpty());
}

TEST_F(EditorWriter, WithoutAnAnswerADeletionIsRolledBack) {
  Stored();
  const QStringList before = Tables();
  { const Deletion deletion(database); }
  EXPECT_EQ(database.plan.Calls(), (QStringList{QStringLiteral("start"), QStringLiteral("rollback")}));
  EXPECT_EQ(Tables(), before);
}

TEST_F(EditorWriter, EveryFailureOfADeletionLeavesThePortfolio) {
  Stored();
  const QStringList before = Tables();
  for (int number = 0; number < 4; ++number) {
    {
      Deletion deletion(database);
      database.plan.FailCall(number);
      EXPECT_THROW((void)deletion.Run(QStringLiteral("稳健")), Error) << number;
    }
    EXPECT_EQ(Tables(), before) << number;
    EXPECT_FALSE(database.InTransaction()) << number;
  }
  for (const auto& [number, result] :
       {std::pair{1, Deletion::Result::HoldingsRefused}, std::pair{2, Deletion::Result::HeaderRefused}}) {
    {
      Deletion deletion(database);
      database.plan.FailCall(number, FailurePlan::Kind::Refuses);
      EXPECT_EQ(deletion.Run(QStringLiteral("稳健")), result);
    }
    EXPECT_EQ(Tables(), before);
    EXPECT_EQ(database.plan.Calls().back(), QStringLiteral("rollback"));
  }
}

TEST_F(EditorWriter, OnlyOneFinishedPortfolioOfItsNameIsFitToBeSaved) {
  const QString name = QStringLiteral("稳健");
  EXPECT_EQ(SaveStateOf(database, name), SaveState::NotOne) << "there is none";
  Stored();
  EXPECT_EQ(SaveStateOf(database, name), SaveState::Fit);
  real.Service().Execute(QStringLiteral("update alg_commain set ISFINISHED = 0"));
  EXPECT_EQ(SaveStateOf(database, name), SaveState::Unfinished);
  real.Service().Execute(QStringLiteral("update alg_commain set ISFINISHED = 1"));
  real.Service().Execute(QStringLiteral("insert into alg_commain (ID,COMNAME,ISFINISHED) values (99,'稳健',1)"));
  EXPECT_EQ(SaveStateOf(database, name), SaveState::NotOne);
}

TEST_F(EditorWriter, SavingMarksThePortfolio) {
  Stored();
  database.plan.FailCall(0, FailurePlan::Kind::Refuses);
  EXPECT_FALSE(Save(database, QStringLiteral("稳健")));
  EXPECT_TRUE(Headers().front().endsWith(QStringLiteral(" 0")));
  database.plan.FailCall(0);
  EXPECT_THROW((void)Save(database, QStringLiteral("稳健")), Error);
  EXPECT_TRUE(Save(database, QStringLiteral("稳健")));
  EXPECT_TRUE(Headers().front().endsWith(QStringLiteral(" 1")));
  EXPECT_EQ(database.plan.Calls().back(), QStringLiteral("Update alg_commain set SAVEFLAG = 1 where COMNAME ='稳健'"));
}

TEST(EditorDraft, TheFirstZeroIsFoundRowByRowPriceBeforeQuantity) {
  const auto row = [](const char* price, const char* quantity) {
    return HoldingRow{QStringLiteral("600000"), {}, QString::fromLatin1(price), QString::fromLatin1(quantity)};
  };
  EXPECT_EQ(FirstZero({row("1", "2"), row("3", "4")}), std::nullopt);
  EXPECT_EQ(FirstZero({row("1", ""), row("", "4")}), (GridCell{kHoldingQuantity, 0}));
  EXPECT_EQ(FirstZero({row("0.00", "0")}), (GridCell{kHoldingPrice, 0}));
  EXPECT_EQ(FirstZero({row("1", "2"), row("x", "4")}), (GridCell{kHoldingPrice, 1}));
}

}  // namespace
}  // namespace holdwise::test
