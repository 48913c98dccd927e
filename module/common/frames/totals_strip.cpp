// SPDX-License-Identifier: MIT
#include "common/frames/totals_strip.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPolygon>

#include "common/frames/frame_parts.h"
#include "common/host/host_access.h"
#include "common/host/theme_colors.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

constexpr int kMargin = 14;
constexpr int kGap = 6;       // between a title and its sum
constexpr int kPairGap = 22;  // between a sum and the next title
constexpr int kMarkLeg = 6;

/// A label with the mark of a remark at its upper right corner, in the colour of its text.
class MarkedLabel : public QLabel {
 public:
  using QLabel::QLabel;

 protected:
  void paintEvent(QPaintEvent* event) override {
    QLabel::paintEvent(event);
    if (toolTip().isEmpty()) return;
    QPainter painter(this);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::WindowText));
    const QPoint corner = rect().topRight();
    painter.drawPolygon(QPolygon({corner - QPoint(kMarkLeg, 0), corner, corner + QPoint(0, kMarkLeg)}));
  }
};

}  // namespace

TotalsStrip::TotalsStrip(const QStringList& titles, QWidget* parent)
    : QWidget(parent), caption_(new QLabel(QStringLiteral("合计"), this)) {
  setFixedHeight(kHeight);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(kMargin, 0, kMargin, 0);
  row->setSpacing(0);
  row->addWidget(caption_);
  caption_->setFont(DesignFont(kDesignFontPixels, true));
  for (const QString& title : titles) {
    const Place place{new QLabel(title, this), new MarkedLabel(this)};
    place.title->setFont(DesignFont());
    place.value->setFont(DesignFont());
    place.value->setTextFormat(Qt::PlainText);
    place.value->setContentsMargins(0, 0, kMarkLeg + 1, 0);
    place.value->setAccessibleName(QStringLiteral("合计 ") + title);
    row->addSpacing(kPairGap);
    row->addWidget(place.title);
    row->addSpacing(kGap);
    row->addWidget(place.value);
    places_.push_back(place);
  }
  row->addStretch();
  Fill();
}

void TotalsStrip::Show(const std::vector<Total>& totals) {
  // Most price messages change nothing, and every text that is set lays out the strip anew.
  if (totals == totals_) return;
  totals_ = totals;
  Fill();
}

void TotalsStrip::SetCaption(const QString& caption) {
  caption_->setText(caption);
}

void TotalsStrip::Fill() {
  const IColorSet2& colors = ModuleHost().ColorTheme().Colors();
  const GridColors grid = ReadGridColors(colors);
  const QColor quiet = colors.ColorOf(theme::kTitleFont);
  const bool isShown = !totals_.empty();
  caption_->setVisible(isShown);
  SetTextColor(*caption_, quiet);
  for (std::size_t place = 0; place < places_.size(); ++place) {
    const Place& labels = places_[place];
    for (QLabel* label : {labels.title, labels.value}) label->setVisible(isShown);
    if (place >= totals_.size()) continue;
    const Total& total = totals_[place];
    const double number = RealOr(total.text);
    const bool isTold = total.isSigned && number != 0 && grid.TellsRiseFromFall();
    labels.value->setText(isTold && number > 0 ? QLatin1Char('+') + total.text : total.text);
    labels.value->setToolTip(total.remark.isEmpty() ? QString()
                                                    : Qt::convertFromPlainText(total.remark, Qt::WhiteSpaceNormal));
    SetTextColor(*labels.title, quiet);
    SetTextColor(*labels.value, isTold ? (number > 0 ? grid.rise : grid.fall) : grid.unselectedText);
  }
  update();
}

QStringList TotalsStrip::Texts() const {
  QStringList texts;
  for (std::size_t place = 0; place < totals_.size() && place < places_.size(); ++place)
    texts << places_[place].value->text();
  return texts;
}

void TotalsStrip::ApplyTheme() {
  SetPanelColor(*this, ThemeBackground());
  Fill();
}

void TotalsStrip::paintEvent(QPaintEvent* event) {
  QWidget::paintEvent(event);
  if (totals_.empty()) return;
  QPainter painter(this);
  painter.setPen(ModuleHost().ColorTheme().Colors().ColorOf(theme::kBorder));
  painter.drawLine(rect().topLeft(), rect().topRight());
}

}  // namespace holdwise
