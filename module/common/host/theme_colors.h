// SPDX-License-Identifier: MIT
#pragma once
#include <QColor>
#include <QString>

#include "holdwise/sdk/theme.h"

/// Keys of the host's colour theme, letter by letter as the host spells them ("Corlor" included).
namespace holdwise::theme {

inline const QString kBackground = QStringLiteral("Qm_BGCorlor");
inline const QString kTitleFont = QStringLiteral("QM_TitleFontColor");
inline const QString kRowSelect = QStringLiteral("Qm_GridRowSelectColor");
inline const QString kSelectedText = QStringLiteral("Grid_SelTxtColor");
inline const QString kUnselectedText = QStringLiteral("Grid_UnSelTxtColor");
inline const QString kHighLight1 = QStringLiteral("KTR_HighLightColor1");
inline const QString kHighLight2 = QStringLiteral("KTR_HighLightColor2");
inline const QString kGridTitleText = QStringLiteral("Grid_TitleUnSelTxtColor");
inline const QString kTitleBackgroundPicture = QStringLiteral("Grid_TitleUpBg");
inline const QString kSectionBigText = QStringLiteral("Section_BigTxtColor");
inline const QString kGridLine = QStringLiteral("Grid_Color");
inline const QString kClickText = QStringLiteral("Grid_ClickTxtColor");
inline const QString kClickTextHighLight = QStringLiteral("Grid_ClickTxtHighLightColor");
inline const QString kBorder = QStringLiteral("KTR_BorderColor");
inline const QString kGridTitleBackground = QStringLiteral("ktr_gridtitlebk");
inline const QString kEditFrame = QStringLiteral("QM_EditFrameColor");
inline const QString kChartAxis = QStringLiteral("Qm_CharAxisLineColor");
inline const QString kChartGrid = QStringLiteral("Qm_GridJgColor");
inline const QString kChartRed = QStringLiteral("Qm_KlineRedColor");
inline const QString kChartBlue = QStringLiteral("Qm_KlineBlueColor");
inline const QString kChartYellow = QStringLiteral("Qm_KlineYellowColor");
inline const QString kChartGray = QStringLiteral("Invest_YJFJ_Gray");
inline const QString kChartZeroLine = QStringLiteral("Invest_YJFJ_ZeroLine");
inline const QString kSliderHeadStart = QStringLiteral("Invest_HStart_COLOR");
inline const QString kSliderHeadEnd = QStringLiteral("Invest_HEnd_COLOR");
inline const QString kSliderBodyStart = QStringLiteral("Invest_BStart_COLOR");
inline const QString kSliderBodyEnd = QStringLiteral("Invest_BEnd_COLOR");
inline const QString kGridTitlePicture = QStringLiteral("GridTitle");
inline const QString kSavePicture = QStringLiteral("Qm_SaveBgPic");
inline const QString kSaveHoverPicture = QStringLiteral("Qm_SaveMovePic");
inline const QString kTreeLine = QStringLiteral("TreeListColor");
// Beyond those that every host has: texts of figures that rise and fall.
inline const QString kRiseText = QStringLiteral("Grid_RiseTxtColor");
inline const QString kFallText = QStringLiteral("Grid_FallTxtColor");

}  // namespace holdwise::theme

namespace holdwise {

/// What every grid paints its rows with.
struct GridColors {
  QColor evenRow;
  QColor oddRow;
  QColor selectedRow;
  QColor selectedText;
  QColor unselectedText;
  QColor titleText;
  QColor background;
  QColor focusFrame;
  QColor rise;  ///< of texts of figures that rise; not valid where the host has no such colours
  QColor fall;

  /// Are figures that rise and fall told apart?
  [[nodiscard]] bool TellsRiseFromFall() const { return rise.isValid() && fall.isValid(); }
  bool operator==(const GridColors&) const = default;
};

/// The grid colours of the current theme, read in one go.
[[nodiscard]] GridColors ReadGridColors(const IColorSet& colors);
/// The ground with that share, 0 to 1, of the other colour.
[[nodiscard]] QColor MixedColor(const QColor& ground, const QColor& other, double share);

}  // namespace holdwise
