// SPDX-License-Identifier: MIT
#include "theme/theme_table.h"

#include <QHash>
#include <array>

namespace holdwise {
namespace {

// Bright strokes look bold on a dark ground: the dark theme's texts are as far from white as the light one's from
// black. The red of the charts' series is not the one of what rises or falls. Texts keep a contrast of at least 4.5
// against every ground they can stand on; a test holds the table to that.
// clang-format off
constexpr std::array kColors{
    ThemeColor{"Qm_BGCorlor",                0x151a21, 0xffffff},
    ThemeColor{"QM_TitleFontColor",          0xb4bfcc, 0x3a4656},
    ThemeColor{"Qm_GridRowSelectColor",      0x273b56, 0xd8e7fa},
    ThemeColor{"Grid_SelTxtColor",           0xdbe4ee, 0x0a2744},
    ThemeColor{"Grid_UnSelTxtColor",         0xbfc8d3, 0x1f2933},
    ThemeColor{"KTR_HighLightColor1",        0x171d25, 0xffffff},
    ThemeColor{"KTR_HighLightColor2",        0x202833, 0xf4f7fb},
    ThemeColor{"Grid_TitleUnSelTxtColor",    0xb4bfcc, 0x3a4656},
    ThemeColor{"Section_BigTxtColor",        0xf2bd62, 0x17467f},
    ThemeColor{"Grid_Color",                 0x2a323e, 0xdbe2ea},
    ThemeColor{"Grid_ClickTxtColor",         0x74b6ff, 0x0b5cb8},
    ThemeColor{"Grid_ClickTxtHighLightColor",0xffcb6b, 0xa23c00},
    ThemeColor{"KTR_BorderColor",            0x364150, 0xc5ced9},
    ThemeColor{"ktr_gridtitlebk",            0x232b36, 0xe9eef5},
    ThemeColor{"QM_EditFrameColor",          0x55657a, 0x9aa9ba},
    ThemeColor{"Qm_CharAxisLineColor",       0x6d7b8d, 0x7d8a99},
    ThemeColor{"Qm_GridJgColor",             0x2a323e, 0xe3e8ee},
    ThemeColor{"Qm_KlineRedColor",           0xd0709d, 0xb03a72},
    ThemeColor{"Qm_KlineBlueColor",          0x5aa8f5, 0x1d6fc2},
    ThemeColor{"Qm_KlineYellowColor",        0xe6b84c, 0x9a6a00},
    ThemeColor{"Invest_YJFJ_Gray",           0x323c4a, 0xd3dae3},
    ThemeColor{"Invest_YJFJ_ZeroLine",       0x9aa7b7, 0x5a6776},
    ThemeColor{"Invest_HStart_COLOR",        0x2b3542, 0xe3e9f1},
    ThemeColor{"Invest_HEnd_COLOR",          0x3d4b5d, 0xc3cfdd},
    ThemeColor{"Invest_BStart_COLOR",        0x2f6fb8, 0x8fbcf0},
    ThemeColor{"Invest_BEnd_COLOR",          0x62b0ff, 0x2f7fd6},
    ThemeColor{"TreeListColor",              0x364150, 0xc5ced9},
};
// clang-format on

// Bright enough for the selected row's ground, too; the test holds them to it.
constexpr ThemeColor kRedText{"", 0xff7f87, 0xb81f2d};
constexpr ThemeColor kGreenText{"", 0x4cc97f, 0x0b6b35};
constexpr ThemeColor kQuietText{"", 0x8896a7, 0x5f6d7d};
constexpr ThemeColor kHighlight{"", 0x2d5f99, 0xb4d2f7};

QColor Of(const ThemeColor& color, ThemeKind kind) {
  return {kind == ThemeKind::Dark ? color.dark : color.light};
}

QHash<QString, const ThemeColor*> MakeIndex() {
  QHash<QString, const ThemeColor*> index;
  for (const ThemeColor& color : kColors) index.insert(QString::fromLatin1(color.key), &color);
  return index;
}

}  // namespace

std::span<const ThemeColor> ThemeColors() {
  return kColors;
}

QStringList ThemePictureKeys() {
  return {QStringLiteral("Grid_TitleUpBg"), QStringLiteral("GridTitle"), QStringLiteral("Qm_SaveBgPic"),
          QStringLiteral("Qm_SaveMovePic")};
}

std::optional<QColor> FindThemeColor(ThemeKind kind, const QString& key) {
  static const QHash<QString, const ThemeColor*> index = MakeIndex();
  const ThemeColor* color = index.value(key, nullptr);
  if (color == nullptr) return std::nullopt;
  return Of(*color, kind);
}

std::optional<QColor> RiseTextColor(ThemeKind kind, RiseFall choice) {
  if (choice == RiseFall::Plain) return std::nullopt;
  return Of(choice == RiseFall::RedRises ? kRedText : kGreenText, kind);
}

std::optional<QColor> FallTextColor(ThemeKind kind, RiseFall choice) {
  if (choice == RiseFall::Plain) return std::nullopt;
  return Of(choice == RiseFall::RedRises ? kGreenText : kRedText, kind);
}

QColor QuietTextColor(ThemeKind kind) {
  return Of(kQuietText, kind);
}

QColor HighlightColor(ThemeKind kind) {
  return Of(kHighlight, kind);
}

QColor ThemeColorOf(ThemeKind kind, const char* key) {
  return FindThemeColor(kind, QString::fromLatin1(key)).value_or(QColor(Qt::magenta));
}

std::optional<ThemeKind> ThemeKindFromName(const QString& name) {
  if (name == QStringLiteral("dark")) return ThemeKind::Dark;
  if (name == QStringLiteral("light")) return ThemeKind::Light;
  return std::nullopt;
}

std::optional<RiseFall> RiseFallFromName(const QString& name) {
  for (const RiseFall choice : {RiseFall::RedRises, RiseFall::GreenRises, RiseFall::Plain})
    if (name == RiseFallName(choice)) return choice;
  return std::nullopt;
}

QString RiseFallName(RiseFall choice) {
  switch (choice) {
    case RiseFall::RedRises:
      return QStringLiteral("red");
    case RiseFall::GreenRises:
      return QStringLiteral("green");
    case RiseFall::Plain:
      break;
  }
  return QStringLiteral("plain");
}

QString ThemeKindName(ThemeKind kind) {
  return kind == ThemeKind::Dark ? QStringLiteral("dark") : QStringLiteral("light");
}

}  // namespace holdwise
