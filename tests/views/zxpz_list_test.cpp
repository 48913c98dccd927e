// SPDX-License-Identifier: MIT
// The lower band of the portfolio editor: list, details, pictures.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPainter>

#include "common/grid/operation_picture.h"
#include "zxpz_view_fixture.h"

namespace holdwise::test {
namespace {

using namespace editor;

class EditorList : public EditorView {
 protected:
  [[nodiscard]] Qt::CursorShape Cursor() const { return portfolios->viewport()->cursor().shape(); }
  [[nodiscard]] QImage CellOf(int column, int row) const {
    return portfolios->viewport()->grab(portfolios->CellRect(column, row)).toImage();
  }
};

TEST_F(EditorList, ShowsTheUnsavedPortfoliosOldestFirst) {
  OpenWithThree();
  ASSERT_EQ(portfolios->RowCount(), 2);
  EXPECT_EQ(RowOf(*portfolios, 0), List({"1", "稳健", "2024-05-21", "", "0.00", "0.000000", "0.000000", ""}));
  // 12.345 % in halves away from zero.
  EXPECT_EQ(RowOf(*portfolios, 1), List({"2", "进取", "2024-05-23", "", "12.35", "0.000123", "0.987655", ""}));
  EXPECT_EQ(portfolios->Row(), 0);
}

TEST_F(EditorList, ShowsWhatTheSelectedOneHolds) {
  OpenWithThree();
  ASSERT_EQ(holdings->RowCount(), 2);
  EXPECT_EQ(RowOf(*holdings, 0), List({"600000", "浦发银行", "200", "0.6", "9.5"}));
  EXPECT_EQ(RowOf(*holdings, 1), List({"000001", "平安银行", "100", "0.4", "12"}));
  Click(*portfolios, kName, 1);
  ASSERT_EQ(holdings->RowCount(), 3);
  EXPECT_EQ(RowOf(*holdings, 2), List({"600519", "贵州茅台", "10", "0.35", "1800"}));
}

TEST_F(EditorList, AStockTheHostDoesNotKnowKeepsItsStoredCode) {
  bench.AddPortfolio(1, QStringLiteral("旧"), {{1600999, 100, 0.5, 3}, {1600000, 100, 0.5, 9}}, 0);
  OpenEditor();
  EXPECT_EQ(RowOf(*holdings, 0), List({"1600999", "已退市", "100", "0.5", "3"}));
}

TEST_F(EditorList, TheWeightIsDrawnInPercentAndCopiedSo) {
  OpenWithThree();
  const QImage drawn = holdings->viewport()->grab(holdings->CellRect(kWeight, 0)).toImage();
  EXPECT_EQ(holdings->Cells(kWeight, 0), QStringLiteral("0.6"));
  TStringGrid twin(QStringLiteral("Test"), QStringLiteral("twin"));
  twin.SetColors(holdings->Colors());
  twin.SetCells(0, 0, QStringLiteral("60.00"));
  twin.resize(holdings->ColWidth(kWeight), 60);
  twin.SetColWidths({holdings->ColWidth(kWeight)});
  twin.show();
  QTest::qWait(10);
  EXPECT_EQ(drawn, twin.viewport()->grab(twin.CellRect(0, 0)).toImage());
  holdings->setFocus();
  QTest::keyClick(holdings, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(),
            QStringLiteral("代码\t名称\t数量(股)\t比例(%)\n600000\t浦发银行\t200\t60.00\n"
                           "000001\t平安银行\t100\t40.00\n"));
  EXPECT_EQ(holdings->ToGridText().rows[0], List({"600000", "浦发银行", "200", "60.00", "9.5"})) << "and exported";
}

TEST_F(EditorList, APortfolioThatLacksDataIsNamedUntilItIsGone) {
  AddThree();
  Run(QStringLiteral("update alg_commain set ISFINISHED = 1, CALCDATE = 20240529, LACKING = iif(ID = 3, 1, 0)"));
  OpenEditor();
  const auto notice = [this] {
    for (const QLabel* label : bench.mainFrame->findChildren<QLabel*>())
      if (label->isVisible() && label->text() == QStringLiteral("1 个组合的数据不完整")) return label->toolTip();
    return QString();
  };
  EXPECT_TRUE(notice().contains(QStringLiteral("进取："))) << notice().toStdString();
  ASSERT_EQ(portfolios->Cells(kName, 1), QStringLiteral("进取"));
  Click(*portfolios, kName, 1);
  QTest::keyClick(portfolios, Qt::Key_Delete);
  EXPECT_EQ(portfolios->RowCount(), 1);
  EXPECT_EQ(notice(), QString());
}

TEST_F(EditorList, TheSelectedRowIsNotReadAgain) {
  OpenWithThree();
  Inject();
  Click(*portfolios, kName, 0);
  EXPECT_EQ(injecting.plan.Calls(), QStringList());
  Click(*portfolios, kName, 1);
  EXPECT_EQ(injecting.plan.Calls(),
            List({"select * from alg_commain where COMNAME = '进取'", "select * from alg_comdetail where MAINID =3"}));
}

TEST_F(EditorList, APortfolioThatIsGoneLeavesTheDetails) {
  OpenWithThree();
  Run(QStringLiteral("delete from alg_commain where ID = 3"));
  Click(*portfolios, kName, 1);
  EXPECT_EQ(holdings->Cells(kCode, 0), QStringLiteral("600000"));
}

TEST_F(EditorList, InitialisationReadsTheListAndLeavesWhatIsEdited) {
  OpenWithThree();
  Fill(QStringLiteral("新的"), TwoRows());
  Click(*portfolios, kName, 1);
  Run(QStringLiteral("update alg_comdetail set PZSL = 300 where MAINID = 1 and SecuCode = 1600000"));
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(portfolios->Row(), 0);
  EXPECT_EQ(holdings->Cells(kQuantity, 0), QStringLiteral("300")) << "the first one's details are always read";
  EXPECT_EQ(Name().text(), QStringLiteral("新的"));
  EXPECT_EQ(Holdings().Rows(), TwoRows());
}

TEST_F(EditorList, AnEmptyListDrawsNothingAndTakesNoClick) {
  OpenEditor();
  EXPECT_TRUE(portfolios->IsEmpty());
  EXPECT_TRUE(holdings->IsEmpty());
  const QImage picture = CellOf(kOperation, 0);
  EXPECT_EQ(picture.pixelColor(12, 12), Color("Qm_BGCorlor"));
  for (const Link link : {kSave, kDelete, kModify}) {
    Press(link, 0);
    EXPECT_EQ(Cursor(), Qt::ArrowCursor);
  }
  portfolios->setFocus();
  for (const int key : {Qt::Key_Delete, Qt::Key_F2}) QTest::keyClick(portfolios, static_cast<Qt::Key>(key));
  QTest::keyClick(portfolios, Qt::Key_F4);
  EXPECT_TRUE(Messages().empty());
  EXPECT_FALSE(IsModifying());
}

TEST_F(EditorList, APictureUnderTheMouseHasHandAndHint) {
  OpenWithThree();
  const std::pair<Link, const char*> links[] = {{kSave, "保存"}, {kDelete, "删除"}, {kModify, "修改"}};
  for (const auto& [link, hint] : links) {
    MoveTo(link, 1);
    EXPECT_EQ(Cursor(), Qt::PointingHandCursor);
    EXPECT_EQ(QToolTip::text(), QString::fromUtf8(hint));
  }
  QTest::mouseMove(portfolios->viewport(), portfolios->CellRect(kBeta, 1).center());
  EXPECT_EQ(Cursor(), Qt::ArrowCursor);
}

TEST_F(EditorList, TheEdgesOfAPictureCountAsInside) {
  OpenWithThree();
  const QPoint corner = portfolios->CellRect(kOperation, 0).topLeft();
  const auto isOver = [&](int x, int y) {
    QTest::mouseMove(portfolios->viewport(), corner + QPoint(x, y));
    return Cursor() == Qt::PointingHandCursor;
  };
  // Save from 2 to 22, delete from 24 to 44, modify from 46 to 66; 2 to 22 downwards.
  for (const int x : {2, 22, 24, 44, 46, 66}) EXPECT_TRUE(isOver(x, 2)) << x;
  for (const int x : {1, 23, 45, 67}) EXPECT_FALSE(isOver(x, 12)) << x;
  EXPECT_TRUE(isOver(12, 22));
  EXPECT_FALSE(isOver(12, 23));
  EXPECT_FALSE(isOver(12, 1));
}

TEST_F(EditorList, ThePicturesStandSideBySide) {
  OpenWithThree();
  const auto expected = [&](const QPixmap& picture, const QColor& ground) {
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(ground);
    QPainter painter(&image);
    painter.drawPixmap(0, 0, picture);
    painter.end();
    return image;
  };
  const QImage cell = CellOf(kOperation, 1).convertToFormat(QImage::Format_RGB32);
  const QColor ground = Color("KTR_HighLightColor2");
  EXPECT_EQ(cell.copy(2, 2, 20, 20), expected(SavePicture(false), ground));
  EXPECT_EQ(cell.copy(24, 2, 20, 20), expected(DeletePicture(false), ground));
  EXPECT_EQ(cell.copy(46, 2, 20, 20), expected(ModifyPicture(false), ground));
}

TEST_F(EditorList, ThePressedPictureOfModifyStaysUntilTheMouseIsLetGo) {
  OpenWithThree();
  MoveTo(kModify, 0);
  const QImage before = CellOf(kOperation, 0);
  QTest::mousePress(portfolios->viewport(), Qt::LeftButton, {}, LinkPlace(kModify, 0));
  EXPECT_NE(CellOf(kOperation, 0), before);
  QTest::mouseRelease(portfolios->viewport(), Qt::LeftButton, {}, LinkPlace(kModify, 1));
  EXPECT_EQ(CellOf(kOperation, 0), before);
}

TEST_F(EditorList, ThePressedPictureStaysWhileAMessageWaits) {
  OpenWithThree();
  const QImage before = CellOf(kOperation, 0);
  QImage during;
  bench.host.messageBoxes.whileAsking = [&] {
    QTest::mouseRelease(portfolios->viewport(), Qt::LeftButton, {}, LinkPlace(kDelete, 0));
    during = CellOf(kOperation, 0);
  };
  bench.host.messageBoxes.answers = {2};
  Press(kDelete, 0);
  EXPECT_NE(during, before);
  EXPECT_EQ(CellOf(kOperation, 0), before);
}

// Another program wrote it: pasted into a statement it would be true of every portfolio.
TEST_F(EditorList, ANameWithAQuoteIsNoPieceOfAStatement) {
  bench.AddPortfolio(1, QStringLiteral("x'' or ''1''=''1"), {{1600000, 100, 0.5, 3}, {1000001, 100, 0.5, 9}}, 0);
  bench.AddPortfolio(2, QStringLiteral("稳健"), {{1600000, 100, 0.5, 3}, {1000001, 100, 0.5, 9}}, 0);
  OpenEditor();
  const QStringList tables = Tables();
  ASSERT_EQ(portfolios->Cells(kName, 0), QStringLiteral("x' or '1'='1"));
  for (const Link link : {kSave, kDelete, kModify}) {
    const std::size_t told = bench.host.debug.Failures().size();
    Press(link, 0);
    EXPECT_EQ(Tables(), tables);
    ASSERT_GT(bench.host.debug.Failures().size(), told);
    EXPECT_TRUE(bench.host.debug.Failures().back().contains(QStringLiteral("组合名称含有引号")));
    EXPECT_FALSE(bench.database.Service().InTransaction());
  }
}

TEST_F(EditorList, ADeletionIsLoggedWithTheName) {
  OpenWithThree();
  Press(kDelete, 0);
  ASSERT_EQ(bench.host.debug.Lines().size(), 1U);
  EXPECT_TRUE(bench.host.debug.Lines().front().contains(QStringLiteral("已删除组合“稳健”")));
}

TEST_F(EditorList, APictureStaysPressedWhenTheMouseIsLetGoOutsideEveryCell) {
  OpenWithThree();
  MoveTo(kModify, 0);
  const QImage before = CellOf(kOperation, 0);
  QTest::mousePress(portfolios->viewport(), Qt::LeftButton, {}, LinkPlace(kModify, 0));
  const QImage pressed = CellOf(kOperation, 0);
  ASSERT_NE(pressed, before);
  QTest::mouseRelease(portfolios->viewport(), Qt::LeftButton, {}, LinkPlace(kModify, 1) + QPoint(0, 60));
  EXPECT_EQ(CellOf(kOperation, 0), pressed);
  QTest::mouseRelease(portfolios->viewport(), Qt::LeftButton, {}, LinkPlace(kModify, 1));
  EXPECT_EQ(CellOf(kOperation, 0), before);
}

TEST_F(EditorList, TheHintGoesWhenTheMouseLeavesThePicture) {
  OpenWithThree();
  const QPoint places[] = {portfolios->CellRect(kBeta, 0).center(), LinkPlace(kSave, 0) + QPoint(-11, 0),
                           LinkPlace(kSave, 1) + QPoint(0, 60)};
  for (const QPoint& elsewhere : places) {
    MoveTo(kSave, 0);
    ASSERT_TRUE(QToolTip::isVisible());
    QTest::mouseMove(portfolios->viewport(), elsewhere);
    EXPECT_TRUE(QTest::qWaitFor([] { return !QToolTip::isVisible(); }, 2000)) << elsewhere.x() << "," << elsewhere.y();
  }
}

TEST_F(EditorList, TheCatalogueHasBothGridsByNumber) {
  OpenWithThree();
  EXPECT_EQ(frame->CatalogueGrids(), (std::vector<const TStringGrid*>{portfolios, holdings}));
  EXPECT_EQ(frame->HoldingsGrid().gridName, QStringLiteral("StringGrid1"));
  EXPECT_EQ(frame->HoldingsGrid().portfolioIds, List({"1", "2"}));
  EXPECT_TRUE(frame->SelectPortfolio(QStringLiteral("2")));
  EXPECT_EQ(holdings->RowCount(), 3);
  EXPECT_FALSE(frame->SelectPortfolio(QStringLiteral("3")));
}

TEST_F(EditorList, RowsAndPanelsTakeTheThemesColours) {
  OpenWithThree();
  const auto check = [&] {
    EXPECT_EQ(CellOf(kName, 0).pixelColor(1, 1), Color("Qm_GridRowSelectColor"));
    EXPECT_EQ(CellOf(kName, 1).pixelColor(1, 1), Color("KTR_HighLightColor2"));
    for (const char* panel : {"RzPanel1", "RzPanel2"}) {
      const auto* widget = frame->findChild<QWidget*>(QString::fromLatin1(panel));
      EXPECT_EQ(widget->palette().color(QPalette::Window), Color("Qm_BGCorlor")) << panel;
    }
    EXPECT_EQ(Name().palette().color(QPalette::Text), Color("QM_TitleFontColor"));
  };
  check();
  bench.host.theme.Switch();
  bench.mainFrame->MakeSkin();
  check();
}

/// The page says nothing of it: the host does.
TEST_F(EditorList, WhatCouldNotBeWrittenIsToldToTheHost) {
  OpenWithThree();
  Inject();
  std::size_t told = 0;
  for (const auto& [category, isTold] : {std::pair(ErrorCategory::Io, true), std::pair(ErrorCategory::Busy, true),
                                         std::pair(ErrorCategory::Database, false)}) {
    injecting.plan.SetCategory(category);
    for (const Link link : {kSave, kDelete}) {
      bench.host.messageBoxes.calls.clear();
      bench.host.messageBoxes.answers = {1};
      injecting.plan.FailCall(0);
      Press(link, 0);
      ASSERT_TRUE(injecting.plan.HasFailed());
      if (isTold) ++told;
      EXPECT_EQ(bench.host.debug.Failures().size(), told);
      EXPECT_TRUE(bench.host.messageBoxes.calls.empty());
    }
  }
  EXPECT_EQ(bench.host.debug.Failures().front(), QStringLiteral("injected failure"));
}

TEST_F(EditorList, AFailingStatementReachesTheSenderAndNothingIsCleared) {
  OpenWithThree();
  Inject();
  injecting.plan.FailCall(0);
  EXPECT_THROW(SendFrameMessage(*frame, FrameMessage::Init), Error);
  EXPECT_EQ(portfolios->RowCount(), 2);
}

}  // namespace
}  // namespace holdwise::test
