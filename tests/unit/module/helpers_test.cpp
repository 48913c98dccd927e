// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QImage>

#include "common/helpers/date_text.h"
#include "common/helpers/drawing.h"
#include "common/helpers/lists.h"
#include "common/host/debug_log.h"
#include "common/host/host_access.h"
#include "common/host/theme_colors.h"
#include "holdwise/packet/error.h"
#include "scripted_host.h"

namespace holdwise {
namespace {

QImage Canvas(int width, int height) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(Qt::white);
  return image;
}

TEST(DateText, PrintsForTheDatabase) {
  EXPECT_EQ(DateText(QDate(2024, 5, 9)), QStringLiteral("2024-05-09"));
  EXPECT_EQ(DayNumberText(QDate(2024, 5, 9)), QStringLiteral("20240509"));
  EXPECT_EQ(DateText(QDate(987, 1, 2)), QStringLiteral("0987-01-02"));
  EXPECT_THROW((void)DateText(QDate()), Error);
  EXPECT_THROW((void)DayNumberText(QDate(10000, 1, 1)), Error);
}

TEST(DateText, ReadsOnlyItsOwnForm) {
  EXPECT_EQ(ParseDate(u"2024-02-29"), QDate(2024, 2, 29));
  for (const QStringView text :
       {u"", u"2024-02-30", u"2023-02-29", u"2024-2-29", u"2024/02/29", u"20240229", u"2024-02-29 ", u" 024-02-29",
        u"+024-02-29", u"29-02-2024", u"2024-13-01", u"2024-00-10", u"２０２４-02-29"}) {
    EXPECT_FALSE(ParseDate(text)) << text.toString().toStdString();
  }
}

TEST(QuickSort, SortsUpToTheHighestIndex) {
  std::vector<std::int32_t> values = {5, -3, 5, INT32_MIN, 0, INT32_MAX, 1};
  Quick_sort(values, 5);
  EXPECT_EQ(values, (std::vector<std::int32_t>{INT32_MIN, -3, 0, 5, 5, INT32_MAX, 1}));
}

TEST(QuickSort, LeavesOneElementAndNothingAlone) {
  std::vector<std::int32_t> one = {7};
  Quick_sort(one, 0);
  EXPECT_EQ(one, std::vector<std::int32_t>{7});
  std::vector<std::int32_t> two = {2, 1};
  Quick_sort(two, -1);
  EXPECT_EQ(two, (std::vector<std::int32_t>{2, 1}));
  Quick_sort({}, -1);
}

TEST(QuickSort, RefusesAnIndexPastTheEnd) {
  std::vector<std::int32_t> values = {2, 1};
  EXPECT_THROW(Quick_sort(values, 2), Error);
}

TEST(StrToStringList, SplitsByDelimiterBlanksAndQuotes) {
  struct Case {
    const char* text;
    QStringList items;
  };
  const std::vector<Case> cases = {
      {"", {}},
      {"   ", {}},
      {"one,two", {"one", "two"}},
      {"one two", {"one", "two"}},
      {"one , two", {"one", "two"}},
      {"one,,two", {"one", "", "two"}},
      {",one", {"", "one"}},
      {"one,", {"one", ""}},
      {"\"one, two\",three", {"one, two", "three"}},
      {"\"say \"\"hi\"\"\"", {"say \"hi\""}},
      {"\"open, end", {"open, end"}},
      {"a\tb\nc", {"a", "b", "c"}},
      {"\"ab\"cd", {"ab", "cd"}},
  };
  for (const Case& entry : cases) {
    EXPECT_EQ(StrToStringList(QString::fromUtf8(entry.text), u','), entry.items) << entry.text;
  }
  EXPECT_EQ(StrToStringList(QStringLiteral("600000|000001,x"), u'|'), (QStringList{"600000", "000001,x"}));
}

TEST(PtInRect, CountsEveryEdgeAsInside) {
  const TRect rectangle{10, 20, 30, 40};
  EXPECT_TRUE(PTInRect_(rectangle, {30, 30}));
  EXPECT_TRUE(PTInRect_(rectangle, {10, 20}));
  EXPECT_TRUE(PTInRect_(rectangle, {20, 40}));
  EXPECT_FALSE(PTInRect_(rectangle, {31, 30}));
  EXPECT_FALSE(PTInRect_(rectangle, {9, 30}));
  EXPECT_FALSE(PTInRect_(rectangle, {20, 41}));
  EXPECT_FALSE(PTInRect_(rectangle, {20, 19}));
}

TEST(PtInRect, AcceptsSwappedCorners) {
  const TRect rectangle{30, 40, 10, 20};
  EXPECT_TRUE(PTInRect_(rectangle, {10, 20}));
  EXPECT_TRUE(PTInRect_(rectangle, {30, 40}));
  EXPECT_TRUE(PTInRect_(rectangle, {20, 30}));
  EXPECT_FALSE(PTInRect_(rectangle, {31, 30}));
}

TEST(GradientFill, RunsFromLeftToRight) {
  QImage image = Canvas(120, 10);
  QPainter painter(&image);
  GradientFillCanvas(painter, QColor(200, 0, 0), QColor(0, 0, 200), TRect{10, 2, 110, 8}, gdHorizontal);
  painter.end();
  EXPECT_GT(qRed(image.pixel(10, 5)), 190);
  EXPECT_GT(qBlue(image.pixel(109, 5)), 190);
  EXPECT_NEAR(qRed(image.pixel(60, 5)), 100, 4);  // half way between 200 and 0
  EXPECT_NEAR(qBlue(image.pixel(60, 5)), 100, 4);
  for (int x = 11; x < 110; ++x) EXPECT_LE(qRed(image.pixel(x, 2)), qRed(image.pixel(x - 1, 2)));
  EXPECT_EQ(image.pixel(9, 5), qRgb(255, 255, 255));
  EXPECT_EQ(image.pixel(110, 5), qRgb(255, 255, 255));
  EXPECT_EQ(image.pixel(60, 1), qRgb(255, 255, 255));
  EXPECT_EQ(image.pixel(60, 8), qRgb(255, 255, 255));
}

TEST(GradientFill, RunsFromTopToBottomAndFollowsSwappedCorners) {
  QImage image = Canvas(10, 100);
  QPainter painter(&image);
  GradientFillCanvas(painter, Qt::black, QColor(0, 200, 0), TRect{8, 100, 0, 0}, gdVertical);
  painter.end();
  EXPECT_LT(qGreen(image.pixel(4, 99)), 10);
  EXPECT_GT(qGreen(image.pixel(4, 0)), 190);
  EXPECT_EQ(image.pixel(8, 50), qRgb(255, 255, 255));
}

TEST(GradientFill, IgnoresAlphaAndEmptyRectangles) {
  QImage image = Canvas(10, 10);
  QPainter painter(&image);
  GradientFillCanvas(painter, QColor(10, 20, 30, 0), QColor(10, 20, 30, 0), TRect{0, 0, 5, 10}, gdHorizontal);
  GradientFillCanvas(painter, Qt::black, Qt::black, TRect{5, 0, 5, 10}, gdHorizontal);
  painter.end();
  EXPECT_EQ(image.pixel(2, 2), qRgb(10, 20, 30));
  EXPECT_EQ(image.pixel(5, 2), qRgb(255, 255, 255));
}

TEST(DrawLine, DrawsInStyleAndColour) {
  QImage image = Canvas(40, 10);
  QPainter painter(&image);
  DrawLine_(painter, {2, 5}, {30, 5}, Qt::SolidLine, QColor(1, 2, 3));
  EXPECT_EQ(painter.pen().color(), QColor(1, 2, 3));
  DrawLine_(painter, {0, 8}, {39, 8}, Qt::DotLine, QColor(1, 2, 3));
  painter.end();
  EXPECT_EQ(image.pixel(2, 5), qRgb(1, 2, 3));
  EXPECT_EQ(image.pixel(29, 5), qRgb(1, 2, 3));
  EXPECT_EQ(image.pixel(1, 5), qRgb(255, 255, 255));
  int gaps = 0;
  for (int x = 0; x < 40; ++x) gaps += image.pixel(x, 8) == qRgb(255, 255, 255) ? 1 : 0;
  EXPECT_GT(gaps, 5);
}

TEST(DoublePoint, KeepsBothCoordinates) {
  EXPECT_EQ(DoublePoint(0.1, -2.25).x(), 0.1);
  EXPECT_EQ(DoublePoint(0.1, -2.25).y(), -2.25);
}

class Helpers : public testing::Test {
 protected:
  Helpers() { SetModuleHost(&host_); }
  ~Helpers() override { SetModuleHost(nullptr); }
  ScriptedHost host_;
};

TEST_F(Helpers, FailureLineHasTheOneForm) {
  LogFailure(QStringLiteral("untmainfrm"), QStringLiteral("EnterAddress"), QStringLiteral("out of paper"));
  EXPECT_EQ(
      host_.debug.Lines(),
      std::vector<QString>{QStringLiteral("Holdwise.bpl->untmainfrm->EnterAddress 发生错误!错误信息:out of paper")});
}

TEST_F(Helpers, FailureLineOfTheExceptionAtHand) {
  try {
    throw Error(ErrorCategory::Busy, "被占用");
  } catch (...) {
    LogCurrentException(QStringLiteral("zhbx"), QStringLiteral("DoInit_"));
  }
  try {
    throw 1;
  } catch (...) {
    LogCurrentException(QStringLiteral("zhbx"), QStringLiteral("DoInit_"));
  }
  EXPECT_EQ(host_.debug.Lines(),
            (std::vector<QString>{QStringLiteral("Holdwise.bpl->zhbx->DoInit_ 发生错误!错误信息:被占用"),
                                  QStringLiteral("Holdwise.bpl->zhbx->DoInit_ 发生错误!错误信息:unknown exception")}));
}

TEST_F(Helpers, GridColoursFollowTheTheme) {
  const auto& colors = host_.theme.colors;
  const GridColors before = ReadGridColors(host_.theme.Colors());
  EXPECT_EQ(before.evenRow, colors.at(QStringLiteral("KTR_HighLightColor1")));
  EXPECT_EQ(before.oddRow, colors.at(QStringLiteral("KTR_HighLightColor2")));
  EXPECT_EQ(before.selectedRow, colors.at(QStringLiteral("Qm_GridRowSelectColor")));
  EXPECT_EQ(before.selectedText, colors.at(QStringLiteral("Grid_SelTxtColor")));
  EXPECT_EQ(before.unselectedText, colors.at(QStringLiteral("Grid_UnSelTxtColor")));
  EXPECT_EQ(before.titleText, colors.at(QStringLiteral("Grid_TitleUnSelTxtColor")));
  EXPECT_EQ(before.background, colors.at(QStringLiteral("Qm_BGCorlor")));
  host_.theme.Switch();
  EXPECT_NE(ReadGridColors(host_.theme.Colors()).evenRow, before.evenRow);
}

TEST_F(Helpers, EveryThemeKeyIsOneTheHostKnows) {
  for (const QString& key : {theme::kBackground,
                             theme::kTitleFont,
                             theme::kRowSelect,
                             theme::kSelectedText,
                             theme::kUnselectedText,
                             theme::kHighLight1,
                             theme::kHighLight2,
                             theme::kGridTitleText,
                             theme::kTitleBackgroundPicture,
                             theme::kSectionBigText,
                             theme::kGridLine,
                             theme::kClickText,
                             theme::kClickTextHighLight,
                             theme::kBorder,
                             theme::kGridTitleBackground,
                             theme::kEditFrame,
                             theme::kChartAxis,
                             theme::kChartGrid,
                             theme::kChartRed,
                             theme::kChartBlue,
                             theme::kChartYellow,
                             theme::kChartGray,
                             theme::kChartZeroLine,
                             theme::kSliderHeadStart,
                             theme::kSliderHeadEnd,
                             theme::kSliderBodyStart,
                             theme::kSliderBodyEnd,
                             theme::kGridTitlePicture,
                             theme::kSavePicture,
                             theme::kSaveHoverPicture,
                             theme::kTreeLine}) {
    EXPECT_NE(host_.theme.ColorOf(key), QColor(Qt::magenta)) << key.toStdString();
  }
  EXPECT_TRUE(host_.debug.Lines().empty());
}

}  // namespace
}  // namespace holdwise
