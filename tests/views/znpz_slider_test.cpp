// SPDX-License-Identifier: MIT
// The slider and the entry of the smart allocation, with the mouse and the keyboard. In a main frame of 1000 pixels the
// page has 816, and the bars are 20 wide from 110 on.
#include <QImage>
#include <QPainter>

#include "holdwise/packet/number_text.h"
#include "views/znpz/capital_slider_painter.h"
#include "znpz_fixture.h"

namespace holdwise::test {
namespace {

using namespace allocation;

class AllocationSlider : public AllocationView {
 protected:
  void OpenSlider() {
    OpenAll();
    ASSERT_EQ(Bar(1).left - Bar(0).left, 20);
  }
  [[nodiscard]] TRect Bar(int place) const { return Slider().Places().bars[static_cast<std::size_t>(place)]; }
  void Press(const QPoint& at) const { QTest::mousePress(&Slider(), Qt::LeftButton, {}, at); }
  void MoveTo(const QPoint& at) const {
    QMouseEvent move(QEvent::MouseMove, at, Slider().mapToGlobal(at), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(&Slider(), &move);
  }
  void Release(const QPoint& at) const { QTest::mouseRelease(&Slider(), Qt::LeftButton, {}, at); }
  void ClickAt(const QPoint& at) const { QTest::mouseClick(&Slider(), Qt::LeftButton, {}, at); }
  /// A point in the part of the ramp that is filled last.
  [[nodiscard]] QPoint Grip() const {
    const CapitalRange range = CalcRange(RealOr(Entry().text()), Slider().Places());
    return {(range.current.left + range.current.right) / 2, range.current.bottom - 1};
  }
};

TEST_F(AllocationSlider, AClickOnABarMovesTheCapitalThere) {
  OpenSlider();
  ClickAt({Bar(30).left + 9, 110});
  EXPECT_EQ(Entry().text(), "110.00") << "9 of 18 pixels of 20";
  ClickAt({Bar(1).left + 9, 124});
  EXPECT_EQ(Entry().text(), "5.00") << "29 of 58 pixels of 10";
  ClickAt({Bar(32).left + 15, 100});
  EXPECT_EQ(Entry().text(), "196.88") << "15 of 16 pixels of 50: just under 200";
  EXPECT_EQ(Asked().last(), kRemote + "zh_5_1.dat") << "nothing is asked for";
}

TEST_F(AllocationSlider, AClickOutsideTheBarsDoesNothing) {
  OpenSlider();
  for (const QPoint& at : {QPoint(50, 110), QPoint(Bar(3).left + 4, 70), QPoint(Bar(3).right - 1, 124)}) {
    ClickAt(at);
    EXPECT_EQ(Entry().text(), "50") << at.x();
  }
  QTest::mouseClick(&Slider(), Qt::RightButton, {}, {Bar(30).left + 9, 110});
  EXPECT_EQ(Entry().text(), "50");
}

TEST_F(AllocationSlider, APressOnTheCurrentBarDragsTheCapital) {
  OpenSlider();
  ClickAt({Bar(30).left + 9, 110});
  Press(Grip());
  EXPECT_TRUE(Slider().IsDragging());
  EXPECT_EQ(Slider().cursor().shape(), Qt::SplitVCursor);
  MoveTo({Bar(31).left + 9, 100});
  EXPECT_EQ(Entry().text(), "135.00") << "9 of 18 pixels of 30";
  MoveTo({Bar(1).left + 9, 20});
  EXPECT_EQ(Entry().text(), "5.00") << "at any height";
  MoveTo({-500, 0});
  EXPECT_EQ(Entry().text(), "0.00");
  MoveTo({Bar(30).left, 300});
  EXPECT_EQ(Entry().text(), "100.00");
  Release({Bar(30).left, 300});
  EXPECT_FALSE(Slider().IsDragging());
  EXPECT_EQ(Slider().cursor().shape(), Qt::ArrowCursor);
  MoveTo({Bar(1).left, 124});
  EXPECT_EQ(Entry().text(), "100.00") << "no drag any more";
}

TEST_F(AllocationSlider, APressBesideTheCurrentBarIsNoDrag) {
  OpenSlider();
  Press({Bar(30).left + 9, 110});
  EXPECT_FALSE(Slider().IsDragging());
  MoveTo({Bar(31).left + 9, 100});
  EXPECT_EQ(Entry().text(), "50");
  Release({Bar(31).left + 9, 100});
  EXPECT_EQ(Entry().text(), "135.00") << "but letting go is a click";
}

TEST_F(AllocationSlider, TheThumbCanBeDraggedToo) {
  OpenSlider();
  Press(ThumbOf(50, Slider().Places()).center());
  EXPECT_TRUE(Slider().IsDragging());
  const int x = Bar(20).left + 7;
  MoveTo({x, 200});
  EXPECT_EQ(ThumbOf(RealOr(Entry().text()), Slider().Places()).center().x(), x) << "it follows the mouse";
}

TEST_F(AllocationSlider, AtTheLeftEndOfItsBarTheBarBeforeIsTheGrip) {
  OpenSlider();
  Type("100");  // bar 31 without width
  Press({Bar(29).left + 5, 124});
  EXPECT_TRUE(Slider().IsDragging());
  Release({Bar(29).left + 5, 124});
  Type("100");
  Press({Bar(30).left + 5, 124});
  EXPECT_FALSE(Slider().IsDragging());
  Release({Bar(30).left + 5, 124});
}

TEST_F(AllocationSlider, ArrowKeysMoveTheCapital) {
  OpenSlider();
  Slider().setFocus();
  const auto press = [&](Qt::Key key) {
    QTest::keyClick(&Slider(), key);
    return Entry().text();
  };
  EXPECT_EQ(press(Qt::Key_Right), "51");
  EXPECT_EQ(press(Qt::Key_Up), "52");
  EXPECT_EQ(press(Qt::Key_Left), "51");
  EXPECT_EQ(press(Qt::Key_PageUp), "61");
  EXPECT_EQ(press(Qt::Key_PageDown), "51");
  EXPECT_EQ(press(Qt::Key_Home), "1");
  EXPECT_EQ(press(Qt::Key_Left), "1") << "not to nothing";
  Type(".5");
  Slider().setFocus();
  EXPECT_EQ(press(Qt::Key_Left), ".5") << "not upwards";
  EXPECT_EQ(press(Qt::Key_PageDown), ".5");
  QTest::keyClick(&Slider(), Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(Entry().text(), ".5") << "a command of somebody else";
  EXPECT_EQ(press(Qt::Key_Home), "1");
  EXPECT_EQ(press(Qt::Key_End), "200");
  EXPECT_EQ(press(Qt::Key_Right), "200");
  Type("12.5");
  Slider().setFocus();
  EXPECT_EQ(press(Qt::Key_Right), "13") << "to whole amounts";
  Type("12.5");
  Slider().setFocus();
  EXPECT_EQ(press(Qt::Key_Left), "12");
}

TEST_F(AllocationSlider, TheEntryTakesWhatItShouldKeyByKey) {
  OpenSlider();
  const auto typed = [&](const char* keys) {
    Type(QString::fromLatin1(keys));
    return Entry().text();
  };
  EXPECT_EQ(typed("123456"), "12345") << "a sixth character is refused";
  EXPECT_EQ(typed("0012"), "12") << "no leading zero";
  EXPECT_EQ(typed("1.5"), "1.5");
  EXPECT_EQ(typed("1.2.3"), "1.2.3") << "which is no number";
  EXPECT_EQ(typed("-1e+2 x"), "12");
  EXPECT_EQ(typed(".5"), ".5");
  Entry().setText("105");
  Entry().setCursorPosition(1);
  QTest::keyClick(&Entry(), Qt::Key_0);
  EXPECT_EQ(Entry().text(), "1005");
  Entry().setCursorPosition(0);
  QTest::keyClick(&Entry(), Qt::Key_0);
  EXPECT_EQ(Entry().text(), "1005");
}

TEST_F(AllocationSlider, WhatIsPastedIsOfTheSameCharacters) {
  OpenSlider();
  Entry().selectAll();
  Entry().insert("abc");
  EXPECT_EQ(Entry().text(), "50");
  Entry().selectAll();
  Entry().insert("75.5");
  EXPECT_EQ(Entry().text(), "75.5");
}

TEST_F(AllocationSlider, EnterInTheEntryStartsAnAllocation) {
  OpenSlider();
  Type("5");
  QTest::keyClick(&Entry(), Qt::Key_Return);
  EXPECT_EQ(Asked().last(), kRemote + "zh_2.dat");
  Serve();
  ClickAt({Bar(30).left + 9, 110});
  QTest::keyClick(&Entry(), Qt::Key_Return);
  EXPECT_EQ(Asked().last(), kRemote + "zh_2.dat") << "not with five characters in the entry";
  Configure();
  EXPECT_EQ(Asked().last(), kRemote + "zh_10.dat") << "the button does";
}

TEST_F(AllocationSlider, WhileTheEntryHasTheFocusTheHostLeavesItTheKeyboard) {
  OpenSlider();
  Entry().setFocus();
  EXPECT_EQ(bench.host.keyCodes.calls.back(), false);
  Slider().setFocus();
  EXPECT_EQ(bench.host.keyCodes.calls.back(), true);
}

TEST_F(AllocationSlider, TypedAndDraggedAmountsAreDrawnAlike) {
  OpenSlider();
  ClickAt({Bar(12).left + 7, 124});
  const QString dragged = Entry().text();
  const QImage afterClick = Slider().grab().toImage();
  Entry().setText("7");
  EXPECT_NE(Slider().grab().toImage(), afterClick);
  Entry().setText(dragged);
  EXPECT_EQ(Slider().grab().toImage(), afterClick);
}

TEST_F(AllocationSlider, TheFilledPartReachesTheCapitalInBothThemes) {
  OpenSlider();
  for (int theme = 0; theme < 2; ++theme) {
    const QImage image = Slider().grab().toImage();
    // The bottom row of the bars has the start colours; 50 ends where bar 16 begins.
    const auto at = [&](int bar, int x) { return image.pixelColor(Bar(bar).left + x, Bar(bar).bottom - 1); };
    const auto isNear = [](const QColor& a, const QColor& b) {
      return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue()) < 40;
    };
    EXPECT_TRUE(isNear(at(14, 10), Color("Invest_BStart_COLOR"))) << theme;
    EXPECT_TRUE(isNear(at(15, 10), Color("Invest_HStart_COLOR"))) << theme;
    EXPECT_EQ(image.pixelColor(Bar(14).right - 1, Bar(14).bottom - 3), Color("Qm_BGCorlor")) << "the gap";
    EXPECT_EQ(image.pixelColor(Bar(20).left, 125), Color("Qm_GridRowSelectColor")) << "the base line";
    EXPECT_EQ(image.pixelColor(5, 5), Color("Qm_BGCorlor"));
    bench.host.theme.Switch();
    bench.mainFrame->MakeSkin();
  }
}

TEST_F(AllocationSlider, AtTwiceTheResolutionEdgesAreSharp) {
  OpenSlider();
  const CapitalPlaces places = Slider().Places();
  const CapitalSliderPalette palette = ReadCapitalSliderPalette(bench.host.theme);
  QImage image(Slider().size() * 2, QImage::Format_RGB32);
  image.setDevicePixelRatio(2);
  {
    QPainter painter(&image);
    PaintCapitalSlider(painter, {50, QString(), false}, places, Slider().rect(), palette);
  }
  // Across the bars' edges colours change from one device pixel to the next, with nothing mixed in between.
  const int y = 2 * (places.slider.bottom - 2);
  for (const int bar : {5, 20, 31}) {
    const TRect rect = places.bars[static_cast<std::size_t>(bar)];
    EXPECT_NE(image.pixelColor(2 * rect.left, y), palette.background) << bar;
    EXPECT_EQ(image.pixelColor(2 * rect.left - 1, y), palette.background) << bar;
    EXPECT_EQ(image.pixelColor(2 * (rect.right - 2), y), palette.background) << bar;
    EXPECT_NE(image.pixelColor(2 * (rect.right - 2) - 1, y), palette.background) << bar;
  }
}

TEST_F(AllocationSlider, TheNumberOfStocksIsSaidWhileDragging) {
  PutFile("ZNPZ.dat", CapitalTable({{3, 20}, {6, 200}}));
  OpenAll();
  Entry().setText("15");
  EXPECT_EQ(Slider().OnRead().caption, "15 万元：3 只股票");
  Entry().setText("62.5");
  EXPECT_EQ(Slider().OnRead().caption, "62.5 万元：6 只股票");
  Entry().setText("");
  EXPECT_EQ(Slider().OnRead().caption, "请输入资金量");
}

TEST_F(AllocationSlider, ItFollowsTheWidthOfThePage) {
  for (const int width : {900, 1024, 1920, 2560}) {
    OpenAll(width);
    const CapitalPlaces& places = Slider().Places();
    EXPECT_EQ(places.bars[0].right - places.bars[0].left, (frame->width() - 145) / 33) << width;
    EXPECT_LT(places.slider.right, frame->width());
    EXPECT_EQ(frame->findChild<QWidget*>("RzPanel1")->height(), 225);
    for (const TStringGrid* grid : {portfolios, holdings}) {
      for (int column = 0; column < 4; ++column) EXPECT_GE(grid->ColWidth(column), 40) << width << ' ' << column;
    }
    bench.CloseMainFrame();
  }
}

}  // namespace
}  // namespace holdwise::test
