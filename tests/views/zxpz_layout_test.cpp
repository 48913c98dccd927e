// SPDX-License-Identifier: MIT
// The bands of the portfolio editor: their sizes, what stands in them, captions in one line or two.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>

#include "zxpz_view_fixture.h"

namespace holdwise::test {
namespace {

using namespace editor;

class EditorLayout : public EditorView {
 protected:
  [[nodiscard]] QStringList CaptionsOver(const TStringGrid& grid) const {
    QStringList texts;
    for (const HeaderStrip* strip : frame->findChildren<HeaderStrip*>()) {
      if (strip->parentWidget() != grid.parentWidget()) continue;
      for (const QLabel* label : strip->Labels()) texts << label->text();
    }
    return texts;
  }
};

TEST_F(EditorLayout, CaptionsHaveOneLineUntilTheListIsNarrow) {
  OpenWithThree(1000);
  EXPECT_EQ(CaptionsOver(*portfolios),
            List({"序号", "组合名称", "创建日期", "组合风格", "目标收益率(%)", "方差", "Beta系数", "操作"}));
  EXPECT_EQ(CaptionsOver(*holdings), List({"代码", "名称", "数量(股)", "比例(%)"}));
  EXPECT_EQ(CaptionsOver(*Holdings().StringGrid3), List({"股票代码", "股票名称", "买入价(元)", "数量(股)"}));
  bench.mainFrame->resize(860, 640);
  QTest::qWait(20);
  EXPECT_EQ(CaptionsOver(*portfolios),
            List({"序号", "组合\n名称", "创建\n日期", "组合\n风格", "目标收\n益率(%)", "方差", "Beta\n系数", "操作"}));
  EXPECT_EQ(CaptionsOver(*Holdings().StringGrid3), List({"股票\n代码", "股票\n名称", "买入\n价(元)", "数量(股)"}));
  bench.mainFrame->resize(1400, 640);
  QTest::qWait(20);
  EXPECT_EQ(CaptionsOver(*portfolios).at(1), QStringLiteral("组合\n名称")) << "they stay";
  EXPECT_EQ(portfolios->ToGridText().titles.at(1), QStringLiteral("组合名称")) << "as the table is exported";
}

TEST_F(EditorLayout, ANarrowFrameHasTwoLinesFromTheStart) {
  OpenWithThree(860);
  EXPECT_EQ(CaptionsOver(*portfolios).at(1), QStringLiteral("组合\n名称"));
  EXPECT_EQ(CaptionsOf(TitleMode::TwoLines).list.at(4), QStringLiteral("目标收\r益率(%)"));
}

TEST_F(EditorLayout, TheBandsKeepTheirDesignSizes) {
  for (const int width : {900, 1024, 1920, 2560}) {
    OpenWithThree(width);
    EXPECT_EQ(Band().height(), 270) << width;
    EXPECT_EQ(frame->findChild<QSplitter*>(QStringLiteral("ZXPZ.Splitter1"))->widget(1)->width(), 190) << width;
    EXPECT_EQ(portfolios->width() + 190 + 5, frame->width()) << width;
    EXPECT_GE(portfolios->ColWidth(kOperation), 68) << "the three pictures, at " << width;
    EXPECT_EQ(portfolios->CellRect(kOperation, 0).right() + 1, portfolios->ClientWidth()) << width;
    bench.CloseMainFrame();
    ClearPortfolios();
  }
}

/// What shows something of its own: no other such widget inside.
std::vector<QWidget*> Leaves(const QWidget& band) {
  std::vector<QWidget*> leaves;
  for (QWidget* widget : band.findChildren<QWidget*>()) {
    const bool isControl = qobject_cast<QLabel*>(widget) != nullptr || qobject_cast<QLineEdit*>(widget) != nullptr ||
                           qobject_cast<QPushButton*>(widget) != nullptr ||
                           qobject_cast<QComboBox*>(widget) != nullptr || qobject_cast<TStringGrid*>(widget) != nullptr;
    const bool isInside = qobject_cast<TStringGrid*>(widget->parentWidget()->parentWidget()) != nullptr;
    const bool isStrip = qobject_cast<PictureStrip*>(widget->parentWidget()) != nullptr;
    if (isControl && !isInside && !isStrip && widget->isVisible()) leaves.push_back(widget);
  }
  return leaves;
}

TEST_F(EditorLayout, NothingOfTheUpperBandOverlapsOrIsCutOff) {
  for (const int width : {900, 1024, 1920, 2560}) {
    OpenWithThree(width);
    const std::vector<QWidget*> leaves = Leaves(Band());
    ASSERT_GE(leaves.size(), 11U);
    std::vector<QRect> areas;
    for (const QWidget* leaf : leaves) {
      const QRect area(leaf->mapTo(&Band(), QPoint(0, 0)), leaf->size());
      const std::string name = leaf->metaObject()->className() + leaf->objectName().toStdString();
      EXPECT_TRUE(Band().rect().contains(area)) << name << " at " << width;
      for (const QRect& other : areas) EXPECT_FALSE(area.intersects(other)) << name << " at " << width;
      areas.push_back(area);
      if (const auto* label = qobject_cast<const QLabel*>(leaf)) {
        EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), label->contentsRect().width())
            << label->text().toStdString() << " at " << width;
      }
      if (const auto* button = qobject_cast<const QPushButton*>(leaf)) {
        EXPECT_LE(button->fontMetrics().horizontalAdvance(button->text()), button->width()) << name << " at " << width;
      }
    }
    bench.CloseMainFrame();
    ClearPortfolios();
  }
}

TEST_F(EditorLayout, TheTitlesBreakBelowFiveHundredPixels) {
  OpenWithThree(1000);
  const int strip = portfolios->parentWidget()->width();
  bench.mainFrame->resize(bench.mainFrame->width() - (strip - 500), 640);
  QTest::qWait(20);
  ASSERT_EQ(portfolios->parentWidget()->width(), 500);
  EXPECT_EQ(CaptionsOver(*portfolios).at(1), QStringLiteral("组合名称"));
  bench.mainFrame->resize(bench.mainFrame->width() - 1, 640);
  QTest::qWait(20);
  ASSERT_EQ(portfolios->parentWidget()->width(), 499);
  EXPECT_EQ(CaptionsOver(*portfolios).at(1), QStringLiteral("组合\n名称"));
}

}  // namespace
}  // namespace holdwise::test
