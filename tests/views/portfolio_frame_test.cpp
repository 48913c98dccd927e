// SPDX-License-Identifier: MIT
// What the views with a list of portfolios and the holdings of the selected one have in common, on each of them.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QToolTip>
#include <algorithm>

#include "common/store/database.h"
#include "portfolio_view_fixture.h"

namespace holdwise::test {
namespace {

constexpr int kCode = 0;
constexpr int kSecurityName = 1;
constexpr int kFigure = 3;

class PortfolioFrame : public PortfolioViewTest, public testing::WithParamInterface<int> {
 protected:
  PortfolioFrame() : PortfolioViewTest(GetParam()) {}
  void OpenWithTwo() {
    AddTwo();
    Open();
    bench.DeliverPrices(PricesOfThree());
  }
  Qt::CursorShape CursorAt(const QPoint& at) {
    QTest::mouseMove(holdings->viewport(), at);
    return holdings->viewport()->cursor().shape();
  }
};

INSTANTIATE_TEST_SUITE_P(Views, PortfolioFrame, testing::Values(2001, 2002, 3001));

TEST_P(PortfolioFrame, WithoutSavedPortfoliosBothGridsAndTheTitleAreEmpty) {
  Open();
  EXPECT_TRUE(portfolios->IsEmpty());
  EXPECT_TRUE(holdings->IsEmpty());
  EXPECT_EQ(Title(), QString());
  const auto* hint = portfolios->viewport()->findChild<QLabel*>();
  ASSERT_NE(hint, nullptr);
  EXPECT_TRUE(hint->isVisible());
  EXPECT_TRUE(hint->text().startsWith(QStringLiteral("暂无已保存的组合\n")));
  for (const char* way : {"自选配置", "粘贴", "智能配置", "Ctrl+O"})
    EXPECT_TRUE(hint->text().contains(QString::fromUtf8(way))) << way;
  EXPECT_LE(hint->sizeHint().height(), portfolios->viewport()->height());
  const QImage lower = holdings->viewport()->grab().toImage();
  for (int y = 0; y < lower.height(); y += 3) {
    for (int x = 0; x < lower.width(); x += 3) ASSERT_EQ(lower.pixelColor(x, y), Color("Qm_BGCorlor")) << x << ' ' << y;
  }
}

/// What has been made in the editor and not saved there would look lost.
TEST_P(PortfolioFrame, WithoutSavedPortfoliosThoseThatWaitInTheEditorAreSaid) {
  for (const int id : {1, 2}) bench.AddPortfolio(id, QStringLiteral("甲%1").arg(id), {{1600000, 100, 1, 9}}, 0);
  Open();
  EXPECT_TRUE(portfolios->IsEmpty());
  const QString said = EmptyText(*portfolios);
  EXPECT_TRUE(said.startsWith(QStringLiteral("暂无已保存的组合\n“自选配置”里有 2 个组合还没有保存")))
      << said.toStdString();
  EXPECT_TRUE(said.contains(QStringLiteral("F4")));
  const auto* hint = portfolios->viewport()->findChild<QLabel*>();
  EXPECT_LE(hint->sizeHint().height(), portfolios->viewport()->height());
  EXPECT_LE(hint->sizeHint().width(), portfolios->viewport()->width());
  ClearPortfolios();
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_TRUE(EmptyText(*portfolios).contains(QStringLiteral("Ctrl+O"))) << "asked anew each time";
}

TEST_P(PortfolioFrame, AClickLoadsThatPortfolio) {
  OpenWithTwo();
  EXPECT_TRUE(Title().startsWith(QStringLiteral("进取")));
  EXPECT_EQ(holdings->RowCount(), 3);
  Click(*portfolios, kFigure, 1);
  EXPECT_TRUE(Title().startsWith(QStringLiteral("稳健")));
  EXPECT_EQ(portfolios->Row(), 1);
  EXPECT_EQ(holdings->RowCount(), 1);
}

TEST_P(PortfolioFrame, AClickOnTheShownPortfolioDoesNotReload) {
  OpenWithTwo();
  MessageSpy spy(*frame);
  bench.database.Service().Execute(QStringLiteral("delete from alg_comdetail"));
  Click(*portfolios, 0, 0);
  EXPECT_EQ(holdings->RowCount(), 3);
  EXPECT_TRUE(spy.messages.empty());
  Click(*portfolios, 0, 1);
  EXPECT_TRUE(holdings->IsEmpty());
  EXPECT_TRUE(Title().startsWith(QStringLiteral("稳健")));
}

TEST_P(PortfolioFrame, ArrowKeysLoadTheNextPortfolio) {
  OpenWithTwo();
  portfolios->setFocus();
  QTest::keyClick(portfolios, Qt::Key_Down);
  EXPECT_TRUE(Title().startsWith(QStringLiteral("稳健")));
  EXPECT_EQ(holdings->RowCount(), 1);
}

TEST_P(PortfolioFrame, InitialisationGoesBackToTheFirstPortfolio) {
  OpenWithTwo();
  Click(*portfolios, 0, 1);
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(portfolios->Row(), 0);
  EXPECT_TRUE(Title().startsWith(QStringLiteral("进取")));
  EXPECT_EQ(holdings->RowCount(), 3);
}

TEST_P(PortfolioFrame, TheCatalogueSelectsAPortfolioByItsId) {
  OpenWithTwo();
  EXPECT_EQ(frame->HoldingsGrid().gridName, QStringLiteral("StringGrid1"));
  EXPECT_EQ(frame->HoldingsGrid().portfolioIds, List({"2", "1"}));
  EXPECT_EQ(frame->CatalogueGrids(), (std::vector<const TStringGrid*>{portfolios, holdings}));
  EXPECT_TRUE(frame->SelectPortfolio(QStringLiteral("1")));
  EXPECT_EQ(holdings->RowCount(), 1);
  EXPECT_FALSE(frame->SelectPortfolio(QStringLiteral("9")));
}

TEST_P(PortfolioFrame, AFailingStatementOfTheListReachesTheSender) {
  OpenWithTwo();
  FDBServer = &bench.host.fakeUserData;  // answers nothing
  EXPECT_THROW(SendFrameMessage(*frame, FrameMessage::Init), Error);
  EXPECT_EQ(portfolios->RowCount(), 2) << "nothing was cleared before the query";
}

TEST_P(PortfolioFrame, AFailingStatementOfAClickIsLoggedAndTheViewStaysUsable) {
  OpenWithTwo();
  UserDataServices* const database = FDBServer;
  FDBServer = &bench.host.fakeUserData;
  Click(*portfolios, 0, 1);
  ASSERT_FALSE(bench.host.debug.Lines().empty());
  EXPECT_TRUE(bench.host.debug.Lines().back().contains(QStringLiteral("->strngrd 发生错误!")));
  EXPECT_EQ(holdings->RowCount(), 3);
  FDBServer = database;
  Click(*portfolios, 0, 0);
  Click(*portfolios, 0, 1);
  EXPECT_EQ(holdings->RowCount(), 1);
}

TEST_P(PortfolioFrame, AClickOnACodeOrNameOpensTheSecurityInTheHost) {
  OpenWithTwo();
  Click(*holdings, kCode, 1);
  EXPECT_EQ(bench.host.codeNums.setCodes, std::vector<QString>{QStringLiteral("1000001")});
  EXPECT_TRUE(bench.host.addresses.gone.empty()) << "only once the click is over";
  QTest::qWait(60);
  const std::vector<std::pair<QString, QString>> once = {{QStringLiteral("分时走势"), QString()}};
  EXPECT_EQ(bench.host.addresses.gone, once);
  Click(*holdings, kSecurityName, 2);
  EXPECT_EQ(bench.host.codeNums.setCodes.back(), QStringLiteral("1600519"));
}

TEST_P(PortfolioFrame, BothGridsAreCopiedAsTables) {
  OpenWithTwo();
  for (TStringGrid* grid : {portfolios, holdings}) {
    grid->setFocus();
    QTest::keyClick(grid, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    const QStringList lines = QGuiApplication::clipboard()->text().split(u'\n');
    ASSERT_EQ(lines.size(), grid->RowCount() + 2) << "titles, rows, and nothing behind the last line's end";
    const GridText text = grid->ToGridText();
    const auto shown = std::count(text.hidden.begin(), text.hidden.end(), false);
    for (int row = -1; row < grid->RowCount(); ++row) {
      const QStringList cells = lines[row + 1].split(u'\t');
      EXPECT_EQ(cells.size(), shown) << "keys are not copied";
      EXPECT_EQ(cells[kFigure], row < 0 ? text.titles[kFigure] : grid->Cells(kFigure, row));
    }
  }
}

TEST_P(PortfolioFrame, TheRightButtonOnALinkOpensTheMenuOnly) {
  OpenWithTwo();
  const QPoint at = holdings->CellRect(kCode, 1).center();
  QTest::mouseMove(holdings->viewport(), at);
  QTest::mouseClick(holdings->viewport(), Qt::RightButton, {}, at);
  EXPECT_NE(OpenMenu(*holdings, at), nullptr);
  EXPECT_TRUE(bench.host.codeNums.setCodes.empty());
}

TEST_P(PortfolioFrame, TheMiddleButtonOpensNothing) {
  OpenWithTwo();
  const QPoint at = holdings->CellRect(kCode, 1).center();
  QTest::mouseMove(holdings->viewport(), at);
  QTest::mouseClick(holdings->viewport(), Qt::MiddleButton, {}, at);
  EXPECT_TRUE(bench.host.codeNums.setCodes.empty());
}

TEST_P(PortfolioFrame, AtTheEndTheLastPortfolioIsSeenWhole) {
  for (int id = 1; id <= 9; ++id) bench.AddPortfolio(id, QStringLiteral("组合%1").arg(id), {{1600000, 200, 1, 9.5}});
  Open();
  portfolios->setFocus();
  QTest::keyClick(portfolios, Qt::Key_End);
  ASSERT_EQ(portfolios->Row(), 8);
  const QRect last = portfolios->CellRect(0, 8);
  EXPECT_EQ(last.height(), TStringGrid::kDefaultRowHeight);
  EXPECT_TRUE(portfolios->viewport()->rect().contains(last))
      << last.bottom() << ' ' << portfolios->viewport()->height();
  EXPECT_EQ(portfolios->viewport()->height() % TStringGrid::kDefaultRowHeight, 0) << "no row is cut at the top either";
}

TEST_P(PortfolioFrame, OnlyTheTextsOfCodeAndNameAreLinks) {
  OpenWithTwo();
  const QPoint beside = holdings->CellRect(kCode, 0).topLeft() + QPoint(1, 13);
  EXPECT_EQ(CursorAt(holdings->CellRect(kCode, 0).center()), Qt::PointingHandCursor);
  EXPECT_EQ(CursorAt(beside), Qt::ArrowCursor);
  EXPECT_EQ(CursorAt(holdings->CellRect(kSecurityName, 2).center()), Qt::PointingHandCursor);
  EXPECT_EQ(CursorAt(holdings->CellRect(kFigure, 0).center()), Qt::ArrowCursor);
  EXPECT_EQ(CursorAt(holdings->CellRect(kCode, 2).center() + QPoint(0, 60)), Qt::ArrowCursor);
  // Each press comes after the mouse has been on a link.
  for (const QPoint& at : {beside, holdings->CellRect(kFigure, 0).center()}) {
    EXPECT_EQ(CursorAt(holdings->CellRect(kCode, 0).center()), Qt::PointingHandCursor);
    QTest::mouseMove(holdings->viewport(), at);
    QTest::mouseClick(holdings->viewport(), Qt::LeftButton, {}, at);
  }
  EXPECT_TRUE(bench.host.codeNums.setCodes.empty());
}

TEST_P(PortfolioFrame, TheLinkUnderTheMouseKeepsItsColour) {
  OpenWithTwo();
  const QRect name = holdings->CellRect(kSecurityName, 1);
  const QImage before = holdings->viewport()->grab(name).toImage();
  ASSERT_EQ(CursorAt(name.center()), Qt::PointingHandCursor);
  EXPECT_EQ(holdings->viewport()->grab(name).toImage(), before);
}

TEST_P(PortfolioFrame, TitlesFollowTheirColumns) {
  OpenWithTwo();
  for (const int width : {900, 1024, 1920}) {
    bench.mainFrame->resize(width, 640);
    QTest::qWait(20);
    const auto strips = frame->findChildren<HeaderStrip*>();
    ASSERT_EQ(strips.size(), 2);
    for (const HeaderStrip* strip : strips) {
      const TStringGrid& grid = strip->parentWidget() == portfolios->parentWidget() ? *portfolios : *holdings;
      const GridText text = grid.ToGridText();
      ASSERT_EQ(static_cast<std::ptrdiff_t>(strip->Labels().size()),
                std::count(text.hidden.begin(), text.hidden.end(), false));
      for (int column = 0; column < static_cast<int>(strip->Labels().size()); ++column) {
        const QLabel* label = strip->Labels()[static_cast<size_t>(column)];
        EXPECT_EQ(label->text(), text.titles[column]);
        EXPECT_EQ(label->x(), grid.CellRect(column, 0).x()) << width << ' ' << column;
        EXPECT_EQ(label->width(), std::min(grid.ColWidth(column), strip->width() - label->x()));
      }
    }
  }
}

TEST_P(PortfolioFrame, ATitleThatIsCutOffShowsItsBeginning) {
  OpenWithTwo();
  bench.mainFrame->resize(400, 640);
  QTest::qWait(20);
  int cutOff = 0;
  for (const HeaderStrip* strip : frame->findChildren<HeaderStrip*>()) {
    for (const QLabel* label : strip->Labels()) {
      const bool isCutOff = label->sizeHint().width() > label->width() + 4;
      cutOff += isCutOff ? 1 : 0;
      EXPECT_EQ(label->toolTip().startsWith(label->text() + QLatin1Char('\n')), isCutOff);
      if (!isCutOff) continue;
      EXPECT_TRUE(label->alignment().testFlag(Qt::AlignLeft)) << label->text().toStdString();
    }
  }
  EXPECT_GT(cutOff, 0);
}

TEST_P(PortfolioFrame, ATextThatDoesNotFitIsHinted) {
  AddTwo();
  bench.AddPortfolio(3, QStringLiteral("一个名字长得列里放不下的投资组合甲乙丙丁戊己庚辛"), {{1600000, 200, 1, 9.5}});
  Open();
  holdings->SetCells(kFigure, 0, QStringLiteral("-12345678901234567890123456789012345.00"));
  const auto moveTo = [](const TStringGrid& grid, int column, int row) {
    const QRect cell = grid.CellRect(column, row);
    QTest::mouseMove(grid.viewport(), {cell.left() + 6, cell.center().y()});
  };
  moveTo(*portfolios, 0, 0);
  EXPECT_EQ(QToolTip::text(), portfolios->Cells(0, 0));
  moveTo(*holdings, kFigure, 0);
  EXPECT_EQ(QToolTip::text(), holdings->Cells(kFigure, 0));
  moveTo(*holdings, kCode, 0);
  QTest::qWait(400);
  EXPECT_FALSE(QToolTip::isVisible());
}

TEST_P(PortfolioFrame, ANameIsShownAsItStands) {
  bench.AddPortfolio(1, QStringLiteral("<b>甲</b>"), {{1600000, 200, 1, 9.5}});
  Open();
  const QLabel& caption = frame->findChild<TitleStrip*>()->Caption();
  EXPECT_EQ(caption.sizeHint().width(), caption.fontMetrics().size(Qt::TextSingleLine, caption.text()).width());
}

TEST_P(PortfolioFrame, TheListHasItsDesignHeightAndTheHoldingsTakeTheRest) {
  OpenWithTwo();
  EXPECT_EQ(portfolios->parentWidget()->height(), 201);
  EXPECT_EQ(portfolios->y(), 23);
  const auto* title = frame->findChild<TitleStrip*>();
  EXPECT_EQ(title->height(), 35);
  EXPECT_EQ(title->Caption().x(), 14);
  const int sums = GetParam() == 2001 ? 26 : 0;
  EXPECT_EQ(holdings->height(), frame->height() - 201 - 35 - 23 - sums);
}

TEST_P(PortfolioFrame, ManyPortfoliosScrollAndTheColumnsMakeRoom) {
  for (int id = 1; id <= 30; ++id) bench.AddPortfolio(id, QStringLiteral("组合%1").arg(id), {{1600000, 100, 1, 9}});
  Open();
  EXPECT_LT(portfolios->ClientWidth(), portfolios->width());
  int whole = 0;
  for (int column = 0; column < portfolios->ColCount(); ++column) whole += portfolios->ColWidth(column);
  EXPECT_EQ(whole, portfolios->ClientWidth());
}

TEST_P(PortfolioFrame, RowsArePaintedInTheThemesColours) {
  OpenWithTwo();
  const auto pixel = [](const TStringGrid& grid, int row) {
    return grid.viewport()->grab().toImage().pixelColor(grid.CellRect(0, row).topLeft() + QPoint(1, 1));
  };
  EXPECT_EQ(pixel(*portfolios, 0), Color("Qm_GridRowSelectColor"));
  EXPECT_EQ(pixel(*portfolios, 1), Color("KTR_HighLightColor2"));
  EXPECT_EQ(pixel(*holdings, 0), Color("Qm_GridRowSelectColor"));
  EXPECT_EQ(pixel(*holdings, 2), Color("KTR_HighLightColor1"));
  const auto hasInk = [&](int row, const char* key) {
    const QImage cell = holdings->viewport()->grab(holdings->CellRect(kSecurityName, row)).toImage();
    for (int y = 0; y < cell.height(); ++y) {
      for (int x = 0; x < cell.width(); ++x) {
        if (cell.pixelColor(x, y) == Color(key)) return true;
      }
    }
    return false;
  };
  EXPECT_TRUE(hasInk(0, "Grid_SelTxtColor"));
  EXPECT_FALSE(hasInk(0, "Grid_UnSelTxtColor"));
  EXPECT_TRUE(hasInk(1, "Grid_UnSelTxtColor"));
  Click(*portfolios, 0, 1);
  EXPECT_EQ(pixel(*portfolios, 0), Color("KTR_HighLightColor1"));
}

TEST_P(PortfolioFrame, AThemeChangeRepaintsEverything) {
  OpenWithTwo();
  bench.host.theme.Switch();
  bench.mainFrame->MakeSkin();
  EXPECT_EQ(holdings->viewport()->grab().toImage().pixelColor(1, 27), Color("KTR_HighLightColor2"));
  EXPECT_EQ(portfolios->grab().toImage().pixelColor(3, portfolios->height() - 2), Color("Qm_BGCorlor"));
  for (const QWidget* panel : {portfolios->parentWidget(), holdings->parentWidget(), static_cast<QWidget*>(frame)}) {
    EXPECT_EQ(panel->palette().color(QPalette::Window), Color("Qm_BGCorlor"));
  }
  const auto* strip = frame->findChild<TitleStrip*>();
  EXPECT_EQ(strip->Caption().palette().color(QPalette::WindowText), Color("Section_BigTxtColor"));
  for (const HeaderStrip* header : frame->findChildren<HeaderStrip*>()) {
    EXPECT_EQ(header->Labels().front()->palette().color(QPalette::WindowText), Color("QM_TitleFontColor"));
    EXPECT_EQ(header->Picture().pixmap().toImage().pixelColor(0, 0), Color("Grid_TitleUpBg"));
  }
}

}  // namespace
}  // namespace holdwise::test
