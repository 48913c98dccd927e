// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QImage>
#include <QLabel>
#include <cstdlib>

#include "contrast.h"
#include "theme/theme_pictures.h"
#include "theme/theme_services.h"

namespace holdwise {
namespace {

class RecordingLog : public DebugServers {
 public:
  void WriteLog(const QString& text) override { lines.append(text); }
  QStringList lines;
};

const QStringList kColorKeys{
    "Qm_BGCorlor",         "QM_TitleFontColor",    "Qm_GridRowSelectColor", "Grid_SelTxtColor",
    "Grid_UnSelTxtColor",  "KTR_HighLightColor1",  "KTR_HighLightColor2",   "Grid_TitleUnSelTxtColor",
    "Section_BigTxtColor", "Grid_Color",           "Grid_ClickTxtColor",    "Grid_ClickTxtHighLightColor",
    "KTR_BorderColor",     "ktr_gridtitlebk",      "QM_EditFrameColor",     "Qm_CharAxisLineColor",
    "Qm_GridJgColor",      "Qm_KlineRedColor",     "Qm_KlineBlueColor",     "Qm_KlineYellowColor",
    "Invest_YJFJ_Gray",    "Invest_YJFJ_ZeroLine", "Invest_HStart_COLOR",   "Invest_HEnd_COLOR",
    "Invest_BStart_COLOR", "Invest_BEnd_COLOR",    "TreeListColor"};
const QStringList kPictureKeys{"Grid_TitleUpBg", "GridTitle", "Qm_SaveBgPic", "Qm_SaveMovePic"};

class ThemeTest : public testing::TestWithParam<ThemeKind> {
 protected:
  RecordingLog log_;
  ThemeServices theme_{GetParam(), log_};
  [[nodiscard]] QColor Color(const QString& key) const { return theme_.Colors().ColorOf(key); }
};

INSTANTIATE_TEST_SUITE_P(Both, ThemeTest, testing::Values(ThemeKind::Dark, ThemeKind::Light),
                         [](const auto& theme) { return ThemeKindName(theme.param).toStdString(); });

TEST_P(ThemeTest, EveryColourKeyHasAnOpaqueValue) {
  for (const QString& key : kColorKeys) {
    const QColor color = Color(key);
    EXPECT_NE(color, QColor(Qt::magenta)) << key.toStdString();
    EXPECT_EQ(color.alpha(), 255) << key.toStdString();
  }
  EXPECT_TRUE(log_.lines.isEmpty()) << log_.lines.join('\n').toStdString();
}

TEST_P(ThemeTest, EveryPictureKeyIsPaintedInTheWantedSize) {
  for (const QString& key : kPictureKeys) {
    for (const QSize size : {QSize(25, 19), QSize(800, 35), QSize(1, 1)}) {
      const QPixmap picture = theme_.Images().PictureOf(key, size);
      EXPECT_EQ(picture.size(), size) << key.toStdString();
    }
    EXPECT_TRUE(theme_.Images().PictureOf(key, QSize(0, 10)).isNull());
  }
  EXPECT_NE(theme_.Images().PictureOf("Qm_SaveBgPic", {25, 19}).toImage(),
            theme_.Images().PictureOf("Qm_SaveMovePic", {25, 19}).toImage());
}

TEST_P(ThemeTest, TextsStandOutFromTheirGrounds) {
  const QStringList grounds{"Qm_BGCorlor", "KTR_HighLightColor1", "KTR_HighLightColor2"};
  const QStringList texts{"QM_TitleFontColor",   "Grid_UnSelTxtColor", "Grid_TitleUnSelTxtColor",
                          "Section_BigTxtColor", "Grid_ClickTxtColor", "Grid_ClickTxtHighLightColor",
                          "Qm_KlineRedColor",    "Qm_KlineBlueColor"};
  for (const QString& ground : grounds)
    for (const QString& text : texts)
      EXPECT_GE(Contrast(Color(text), Color(ground)), 4.5) << text.toStdString() << " on " << ground.toStdString();
  EXPECT_GE(Contrast(Color("Grid_SelTxtColor"), Color("Qm_GridRowSelectColor")), 4.5);
  for (const char* text : {"QM_TitleFontColor", "Grid_TitleUnSelTxtColor", "Section_BigTxtColor"})
    EXPECT_GE(Contrast(Color(text), Color("ktr_gridtitlebk")), 4.5) << text;
}

TEST_P(ThemeTest, TextsStandOutFromTheHeaderPictures) {
  for (const char* key : {"Grid_TitleUpBg", "GridTitle"}) {
    const QImage picture = theme_.Images().PictureOf(key, {40, 35}).toImage();
    for (int y = 0; y < picture.height() - 1; ++y)
      for (const char* text : {"QM_TitleFontColor", "Grid_TitleUnSelTxtColor", "Section_BigTxtColor"})
        EXPECT_GE(Contrast(Color(text), picture.pixelColor(20, y)), 4.5) << text << " on " << key << " row " << y;
  }
}

TEST_P(ThemeTest, WindowPaletteIsReadable) {
  const QPalette palette = theme_.WindowPalette();
  EXPECT_GE(Contrast(palette.color(QPalette::WindowText), palette.color(QPalette::Window)), 4.5);
  EXPECT_GE(Contrast(palette.color(QPalette::Text), palette.color(QPalette::Base)), 4.5);
  EXPECT_GE(Contrast(palette.color(QPalette::ButtonText), palette.color(QPalette::Button)), 4.5);
  EXPECT_GE(Contrast(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight)), 4.5);
  EXPECT_GE(Contrast(palette.color(QPalette::ToolTipText), palette.color(QPalette::ToolTipBase)), 4.5);
  EXPECT_GE(Contrast(palette.color(QPalette::PlaceholderText), palette.color(QPalette::Base)), 4.5);
}

TEST_P(ThemeTest, WhatCannotBeChosenIsGreyAndYetToBeRead) {
  const QPalette palette = theme_.WindowPalette();
  for (const auto& [text, ground] : {std::pair(QPalette::Text, QPalette::Base),
                                     {QPalette::ButtonText, QPalette::Button},
                                     {QPalette::WindowText, QPalette::Window}}) {
    const QColor grey = palette.color(QPalette::Disabled, text);
    EXPECT_GE(Contrast(grey, palette.color(ground)), 4.5) << text;
    EXPECT_GE(Contrast(palette.color(text), grey), 1.5) << text;
  }
}

TEST_P(ThemeTest, TheEntryThatTheKeysActOnIsStrongerThanARowThatIsSelected) {
  const QColor ground = Color("KTR_HighLightColor1");
  EXPECT_GE(Contrast(theme_.WindowPalette().color(QPalette::Highlight), ground),
            1.2 * Contrast(Color("Qm_GridRowSelectColor"), ground));
  EXPECT_GE(Contrast(Color("Grid_ClickTxtColor"), Color("Qm_GridRowSelectColor")), 4.5) << "the bar of the keys";
}

TEST_P(ThemeTest, UnknownKeysAreVisibleAndLoggedOnce) {
  EXPECT_EQ(Color("qm_bgcorlor"), QColor(Qt::magenta));
  EXPECT_EQ(Color("qm_bgcorlor"), QColor(Qt::magenta));
  EXPECT_TRUE(theme_.Images().PictureOf("NoSuchPicture", {10, 10}).isNull());
  ASSERT_EQ(log_.lines.size(), 2);
  EXPECT_TRUE(log_.lines[0].contains("qm_bgcorlor"));
  EXPECT_TRUE(log_.lines[1].contains("NoSuchPicture"));
}

TEST(ThemeSwitch, ChangesTheColoursAndTellsOnce) {
  RecordingLog log;
  ThemeServices theme(ThemeKind::Dark, log);
  int changes = 0;
  theme.OnChanged = [&changes] { ++changes; };
  const IColorSet2& colors = theme.Colors();
  const QColor dark = colors.ColorOf("Qm_BGCorlor");
  theme.SetKind(ThemeKind::Dark);
  EXPECT_EQ(changes, 0);
  theme.SetKind(ThemeKind::Light);
  EXPECT_EQ(changes, 1);
  EXPECT_GT(Luminance(colors.ColorOf("Qm_BGCorlor")), Luminance(dark));
}

TEST_P(ThemeTest, ASeriesOfAChartIsNotTakenForARise) {
  constexpr int kOtherHue = 20;  // degrees
  const int apart =
      std::abs(Color("Qm_KlineRedColor").hsvHue() - theme_.Colors().FindColor("Grid_RiseTxtColor")->hsvHue());
  EXPECT_GE(std::min(apart, 360 - apart), kOtherHue);
}

TEST_P(ThemeTest, WhatRisesAndWhatFallsHaveColoursTheUserChooses) {
  const auto rise = [this] { return theme_.Colors().FindColor("Grid_RiseTxtColor"); };
  const auto fall = [this] { return theme_.Colors().FindColor("Grid_FallTxtColor"); };
  ASSERT_TRUE(rise() && fall());
  EXPECT_GT(rise()->red(), rise()->green() + 60) << "red at first";
  EXPECT_GT(fall()->green(), fall()->red() + 60);
  const auto [red, green] = std::pair(*rise(), *fall());
  for (const QColor& ink : {red, green})
    for (const char* ground : {"Qm_BGCorlor", "KTR_HighLightColor1", "KTR_HighLightColor2", "Qm_GridRowSelectColor"})
      EXPECT_GE(Contrast(ink, Color(ground)), 4.5) << ink.name().toStdString() << " on " << ground;
  EXPECT_EQ(theme_.ColorOfChange(0.01), red);
  EXPECT_EQ(theme_.ColorOfChange(-0.01), green);
  EXPECT_EQ(theme_.ColorOfChange(0), Color("Grid_UnSelTxtColor"));
  int changes = 0;
  theme_.OnChanged = [&changes] { ++changes; };
  theme_.SetRiseFall(RiseFall::GreenRises);
  theme_.SetRiseFall(RiseFall::GreenRises);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(*rise(), green);
  EXPECT_EQ(*fall(), red);
  theme_.SetRiseFall(RiseFall::Plain);
  EXPECT_FALSE(rise() || fall());
  EXPECT_EQ(theme_.ColorOfChange(1), Color("Grid_UnSelTxtColor"));
  EXPECT_TRUE(log_.lines.isEmpty());
}

TEST(ThemeSwitch, PicturesAreAssignedStretched) {
  RecordingLog log;
  ThemeServices theme(ThemeKind::Light, log);
  QLabel label;
  label.resize(120, 23);
  theme.Colors().AssignPicture("Grid_TitleUpBg", label);
  EXPECT_TRUE(label.hasScaledContents());
  EXPECT_EQ(label.pixmap(Qt::ReturnByValue).size(), QSize(120, 23));
}

TEST(ThemeSwitch, NamesAreReadExactly) {
  EXPECT_EQ(ThemeKindFromName("dark"), ThemeKind::Dark);
  EXPECT_EQ(ThemeKindFromName("light"), ThemeKind::Light);
  EXPECT_FALSE(ThemeKindFromName("Dark").has_value());
  EXPECT_FALSE(ThemeKindFromName("").has_value());
  for (const RiseFall choice : {RiseFall::RedRises, RiseFall::GreenRises, RiseFall::Plain})
    EXPECT_EQ(RiseFallFromName(RiseFallName(choice)), choice);
  EXPECT_FALSE(RiseFallFromName("Red").has_value());
}

}  // namespace
}  // namespace holdwise
