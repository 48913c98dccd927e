// SPDX-License-Identifier: MIT
// What rises and what falls: colours, the "+", and the light on a cell whose price has just changed.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>

#include "common/frames/totals_strip.h"
#include "common/grid/grid_painter.h"
#include "contrast.h"
#include "performance_view_fixture.h"
#include "theme/theme_services.h"

namespace holdwise::test {
namespace {

using namespace performance;

const QColor kRise(250, 20, 30);
const QColor kFall(10, 200, 60);

/// Is a text of exactly that colour drawn in the cell? Full strokes have it, their edges are mixed.
bool HasInk(const TStringGrid& grid, int column, int row, const QColor& ink) {
  const QImage cell = grid.viewport()->grab(grid.CellRect(column, row)).toImage();
  for (int y = 0; y < cell.height(); ++y) {
    for (int x = 0; x < cell.width(); ++x)
      if (cell.pixelColor(x, y) == ink) return true;
  }
  return false;
}

QColor GroundOf(const TStringGrid& grid, int column, int row) {
  return grid.viewport()->grab(grid.CellRect(column, row)).toImage().pixelColor(1, 1);
}

class RiseFallView : public PerformanceView {
 protected:
  void SetKeys(const QColor& rise, const QColor& fall) {
    bench.host.theme.colors[QStringLiteral("Grid_RiseTxtColor")] = rise;
    bench.host.theme.colors[QStringLiteral("Grid_FallTxtColor")] = fall;
    if (bench.mainFrame) bench.mainFrame->MakeSkin();
  }
  void TakeKeys() {
    for (const char* key : {"Grid_RiseTxtColor", "Grid_FallTxtColor"})
      bench.host.theme.colors.erase(QString::fromLatin1(key));
    bench.mainFrame->MakeSkin();
  }
  QImage Picture() { return frame->grab().toImage(); }
};

// By hand: 600000 stands at 10.00 after 9.80, 000001 at 12.00 after 12.50; 600519 was bought at 1800 and is at 1710.
TEST_F(RiseFallView, FiguresAreDrawnInTheHostsTwoColours) {
  SetKeys(kRise, kFall);
  OpenWithTwo();
  EXPECT_EQ(holdings->Cells(kChange, 0), QStringLiteral("2.04"));
  EXPECT_TRUE(HasInk(*holdings, kChange, 0, kRise)) << "in the selected row, too";
  EXPECT_FALSE(HasInk(*holdings, kChange, 0, kFall));
  EXPECT_EQ(holdings->Cells(kChange, 1), QStringLiteral("-4.00"));
  EXPECT_TRUE(HasInk(*holdings, kChange, 1, kFall));
  EXPECT_TRUE(HasInk(*holdings, kHoldingGain, 2, kFall));
  EXPECT_TRUE(HasInk(*portfolios, kGain, 1, kRise));
  EXPECT_TRUE(HasInk(*holdings, kPrice, 1, Color("Grid_UnSelTxtColor"))) << "a price is no rise";
  EXPECT_FALSE(HasInk(*holdings, kPrice, 1, kRise));
}

TEST_F(RiseFallView, WhatIsNeitherRiseNorFallIsPlain) {
  SetKeys(kRise, kFall);
  OpenWithTwo();
  for (const char* text : {"0", "0.00", "—", "", "x"}) {
    holdings->SetCells(kChange, 1, QString::fromUtf8(text));
    EXPECT_FALSE(HasInk(*holdings, kChange, 1, kRise)) << text;
    EXPECT_FALSE(HasInk(*holdings, kChange, 1, kFall)) << text;
  }
}

TEST_F(RiseFallView, AFigureThatLacksSomethingLooksLikeNoGain) {
  SetKeys(kRise, kFall);
  OpenWithTwo();
  ASSERT_EQ(portfolios->Cells(kWeekChange, 0), QStringLiteral("27.31")) << "000001 has no close of the week";
  EXPECT_FALSE(HasInk(*portfolios, kWeekChange, 0, kRise));
  const QFontMetrics metrics(portfolios->font());
  EXPECT_EQ(portfolios->TextWidth({kWeekChange, 0}), metrics.horizontalAdvance(QStringLiteral("27.31"))) << "no plus";
  EXPECT_TRUE(HasInk(*portfolios, kWeekChange, 1, kRise)) << "5.26, with every close there";
}

TEST_F(RiseFallView, APlusIsDrawnAndTheCellsKeepTheirTexts) {
  SetKeys(kRise, kFall);
  OpenWithTwo();
  const QFontMetrics metrics(holdings->font());
  EXPECT_EQ(holdings->TextWidth({kChange, 0}), metrics.horizontalAdvance(QStringLiteral("+2.04")));
  EXPECT_EQ(holdings->TextWidth({kChange, 1}), metrics.horizontalAdvance(QStringLiteral("-4.00")));
  EXPECT_EQ(holdings->TextWidth({kPrice, 0}), metrics.horizontalAdvance(QStringLiteral("10.00")));
  EXPECT_EQ(holdings->ClippedText({kChange, 0}), QString()) << "nothing of it is lost";
  EXPECT_EQ(holdings->Cells(kChange, 0), QStringLiteral("2.04"));
  EXPECT_EQ(holdings->ToGridText().rows[0][kChange], QStringLiteral("2.04"));
  holdings->setFocus();
  QTest::keyClick(holdings, Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(QGuiApplication::clipboard()->text().contains(QStringLiteral("\t2.04\t")));
}

TEST_F(RiseFallView, AHostWithoutTheKeysGetsThePlainDrawingAndTheSwitchIsLive) {
  OpenWithTwo();
  const QImage plain = Picture();
  EXPECT_FALSE(HasInk(*holdings, kChange, 1, kFall));
  SetKeys(kRise, kFall);
  const QImage coloured = Picture();
  EXPECT_NE(coloured, plain);
  SetKeys(kFall, kRise);
  EXPECT_TRUE(HasInk(*holdings, kChange, 1, kRise)) << "falls are drawn in the other colour now";
  EXPECT_NE(Picture(), coloured);
  TakeKeys();
  EXPECT_EQ(Picture(), plain);
  EXPECT_TRUE(bench.host.debug.Lines().empty()) << "a key that need not be there is not missed";
}

TEST_F(RiseFallView, TheSumsAreDrawnAlike) {
  SetKeys(kRise, kFall);
  OpenWithTwo();
  const auto* sums = portfolios->parentWidget()->findChild<TotalsStrip*>();
  ASSERT_NE(sums, nullptr);
  // 35100 now, 35010 at the previous closes, paid 34900.
  EXPECT_EQ(sums->Texts(), List({"35100.00", "+90.00", "+200.00", "+0.57"}));
  TakeKeys();
  EXPECT_EQ(sums->Texts(), List({"35100.00", "90.00", "200.00", "0.57"}));
}

// --- the light

class PriceLight : public RiseFallView {
 protected:
  void Trade(int cents) {
    bench.DeliverPrices({{QStringLiteral("600000"), {cents, 2}},
                         {QStringLiteral("000001"), {1200, 2}},
                         {QStringLiteral("600519"), {171000, 2}}});
    Refresh();
  }
  [[nodiscard]] QColor Lit(const char* row, const QColor& sign) const { return FlashColor(Color(row), sign); }
};

TEST_F(PriceLight, ACellIsLitWhenItsPriceChangesAndNoLongerThanAMoment) {
  SetKeys(kRise, kFall);
  OpenWithTwo();
  EXPECT_EQ(GroundOf(*holdings, kPrice, 0), Color("Qm_GridRowSelectColor")) << "a first price is no change";
  Trade(1001);
  EXPECT_EQ(GroundOf(*holdings, kPrice, 0), Lit("Qm_GridRowSelectColor", kRise));
  EXPECT_EQ(GroundOf(*holdings, kPrice, 1), Color("KTR_HighLightColor2")) << "its price has not changed";
  EXPECT_EQ(GroundOf(*holdings, kChange, 0), Color("Qm_GridRowSelectColor")) << "only the price itself";
  EXPECT_EQ(GroundOf(*portfolios, kValue, 1), Lit("KTR_HighLightColor2", kRise)) << "the portfolio's value follows";
  Trade(999);
  EXPECT_EQ(GroundOf(*holdings, kPrice, 0), Lit("Qm_GridRowSelectColor", kFall));
  QTest::qWait(800);
  EXPECT_EQ(GroundOf(*holdings, kPrice, 0), Color("Qm_GridRowSelectColor"));
  EXPECT_EQ(GroundOf(*portfolios, kValue, 1), Color("KTR_HighLightColor2"));
}

TEST_F(PriceLight, AnotherPortfoliosPricesAreNoChange) {
  SetKeys(kRise, kFall);
  bench.AddPortfolio(1, QStringLiteral("一"), {{1000001, 200, 1, 9.5}});
  bench.AddPortfolio(2, QStringLiteral("二"), {{1600000, 200, 1, 9.5}});
  Open();
  bench.DeliverPrices(PricesOfThree());
  Refresh();
  Click(*portfolios, kCreated, 1);
  EXPECT_EQ(holdings->Cells(kPrice, 0), QStringLiteral("12.00"));
  EXPECT_EQ(GroundOf(*holdings, kPrice, 0), Color("Qm_GridRowSelectColor"));
}

TEST_F(PriceLight, WithoutTheColoursThereIsNone) {
  OpenWithTwo();
  Trade(1001);
  EXPECT_EQ(GroundOf(*holdings, kPrice, 0), Color("Qm_GridRowSelectColor"));
}

// --- which columns

struct ViewColumns {
  int node;
  std::vector<const char*> list;
  std::vector<const char*> holdings;
};

class SignedColumns : public PortfolioViewTest, public testing::WithParamInterface<ViewColumns> {
 protected:
  SignedColumns() : PortfolioViewTest(GetParam().node) {}
  /// Titles of the columns in which a number is drawn as a rise.
  static QStringList SignedIn(TStringGrid& grid) {
    QStringList titles;
    const GridText text = grid.ToGridText();
    for (int column = 0; column < grid.ColCount(); ++column) {
      if (grid.isColumnHidden(column)) continue;
      grid.SetCells(column, 0, QStringLiteral("7.25"));
      if (HasInk(grid, column, 0, kRise)) titles << text.titles[column];
    }
    return titles;
  }
  static QStringList Titles(const std::vector<const char*>& texts) {
    QStringList titles;
    for (const char* text : texts) titles << QString::fromUtf8(text);
    return titles;
  }
};

INSTANTIATE_TEST_SUITE_P(
    Views, SignedColumns,
    testing::Values(
        ViewColumns{2001,
                    {"日涨跌幅(%)", "周涨跌幅(%)", "月涨跌幅(%)", "期间收益(元)", "期间收益率(%)"},
                    {"涨跌幅(%)", "日贡献(元)", "周贡献(元)", "月贡献(元)", "期间收益(元)", "期间收益率(%)"}},
        ViewColumns{2002, {}, {}},
        ViewColumns{2003, {"预期涨跌幅(%)", "预期收益(元)", "预期收益率(%)"}, {"预期涨跌幅(%)", "预期损益(元)"}},
        ViewColumns{3001, {"回报率(%)", "超额回报率(%)"}, {"回报率(%)", "超额回报率(%)"}},
        ViewColumns{3002,
                    {"回报率(%)", "超额回报率(%)", "风险增溢(%)", "选择回报率(%)", "多样化增溢(%)", "净选择回报率(%)"},
                    {}}),
    [](const auto& view) { return std::to_string(view.param.node); });

TEST_P(SignedColumns, AreThoseOfGainsAndReturns) {
  bench.host.theme.colors[QStringLiteral("Grid_RiseTxtColor")] = kRise;
  bench.host.theme.colors[QStringLiteral("Grid_FallTxtColor")] = kFall;
  AddTwo();
  Open();
  EXPECT_EQ(SignedIn(*portfolios), Titles(GetParam().list));
  if (holdings != nullptr) {
    EXPECT_EQ(SignedIn(*holdings), Titles(GetParam().holdings));
  }
}

// --- legible

class QuietLog : public DebugServers {
 public:
  void WriteLog(const QString& /*text*/) override {}
};

TEST(RiseFallContrast, EveryTextStandsOutFromEveryRow) {
  QuietLog log;
  for (const ThemeKind kind : {ThemeKind::Dark, ThemeKind::Light}) {
    for (const RiseFall choice : {RiseFall::RedRises, RiseFall::GreenRises}) {
      ThemeServices theme(kind, log);
      theme.SetRiseFall(choice);
      const GridColors colors = ReadGridColors(theme.Colors());
      ASSERT_TRUE(colors.TellsRiseFromFall());
      for (const auto& [row, isSelected] : {std::pair(0, false), {1, false}, {0, true}}) {
        const GridCellPaint cell{0, row, {}, isSelected};
        const QColor ground = RowColor(cell, colors);
        for (const QColor& ink : {colors.rise, colors.fall, TextColor(cell, colors)})
          EXPECT_GE(Contrast(ink, ground), 4.5) << ink.name().toStdString() << " on " << ground.name().toStdString();
        for (const QColor& sign : {colors.rise, colors.fall})
          EXPECT_GE(Contrast(TextColor(cell, colors), FlashColor(ground, sign)), 4.5) << ground.name().toStdString();
      }
      EXPECT_GE(Contrast(colors.rise, colors.background), 4.5);
      EXPECT_GE(Contrast(colors.fall, colors.background), 4.5);
    }
  }
}

TEST(RiseFallContrast, PlainIsAThemeWithoutTheKeys) {
  QuietLog log;
  ThemeServices theme(ThemeKind::Dark, log);
  theme.SetRiseFall(RiseFall::Plain);
  EXPECT_FALSE(ReadGridColors(theme.Colors()).TellsRiseFromFall());
}

}  // namespace
}  // namespace holdwise::test
