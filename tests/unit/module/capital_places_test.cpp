// SPDX-License-Identifier: MIT
// Where capitals lie on the slider. Pixels and amounts are worked out by hand from the bars' rules for a frame of 817:
// bars of 20 pixels from 110 on, three for each ten up to 100.
#include "views/znpz/capital_places.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "holdwise/packet/error.h"

namespace holdwise::allocation {
namespace {

constexpr int kWidths[] = {600, 716, 817, 1000, 1366, 1735, 1920, 2560};

std::tuple<int, int, int, int> Of(const TRect& rect) {
  return {rect.left, rect.top, rect.right, rect.bottom};
}

TEST(CapitalPlaces, TheBarsOfTheDesignedWidth) {
  const CapitalPlaces places = CalcRect(817);
  EXPECT_EQ(Of(places.slider), std::tuple(100, 59, 778, 125));
  EXPECT_EQ(Of(places.bars[0]), std::tuple(110, 124, 130, 125));
  EXPECT_EQ(Of(places.bars[1]), std::tuple(130, 123, 150, 125));
  EXPECT_EQ(Of(places.bars[31]), std::tuple(730, 63, 750, 125));
  EXPECT_EQ(Of(places.bars[32]), std::tuple(750, 61, 768, 125)) << "two pixels less";
}

TEST(CapitalPlaces, TheBarsFillTheFrame) {
  for (const int width : kWidths) {
    const CapitalPlaces places = CalcRect(width);
    const int bar = (width - 145) / 33;
    EXPECT_EQ(places.slider.right, 100 + 20 + 33 * bar - 2) << width;
    EXPECT_EQ(places.bars[32].right, 110 + 33 * bar - 2) << width;
    EXPECT_LT(places.slider.right, width);
  }
  EXPECT_EQ(CalcRect(100).slider.right, CalcRect(300).slider.right) << "too narrow a frame cuts off";
  EXPECT_GT(CalcRect(-5).bars[32].right, CalcRect(-5).bars[32].left);
}

TEST(CapitalPlaces, ACapitalHasItsBarAndItsPlaceInIt) {
  const CapitalPlaces places = CalcRect(817);
  struct Case {
    double capital;
    int index;
    int right;  ///< of the current bar
  };
  // The right edge is left + round(width x f): a width of 18 in all bars but 32 (20) and 33 (18, its own).
  for (const auto& [capital, index, right] : {
           Case{0, 1, 110}, Case{1, 1, 115},  // f = 0.3: 5.4
           Case{5, 2, 139},                   // f = 0.5: 9
           Case{10, 4, 170},                  // f = 0
           Case{99.9, 30, 707},               // f = 0.97: 17.46
           Case{100, 31, 710},                // at the bar's left edge
           Case{110, 31, 719},                // f = 0.5
           Case{120, 32, 730},                // f = 0
           Case{130, 32, 737},                // f = 1/3 of 20
           Case{150, 33, 750},                // f = 0
           Case{175, 33, 759},                // f = 0.5
           Case{200, 33, 768},                // f = 1
           Case{250, 33, 768},                // clamped
           Case{1e9, 33, 768},                //
           Case{-3, 1, 110 - 16},             // f = -0.9: left of the bar
       }) {
    const CapitalRange range = CalcRange(capital, places);
    EXPECT_EQ(range.index, index) << capital;
    EXPECT_EQ(range.current.right, right) << capital;
    EXPECT_EQ(range.current.left, places.bars[static_cast<std::size_t>(index - 1)].left) << capital;
  }
}

TEST(CapitalPlaces, HalfAPixelGoesToTheEvenOne) {
  // A quarter and three quarters of 18.
  const CapitalPlaces places = CalcRect(817);
  EXPECT_EQ(CalcRange(105, places).current.right, 714);
  EXPECT_EQ(CalcRange(115, places).current.right, 724);
}

TEST(CapitalPlaces, BelowTheFirstBarThereIsNone) {
  const CapitalPlaces places = CalcRect(817);
  EXPECT_EQ(CalcRange(-3.33, places).index, 1);
  for (const double capital : {-3.34, -50.0, -1e300}) EXPECT_THROW((void)CalcRange(capital, places), Error) << capital;
}

TEST(CapitalPlaces, APointInABarStandsForACapital) {
  const CapitalPlaces places = CalcRect(817);
  const auto at = [&](int x, int y) { return CapitalAt({x, y}, places); };
  EXPECT_DOUBLE_EQ(at(110, 125).value(), 0);
  EXPECT_DOUBLE_EQ(at(139, 124).value(), 29 * 10.0 / 58) << "29 pixels of a group of 58";
  EXPECT_DOUBLE_EQ(at(168, 125).value(), 10);
  EXPECT_DOUBLE_EQ(at(170, 125).value(), 10) << "the next group";
  EXPECT_DOUBLE_EQ(at(710, 125).value(), 100);
  EXPECT_DOUBLE_EQ(at(719, 100).value(), 110);
  EXPECT_DOUBLE_EQ(at(739, 100).value(), 135) << "9 of 18 pixels of 30";
  EXPECT_DOUBLE_EQ(at(758, 62).value(), 175) << "8 of 16 pixels of 50";
  EXPECT_DOUBLE_EQ(at(765, 62).value(), 150 + 15 * 50.0 / 16) << "near its right edge just under 200";
  EXPECT_LT(at(765, 62).value(), 200);
}

TEST(CapitalPlaces, OutsideTheBarsThereIsNoCapital) {
  const CapitalPlaces places = CalcRect(817);
  for (const QPoint& point :
       {QPoint(109, 125), QPoint(110, 123), QPoint(129, 125), QPoint(400, 59), QPoint(769, 100), QPoint(300, 126)}) {
    EXPECT_EQ(CapitalAt(point, places), std::nullopt) << point.x() << ' ' << point.y();
  }
  EXPECT_DOUBLE_EQ(CapitalAtX(129, places), CapitalAt({128, 125}, places).value()) << "the bar on the left";
  EXPECT_DOUBLE_EQ(CapitalAtX(-50, places), 0);
  EXPECT_DOUBLE_EQ(CapitalAtX(5000, places), CapitalAt({768, 100}, places).value());
}

TEST(CapitalPlaces, ToThePlaceAndBackStaysWithinAPixelsWorth) {
  for (const int width : kWidths) {
    const CapitalPlaces places = CalcRect(width);
    const int bar = places.bars[0].right - places.bars[0].left;
    for (int hundredths = 0; hundredths <= 20000; ++hundredths) {
      const double capital = hundredths / 100.0;
      const double worth = capital <= 100   ? 10.0 / (3 * bar - 2)
                           : capital <= 120 ? 20.0 / (bar - 2)
                           : capital <= 150 ? 30.0 / (bar - 2)
                                            : 50.0 / (bar - 4);
      const auto back = CapitalAt({PositionOf(capital, places), 125}, places);
      ASSERT_TRUE(back) << width << ' ' << capital;
      ASSERT_LE(std::abs(*back - capital), worth + 1e-9) << width << ' ' << capital;
    }
  }
}

TEST(CapitalPlaces, EveryPixelComesBackToItself) {
  for (const int width : kWidths) {
    const CapitalPlaces places = CalcRect(width);
    for (int x = places.bars[0].left; x <= places.bars[32].right; ++x) {
      const auto capital = CapitalAt({x, 125}, places);
      if (!capital) continue;
      // The end of a group of three and the beginning of the next one are worth the same.
      ASSERT_LE(std::abs(PositionOf(*capital, places) - x), 2) << width;
      ASSERT_DOUBLE_EQ(CapitalAtX(PositionOf(*capital, places), places), *capital) << width << ' ' << x;
    }
  }
}

// The bar that is drawn ends where CalcRange says, which counts the gaps between the bars differently.
TEST(CapitalPlaces, TheDrawnPartEndsWithinThreePixelsOfThePlace) {
  for (const int width : kWidths) {
    const CapitalPlaces places = CalcRect(width);
    for (int hundredths = 0; hundredths <= 20000; hundredths += 7) {
      const double capital = hundredths / 100.0;
      ASSERT_LE(std::abs(CalcRange(capital, places).current.right - PositionOf(capital, places)), 3)
          << width << ' ' << capital;
    }
  }
}

TEST(CapitalPlaces, TheMarksStandWhereTheirCapitalsLie) {
  const CapitalPlaces places = CalcRect(817);
  QStringList texts;
  for (const auto& [text, centre] : MarksOf(places)) {
    texts << text;
    bool isNumber = false;
    const double capital = text.toDouble(&isNumber);
    if (!isNumber) continue;
    EXPECT_DOUBLE_EQ(CapitalAtX(centre, places), capital);
  }
  EXPECT_EQ(texts.join(' '), QStringLiteral("10以下 20 30 40 50 60 70 80 90 100 100以上"));
}

}  // namespace
}  // namespace holdwise::allocation
