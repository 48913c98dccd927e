// SPDX-License-Identifier: MIT
// The main frame's colours in two themes, by what is painted: the tree on the left, the title bar and the page on the
// right. Places are those of the design, in pixels of the main frame.
#include <gtest/gtest.h>

#include <QTest>

#include "view_bench.h"

namespace holdwise::test {
namespace {

constexpr int kPerformance = 2001;
constexpr int kTreePanel = 174;
constexpr int kPage = 184;  // behind the splitter
constexpr int kTitleBar = 35;

class MainFrameColors : public testing::Test {
 protected:
  MainFrameColors() { bench.OpenMainFrame(1000); }
  [[nodiscard]] QColor Color(const char* key) const { return bench.host.theme.ColorOf(QString::fromLatin1(key)); }
  [[nodiscard]] QImage Picture() { return bench.mainFrame->grab().toImage(); }
  /// Where a node's row is.
  [[nodiscard]] QRect RowOf(int id) const {
    const NavigationTree& tree = bench.mainFrame->dxTL();
    QRect row = tree.visualItemRect(bench.Node(id));
    row.setLeft(0);
    return row.translated(tree.viewport()->mapTo(bench.mainFrame.get(), QPoint()));
  }
  static int Count(const QImage& image, const QRect& area, const QColor& color) {
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
      for (int x = area.left(); x <= area.right(); ++x) count += image.pixelColor(x, y) == color ? 1 : 0;
    }
    return count;
  }
  /// Runs the checks in the first theme and, after a change while the frame is shown, in the second.
  void InBothThemes(const std::function<void()>& check) {
    {
      SCOPED_TRACE("first theme");
      check();
    }
    bench.host.theme.Switch();
    bench.mainFrame->MakeSkin();
    SCOPED_TRACE("second theme");
    check();
  }
  ViewBench bench;
};

TEST_F(MainFrameColors, PanelsTakeTheBackground) {
  InBothThemes([this] {
    const QImage image = Picture();
    for (const QPoint& at : {QPoint(2, 2), QPoint(2, image.height() - 3), QPoint(kTreePanel - 3, image.height() - 3),
                             QPoint(kPage + 2, kTitleBar + 2), QPoint(image.width() - 3, image.height() - 3)}) {
      EXPECT_EQ(image.pixelColor(at), Color("Qm_BGCorlor")) << at.x() << ' ' << at.y();
    }
  });
}

TEST_F(MainFrameColors, TheTitleBarHasThePictureAndTheColourOfLargeCaptions) {
  bench.ClickNode(kPerformance);
  InBothThemes([this] {
    const QImage image = Picture();
    const QRect bar(kPage, 0, image.width() - kPage, kTitleBar);
    for (const QPoint& corner : {bar.topLeft(), bar.topRight(), bar.bottomLeft(), bar.bottomRight()}) {
      EXPECT_EQ(image.pixelColor(corner), Color("Grid_TitleUpBg")) << corner.x() << ' ' << corner.y();
    }
    EXPECT_GT(Count(image, bar, Color("Section_BigTxtColor")), 20) << "the caption";
    EXPECT_EQ(Count(image, {kPage, 0, 14, kTitleBar}, Color("Grid_TitleUpBg")), 14 * kTitleBar)
        << "the caption begins at its place";
  });
}

TEST_F(MainFrameColors, TheStockPoolLinkTakesTheColourOfTheTitleNotThatOfTheTree) {
  InBothThemes([this] {
    for (const QLabel* label : bench.mainFrame->findChildren<QLabel*>()) {
      if (label->text() != QStringLiteral("智能股票池")) continue;
      EXPECT_EQ(label->palette().color(QPalette::WindowText), Color("Section_BigTxtColor"));
      return;
    }
    ADD_FAILURE() << "there is no such link";
  });
}

TEST_F(MainFrameColors, TheSelectedNodeHasItsRowAndText) {
  bench.ClickNode(kPerformance);
  InBothThemes([this] {
    const QImage image = Picture();
    const QRect row = RowOf(kPerformance);
    EXPECT_EQ(image.pixelColor(row.right() - 2, row.center().y()), Color("Qm_GridRowSelectColor"));
    EXPECT_GT(Count(image, row, Color("Grid_SelTxtColor")), 0);
    EXPECT_EQ(Count(image, row, Color("Grid_UnSelTxtColor")), 0);
  });
}

TEST_F(MainFrameColors, OtherNodesHaveTheirTextOnTheBackgroundAndTheTreesLines) {
  bench.ClickNode(kPerformance);
  InBothThemes([this] {
    const QImage image = Picture();
    for (const int id : {1000, 1001, 1002, 2000, 2002, 2003, 3000, 3001, 3002}) {
      const QRect row = RowOf(id);
      EXPECT_EQ(image.pixelColor(row.right() - 2, row.center().y()), Color("Qm_BGCorlor")) << id;
      EXPECT_GT(Count(image, row, Color("Grid_UnSelTxtColor")), 0) << id;
      EXPECT_EQ(Count(image, row, Color("Grid_SelTxtColor")), 0) << id;
      const bool isGroup = id % 1000 == 0;
      EXPECT_EQ(Count(image, row, Color("TreeListColor")) > 0, !isGroup) << id;
    }
  });
}

TEST_F(MainFrameColors, NothingOfTheOldThemeIsLeft) {
  bench.ClickNode(kPerformance);
  std::vector<QColor> old;
  for (const char* key : {"Qm_BGCorlor", "Qm_GridRowSelectColor", "Grid_SelTxtColor", "Grid_UnSelTxtColor",
                          "TreeListColor", "Section_BigTxtColor", "Grid_TitleUpBg", "QM_TitleFontColor"}) {
    old.push_back(Color(key));
  }
  bench.host.theme.Switch();
  bench.mainFrame->MakeSkin();
  const QImage image = Picture();
  for (const QColor& color : old) EXPECT_EQ(Count(image, image.rect(), color), 0) << color.name().toStdString();
}

}  // namespace
}  // namespace holdwise::test
