// SPDX-License-Identifier: MIT
// What the holdings grid and the stock list paint.
#include "zxpz_picker_fixture.h"

namespace holdwise::test {
namespace {

class HoldingsPicture : public EditorTest {
 protected:
  void SetUp() override { Fill(4); }
  /// Left edge of the cell, behind the text's inset, where no text is drawn.
  [[nodiscard]] QColor Back(int column, int row) {
    const QRect cell = Grid().CellRect(column, row);
    return Grid().viewport()->grab().toImage().pixelColor(cell.topLeft() + QPoint(1, 1));
  }
  [[nodiscard]] bool HasTextOf(int column, int row, const QColor& color) {
    const QRect cell = Grid().CellRect(column, row).adjusted(6, 4, -6, -4);
    const QImage picture = Grid().viewport()->grab().toImage();
    for (int y = cell.top(); y <= cell.bottom(); ++y) {
      for (int x = cell.left(); x <= cell.right(); ++x) {
        if (picture.pixelColor(x, y) == color) return true;
      }
    }
    return false;
  }
  void CheckColours() {
    Grid().SelectCell(0, 1);
    const QColor even = Theme("KTR_HighLightColor1");
    const QColor odd = Theme("KTR_HighLightColor2");
    const QColor selected = Theme("Qm_GridRowSelectColor");
    for (const int column : {0, 1, 2, 3}) {
      EXPECT_EQ(Back(column, 0), even) << column;
      EXPECT_EQ(Back(column, 1), column < 2 ? selected : odd) << column;
      EXPECT_EQ(Back(column, 2), even) << column;
      EXPECT_EQ(Back(column, 3), odd) << column;
      EXPECT_TRUE(HasTextOf(column, 1, Theme(column < 2 ? "Grid_SelTxtColor" : "Grid_UnSelTxtColor"))) << column;
      EXPECT_TRUE(HasTextOf(column, 3, Theme("Grid_UnSelTxtColor"))) << column;
    }
  }
};

TEST_F(HoldingsPicture, RowsAlternateAndTheSelectedOneStandsOutInTheFirstTwoColumns) {
  CheckColours();
  host.theme.Switch();
  editor->ApplyTheme();
  CheckColours();
}

TEST_F(HoldingsPicture, PickedRowsStandOutInsteadOfTheSelectedOne) {
  Click(0, 0, Qt::ControlModifier);
  Click(0, 2, Qt::ControlModifier);
  Click(0, 3, Qt::ControlModifier);
  Click(0, 3, Qt::ControlModifier);
  ASSERT_EQ(Grid().Row(), 3);
  const QColor selected = Theme("Qm_GridRowSelectColor");
  EXPECT_EQ(Back(0, 0), selected);
  EXPECT_EQ(Back(1, 2), selected);
  EXPECT_EQ(Back(0, 1), Theme("KTR_HighLightColor2"));
  EXPECT_EQ(Back(0, 3), Theme("KTR_HighLightColor2")) << "the current row is not picked";
}

TEST_F(HoldingsPicture, PriceAndQuantityLieInBoxes) {
  const QImage picture = Grid().viewport()->grab().toImage();
  const QColor line = Theme("ktr_gridtitlebk");
  for (const int column : {kHoldingPrice, kHoldingQuantity}) {
    const QRect box = Grid().CellRect(column, 2).adjusted(4, 2, -4, -2);
    for (const QPoint& corner : {box.topLeft(), box.topRight(), box.bottomLeft(), box.bottomRight()}) {
      EXPECT_EQ(picture.pixelColor(corner), line) << column << " at " << corner.x() << "," << corner.y();
    }
    EXPECT_NE(picture.pixelColor(box.topLeft() + QPoint(1, 1)), line) << "a frame, not a block";
    EXPECT_NE(picture.pixelColor(box.topLeft() - QPoint(1, 1)), line);
  }
  const QRect name = Grid().CellRect(kHoldingName, 2).adjusted(4, 2, -4, -2);
  EXPECT_NE(picture.pixelColor(name.topLeft()), line);
}

TEST_F(HoldingsPicture, AnEmptyGridHasNoBoxes) {
  editor->ClearRows();
  const QImage picture = Grid().viewport()->grab().toImage();
  const QRect box = Grid().CellRect(kHoldingPrice, 0).adjusted(4, 2, -4, -2);
  EXPECT_EQ(picture.pixelColor(box.topLeft()), Theme("Qm_BGCorlor"));
}

TEST_F(Picker, WhereTheKeyboardIsCanBeSeen) {
  const auto edge = [](QWidget& widget) { return widget.grab().toImage().pixelColor(widget.width() / 2, 0); };
  for ([[maybe_unused]] const int theme : {1, 2}) {
    for (QWidget* widget : std::initializer_list<QWidget*>{picker->StringGrid2, editor->StringGrid3,
                                                           picker->RzComboBox1, picker->RzEdit3, picker->Search}) {
      widget->setFocus();
      EXPECT_EQ(edge(*widget), Theme("Grid_ClickTxtColor")) << widget->objectName().toStdString();
      picker->btnAdd->setFocus();
      EXPECT_NE(edge(*widget), Theme("Grid_ClickTxtColor")) << widget->objectName().toStdString();
    }
    host.theme.Switch();
    picker->ApplyTheme();
    editor->ApplyTheme();
  }
}

TEST_F(Picker, TheListIsPaintedLikeTheHoldings) {
  const auto back = [this](int row) {
    return List().viewport()->grab().toImage().pixelColor(List().CellRect(0, row).topLeft() + QPoint(1, 1));
  };
  for ([[maybe_unused]] const int theme : {1, 2}) {
    const QColor even = Theme("KTR_HighLightColor1");
    const QColor odd = Theme("KTR_HighLightColor2");
    const QColor selected = Theme("Qm_GridRowSelectColor");
    ClickStock("000001");
    QTest::mouseClick(List().viewport(), Qt::LeftButton, Qt::ShiftModifier, List().CellRect(0, 1).center());
    EXPECT_EQ(back(0), selected);
    EXPECT_EQ(back(1), selected);
    EXPECT_EQ(back(2), even);
    EXPECT_EQ(back(3), odd);
    ClickStock("300750", Qt::ControlModifier);
    EXPECT_EQ(back(0), even) << "picked ones stand out instead";
    EXPECT_EQ(back(1), odd);
    EXPECT_EQ(back(3), selected);
    host.theme.Switch();
    picker->ApplyTheme();
  }
}

}  // namespace
}  // namespace holdwise::test
