// SPDX-License-Identifier: MIT
// The titles of the performance view's columns and where texts stand in their columns, measured on what is painted.
#include <gtest/gtest.h>

#include <QLabel>

#include "performance_view_fixture.h"

namespace holdwise::test {
namespace {

using namespace performance;

/// First and last pixel column of a rectangle that hold something else than its background; -1 for none.
struct Ink {
  int left = -1;
  int right = -1;
};

Ink InkIn(const QImage& image, const QRect& area, const QColor& background) {
  Ink ink;
  for (int x = std::max(area.left(), 0); x <= std::min(area.right(), image.width() - 1); ++x) {
    for (int y = area.top(); y <= area.bottom(); ++y) {
      if (image.pixelColor(x, y) == background) continue;
      if (ink.left < 0) ink.left = x;
      ink.right = x;
    }
  }
  return ink;
}

void ExpectLeft(const QImage& image, const QRect& area, const QColor& background) {
  const Ink ink = InkIn(image, area, background);
  // Two pixels of distance, and what the first character leaves blank itself.
  EXPECT_GE(ink.left, area.left() + 2);
  EXPECT_LE(ink.left, area.left() + 5);
}

void ExpectCentred(const QImage& image, const QRect& area, const QColor& background) {
  const Ink ink = InkIn(image, area, background);
  ASSERT_GE(ink.left, 0);
  EXPECT_NEAR(ink.left - area.left(), area.right() - ink.right, 6) << "blank left and right";
}

class PerformanceTitles : public PerformanceView {
 protected:
  /// Wide enough for every title; the second holding lacks no close, so that no mark stands beside its texts.
  void OpenWide() {
    bench.AddClose(1000001, 1, 20240524, 11.5);
    bench.AddClose(1000001, 2, 20240430, 11);
    OpenWithTwo(1500);
  }
  [[nodiscard]] HeaderStrip* StripOver(const TStringGrid& grid) const {
    for (HeaderStrip* strip : frame->findChildren<HeaderStrip*>()) {
      const int bottom = strip->mapTo(frame, QPoint(0, strip->height())).y();
      if (bottom == grid.mapTo(frame, QPoint()).y()) return strip;
    }
    return nullptr;
  }
  [[nodiscard]] QStringList TitlesOver(const TStringGrid& grid) const {
    QStringList titles;
    for (const QLabel* label : StripOver(grid)->Labels()) {
      titles << label->text();
      EXPECT_TRUE(label->isVisible());
    }
    return titles;
  }
};

TEST_F(PerformanceTitles, NineStandOverTheListAndTwelveOverTheHoldings) {
  OpenWide();
  EXPECT_EQ(TitlesOver(*portfolios), List({"组合名称", "创建日期", "最新市值(元)", "日涨跌幅(%)", "周涨跌幅(%)",
                                           "月涨跌幅(%)", "期间收益(元)", "期间收益率(%)", "操作"}));
  EXPECT_EQ(TitlesOver(*holdings), List({"代码", "名称", "所属行业", "最新价(元)", "涨跌幅(%)", "数量(股)", "比例(%)",
                                         "日贡献(元)", "周贡献(元)", "月贡献(元)", "期间收益(元)", "期间收益率(%)"}));
}

TEST_F(PerformanceTitles, ArePaintedInTheColourOfTitlesInBothThemes) {
  OpenWide();
  for (const char* theme : {"first", "second"}) {
    for (const TStringGrid* grid : {portfolios, holdings}) {
      const HeaderStrip* strip = StripOver(*grid);
      const QImage image = const_cast<HeaderStrip*>(strip)->grab().toImage();
      EXPECT_EQ(image.pixelColor(0, 0), Color("Grid_TitleUpBg")) << theme;
      for (const QLabel* label : strip->Labels()) {
        int inked = 0;
        for (int x = label->x(); x < label->x() + label->width() && x < image.width(); ++x) {
          for (int y = 0; y < image.height(); ++y)
            inked += image.pixelColor(x, y) == Color("QM_TitleFontColor") ? 1 : 0;
        }
        EXPECT_GT(inked, 0) << theme << ' ' << label->text().toStdString();
      }
    }
    bench.host.theme.Switch();
    bench.mainFrame->MakeSkin();
  }
}

TEST_F(PerformanceTitles, StandInTheMiddleOfTheirColumnsAndTheIndustryAtItsLeft) {
  OpenWide();
  for (const TStringGrid* grid : {portfolios, holdings}) {
    HeaderStrip* strip = StripOver(*grid);
    const QImage image = strip->grab().toImage();
    for (int column = 0; column < static_cast<int>(strip->Labels().size()); ++column) {
      SCOPED_TRACE(strip->Labels()[static_cast<size_t>(column)]->text().toStdString());
      const QRect cell = grid->CellRect(column, 0);
      const QRect area(cell.left(), 0, std::min(cell.width(), image.width() - cell.left()), image.height());
      const bool isIndustry = grid == holdings && column == kIndustry;
      (isIndustry ? ExpectLeft : ExpectCentred)(image, area, Color("Grid_TitleUpBg"));
    }
  }
}

TEST_F(PerformanceTitles, TheLastOneKeepsClearOfTheEdgeOfANarrowPage) {
  OpenWithTwo(1024);
  HeaderStrip* strip = StripOver(*holdings);
  const QLabel& last = *strip->Labels().back();
  const QImage image = strip->grab().toImage();
  const Ink ink = InkIn(image, last.geometry(), Color("Grid_TitleUpBg"));
  EXPECT_GT(ink.left, last.x());
  EXPECT_LT(ink.right, image.width() - 1);
}

TEST_F(PerformanceTitles, CellsStandInTheMiddleOfTheirColumnsAndTheIndustryAtItsLeft) {
  OpenWide();
  // The second rows: not selected, odd.
  const QImage list = portfolios->viewport()->grab().toImage();
  for (int column = kName; column <= kGainRate; ++column) {
    SCOPED_TRACE(portfolios->Cells(column, 1).toStdString());
    ExpectCentred(list, portfolios->CellRect(column, 1), Color("KTR_HighLightColor2"));
  }
  const QImage securities = holdings->viewport()->grab().toImage();
  for (int column = kCode; column < kHoldingGainRate; ++column) {
    SCOPED_TRACE(holdings->Cells(column, 1).toStdString());
    (column == kIndustry ? ExpectLeft : ExpectCentred)(securities, holdings->CellRect(column, 1),
                                                       Color("KTR_HighLightColor2"));
  }
}

TEST_F(PerformanceTitles, CellsTakeTheColoursOfTheirRow) {
  OpenWide();
  for (const char* theme : {"first", "second"}) {
    const QImage image = holdings->viewport()->grab().toImage();
    const auto cornerOf = [&](int row) { return image.pixelColor(holdings->CellRect(kPrice, row).topLeft()); };
    EXPECT_EQ(cornerOf(0), Color("Qm_GridRowSelectColor")) << theme;
    EXPECT_EQ(cornerOf(1), Color("KTR_HighLightColor2")) << theme;
    EXPECT_EQ(cornerOf(2), Color("KTR_HighLightColor1")) << theme;
    const auto inked = [&](int row, const char* key) {
      const QRect cell = holdings->CellRect(kSecurityName, row);
      int count = 0;
      for (int x = cell.left(); x <= cell.right(); ++x) {
        for (int y = cell.top(); y <= cell.bottom(); ++y) count += image.pixelColor(x, y) == Color(key) ? 1 : 0;
      }
      return count;
    };
    EXPECT_GT(inked(0, "Grid_SelTxtColor"), 0) << theme;
    EXPECT_GT(inked(1, "Grid_UnSelTxtColor"), 0) << theme;
    EXPECT_EQ(inked(1, "Grid_SelTxtColor"), 0) << theme;
    bench.host.theme.Switch();
    bench.mainFrame->MakeSkin();
  }
}

// Hidden columns of the holdings.

TEST_F(PerformanceTitles, ColumnsTwelveToFourteenAreNeverShownAndNeverSelected) {
  OpenWide();
  ASSERT_TRUE(holdings->SelectCell(kPrice, 1));
  for (const int column : {12, 13, 14}) {
    EXPECT_EQ(holdings->ColWidth(column), 0);
    EXPECT_FALSE(holdings->SelectCell(column, 2)) << column;
    EXPECT_EQ(holdings->Row(), 1) << "what is refused moves nothing";
    EXPECT_EQ(holdings->currentIndex().column(), kPrice);
  }
  for (int column = 0; column < 12; ++column) {
    EXPECT_TRUE(holdings->SelectCell(column, 2)) << column;
    EXPECT_EQ(holdings->currentIndex().column(), column);
  }
}

TEST_F(PerformanceTitles, NoClickAndNoKeySelectsAHiddenColumn) {
  OpenWide();
  const int y = holdings->CellRect(0, 1).center().y();
  for (int x = 0; x < holdings->viewport()->width(); x += 3) {
    QTest::mouseClick(holdings->viewport(), Qt::LeftButton, {}, {x, y});
    ASSERT_EQ(holdings->Row(), 1) << x;
    ASSERT_LT(holdings->currentIndex().column(), 12) << x;
  }
  // From the last shown column on.
  QTest::mouseClick(holdings->viewport(), Qt::LeftButton, {}, {holdings->viewport()->width() - 1, y});
  ASSERT_EQ(holdings->currentIndex().column(), 11);
  holdings->setFocus();
  for (const Qt::Key key : {Qt::Key_Right, Qt::Key_End, Qt::Key_Tab, Qt::Key_Right, Qt::Key_Home, Qt::Key_Down,
                            Qt::Key_Right, Qt::Key_PageDown, Qt::Key_PageUp}) {
    QTest::keyClick(holdings, key);
    EXPECT_LT(holdings->currentIndex().column(), 12) << key;
  }
}

}  // namespace
}  // namespace holdwise::test
