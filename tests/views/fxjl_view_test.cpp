#include <gtest/gtest.h>

#include <QLabel>
#include <QTest>
#include <QToolTip>

#include "common/all_stock_data.h"
#include "common/recalc.h"
#include "common/untcommon.h"
#include "holdwise/packet/packet_file.h"
#include "view_bench.h"
#include "views/fxjl/fxjl.h"
#include "views/fxjl/risk_layout.h"

namespace holdwise::test {
namespace {

using namespace risk;

const QString kShanghai = QStringLiteral("QMTL\\TZZH\\风险计量\\SH.dat");
const QString kShenzhen = QStringLiteral("QMTL\\TZZH\\风险计量\\SZ.dat");

QStringList List(std::initializer_list<const char*> texts) {
  QStringList list;
  for (const char* text : texts) list << QString::fromUtf8(text);
  return list;
}

QStringList RowOf(const TStringGrid& grid, int row) {
  QStringList cells;
  for (int column = 0; column < grid.ColCount(); ++column) cells << grid.Cells(column, row);
  return cells;
}

struct RiskOfSecurity {
  const char* code;
  double beta;
  double alpha;
};

QByteArray RiskFile(const std::vector<RiskOfSecurity>& rows) {
  ResultSet table;
  const int code = table.AddColumn("code", ColumnType::Text);
  const int beta = table.AddColumn("beta", ColumnType::Real);
  const int alpha = table.AddColumn("alpha", ColumnType::Real);
  for (const RiskOfSecurity& security : rows) {
    const int row = table.AppendRow();
    table.SetText(row, code, security.code);
    table.SetReal(row, beta, security.beta);
    table.SetReal(row, alpha, security.alpha);
  }
  return EncodePacket(table);
}

QByteArray TwoKnown() {
  return RiskFile({{"600000", 1.25, -0.00031}, {"000001", 0.8125, 1.5e-9}});
}

class RiskView : public testing::Test {
 protected:
  void Open(int width = 1000) {
    bench.OpenMainFrame(width);
    ShowView();
  }
  void ShowView() {
    bench.ClickNode(2002);
    frame = bench.mainFrame->CurFrame();
    ASSERT_NE(frame, nullptr);
    portfolios = frame->findChild<TStringGrid*>(QStringLiteral("strngrd"));
    securities = frame->findChild<TStringGrid*>(QStringLiteral("StringGrid1"));
    QTest::qWait(20);
  }
  /// Two saved portfolios, the newest with the three holdings, of which the table knows two.
  void OpenWithTwo(int width = 1000) {
    bench.AddPortfolio(1, QStringLiteral("稳健"), {{1600000, 200, 1, 9.5}});
    bench.AddPortfolio(2, QStringLiteral("进取"), ThreeHoldings());
    SetDeviation(1600000, 0.02);
    SetDeviation(1000001, 0.0004);
    Open(width);
    Download()->WriteAndReceive(kShanghai, TwoKnown());
  }
  void SetDeviation(int code, double deviation) {
    bench.database.Service().Execute(
        QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate,sylbzc) values (%1,0,20240528,%2)")
            .arg(code)
            .arg(QString::number(deviation, 'f', 12)));
  }
  void SetFigures(int id, const char* figures) {
    bench.database.Service().Execute(
        QStringLiteral("update alg_commain set %1 where ID = %2").arg(QString::fromLatin1(figures)).arg(id));
  }
  void Click(TStringGrid& grid, int column, int row) {
    const QPoint at = grid.CellRect(column, row).center();
    QTest::mouseMove(grid.viewport(), at);
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, at);
  }
  [[nodiscard]] std::shared_ptr<ScriptedDownFile> Download() const {
    return bench.host.DownFile(QStringLiteral("FInfoAsynDownFileRole"));
  }
  [[nodiscard]] QString Title() const { return frame->findChild<TitleStrip*>()->Caption().text(); }

  ViewBench bench;
  TViewFrame* frame = nullptr;
  TStringGrid* portfolios = nullptr;
  TStringGrid* securities = nullptr;
};

TEST_F(RiskView, ListsSavedPortfoliosNewestFirstWithTheirStoredFigures) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {});
  bench.AddPortfolio(3, QStringLiteral("乙"), {}, 0);
  bench.AddPortfolio(2, QStringLiteral("丙"), {});
  SetFigures(1, "FC = 0.00012345, ZHBZC = 0.0111108, ALPHA = -0.0000126, BETA = 1.0000004");
  Open();
  ASSERT_EQ(portfolios->RowCount(), 2);
  EXPECT_EQ(RowOf(*portfolios, 0), List({"丙", "0.000000", "0.000000", "0.000000", "0.000000", "2"}));
  EXPECT_EQ(RowOf(*portfolios, 1), List({"甲", "0.000123", "0.011111", "-0.000013", "1.000000", "1"}));
}

TEST_F(RiskView, ShowsTheSecuritiesOfTheNewestPortfolio) {
  OpenWithTwo();
  EXPECT_EQ(Title(), QStringLiteral("进取"));
  ASSERT_EQ(securities->RowCount(), 3);
  // Squares: 0.02 gives 0.0004, 0.0004 gives 0.00000016. Alpha and beta are the table's texts.
  EXPECT_EQ(RowOf(*securities, 0), List({"600000", "浦发银行", "0.000400", "0.020000", "-0.00031", "1.25"}));
  EXPECT_EQ(RowOf(*securities, 1), List({"000001", "平安银行", "0.000000", "0.000400", "1.5e-9", "0.8125"}));
  EXPECT_EQ(RowOf(*securities, 2), List({"600519", "贵州茅台", "", "", "", ""})) << "not in the table";
}

TEST_F(RiskView, ASmallDeviationStillHasAVariance) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  SetDeviation(1600000, 0.001);
  Open();
  Download()->WriteAndReceive(kShanghai, TwoKnown());
  EXPECT_EQ(RowOf(*securities, 0), List({"600000", "浦发银行", "0.000001", "0.001000", "-0.00031", "1.25"}));
}

TEST_F(RiskView, ASecurityWithoutDeviationShowsZeros) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  Open();
  Download()->WriteAndReceive(kShanghai, TwoKnown());
  EXPECT_EQ(RowOf(*securities, 0), List({"600000", "浦发银行", "0.000000", "0.000000", "-0.00031", "1.25"}));
}

TEST_F(RiskView, ASecurityTheHostDoesNotKnowIsDelisted) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600001, 100, 1, 9}});
  Open();
  Download()->WriteAndReceive(kShanghai, RiskFile({{"600001", 0.5, 0.25}}));
  EXPECT_EQ(RowOf(*securities, 0), List({"600001", "已退市", "0.000000", "0.000000", "0.25", "0.5"}));
}

TEST_F(RiskView, WithoutSavedPortfoliosBothGridsAndTheTitleAreEmpty) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}}, 0);
  Open();
  Download()->WriteAndReceive(kShanghai, TwoKnown());
  EXPECT_TRUE(portfolios->IsEmpty());
  EXPECT_TRUE(securities->IsEmpty());
  EXPECT_EQ(Title(), QString());
  const auto* hint = portfolios->viewport()->findChild<QLabel*>();
  ASSERT_NE(hint, nullptr);
  EXPECT_TRUE(hint->isVisible());
  EXPECT_EQ(hint->text(), QStringLiteral("暂无已保存的组合"));
  const QImage lower = securities->viewport()->grab().toImage();
  const QColor background = bench.host.theme.ColorOf(QStringLiteral("Qm_BGCorlor"));
  for (int y = 0; y < lower.height(); y += 3) {
    for (int x = 0; x < lower.width(); x += 3) ASSERT_EQ(lower.pixelColor(x, y), background) << x << ' ' << y;
  }
}

TEST_F(RiskView, TheCaptionIsTheDesignsUntilAPortfolioIsShown) {
  Open();
  const TFrm_FXJL fresh;
  EXPECT_EQ(fresh.findChild<TitleStrip*>()->Caption().text(), QStringLiteral("组合名称"));
}

// Selection.

TEST_F(RiskView, AClickLoadsThatPortfolio) {
  OpenWithTwo();
  Click(*portfolios, kBeta, 1);
  EXPECT_EQ(Title(), QStringLiteral("稳健"));
  EXPECT_EQ(portfolios->Row(), 1);
  ASSERT_EQ(securities->RowCount(), 1);
  EXPECT_EQ(securities->Cells(kSecurityBeta, 0), QStringLiteral("1.25"));
}

TEST_F(RiskView, AClickOnTheShownPortfolioDoesNotReload) {
  OpenWithTwo();
  bench.database.Service().Execute(QStringLiteral("delete from alg_comdetail"));
  Click(*portfolios, kName, 0);
  EXPECT_EQ(securities->RowCount(), 3);
  EXPECT_FALSE(securities->IsEmpty());
  Click(*portfolios, kName, 1);
  EXPECT_TRUE(securities->IsEmpty());
  EXPECT_EQ(Title(), QStringLiteral("稳健"));
}

TEST_F(RiskView, ArrowKeysLoadTheNextPortfolio) {
  OpenWithTwo();
  portfolios->setFocus();
  QTest::keyClick(portfolios, Qt::Key_Down);
  EXPECT_EQ(Title(), QStringLiteral("稳健"));
  EXPECT_EQ(securities->RowCount(), 1);
}

TEST_F(RiskView, APortfolioWithoutHoldingsEmptiesTheSecurities) {
  bench.AddPortfolio(1, QStringLiteral("空"), {});
  bench.AddPortfolio(2, QStringLiteral("进取"), ThreeHoldings());
  Open();
  EXPECT_EQ(securities->RowCount(), 3);
  Click(*portfolios, kName, 1);
  EXPECT_TRUE(securities->IsEmpty());
  EXPECT_EQ(Title(), QStringLiteral("空"));
}

TEST_F(RiskView, InitialisationGoesBackToTheFirstPortfolio) {
  OpenWithTwo();
  Click(*portfolios, kName, 1);
  SetFigures(2, "BETA = 0.5");
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(portfolios->Row(), 0);
  EXPECT_EQ(Title(), QStringLiteral("进取"));
  EXPECT_EQ(portfolios->Cells(kBeta, 0), QStringLiteral("0.500000"));
  EXPECT_EQ(securities->RowCount(), 3);
}

TEST_F(RiskView, TheCatalogueSelectsAPortfolioByItsId) {
  OpenWithTwo();
  EXPECT_EQ(frame->HoldingsGrid().gridName, QStringLiteral("StringGrid1"));
  EXPECT_EQ(frame->HoldingsGrid().portfolioIds, List({"2", "1"}));
  EXPECT_TRUE(frame->SelectPortfolio(QStringLiteral("1")));
  EXPECT_EQ(securities->RowCount(), 1);
  EXPECT_FALSE(frame->SelectPortfolio(QStringLiteral("9")));
}

// The index-risk table.

TEST_F(RiskView, TheFiguresAppearWhenTheTableArrivesAndTheSelectionStays) {
  bench.AddPortfolio(1, QStringLiteral("稳健"), {{1600000, 200, 1, 9.5}});
  bench.AddPortfolio(2, QStringLiteral("进取"), ThreeHoldings());
  SetDeviation(1600000, 0.02);
  Open();
  EXPECT_EQ(Download()->Pending(), std::vector<QString>{kShanghai});
  Click(*portfolios, kName, 1);
  EXPECT_EQ(RowOf(*securities, 0), List({"600000", "浦发银行", "", "", "", ""}));
  Download()->WriteAndReceive(kShanghai, TwoKnown());
  EXPECT_EQ(portfolios->Row(), 1);
  EXPECT_EQ(Title(), QStringLiteral("稳健"));
  EXPECT_EQ(RowOf(*securities, 0), List({"600000", "浦发银行", "0.000400", "0.020000", "-0.00031", "1.25"}));
}

TEST_F(RiskView, TheViewIsNotSettledBeforeTheTableHasCome) {
  OpenWithTwo();
  bench.DeliverPrices(PricesOfThree());
  QTest::qWait(1200);  // the recalculation
  EXPECT_TRUE(bench.mainFrame->IsSettled());
  g_AllStockData->Set_SZZS();
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_FALSE(bench.mainFrame->IsSettled());
  Download()->WriteAndReceive(kShenzhen, TwoKnown());
  EXPECT_TRUE(bench.mainFrame->IsSettled());
}

TEST_F(RiskView, TheIndexChosenElsewhereStaysCurrent) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  bench.OpenMainFrame();
  g_AllStockData->Set_SZZS();
  ShowView();
  EXPECT_EQ(Download()->Requests(), std::vector<QString>{kShenzhen});
  Download()->WriteAndReceive(kShenzhen, RiskFile({{"600000", 2.5, 0.5}}));
  EXPECT_EQ(securities->Cells(kSecurityBeta, 0), QStringLiteral("2.5"));
}

TEST_F(RiskView, AFailedDownloadIsAskedForAgainWithTheNextShow) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  Open();
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(Download()->Requests().size(), 1U) << "the file is on its way";
  Download()->Fail(kShanghai, TDSBAsynDownFileRole::kNotFound);
  EXPECT_EQ(RowOf(*securities, 0), List({"600000", "浦发银行", "", "", "", ""}));
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(Download()->Requests().size(), 2U);
  Download()->WriteAndReceive(kShanghai, TwoKnown());
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(Download()->Requests().size(), 2U);
  EXPECT_EQ(securities->Cells(kSecurityBeta, 0), QStringLiteral("1.25"));
}

TEST_F(RiskView, DeviationsAreReadAgainAfterARecalculation) {
  OpenWithTwo();
  bench.database.Service().Execute(
      QStringLiteral("update alg_stockstatistic set sylbzc = 0.03 where secucode = 1600000"));
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(securities->Cells(kSecurityDeviation, 0), QStringLiteral("0.020000"));
  ReCalc();
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(securities->Cells(kSecurityDeviation, 0), QStringLiteral("0.030000"));
  EXPECT_EQ(securities->Cells(kSecurityVariance, 0), QStringLiteral("0.000900"));
}

// Failures.

TEST_F(RiskView, AFailingStatementOfTheListReachesTheSender) {
  OpenWithTwo();
  FDBServer = &bench.host.fakeUserData;  // answers nothing
  EXPECT_THROW(SendFrameMessage(*frame, FrameMessage::Init), Error);
  EXPECT_EQ(portfolios->RowCount(), 2) << "nothing was cleared before the query";
}

TEST_F(RiskView, AFailingStatementOfAClickIsLoggedAndTheViewStaysUsable) {
  OpenWithTwo();
  UserDataServices* const database = FDBServer;
  FDBServer = &bench.host.fakeUserData;
  Click(*portfolios, kName, 1);
  ASSERT_FALSE(bench.host.debug.Lines().empty());
  EXPECT_TRUE(bench.host.debug.Lines().back().startsWith(QStringLiteral("Holdwise.bpl->Fxjl->strngrd 发生错误!")));
  EXPECT_EQ(securities->RowCount(), 3);
  g_AllStockData->Set_SZZS();
  Download()->WriteAndReceive(kShenzhen, TwoKnown());
  EXPECT_TRUE(bench.host.debug.Lines().back().startsWith(QStringLiteral("Holdwise.bpl->Fxjl->ReflashData 发生错误!")));
  FDBServer = database;
  Click(*portfolios, kName, 1);
  EXPECT_EQ(securities->RowCount(), 1);
}

// Links.

TEST_F(RiskView, AClickOnACodeOrNameOpensTheSecurityInTheHost) {
  OpenWithTwo();
  Click(*securities, kCode, 1);
  EXPECT_EQ(bench.host.codeNums.setCodes, std::vector<QString>{QStringLiteral("1000001")});
  EXPECT_TRUE(bench.host.addresses.gone.empty()) << "only once the click is over";
  QTest::qWait(60);
  const std::vector<std::pair<QString, QString>> once = {{QStringLiteral("分时走势"), QString()}};
  EXPECT_EQ(bench.host.addresses.gone, once);
  Click(*securities, kSecurityName, 2);
  EXPECT_EQ(bench.host.codeNums.setCodes.back(), QStringLiteral("1600519"));
}

TEST_F(RiskView, OnlyTheTextsOfCodeAndNameAreLinks) {
  OpenWithTwo();
  const auto shapeAt = [&](const QPoint& at) {
    QTest::mouseMove(securities->viewport(), at);
    return securities->viewport()->cursor().shape();
  };
  const QPoint beside = securities->CellRect(kCode, 0).topLeft() + QPoint(3, 13);
  EXPECT_EQ(shapeAt(securities->CellRect(kCode, 0).center()), Qt::PointingHandCursor);
  EXPECT_EQ(shapeAt(beside), Qt::ArrowCursor);
  EXPECT_EQ(shapeAt(securities->CellRect(kSecurityName, 2).center()), Qt::PointingHandCursor);
  EXPECT_EQ(shapeAt(securities->CellRect(kSecurityBeta, 0).center()), Qt::ArrowCursor);
  EXPECT_EQ(shapeAt(securities->CellRect(kCode, 2).center() + QPoint(0, 60)), Qt::ArrowCursor);
  // Each press comes after the mouse has been on a link.
  for (const QPoint& at : {beside, securities->CellRect(kSecurityBeta, 0).center()}) {
    EXPECT_EQ(shapeAt(securities->CellRect(kCode, 0).center()), Qt::PointingHandCursor);
    QTest::mouseMove(securities->viewport(), at);
    QTest::mouseClick(securities->viewport(), Qt::LeftButton, {}, at);
  }
  EXPECT_TRUE(bench.host.codeNums.setCodes.empty());
}

TEST_F(RiskView, TheLinkUnderTheMouseKeepsItsColour) {
  OpenWithTwo();
  const QRect name = securities->CellRect(kSecurityName, 1);
  const QImage before = securities->viewport()->grab(name).toImage();
  QTest::mouseMove(securities->viewport(), name.center());
  ASSERT_EQ(securities->viewport()->cursor().shape(), Qt::PointingHandCursor);
  EXPECT_EQ(securities->viewport()->grab(name).toImage(), before);
}

TEST_F(RiskView, AFigureThatDoesNotFitIsHintedWhole) {
  OpenWithTwo(800);
  g_AllStockData->Set_SZZS();
  Download()->WriteAndReceive(kShenzhen, RiskFile({{"600000", 1.25, -0.0006322400158553884}}));
  const auto moveTo = [&](int column) {
    QTest::mouseMove(securities->viewport(), securities->CellRect(column, 0).center());
  };
  moveTo(kSecurityAlpha);
  EXPECT_EQ(QToolTip::text(), QStringLiteral("-0.0006322400158553884"));
  moveTo(kSecurityBeta);
  QTest::qWait(400);
  EXPECT_FALSE(QToolTip::isVisible());
}

// Layout and painting.

TEST_F(RiskView, ColumnsFollowTheWidthAndTitlesTheirColumns) {
  OpenWithTwo();
  for (const int width : {900, 1024, 1920}) {
    bench.mainFrame->resize(width, 640);
    QTest::qWait(20);
    const auto strips = frame->findChildren<HeaderStrip*>();
    ASSERT_EQ(strips.size(), 2);
    for (const HeaderStrip* strip : strips) {
      const bool isList = strip->Labels().size() == 5;
      const TStringGrid& grid = isList ? *portfolios : *securities;
      const std::vector<int> widths = (isList ? PortfolioWidths : SecurityWidths)(grid.ClientWidth());
      ASSERT_EQ(strip->Labels().size(), isList ? 5U : 6U);
      for (int column = 0; column < static_cast<int>(strip->Labels().size()); ++column) {
        const QLabel* label = strip->Labels()[static_cast<size_t>(column)];
        EXPECT_EQ(label->text(), (isList ? PortfolioTitles() : SecurityTitles())[column]);
        EXPECT_EQ(label->x(), grid.CellRect(column, 0).x()) << width << ' ' << column;
        EXPECT_EQ(label->width(), widths[static_cast<size_t>(column)]);
        EXPECT_EQ(grid.ColWidth(column), label->width());
        EXPECT_EQ(label->toolTip(), QString()) << "the title fits";
      }
    }
    EXPECT_TRUE(portfolios->isColumnHidden(kId));
  }
}

TEST_F(RiskView, TheListHasItsDesignHeightAndTheSecuritiesTakeTheRest) {
  OpenWithTwo();
  EXPECT_EQ(portfolios->parentWidget()->height(), 201);
  EXPECT_EQ(portfolios->viewport()->height(), 6 * 26);
  const auto strips = frame->findChildren<HeaderStrip*>();
  EXPECT_EQ(strips[0]->height(), 23);
  const auto* title = frame->findChild<TitleStrip*>();
  EXPECT_EQ(title->height(), 35);
  EXPECT_EQ(title->Caption().x(), 14);
  EXPECT_EQ(securities->height(), frame->height() - 201 - 35 - 23);
}

TEST_F(RiskView, ManyPortfoliosScrollAndTheColumnsMakeRoom) {
  for (int id = 1; id <= 30; ++id) bench.AddPortfolio(id, QStringLiteral("组合%1").arg(id), {{1600000, 100, 1, 9}});
  Open();
  EXPECT_LT(portfolios->ClientWidth(), portfolios->width());
  EXPECT_EQ(portfolios->ColWidth(kVariance), portfolios->ClientWidth() / 5);
}

TEST_F(RiskView, RowsArePaintedInTheThemesColours) {
  OpenWithTwo();
  const auto color = [&](const char* key) { return bench.host.theme.ColorOf(QString::fromLatin1(key)); };
  const auto pixel = [](const TStringGrid& grid, int row) {
    return grid.viewport()->grab().toImage().pixelColor(grid.CellRect(0, row).topLeft() + QPoint(1, 1));
  };
  EXPECT_EQ(pixel(*portfolios, 0), color("Qm_GridRowSelectColor"));
  EXPECT_EQ(pixel(*portfolios, 1), color("KTR_HighLightColor2"));
  EXPECT_EQ(pixel(*securities, 0), color("Qm_GridRowSelectColor"));
  EXPECT_EQ(pixel(*securities, 2), color("KTR_HighLightColor1"));
  const auto hasInk = [&](int row, const char* key) {
    const QImage cell = securities->viewport()->grab(securities->CellRect(kSecurityName, row)).toImage();
    for (int y = 0; y < cell.height(); ++y) {
      for (int x = 0; x < cell.width(); ++x) {
        if (cell.pixelColor(x, y) == color(key)) return true;
      }
    }
    return false;
  };
  EXPECT_TRUE(hasInk(0, "Grid_SelTxtColor"));
  EXPECT_FALSE(hasInk(0, "Grid_UnSelTxtColor"));
  EXPECT_TRUE(hasInk(1, "Grid_UnSelTxtColor"));
}

TEST_F(RiskView, AThemeChangeRepaintsEverything) {
  OpenWithTwo();
  bench.host.theme.Switch();
  bench.mainFrame->MakeSkin();
  const auto color = [&](const char* key) { return bench.host.theme.ColorOf(QString::fromLatin1(key)); };
  EXPECT_EQ(securities->viewport()->grab().toImage().pixelColor(1, 27), color("KTR_HighLightColor2"));
  EXPECT_EQ(portfolios->grab().toImage().pixelColor(3, portfolios->height() - 2), color("Qm_BGCorlor"));
  const auto* strip = frame->findChild<TitleStrip*>();
  EXPECT_EQ(strip->Caption().palette().color(QPalette::WindowText), color("Section_BigTxtColor"));
  for (const HeaderStrip* header : frame->findChildren<HeaderStrip*>()) {
    EXPECT_EQ(header->Labels().front()->palette().color(QPalette::WindowText), color("QM_TitleFontColor"));
    EXPECT_EQ(header->Picture().pixmap().toImage().pixelColor(0, 0), color("Grid_TitleUpBg"));
  }
}

}  // namespace
}  // namespace holdwise::test
