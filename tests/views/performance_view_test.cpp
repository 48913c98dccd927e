#include <gtest/gtest.h>

#include <QLabel>
#include <QTest>
#include <QToolTip>

#include "common/recalc.h"
#include "common/untcommon.h"
#include "view_bench.h"
#include "views/zhbx/performance_layout.h"
#include "views/zhbx/zhbx.h"

namespace holdwise::test {
namespace {

using namespace performance;

QStringList List(std::initializer_list<const char*> texts) {
  QStringList list;
  for (const char* text : texts) list << QString::fromUtf8(text);
  return list;
}

class PerformanceView : public testing::Test {
 protected:
  /// Shows the view in a main frame of that width.
  void Open(int width = 1000) {
    bench.OpenMainFrame(width);
    bench.ClickNode(2001);
    frame = bench.mainFrame->CurFrame();
    ASSERT_NE(frame, nullptr);
    portfolios = frame->findChild<TStringGrid*>(QStringLiteral("strngrd"));
    holdings = frame->findChild<TStringGrid*>(QStringLiteral("StringGrid1"));
    QTest::qWait(20);
  }
  /// Two saved portfolios, the newest with the three holdings, prices in.
  void OpenWithTwo(int width = 1000) {
    bench.AddPortfolio(1, QStringLiteral("稳健"), {{1600000, 200, 1, 9.5}});
    bench.AddPortfolio(2, QStringLiteral("进取"), ThreeHoldings());
    Open(width);
    bench.DeliverPrices(PricesOfThree());
    Refresh();
  }
  void Refresh() { SendFrameMessage(*frame, FrameMessage::ReflashNowPrice); }
  [[nodiscard]] static QStringList RowOf(const TStringGrid& grid, int row) {
    QStringList cells;
    for (int column = 0; column < grid.ColCount(); ++column) cells << grid.Cells(column, row);
    return cells;
  }
  void Click(TStringGrid& grid, int column, int row) {
    const QPoint at = grid.CellRect(column, row).center();
    QTest::mouseMove(grid.viewport(), at);
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, at);
  }
  [[nodiscard]] QString Title() const {
    const auto* strip = frame->findChild<TitleStrip*>();
    return strip->Caption().text();
  }
  [[nodiscard]] qint64 Rows(const QString& table) {
    return bench.database.Service().Count(QStringLiteral("select Count(*) from ") + table);
  }

  ViewBench bench;
  TViewFrame* frame = nullptr;
  TStringGrid* portfolios = nullptr;
  TStringGrid* holdings = nullptr;
};

TEST_F(PerformanceView, ListsSavedPortfoliosNewestFirst) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  bench.AddPortfolio(3, QStringLiteral("乙"), {{1600000, 100, 1, 9}}, 0);
  bench.AddPortfolio(2, QStringLiteral("丙"), {{1600000, 100, 1, 9}});
  Open();
  ASSERT_EQ(portfolios->RowCount(), 2);
  EXPECT_EQ(portfolios->Cells(kName, 0), QStringLiteral("丙"));
  EXPECT_EQ(portfolios->Cells(kCreated, 0), QStringLiteral("2024-05-22"));
  EXPECT_EQ(portfolios->Cells(kId, 0), QStringLiteral("2"));
  EXPECT_EQ(portfolios->Cells(kName, 1), QStringLiteral("甲"));
  EXPECT_EQ(portfolios->ColCount(), 10);
  EXPECT_EQ(holdings->ColCount(), 15);
}

TEST_F(PerformanceView, ShowsTheHoldingsOfTheNewestPortfolio) {
  OpenWithTwo();
  EXPECT_EQ(Title(), QStringLiteral("进取-成分股表现"));
  ASSERT_EQ(holdings->RowCount(), 3);
  // See PerformanceFigures for the arithmetic; month close only for 600000, week closes for 600000 and 600519.
  EXPECT_EQ(RowOf(*holdings, 0), List({"600000", "浦发银行", "银行", "10.00", "2.04", "1000", "40.00", "200.00",
                                       "500.00", "1000.00", "1000.00", "11.11", "9", "9.5", "9"}));
  EXPECT_EQ(RowOf(*holdings, 1), List({"000001", "平安银行", "银行", "12.00", "-4.00", "500", "25.00", "-250.00", "0",
                                       "0", "0.00", "0.00", "12", "0", "0"}));
  EXPECT_EQ(RowOf(*holdings, 2),
            List({"600519", "贵州茅台", "酒、饮料和精制茶制造业及其相关服务", "1710.00", "0.59", "10", "35.00",
                  "100.00", "600.00", "0", "-900.00", "-5.00", "1800", "1650", ""}));
}

TEST_F(PerformanceView, ShowsEveryPortfolioLive) {
  OpenWithTwo();
  // value 10000 + 6000 + 17100; previous closes 9800 + 6250 + 17000; weeks 9500 + 0 + 16500; months 9000; cost 33000
  EXPECT_EQ(RowOf(*portfolios, 0),
            List({"进取", "2024-05-22", "33100.00", "0.15", "27.31", "267.78", "100.00", "0.30", "", "2"}));
  // value 2000; 1960: 2.04 %; 1900: 5.26 %; 1800: 11.11 %; cost 1900
  EXPECT_EQ(RowOf(*portfolios, 1),
            List({"稳健", "2024-05-21", "2000.00", "2.04", "5.26", "11.11", "100.00", "5.26", "", "1"}));
}

TEST_F(PerformanceView, WithoutSavedPortfoliosBothGridsAndTheTitleAreEmpty) {
  Open();
  EXPECT_TRUE(portfolios->IsEmpty());
  EXPECT_TRUE(holdings->IsEmpty());
  EXPECT_EQ(Title(), QString());
  Refresh();
  EXPECT_EQ(RowOf(*portfolios, 0), QStringList(10, QString()));
  const auto* hint = portfolios->viewport()->findChild<QLabel*>();
  ASSERT_NE(hint, nullptr);
  EXPECT_TRUE(hint->isVisible());
}

TEST_F(PerformanceView, APortfolioWithoutHoldingsStopsTheListsLiveColumnsToo) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  bench.AddPortfolio(2, QStringLiteral("空"), {});
  Open();
  bench.DeliverPrices({{QStringLiteral("600000"), {1000, 2}}});
  Refresh();
  EXPECT_EQ(Title(), QStringLiteral("空-成分股表现"));
  EXPECT_TRUE(holdings->IsEmpty());
  EXPECT_EQ(portfolios->Cells(kValue, 1), QString());
  Click(*portfolios, kName, 1);
  EXPECT_EQ(holdings->RowCount(), 1);
  EXPECT_EQ(portfolios->Cells(kValue, 1), QStringLiteral("1000.00"));
  Click(*portfolios, kName, 0);
  EXPECT_TRUE(holdings->IsEmpty());
}

TEST_F(PerformanceView, AClickLoadsThatPortfolio) {
  OpenWithTwo();
  MessageSpy spy(*frame);
  Click(*portfolios, kValue, 1);
  EXPECT_EQ(Title(), QStringLiteral("稳健-成分股表现"));
  ASSERT_EQ(holdings->RowCount(), 1);
  EXPECT_EQ(holdings->Cells(kHoldingGain, 0), QStringLiteral("100.00"));
  EXPECT_EQ(portfolios->Row(), 1);
  EXPECT_EQ(spy.Count(FrameMessage::ReflashNowPrice), 1);
}

TEST_F(PerformanceView, AClickOnTheShownPortfolioDoesNotReload) {
  OpenWithTwo();
  MessageSpy spy(*frame);
  bench.database.Service().Execute(QStringLiteral("delete from alg_comdetail"));
  Click(*portfolios, kName, 0);
  EXPECT_EQ(holdings->RowCount(), 3);
  EXPECT_TRUE(spy.messages.empty());
}

TEST_F(PerformanceView, ArrowKeysLoadTheNextPortfolio) {
  OpenWithTwo();
  portfolios->setFocus();
  QTest::keyClick(portfolios, Qt::Key_Down);
  EXPECT_EQ(Title(), QStringLiteral("稳健-成分股表现"));
  EXPECT_EQ(holdings->RowCount(), 1);
}

TEST_F(PerformanceView, InitialisationEndsWithAPriceMessageOfItsOwn) {
  OpenWithTwo();
  MessageSpy spy(*frame);
  SendFrameMessage(*frame, FrameMessage::Init);
  // One after the holdings are loaded, one after everything.
  EXPECT_EQ(spy.messages, std::vector<int>({5096, 5099, 5099}));
}

TEST_F(PerformanceView, RowsWithoutAPriceOrValueKeepWhatTheyShow) {
  // No trade yet and no previous close either: the price is 0, and so is the portfolio's value.
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1000002, 300, 1, 5}});
  Open();
  holdings->SetCells(kPrice, 0, QStringLiteral("7.50"));
  holdings->SetCells(kHoldingGain, 0, QStringLiteral("750.00"));
  portfolios->SetCells(kValue, 0, QStringLiteral("2250.00"));
  bench.DeliverPrices({{QStringLiteral("000002"), {0, 2}}});
  Refresh();
  EXPECT_EQ(holdings->Cells(kPrice, 0), QStringLiteral("7.50"));
  EXPECT_EQ(holdings->Cells(kHoldingGain, 0), QStringLiteral("750.00"));
  EXPECT_EQ(holdings->Cells(kDayContribution, 0), QString());
  EXPECT_EQ(portfolios->Cells(kValue, 0), QStringLiteral("2250.00"));
  EXPECT_EQ(portfolios->Cells(kGain, 0), QString());
}

TEST_F(PerformanceView, WithoutAPreviousCloseTheChangeIsZeroButTheDayIsNot) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1000002, 300, 1, 5}});
  Open();
  bench.DeliverPrices({{QStringLiteral("000002"), {800, 2}}});
  Refresh();
  EXPECT_EQ(holdings->Cells(kChange, 0), QStringLiteral("0"));
  EXPECT_EQ(holdings->Cells(kDayContribution, 0), QStringLiteral("2400.00"));
  EXPECT_EQ(holdings->Cells(kWeekClose, 0), QStringLiteral("0"));
  EXPECT_EQ(holdings->Cells(kMonthClose, 0), QStringLiteral("0"));
  EXPECT_EQ(holdings->Cells(kWeekContribution, 0), QStringLiteral("0"));
  EXPECT_EQ(portfolios->Cells(kDayChange, 0), QStringLiteral("0"));
}

TEST_F(PerformanceView, APortfolioWithoutCostKeepsItsGainRate) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 0}});
  Open();
  portfolios->SetCells(kGainRate, 0, QStringLiteral("7.77"));
  bench.DeliverPrices({{QStringLiteral("600000"), {1000, 2}}});
  Refresh();
  EXPECT_EQ(portfolios->Cells(kGain, 0), QStringLiteral("1000.00"));
  EXPECT_EQ(portfolios->Cells(kGainRate, 0), QStringLiteral("7.77"));
  EXPECT_EQ(holdings->Cells(kHoldingGainRate, 0), QStringLiteral("0"));
}

TEST_F(PerformanceView, ASecurityTheHostDoesNotKnowIsDelisted) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600001, 100, 1, 9}});
  Open();
  EXPECT_EQ(holdings->Cells(kCode, 0), QStringLiteral("600001"));
  EXPECT_EQ(holdings->Cells(kSecurityName, 0), QStringLiteral("已退市"));
  EXPECT_EQ(holdings->Cells(kIndustry, 0), QString());
}

TEST_F(PerformanceView, APortfolioThatHasGoneLeavesTheOldHoldings) {
  OpenWithTwo();
  bench.database.Service().Execute(QStringLiteral("delete from alg_commain where ID = 1"));
  Click(*portfolios, kName, 1);
  EXPECT_EQ(holdings->RowCount(), 3);
  EXPECT_EQ(Title(), QStringLiteral("稳健-成分股表现"));
}

TEST_F(PerformanceView, AQuoteInANameBreaksItsStatement) {
  bench.AddPortfolio(1, QStringLiteral("it''s"), {{1600000, 100, 1, 9}});
  bench.AddPortfolio(2, QStringLiteral("进取"), ThreeHoldings());
  Open();
  Click(*portfolios, kName, 1);
  EXPECT_EQ(holdings->RowCount(), 3) << "the old holdings stay";
  ASSERT_FALSE(bench.host.debug.Lines().empty());
  EXPECT_TRUE(bench.host.debug.Lines().back().startsWith(QStringLiteral("Holdwise.bpl->Zhbx->strngrd 发生错误!")));
}

TEST_F(PerformanceView, ClosesAreReadAgainAfterARecalculation) {
  OpenWithTwo();
  bench.AddClose(1000001, 1, 20240524, 11.0);
  ReCalc();
  SendFrameMessage(*frame, FrameMessage::Init);
  // (12 - 11) x 500
  EXPECT_EQ(holdings->Cells(kWeekContribution, 1), QStringLiteral("500.00"));
}

// Deleting.

class PerformanceDeletion : public PerformanceView {
 protected:
  [[nodiscard]] QPoint Picture(int row) const { return portfolios->CellRect(kOperation, row).center(); }
  void PressPicture(int row) {
    QTest::mouseMove(portfolios->viewport(), Picture(row));
    QTest::mouseClick(portfolios->viewport(), Qt::LeftButton, {}, Picture(row));
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

// Pointer feedback.

TEST_F(PerformanceView, ANameWiderThanTheValueColumnIsHinted) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  bench.AddPortfolio(2, QStringLiteral("一个名字长得列里放不下的投资组合甲乙丙"), ThreeHoldings());
  Open();
  const auto moveTo = [&](int row) {
    const QRect cell = portfolios->CellRect(kName, row);
    QTest::mouseMove(portfolios->viewport(), {cell.left() + 6, cell.center().y()});
  };
  moveTo(0);
  EXPECT_EQ(QToolTip::text(), QStringLiteral("一个名字长得列里放不下的投资组合甲乙丙"));
  moveTo(1);
  QTest::qWait(400);
  EXPECT_FALSE(QToolTip::isVisible());
}

TEST_F(PerformanceView, AnIndustryWiderThanItsColumnIsHinted) {
  OpenWithTwo();
  const auto moveTo = [&](int row) {
    const QRect cell = holdings->CellRect(kIndustry, row);
    QTest::mouseMove(holdings->viewport(), {cell.left() + 6, cell.center().y()});
  };
  moveTo(2);
  EXPECT_EQ(QToolTip::text(), QStringLiteral("酒、饮料和精制茶制造业及其相关服务"));
  moveTo(0);
  QTest::qWait(400);
  EXPECT_FALSE(QToolTip::isVisible());
}

TEST_F(PerformanceView, AClickOnACodeOpensTheSecurityInTheHost) {
  OpenWithTwo();
  Click(*holdings, kCode, 1);
  EXPECT_EQ(bench.host.codeNums.setCodes, std::vector<QString>{QStringLiteral("1000001")});
  EXPECT_TRUE(bench.host.addresses.gone.empty()) << "only once the click is over";
  QTest::qWait(60);
  const std::vector<std::pair<QString, QString>> once = {{QStringLiteral("分时走势"), QString()}};
  EXPECT_EQ(bench.host.addresses.gone, once);
}

TEST_F(PerformanceView, OnlyTheTextsOfCodeAndNameAreLinks) {
  OpenWithTwo();
  const auto cursorAt = [&](const QPoint& at) {
    QTest::mouseMove(holdings->viewport(), at);
    return holdings->viewport()->cursor().shape();
  };
  EXPECT_EQ(cursorAt(holdings->CellRect(kCode, 0).center()), Qt::PointingHandCursor);
  EXPECT_EQ(cursorAt(holdings->CellRect(kSecurityName, 2).center()), Qt::PointingHandCursor);
  EXPECT_EQ(cursorAt(holdings->CellRect(kCode, 0).topLeft() + QPoint(1, 13)), Qt::ArrowCursor);
  EXPECT_EQ(cursorAt(holdings->CellRect(kPrice, 0).center()), Qt::ArrowCursor);
  EXPECT_EQ(cursorAt(holdings->CellRect(kCode, 2).center() + QPoint(0, 60)), Qt::ArrowCursor);
  Click(*holdings, kPrice, 0);
  EXPECT_TRUE(bench.host.codeNums.setCodes.empty());
}

// Layout and painting.

TEST_F(PerformanceView, ColumnsFollowTheWidthAndTitlesTheirColumns) {
  OpenWithTwo(1000);
  for (const int width : {900, 1024, 1920}) {
    bench.mainFrame->resize(width, 640);
    QTest::qWait(20);
    const auto portfolioWidths = PortfolioWidths(portfolios->ClientWidth());
    const auto holdingWidths = HoldingWidths(holdings->ClientWidth());
    for (int column = 0; column < kPortfolioColumns - 1; ++column) {
      EXPECT_EQ(portfolios->ColWidth(column), portfolioWidths[static_cast<size_t>(column)]) << width << ' ' << column;
    }
    const auto strips = frame->findChildren<HeaderStrip*>();
    ASSERT_EQ(strips.size(), 2);
    for (HeaderStrip* strip : strips) {
      const bool isList = strip->Labels().size() == 9;
      const TStringGrid& grid = isList ? *portfolios : *holdings;
      ASSERT_EQ(strip->Labels().size(), isList ? 9U : 12U);
      for (int column = 0; column < static_cast<int>(strip->Labels().size()); ++column) {
        const QLabel* label = strip->Labels()[static_cast<size_t>(column)];
        EXPECT_EQ(label->x(), grid.CellRect(column, 0).x()) << width << ' ' << column;
        EXPECT_EQ(label->width(), std::min(grid.ColWidth(column), strip->width() - label->x()));
      }
    }
    EXPECT_EQ(holdings->ColWidth(kIndustry), holdingWidths[kIndustry]);
    EXPECT_TRUE(holdings->isColumnHidden(kBuyPrice));
  }
}

TEST_F(PerformanceView, TheListIsFiveRowsHighInItsPanel) {
  OpenWithTwo();
  EXPECT_EQ(portfolios->height(), 5 * 26 + 4);
  EXPECT_EQ(portfolios->viewport()->height(), 5 * 26);
  EXPECT_EQ(portfolios->parentWidget()->height(), 201);
}

TEST_F(PerformanceView, ManyPortfoliosScrollAndTheColumnsMakeRoom) {
  for (int id = 1; id <= 30; ++id) {
    bench.AddPortfolio(id, QStringLiteral("组合%1").arg(id), {{1600000, 100, 1, 9}});
  }
  Open();
  EXPECT_LT(portfolios->ClientWidth(), portfolios->width());
  EXPECT_EQ(portfolios->ColWidth(kCreated), portfolios->ClientWidth() / 9);
}

TEST_F(PerformanceView, RowsAndPictureArePaintedInTheThemesColours) {
  OpenWithTwo();
  const auto color = [&](const char* key) { return bench.host.theme.ColorOf(QString::fromLatin1(key)); };
  const auto grab = [&] { return portfolios->viewport()->grab().toImage(); };
  const auto corner = [&](int column, int row) { return portfolios->CellRect(column, row).topLeft() + QPoint(1, 1); };
  EXPECT_EQ(grab().pixelColor(corner(kName, 0)), color("Qm_GridRowSelectColor"));
  EXPECT_EQ(grab().pixelColor(corner(kName, 1)), color("KTR_HighLightColor2"));
  EXPECT_EQ(grab().pixelColor(3, 26 * 3), color("Qm_BGCorlor"));
  // The picture's corner lets the row shine through, its middle does not.
  const QRect operation = portfolios->CellRect(kOperation, 1);
  const QPoint pictureCorner = operation.center() + QPoint(-9, 9);
  EXPECT_EQ(grab().pixelColor(pictureCorner), color("KTR_HighLightColor2"));
  int other = 0;
  for (int y = -9; y < 9; ++y) {
    for (int x = -9; x < 9; ++x) {
      other += grab().pixelColor(operation.center() + QPoint(x, y)) != color("KTR_HighLightColor2") ? 1 : 0;
    }
  }
  EXPECT_GT(other, 40);
  Click(*portfolios, kName, 1);
  EXPECT_EQ(grab().pixelColor(corner(kName, 0)), color("KTR_HighLightColor1"));
}

TEST_F(PerformanceView, AThemeChangeRepaintsEverything) {
  OpenWithTwo();
  bench.host.theme.Switch();
  bench.mainFrame->MakeSkin();
  const auto color = [&](const char* key) { return bench.host.theme.ColorOf(QString::fromLatin1(key)); };
  EXPECT_EQ(holdings->viewport()->grab().toImage().pixelColor(1, 27), color("KTR_HighLightColor2"));
  const auto* strip = frame->findChild<TitleStrip*>();
  EXPECT_EQ(strip->Caption().palette().color(QPalette::WindowText), color("Section_BigTxtColor"));
  for (HeaderStrip* header : frame->findChildren<HeaderStrip*>()) {
    EXPECT_EQ(header->Labels().front()->palette().color(QPalette::WindowText), color("QM_TitleFontColor"));
    EXPECT_EQ(header->Picture().pixmap().toImage().pixelColor(0, 0), color("Grid_TitleUpBg"));
  }
}

TEST_F(PerformanceView, ThePressedPictureShowsWhileTheQuestionWaits) {
  OpenWithTwo();
  const QRect operation = portfolios->CellRect(kOperation, 0);
  const auto picture = [&] { return portfolios->viewport()->grab(operation).toImage(); };
  const QImage before = picture();
  QImage during;
  bench.host.messageBoxes.answers = {2};
  bench.host.messageBoxes.whileAsking = [&] { during = picture(); };
  QTest::mouseMove(portfolios->viewport(), operation.center());
  QTest::mouseClick(portfolios->viewport(), Qt::LeftButton, {}, operation.center());
  ASSERT_FALSE(during.isNull());
  EXPECT_NE(during, before);
  EXPECT_EQ(picture(), before);
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

}  // namespace
}  // namespace holdwise::test
