// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <random>

#include "common/charts/step_chart_painter.h"
#include "common/charts/step_chart_places.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

ChartTerm Part(const char* name, double value, ChartColor color) {
  return {QString::fromUtf8(name), value, ShortestText(value), color};
}

ChartStep Step(const char* caption, const char* total, double left, double right) {
  ChartStep step{
      QString::fromUtf8(caption), {}, Part("左", left, ChartColor::Yellow), Part("右", right, ChartColor::Red)};
  step.total = {QString::fromUtf8(total), left + right, FormatFixed(left + right, 2), ChartColor::Blue};
  return step;
}

StepChart Example() {
  StepChart chart;
  chart.steps = {Step("甲", "回报率", 2.25, 9.75), Step("乙", "超额", 9.3, 0.45), Step("丙", "选择", -3.1, 3.55)};
  chart.subject = QStringLiteral("组合");
  return chart;
}

/// Every character is as wide: places can be worked out by hand.
ChartTextSizes PlainSizes() {
  const auto width = [](const QString& text) { return static_cast<int>(text.size()) * 8; };
  return {.captionHeight = 20, .lineHeight = 16, .captionWidth = width, .lineWidth = width, .tickWidth = width};
}

// The axis.

TEST(ValueAxis, MapsItsEndsToTheEndsOfThePlot) {
  const ValueAxis axis(-10, 30, 0.05, 100, 300);
  EXPECT_EQ(axis.YOf(30), 100);
  EXPECT_EQ(axis.YOf(-10), 300);
  EXPECT_EQ(axis.ZeroY(), 250);
  EXPECT_EQ(axis.YOf(10), 200);
  EXPECT_EQ(axis.YOf(1000), 100) << "kept to the end";
}

TEST(ValueAxis, TheZeroLineIsAlwaysThere) {
  EXPECT_EQ(ValueAxis(5, 10, 0.05, 0, 100).ZeroY(), 100);
  EXPECT_EQ(ValueAxis(-10, -5, 0.05, 0, 100).ZeroY(), 0);
}

TEST(ValueAxis, NextToNothingStaysLow) {
  // 0.002 of 0.05 is 4 of 100 pixels, on either side.
  EXPECT_EQ(ValueAxis(0, 0.002, 0.05, 0, 100).YOf(0.002), 96);
  EXPECT_EQ(ValueAxis(-0.002, 0, 0.05, 0, 100).YOf(-0.002), 4);
}

TEST(ValueAxis, TicksAreRoundAndFarEnoughApart) {
  const auto ticks = ValueAxis(0, 12, 0.05, 0, 100).Ticks(26);
  // 12 / 100 x 26 = 3.12, the next round step is 5.
  ASSERT_EQ(ticks.size(), 3U);
  EXPECT_EQ(ticks[0].text, "0%");
  EXPECT_EQ(ticks[1].text, "5%");
  EXPECT_EQ(ticks[2].text, "10%");
  EXPECT_EQ(ticks[1].y, 58);
  EXPECT_EQ(ValueAxis(-0.3, 0.1, 0.05, 0, 100).Ticks(20).front().text, "-0.3%");
  EXPECT_EQ(ValueAxis(-0.3, 0.1, 0.05, 0, 100).Ticks(20)[3].text, "0%");
  EXPECT_EQ(ValueAxis(0, 3, 0.05, 10, 10).Ticks(26).size(), 1U) << "no height";
}

TEST(ValueAxis, ZeroIsNotLeftAlone) {
  const auto texts = [](double low, double high, int height) {
    QStringList all;
    for (const AxisTick& tick : ValueAxis(low, high, 0.05, 0, height).Ticks(15)) all << tick.text;
    return all;
  };
  // 4.9 / 20 x 15 = 3.7: a distance of 5 has no place, 4 is 16 pixels away.
  EXPECT_EQ(texts(0, 4.9, 20), QStringList({"0%", "4%"}));
  EXPECT_EQ(texts(-4.9, 0, 20), QStringList({"-4%", "0%"}));
  // 1 is 8 pixels away, 1.9 is 15.
  EXPECT_EQ(texts(0, 1.9, 15), QStringList({"0%", "1.9%"}));
  EXPECT_EQ(texts(0, 0.0999, 20), QStringList({"0%", "0.09%"}));
  EXPECT_EQ(texts(0, 4.9, 14), QStringList({"0%"})) << "no room";
}

TEST(ValueAxis, EveryScaleHasItsZeroAmongTheTicks) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> value(-400, 400);
  for (int turn = 0; turn < 2000; ++turn) {
    const ValueAxis axis(value(random), value(random), 0.05, 0, 20 + turn % 400);
    const auto ticks = axis.Ticks(26);
    EXPECT_EQ(std::count_if(ticks.begin(), ticks.end(), [](const AxisTick& tick) { return tick.value == 0; }), 1);
    for (std::size_t i = 1; i < ticks.size(); ++i) EXPECT_GE(ticks[i - 1].y - ticks[i].y, 25) << turn;
  }
}

// What is drawn.

TEST(StepChart, TheFormulaNamesItsTermsInOrder) {
  EXPECT_EQ(FormulaOf(Example().steps[0]), QStringLiteral("回报率■ = 左■ + 右■"));
}

TEST(StepChart, APartOfNothingIsSizedAsAThousandth) {
  const BarValues values = SizingValuesOf(Step("甲", "回报率", 0, -2));
  EXPECT_EQ(values.left, 0.001);
  EXPECT_EQ(values.right, -2);
  EXPECT_EQ(values.total, -1.999);
  EXPECT_EQ(SizingValuesOf(Step("甲", "回报率", 0, 0)).total, 0.002);
}

TEST(StepChart, BarsStandOnAndHangFromOneZeroLine) {
  const StepChartPlaces places = PlacesOf(Example(), QRect(0, 0, 1000, 600), PlainSizes());
  const StepPlaces& last = places.steps[2];
  const QRect total = last.bars[0].bar, left = last.bars[1].bar, right = last.bars[2].bar;
  EXPECT_EQ(left.top(), last.zeroY + 1) << "negative";
  EXPECT_EQ(right.bottom(), last.zeroY - 1) << "positive";
  EXPECT_EQ(total.bottom(), last.zeroY - 1);
  EXPECT_LT(left.right(), total.left());
  EXPECT_LT(total.right(), right.left());
  // Of 6.65 percent on the axis 3.55 are above and 3.1 below; the total of 0.45 is as high as that share.
  EXPECT_NEAR(static_cast<double>(right.height()) / left.height(), 3.55 / 3.1, 0.03);
  EXPECT_NEAR(static_cast<double>(total.height()) / right.height(), 0.45 / 3.55, 0.03);
}

TEST(StepChart, NothingTouchesAtAnySizeAndForAnyValues) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> value(-30, 30);
  std::uniform_int_distribution<int> width(300, 1900), height(300, 1400), kind(0, 5);
  for (int turn = 0; turn < 3000; ++turn) {
    const auto any = [&] { return kind(random) == 0 ? 0.0 : std::round(value(random) * 100) / 100; };
    StepChart chart;
    for (ChartStep& step : chart.steps) step = Step("回报率分解", "超额回报率", any(), any());
    const QRect area(0, 0, width(random), height(random));
    const StepChartPlaces places = PlacesOf(chart, area, PlainSizes());
    for (const StepPlaces& step : places.steps) {
      std::vector<QRect> texts{step.caption, step.formula};
      for (const BarPlaces& bar : step.bars) {
        ASSERT_FALSE(bar.bar.isEmpty());
        ASSERT_TRUE(step.plot.contains(bar.bar)) << turn;
        ASSERT_TRUE(step.plot.contains(bar.value)) << turn;
        ASSERT_FALSE(bar.bar.adjusted(-1, -1, 1, 1).intersects(bar.value)) << turn << ' ' << area.width();
        texts.push_back(bar.value);
        if (!bar.name.isEmpty()) texts.push_back(bar.name);
      }
      for (std::size_t i = 0; i < texts.size(); ++i) {
        ASSERT_TRUE(step.area.contains(texts[i])) << turn << ' ' << i;
        for (const BarPlaces& bar : step.bars) ASSERT_FALSE(bar.bar.intersects(texts[i])) << turn << ' ' << i;
        for (std::size_t k = 0; k < i; ++k) ASSERT_FALSE(texts[k].intersects(texts[i])) << turn << ' ' << i << ' ' << k;
      }
    }
  }
}

TEST(StepChart, AreasTooSmallForAnythingAreSurvived) {
  for (const int size : {0, 1, 10, 60, 120}) {
    StepChart chart = Example();
    for (const char* note : {"", "x"}) {
      chart.note = QString::fromUtf8(note);
      const StepChartPlaces places = PlacesOf(chart, QRect(0, 0, size, size), PlainSizes());
      for (const StepPlaces& step : places.steps) EXPECT_GE(step.plot.width(), 0) << size;
    }
  }
}

TEST(StepChart, ANoteStandsAboveEverythingElse) {
  StepChart chart = Example();
  const QRect area(0, 10, 1000, 600);
  EXPECT_TRUE(PlacesOf(chart, area, PlainSizes()).note.isEmpty());
  chart.note = QStringLiteral("注");
  const StepChartPlaces places = PlacesOf(chart, area, PlainSizes());
  EXPECT_TRUE(area.contains(places.note));
  EXPECT_EQ(places.note.height(), 16);
  EXPECT_LT(places.note.bottom(), places.steps[0].area.top());
  EXPECT_EQ(places.steps[2].area.bottom(), area.bottom());
  EXPECT_LT(places.note.bottom(), places.subject.top());
}

TEST(StepChart, TheMouseFindsBarsInTheOrderTotalLeftRight) {
  const StepChartPlaces places = PlacesOf(Example(), QRect(0, 0, 1000, 600), PlainSizes());
  for (int bar = 0; bar < kBars; ++bar) {
    const QRect& place = places.steps[static_cast<std::size_t>(bar / 3)].bars[static_cast<std::size_t>(bar % 3)].bar;
    EXPECT_EQ(places.BarAt(place.center()), bar);
    EXPECT_EQ(places.BarAt(place.topLeft()), bar);
    EXPECT_EQ(places.BarAt({place.left() + place.width(), place.top() + place.height()}), bar) << "edges count";
    EXPECT_EQ(places.BarAt({place.left() + place.width() + 1, place.top()}), -1);
  }
  EXPECT_EQ(places.BarAt({1, 1}), -1);
}

TEST(StepChart, AnEmptyChartHasTheTextsOfItsTotalsAndNoBars) {
  StepChart chart = Example();
  chart.isEmpty = true;
  const StepChartPlaces places = PlacesOf(chart, QRect(0, 0, 1000, 600), PlainSizes());
  for (const StepPlaces& step : places.steps) {
    EXPECT_FALSE(step.bars[0].value.isEmpty());
    EXPECT_TRUE(step.bars[1].value.isEmpty());
    for (const BarPlaces& bar : step.bars) EXPECT_TRUE(bar.bar.isEmpty());
    EXPECT_TRUE(step.plot.contains(QPoint(step.plot.left(), step.zeroY)));
  }
  EXPECT_EQ(places.BarAt({0, 0}), -1);
}

// The painter.

StepChartPalette Palette() {
  StepChartPalette palette;
  palette.background = QColor(10, 20, 30);
  palette.title = QColor(250, 250, 250);
  palette.axis = QColor(120, 121, 122);
  palette.gridLine = QColor(40, 41, 42);
  palette.zeroLine = QColor(200, 201, 202);
  palette.plot = QColor(20, 30, 40);
  palette.border = QColor(60, 61, 62);
  palette.yellow = QColor(230, 180, 60);
  palette.red = QColor(240, 90, 100);
  palette.blue = QColor(90, 160, 240);
  return palette;
}

QImage Painted(const StepChart& chart, const QSize& size, qreal ratio, StepChartPlaces& places) {
  QImage image(size * ratio, QImage::Format_RGB32);
  image.setDevicePixelRatio(ratio);
  image.fill(Qt::magenta);
  const QRect area(QPoint(), size);
  places = PlacesOf(chart, area, StepChartTextSizes());
  QPainter painter(&image);
  PaintStepChart(painter, chart, places, area, Palette());
  return image;
}

int Count(const QImage& image, const QRect& logical, const QColor& color) {
  const auto ratio = image.devicePixelRatio();
  int count = 0;
  for (int y = qRound(logical.top() * ratio); y < qRound((logical.top() + logical.height()) * ratio); ++y) {
    for (int x = qRound(logical.left() * ratio); x < qRound((logical.left() + logical.width()) * ratio); ++x)
      count += image.pixelColor(x, y) == color ? 1 : 0;
  }
  return count;
}

TEST(StepChartPainter, BarsAreFilledWholeAndCrispAtEveryPixelRatio) {
  for (const qreal ratio : {1.0, 2.0}) {
    StepChartPlaces places;
    const QImage image = Painted(Example(), {900, 500}, ratio, places);
    const auto pixels = [&](const QRect& rect) { return qRound(rect.width() * ratio) * qRound(rect.height() * ratio); };
    for (const StepPlaces& step : places.steps) {
      const std::array<QColor, 3> colors{Palette().blue, Palette().yellow, Palette().red};
      for (std::size_t bar = 0; bar < 3; ++bar) {
        const QRect& place = step.bars[bar].bar;
        EXPECT_EQ(Count(image, place, colors[bar]), pixels(place)) << ratio;
        EXPECT_EQ(Count(image, place.adjusted(-2, 0, 2, 0), colors[bar]), pixels(place)) << "no blurred edge";
        EXPECT_GT(Count(image, step.bars[bar].value, Palette().title), 10) << "its value";
      }
      const QRect line(step.plot.left(), step.zeroY, step.plot.width(), 1);
      EXPECT_EQ(Count(image, line, Palette().zeroLine), pixels(line));
    }
    EXPECT_EQ(Count(image, QRect(0, 0, 900, 500), Qt::magenta), 0) << "nothing is left unpainted";
  }
}

TEST(StepChartPainter, TheSignsOfTheFormulaAreReplacedByTheColoursOfTheBars) {
  for (const int width : {500, 900}) {
    StepChartPlaces places;
    const QImage image = Painted(Example(), {width, 500}, 1, places);
    for (const StepPlaces& step : places.steps) {
      for (const QColor& color : {Palette().blue, Palette().yellow, Palette().red}) {
        const int inked = Count(image, step.formula, color);
        EXPECT_GE(inked, 60) << width;
        EXPECT_LE(inked, 400) << width;
      }
    }
  }
}

TEST(StepChartPainter, AnEmptyChartShowsNoColourOfABar) {
  StepChart chart = Example();
  chart.isEmpty = true;
  for (ChartStep& step : chart.steps) step.total.text = QStringLiteral("0");
  StepChartPlaces places;
  const QImage image = Painted(chart, {900, 500}, 1, places);
  for (const StepPlaces& step : places.steps) {
    EXPECT_EQ(Count(image, step.plot, Palette().blue), 0);
    EXPECT_EQ(Count(image, step.plot, Palette().yellow), 0);
    EXPECT_GT(Count(image, step.bars[0].value, Palette().title), 5);
    EXPECT_GT(Count(image, step.caption, Palette().title), 20);
  }
}

TEST(StepChartPainter, LeavesThePainterAsItWas) {
  QImage image(400, 300, QImage::Format_RGB32);
  QPainter painter(&image);
  painter.setPen(QColor(1, 2, 3));
  const StepChart chart = Example();
  PaintStepChart(painter, chart, PlacesOf(chart, image.rect(), StepChartTextSizes()), image.rect(), Palette());
  EXPECT_EQ(painter.pen().color(), QColor(1, 2, 3));
  EXPECT_FALSE(painter.hasClipping());
}

}  // namespace
}  // namespace holdwise
