// SPDX-License-Identifier: MIT
// The three pictures of a row in the portfolio editor: save, delete, modify.
#include <gtest/gtest.h>

#include <QFile>

#include "common/series/shared_objects.h"
#include "zxpz_view_fixture.h"

namespace holdwise::test {
namespace {

using namespace editor;

class EditorLinks : public EditorView {
 protected:
  [[nodiscard]] std::int64_t SaveFlag(int id) {
    return bench.database.Service().Count(QStringLiteral("select SAVEFLAG from alg_commain where ID = %1").arg(id));
  }
  [[nodiscard]] bool InTransaction() { return bench.database.Service().InTransaction(); }
};

TEST_F(EditorLinks, AnUnfinishedPortfolioIsNotSaved) {
  OpenWithThree();
  Run(QStringLiteral("update alg_commain set ISFINISHED = 0 where ID = 1"));
  Press(kSave, 0);
  EXPECT_EQ(Messages(), std::vector<Call>{Notice("此行数据没有计算完成，不能保存")});
  EXPECT_EQ(SaveFlag(1), 0);
  EXPECT_EQ(portfolios->RowCount(), 2);
}

TEST_F(EditorLinks, ASavedPortfolioLeavesTheListAndIsPriced) {
  OpenWithThree();
  const std::size_t commands = bench.PriceRole()->Commands().size();
  const TNameValueSnapshot before = g_UserValue->GetUserValuesStringList();
  Press(kSave, 1);
  EXPECT_EQ(Messages(), std::vector<Call>{Notice("保存自选配置组合成功")});
  EXPECT_EQ(SaveFlag(3), 1);
  ASSERT_EQ(portfolios->RowCount(), 1);
  EXPECT_EQ(portfolios->Cells(kName, 0), QStringLiteral("稳健"));
  EXPECT_EQ(holdings->RowCount(), 2) << "the first one's";
  EXPECT_GT(bench.PriceRole()->Commands().size(), commands);
  EXPECT_NE(g_UserValue->GetUserValuesStringList(), before) << "the series are read anew";
}

TEST_F(EditorLinks, OfTwoOfOneNameNoneIsSaved) {
  OpenWithThree();
  bench.AddPortfolio(9, QStringLiteral("稳健"), {{1600000, 1, 1, 1}}, 1);
  Press(kSave, 0);
  EXPECT_TRUE(Messages().empty());
  EXPECT_EQ(SaveFlag(1), 0);
}

TEST_F(EditorLinks, SavingWaitsForTheModification) {
  OpenWithThree();
  Press(kModify, 0);
  Press(kSave, 1);
  EXPECT_EQ(Messages(), std::vector<Call>{Notice("正处在修改状态...")});
  EXPECT_EQ(SaveFlag(3), 0);
  EXPECT_TRUE(IsModifying());
}

TEST_F(EditorLinks, ASaveThatIsRefusedSaysNothing) {
  OpenWithThree();
  Inject();
  injecting.plan.FailCall(2, FailurePlan::Kind::Refuses);  // after the two questions
  Press(kSave, 0);
  EXPECT_TRUE(injecting.plan.HasFailed());
  EXPECT_TRUE(Messages().empty());
  EXPECT_EQ(portfolios->RowCount(), 2);
}

TEST_F(EditorLinks, AFailingStatementIsLoggedAndTheListTakesClicksAgain) {
  OpenWithThree();
  Inject();
  for (int number = 0; number < 3; ++number) {
    injecting.plan.FailCall(number);
    Press(kSave, 0);
    EXPECT_TRUE(injecting.plan.HasFailed()) << number;
    EXPECT_EQ(SaveFlag(1), 0);
  }
  EXPECT_TRUE(bench.host.debug.Lines().back().contains(QStringLiteral("->Zxpz->strngrd 发生错误!")));
  Press(kSave, 0);
  EXPECT_EQ(SaveFlag(1), 1);
}

TEST_F(EditorLinks, DeletingAsksInsideItsTransaction) {
  OpenWithThree();
  bool during = false;
  bench.host.messageBoxes.whileAsking = [&] { during = InTransaction(); };
  Press(kDelete, 0);
  EXPECT_EQ(Messages(), std::vector<Call>{Question()});
  EXPECT_TRUE(during);
  EXPECT_FALSE(InTransaction());
  ASSERT_EQ(portfolios->RowCount(), 1);
  EXPECT_EQ(portfolios->Cells(kName, 0), QStringLiteral("进取"));
  EXPECT_EQ(HoldingsOf(1), QStringList());
  EXPECT_EQ(holdings->RowCount(), 3);
}

TEST_F(EditorLinks, ARefusedDeletionIsRolledBack) {
  OpenWithThree();
  const QStringList tables = Tables();
  bench.host.messageBoxes.answers = {2};
  Inject();
  Press(kDelete, 0);
  EXPECT_EQ(injecting.plan.Calls(), List({"start", "rollback"}));
  EXPECT_EQ(Tables(), tables);
  EXPECT_EQ(portfolios->RowCount(), 2);
}

TEST_F(EditorLinks, DeletingLeavesTheModificationWhateverTheAnswer) {
  OpenWithThree();
  for (const int answer : {2, 1}) {
    Press(kModify, 1);
    ASSERT_TRUE(IsModifying());
    bench.host.messageBoxes.answers = {answer};
    Press(kDelete, 0);
    EXPECT_FALSE(IsModifying()) << answer;
    EXPECT_EQ(Name().text(), QString());
    EXPECT_TRUE(Holdings().GetIshaveData());
    EXPECT_EQ(portfolios->RowCount(), answer == 1 ? 1 : 2);
  }
}

TEST_F(EditorLinks, HoldingsThatAreNotDeletedKeepTheModification) {
  OpenWithThree();
  const QStringList tables = Tables();
  Press(kModify, 1);
  Click(*portfolios, kName, 0);
  Inject();
  injecting.plan.FailCall(2, FailurePlan::Kind::Refuses);  // start, id, deletion
  Press(kDelete, 0);
  EXPECT_TRUE(injecting.plan.HasFailed());
  EXPECT_TRUE(IsModifying());
  EXPECT_EQ(Name().text(), QStringLiteral("进取"));
  EXPECT_EQ(Tables(), tables);
  EXPECT_FALSE(InTransaction());
}

TEST_F(EditorLinks, AHeaderThatIsNotDeletedLeavesTheModification) {
  OpenWithThree();
  const QStringList tables = Tables();
  Press(kModify, 0);
  Inject();
  injecting.plan.FailCall(3, FailurePlan::Kind::Refuses);
  Press(kDelete, 0);
  EXPECT_TRUE(injecting.plan.HasFailed());
  EXPECT_FALSE(IsModifying());
  EXPECT_EQ(Tables(), tables);
  EXPECT_FALSE(InTransaction());
}

TEST_F(EditorLinks, EveryExceptionOfADeletionIsRolledBackAndLogged) {
  OpenWithThree();
  const QStringList tables = Tables();
  Inject();
  for (int number = 0; number < 5; ++number) {  // start, id, holdings, header, commit
    injecting.plan.FailCall(number);
    Press(kDelete, 0);
    EXPECT_TRUE(injecting.plan.HasFailed()) << number;
    EXPECT_EQ(Tables(), tables) << number;
    EXPECT_FALSE(InTransaction()) << number;
  }
  Press(kDelete, 0);
  EXPECT_EQ(portfolios->RowCount(), 1) << "the list takes clicks again";
}

TEST_F(EditorLinks, AModificationIsNotModified) {
  OpenWithThree();
  Press(kModify, 0);
  Press(kModify, 1);
  EXPECT_EQ(Messages(), std::vector<Call>{Notice("正处在修改状态...")});
  EXPECT_EQ(Name().text(), QStringLiteral("稳健"));
  EXPECT_EQ(Holdings().Rows().size(), 2U);
}

TEST_F(EditorLinks, ThePortfolioAskedAboutGoesEvenWhenTheListMoves) {
  OpenWithThree();
  bench.host.messageBoxes.whileAsking = [&] {
    Run(QStringLiteral("update alg_commain set SAVEFLAG = 1 where ID = 1"));
    SendFrameMessage(*frame, FrameMessage::Init);
  };
  Press(kDelete, 1);
  EXPECT_EQ(HoldingsOf(3), QStringList());
  EXPECT_EQ(HoldingsOf(1).size(), 2);
}

TEST_F(EditorLinks, TheKeysOfTheListDoWhatThePicturesDo) {
  OpenWithThree();
  portfolios->setFocus();
  QTest::keyClick(portfolios, Qt::Key_Down);
  QTest::keyClick(portfolios, Qt::Key_F2);
  EXPECT_EQ(Name().text(), QStringLiteral("进取"));
  bench.host.messageBoxes.answers = {2};
  QTest::keyClick(portfolios, Qt::Key_Delete);
  EXPECT_EQ(Messages(), std::vector<Call>{Question()});
  EXPECT_FALSE(IsModifying());
  portfolios->setFocus();
  QTest::keyClick(portfolios, Qt::Key_F4);
  EXPECT_EQ(SaveFlag(1), 1) << "the first one is selected after the deletion";
}

TEST_F(EditorLinks, TheListKeepsTheFocusAndTheHostTheKeyboardWhateverIsSaid) {
  OpenWithThree();
  Name().setFocus();
  portfolios->setFocus();
  const auto expect = [this](const Call& call) {
    EXPECT_EQ(Messages(), std::vector<Call>{call});
    EXPECT_TRUE(portfolios->hasFocus()) << call.text.toStdString();
    EXPECT_TRUE(bench.host.keyCodes.IsCaptureOn()) << call.text.toStdString();
    bench.host.messageBoxes.calls.clear();
  };
  Run(QStringLiteral("update alg_commain set ISFINISHED = 0 where ID = 1"));
  QTest::keyClick(portfolios, Qt::Key_F4);
  expect(Notice("此行数据没有计算完成，不能保存"));
  Run(QStringLiteral("update alg_commain set ISFINISHED = 1 where ID = 1"));
  QTest::keyClick(portfolios, Qt::Key_F2);
  for (const auto key : {Qt::Key_F4, Qt::Key_F2}) {
    QTest::keyClick(portfolios, key);
    expect(Notice("正处在修改状态..."));
  }
  bench.host.messageBoxes.answers = {2};
  QTest::keyClick(portfolios, Qt::Key_Delete);
  expect(Question());
  QTest::keyClick(portfolios, Qt::Key_F4);
  expect(Notice("保存自选配置组合成功"));
  QTest::keyClick(portfolios, Qt::Key_Delete);
  expect(Question());
  EXPECT_TRUE(portfolios->IsEmpty());
}

TEST_F(EditorLinks, TheMainFrameMayGoWhileAQuestionWaits) {
  for (const Link link : {kDelete, kSave}) {
    OpenWithThree();
    const QStringList tables = Tables();
    bench.host.messageBoxes.whileAsking = [&] { bench.CloseMainFrame(); };
    MoveTo(link, 0);
    QTest::mousePress(portfolios->viewport(), Qt::LeftButton, {}, LinkPlace(link, 0));
    EXPECT_EQ(bench.mainFrame, nullptr);
    EXPECT_FALSE(InTransaction());
    EXPECT_EQ(Tables() == tables, link == kDelete);
    // The portfolios were written out although a transaction was open while the user was asked.
    EXPECT_TRUE(QFile::exists(bench.host.SysWorkDataPath() + QStringLiteral("TZZHMerge.dat")));
    QFile::remove(bench.host.SysWorkDataPath() + QStringLiteral("TZZHMerge.dat"));
    bench.host.messageBoxes.whileAsking = nullptr;
    ClearPortfolios();
  }
}

}  // namespace
}  // namespace holdwise::test
