// SPDX-License-Identifier: MIT
#include "theme/theme_services.h"

#include <QLabel>

#include "theme_pictures.h"

namespace holdwise {

ThemeServices::ThemeServices(ThemeKind kind, DebugServers& debug) : kind_(kind), debug_(debug) {}

void ThemeServices::SetKind(ThemeKind kind) {
  if (kind == kind_) return;
  kind_ = kind;
  if (OnChanged) OnChanged();
}

void ThemeServices::SetRiseFall(RiseFall choice) {
  if (choice == riseFall_) return;
  riseFall_ = choice;
  if (OnChanged) OnChanged();
}

QColor ThemeServices::ColorOfChange(double change) const {
  std::optional<QColor> color;
  if (change > 0) color = RiseTextColor(kind_, riseFall_);
  if (change < 0) color = FallTextColor(kind_, riseFall_);
  return color ? *color : ThemeColorOf(kind_, "Grid_UnSelTxtColor");
}

QPalette ThemeServices::WindowPalette() const {
  const auto color = [this](const char* key) { return ThemeColorOf(kind_, key); };
  const QColor ground = color("Qm_BGCorlor");
  const QColor bar = color("ktr_gridtitlebk");
  const QColor text = color("Grid_UnSelTxtColor");
  QPalette palette(bar, ground);
  palette.setColor(QPalette::Window, ground);
  palette.setColor(QPalette::WindowText, text);
  palette.setColor(QPalette::Base, color("KTR_HighLightColor1"));
  palette.setColor(QPalette::AlternateBase, color("KTR_HighLightColor2"));
  palette.setColor(QPalette::Text, text);
  palette.setColor(QPalette::Button, bar);
  palette.setColor(QPalette::ButtonText, text);
  palette.setColor(QPalette::BrightText, color("Section_BigTxtColor"));
  palette.setColor(QPalette::Highlight, HighlightColor(kind_));
  palette.setColor(QPalette::HighlightedText, color("Grid_SelTxtColor"));
  palette.setColor(QPalette::Link, color("Grid_ClickTxtColor"));
  palette.setColor(QPalette::ToolTipBase, bar);
  palette.setColor(QPalette::ToolTipText, text);
  palette.setColor(QPalette::PlaceholderText, QuietTextColor(kind_));
  palette.setColor(QPalette::Light, color("KTR_BorderColor"));
  palette.setColor(QPalette::Midlight, color("Grid_Color"));
  palette.setColor(QPalette::Mid, color("KTR_BorderColor"));
  palette.setColor(QPalette::Dark, color("KTR_BorderColor"));
  palette.setColor(QPalette::Shadow, ground.darker(140));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, QuietTextColor(kind_));
  return palette;
}

QColor ThemeServices::ColorOf(const QString& key) const {
  if (const std::optional<QColor> color = FindColor(key)) return *color;
  ReportUnknown(key);
  return QColor(Qt::magenta);
}

std::optional<QColor> ThemeServices::FindColor(const QString& key) const {
  if (key == QLatin1String(kRiseTextKey)) return RiseTextColor(kind_, riseFall_);
  if (key == QLatin1String(kFallTextKey)) return FallTextColor(kind_, riseFall_);
  return FindThemeColor(kind_, key);
}

void ThemeServices::AssignPicture(const QString& key, QLabel& image) const {
  const qreal ratio = image.devicePixelRatioF();
  QPixmap picture = PictureOf(key, image.size() * ratio);
  picture.setDevicePixelRatio(ratio);
  image.setScaledContents(true);
  image.setPixmap(picture);
}

QPixmap ThemeServices::PictureOf(const QString& key, const QSize& size) const {
  if (!ThemePictureKeys().contains(key)) {
    ReportUnknown(key);
    return {};
  }
  return PaintThemePicture(kind_, key, size);
}

void ThemeServices::ReportUnknown(const QString& key) const {
  if (reported_.insert(key).second) debug_.WriteLog(QStringLiteral("颜色主题中没有键：%1").arg(key));
}

}  // namespace holdwise
