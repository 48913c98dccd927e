// SPDX-License-Identifier: MIT
#include "common/frames/frame_parts.h"

#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "common/frames/title_hints.h"
#include "common/grid/cell_geometry.h"
#include "common/grid/string_grid.h"
#include "common/host/font.h"
#include "common/host/host_access.h"
#include "common/host/theme_colors.h"

namespace holdwise {

QVBoxLayout* StackedIn(QWidget& panel) {
  auto* layout = new QVBoxLayout(&panel);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  return layout;
}

void SetTabOrderOf(const std::vector<QWidget*>& widgets) {
  for (std::size_t next = 1; next < widgets.size(); ++next) QWidget::setTabOrder(widgets[next - 1], widgets[next]);
}

void SetPanelColor(QWidget& panel, const QColor& color) {
  QPalette palette = panel.palette();
  palette.setColor(QPalette::Window, color);
  panel.setPalette(palette);
  panel.setAutoFillBackground(true);
}

QColor ThemeBackground() {
  return ModuleHost().ColorTheme().Colors().ColorOf(theme::kBackground);
}

void SetTextColor(QWidget& label, const QColor& color) {
  QPalette palette = label.palette();
  palette.setColor(QPalette::WindowText, color);
  label.setPalette(palette);
}

namespace {

/// A title too wide for its column gets smaller; one that is still cut off shows its beginning and can be read under
/// the mouse, before its hint.
void FitTitle(QLabel& label, const QString& hint) {
  constexpr int kSmallest = 10;
  constexpr int kNarrowest = 88;  // percent of the font's width, where the smallest still touches the edges
  constexpr int kAir = 4;         // pixels, at both edges together
  constexpr int kBlank = 4;       // the brackets at its ends have that much blank around them
  int pixels = kDesignFontPixels;
  label.setFont(DesignFont(pixels));
  while (pixels > kSmallest && label.sizeHint().width() > label.width()) label.setFont(DesignFont(--pixels));
  if (pixels == kSmallest && label.sizeHint().width() > label.width() - kAir) {
    QFont narrow = label.font();
    narrow.setStretch(std::clamp(100 * (label.width() - kAir) / label.sizeHint().width(), kNarrowest, 100));
    label.setFont(narrow);
  }
  const bool isCutOff = label.sizeHint().width() > label.width() + kBlank;
  if (isCutOff) label.setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  QStringList lines{hint};
  if (isCutOff) lines.prepend(label.text());
  lines.removeAll(QString());
  label.setToolTip(lines.join(QLatin1Char('\n')));
}

}  // namespace

PictureStrip::PictureStrip(int height, QWidget* parent) : QWidget(parent), picture_(new QLabel(this)) {
  setFixedHeight(height);
  picture_->setScaledContents(true);
  picture_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
  picture_->setAttribute(Qt::WA_TransparentForMouseEvents);
}

void PictureStrip::ApplyPicture(const QString& key) {
  ModuleHost().ColorTheme().Colors().AssignPicture(key, *picture_);
}

void PictureStrip::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  picture_->setGeometry(rect());
}

HeaderStrip::HeaderStrip(TStringGrid& grid, ColumnTable columns, QWidget* parent)
    : PictureStrip(kHeight, parent), grid_(grid), columns_(std::move(columns)) {
  ApplyColumns(columns_, grid);
  for (const QString& title : TitlesOf(columns_)) {
    auto* label = new QLabel(title, this);
    label->setFont(DesignFont());
    labels_.push_back(label);
  }
}

void HeaderStrip::ApplyTheme() {
  const IColorSet2& colors = ModuleHost().ColorTheme().Colors();
  grid_.SetColors(ReadGridColors(colors));
  const QColor text = colors.ColorOf(theme::kTitleFont);
  for (QLabel* label : labels_) SetTextColor(*label, text);
  ApplyPicture(theme::kTitleBackgroundPicture);
}

void HeaderStrip::SetTitles(const QStringList& titles) {
  bool isTwoLine = false;
  for (std::size_t place = 0; place < labels_.size(); ++place) {
    QString title = titles.value(static_cast<qsizetype>(place));
    isTwoLine = isTwoLine || title.contains(u'\r');
    labels_[place]->setText(title.replace(u'\r', u'\n'));
  }
  setFixedHeight(isTwoLine ? kTwoLineHeight : kHeight);
  FitColumns();
}

void HeaderStrip::FitColumns() {
  // Strip and grid get their places one after the other; until then there is nothing to fit the titles to.
  if (!testAttribute(Qt::WA_Resized) || !grid_.testAttribute(Qt::WA_Resized)) return;
  grid_.SetColWidths(WidthsOf(columns_, grid_.ClientWidth()));
  FollowColumns();
}

void HeaderStrip::FollowColumns() {
  int left = 0;
  for (int column = 0; column < static_cast<int>(labels_.size()); ++column) {
    QLabel& label = *labels_[static_cast<size_t>(column)];
    const int width = grid_.ColWidth(column);
    const bool isLeft = grid_.ColumnAlignment(column) == Qt::AlignLeft;
    label.setAlignment((isLeft ? Qt::AlignLeft : Qt::AlignHCenter) | Qt::AlignVCenter);
    label.setIndent(isLeft ? kTextInset : 0);
    label.setGeometry(left, 0, std::max(std::min(width, this->width() - left), 0), height());
    FitTitle(label, HintOfTitle(grid_.Unit(), grid_.objectName(), label.text().remove(u'\n')));
    left += width;
  }
}

TitleStrip::TitleStrip(const QString& caption, const QFont& font, QPoint place, QWidget* parent)
    : PictureStrip(kHeight, parent), place_(place), caption_(new QLabel(caption, this)), notice_(new QLabel(this)) {
  caption_->setTextFormat(Qt::PlainText);
  caption_->setFont(font);
  notice_->setTextFormat(Qt::PlainText);
  notice_->setFont(DesignFont());
  notice_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  PlaceTexts();
}

void TitleStrip::SetCaption(const QString& caption) {
  caption_->setText(caption);
  PlaceTexts();
}

void TitleStrip::SetNotice(const QString& text, const QString& hint) {
  notice_->setText(text);
  notice_->setToolTip(Qt::convertFromPlainText(hint, Qt::WhiteSpaceNormal));
  if (hint.isEmpty()) notice_->setToolTip({});
  PlaceTexts();
}

void TitleStrip::ApplyTheme() {
  const IColorSet2& colors = ModuleHost().ColorTheme().Colors();
  SetTextColor(*caption_, colors.ColorOf(theme::kSectionBigText));
  SetTextColor(*notice_, colors.ColorOf(theme::kTitleFont));
  ApplyPicture(theme::kTitleBackgroundPicture);
}

void TitleStrip::resizeEvent(QResizeEvent* event) {
  PictureStrip::resizeEvent(event);
  PlaceTexts();
}

void TitleStrip::PlaceTexts() {
  // The place is that of the characters; the font may need more space around them.
  const QSize wanted = caption_->sizeHint();
  const int y = place_.y() + (caption_->font().pixelSize() - wanted.height()) / 2;
  caption_->setGeometry(place_.x(), y, std::min(wanted.width(), width() - place_.x()), wanted.height());
  const int left = caption_->geometry().right() + place_.x();
  notice_->setGeometry(left, 0, std::max(width() - place_.x() - left, 0), height());
  notice_->setVisible(!notice_->text().isEmpty());
}

}  // namespace holdwise
