// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "performance_view_fixture.h"

namespace holdwise::test {
namespace {

using namespace performance;

class PerformanceDeletion : public PerformanceView {
 protected:
  [[nodiscard]] QPoint Picture(int row) const { return portfolios->CellRect(kOperation, row).center(); }
  void PressPicture(int row) {
    QTest::mouseMove(portfolios->viewport(), Picture(row));
    QTest::mouseClick(portfolios->viewport(), Qt::LeftButton, {}, Picture(row));
  }
  [[nodiscard]] qint64 Rows(const QString& table) {
    return bench.database.Service().Count(QStringLiteral("select Count(*) from ") + table);
  }
};

TEST_F(PerformanceDeletion, AsksAndTakesHeaderAndHoldings) {
  OpenWithTwo();
  PressPicture(0);
  const std::vector<ScriptedMessageBoxes::Call> asked = {
      {QStringLiteral("是否真的要删除当前组合?"), QStringLiteral("询问"), 1, 32}};
  EXPECT_EQ(bench.host.messageBoxes.calls, asked);
  EXPECT_EQ(Rows(QStringLiteral("alg_commain")), 1);
  EXPECT_EQ(Rows(QStringLiteral("alg_comdetail")), 1);
  ASSERT_EQ(portfolios->RowCount(), 1);
  EXPECT_EQ(portfolios->Cells(kName, 0), QStringLiteral("稳健"));
  EXPECT_EQ(Title(), QStringLiteral("稳健-成分股表现"));
  EXPECT_EQ(holdings->RowCount(), 1);
}

TEST_F(PerformanceDeletion, TheDeleteKeyAsksForTheSelectedPortfolio) {
  OpenWithTwo();
  Click(*portfolios, kName, 1);
  bench.host.messageBoxes.answers = {2, 1};
  QTest::keyClick(portfolios, Qt::Key_Delete, Qt::ControlModifier);
  EXPECT_TRUE(bench.host.messageBoxes.calls.empty());
  QTest::keyClick(portfolios, Qt::Key_Delete);
  EXPECT_EQ(portfolios->RowCount(), 2) << "refused";
  QTest::keyClick(portfolios, Qt::Key_Delete);
  ASSERT_EQ(portfolios->RowCount(), 1);
  EXPECT_EQ(portfolios->Cells(kName, 0), QStringLiteral("进取"));
}

TEST_F(PerformanceDeletion, OfALowerRowReselectsTheFirst) {
  OpenWithTwo();
  PressPicture(1);
  ASSERT_EQ(portfolios->RowCount(), 1);
  EXPECT_EQ(portfolios->Cells(kName, 0), QStringLiteral("进取"));
  EXPECT_EQ(portfolios->Row(), 0);
  EXPECT_EQ(holdings->RowCount(), 3);
}

TEST_F(PerformanceDeletion, OfTheLastOneEmptiesThePage) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  Open();
  PressPicture(0);
  EXPECT_TRUE(portfolios->IsEmpty());
  EXPECT_TRUE(holdings->IsEmpty());
  EXPECT_EQ(Title(), QString());
  PressPicture(0);
  EXPECT_EQ(bench.host.messageBoxes.calls.size(), 1U);
}

TEST_F(PerformanceDeletion, CancelKeepsEverything) {
  OpenWithTwo();
  bench.host.messageBoxes.answers = {2};
  PressPicture(0);
  EXPECT_EQ(Rows(QStringLiteral("alg_commain")), 2);
  EXPECT_EQ(portfolios->RowCount(), 2);
  PressPicture(0);
  EXPECT_EQ(bench.host.messageBoxes.calls.size(), 2U) << "the view takes clicks again";
}

TEST_F(PerformanceDeletion, OnlyAPressOnThePictureItselfAsks) {
  OpenWithTwo();
  const QRect cell = portfolios->CellRect(kOperation, 0);
  QTest::mouseMove(portfolios->viewport(), cell.topLeft() + QPoint(2, 2));
  EXPECT_EQ(portfolios->viewport()->cursor().shape(), Qt::ArrowCursor);
  QTest::mouseClick(portfolios->viewport(), Qt::LeftButton, {}, cell.topLeft() + QPoint(2, 2));
  EXPECT_TRUE(bench.host.messageBoxes.calls.empty());
  QTest::mouseMove(portfolios->viewport(), Picture(0));
  EXPECT_EQ(portfolios->viewport()->cursor().shape(), Qt::PointingHandCursor);
  QTest::mouseClick(portfolios->viewport(), Qt::RightButton, {}, Picture(0));
  EXPECT_TRUE(bench.host.messageBoxes.calls.empty());
}

TEST_F(PerformanceDeletion, AFailingStatementIsLoggedAndTheViewStaysUsable) {
  bench.AddPortfolio(1, QStringLiteral("it''s"), {{1600000, 100, 1, 9}});
  bench.AddPortfolio(2, QStringLiteral("进取"), ThreeHoldings());
  Open();
  // The press selects the row first, and that statement fails already; the question is not reached.
  PressPicture(1);
  EXPECT_TRUE(bench.host.messageBoxes.calls.empty());
  EXPECT_EQ(Rows(QStringLiteral("alg_commain")), 2);
  PressPicture(0);
  EXPECT_EQ(Rows(QStringLiteral("alg_commain")), 1);
}

// Another program wrote it: pasted into the statement it would be true of every portfolio.
TEST_F(PerformanceDeletion, ANameWithAQuoteIsNoPieceOfAStatement) {
  bench.AddPortfolio(1, QStringLiteral("x'' or ''1''=''1"), {{1600000, 100, 1, 9}});
  bench.AddPortfolio(2, QStringLiteral("进取"), ThreeHoldings());
  Open();
  const QString name = QStringLiteral("x' or '1'='1");
  ASSERT_EQ(portfolios->Cells(kName, 1), name);
  PressPicture(1);
  EXPECT_EQ(Rows(QStringLiteral("alg_commain")), 2);
  EXPECT_EQ(Rows(QStringLiteral("alg_comdetail")), 4);
  ASSERT_FALSE(bench.host.debug.Failures().empty()) << "the user is told";
  EXPECT_TRUE(bench.host.debug.Failures().back().contains(QStringLiteral("组合名称含有引号"))) << name.toStdString();
}

TEST_F(PerformanceDeletion, TheNewestOnesQuoteKeepsNobodyFromTheOthers) {
  bench.AddPortfolio(1, QStringLiteral("进取"), ThreeHoldings());
  bench.AddPortfolio(2, QStringLiteral("x'' or ''1''=''1"), {{1600000, 100, 1, 9}});
  Open();
  ASSERT_EQ(portfolios->RowCount(), 2);
  QTest::keyClick(portfolios, Qt::Key_Delete);
  EXPECT_EQ(Rows(QStringLiteral("alg_commain")), 2);
  Click(*portfolios, kName, 1);
  EXPECT_EQ(holdings->RowCount(), 3);
  PressPicture(1);
  EXPECT_EQ(Rows(QStringLiteral("alg_commain")), 1);
}

TEST_F(PerformanceDeletion, IsLoggedWithTheName) {
  OpenWithTwo();
  bench.host.messageBoxes.answers = {2, 1};
  PressPicture(0);
  EXPECT_TRUE(bench.host.debug.Lines().empty()) << "refused";
  PressPicture(0);
  ASSERT_EQ(bench.host.debug.Lines().size(), 1U);
  EXPECT_TRUE(bench.host.debug.Lines().front().contains(QStringLiteral("已删除组合“进取”")));
  EXPECT_EQ(bench.host.debug.Outcomes(),
            std::vector<QString>{QStringLiteral("已删除组合“进取”，可用“文件→恢复…”找回")});
}

TEST_F(PerformanceDeletion, TheQuestionsPortfolioGoesEvenWhenTheListMovesBehindIt) {
  OpenWithTwo();
  bench.host.messageBoxes.whileAsking = [&] {
    bench.AddPortfolio(3, QStringLiteral("后来"), {{1600000, 100, 1, 9}});
    SendFrameMessage(*frame, FrameMessage::Init);
  };
  PressPicture(0);
  ASSERT_EQ(portfolios->RowCount(), 2);
  EXPECT_EQ(portfolios->Cells(kName, 0), QStringLiteral("后来"));
  EXPECT_EQ(portfolios->Cells(kName, 1), QStringLiteral("稳健"));
}

TEST_F(PerformanceDeletion, ThePressedPictureShowsWhileTheQuestionWaits) {
  OpenWithTwo();
  const QRect operation = portfolios->CellRect(kOperation, 0);
  const auto picture = [&] { return portfolios->viewport()->grab(operation).toImage(); };
  const QImage before = picture();
  QImage during;
  bench.host.messageBoxes.answers = {2};
  bench.host.messageBoxes.whileAsking = [&] { during = picture(); };
  PressPicture(0);
  ASSERT_FALSE(during.isNull());
  EXPECT_NE(during, before);
  EXPECT_EQ(picture(), before);
}

}  // namespace
}  // namespace holdwise::test
