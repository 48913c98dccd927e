// SPDX-License-Identifier: MIT
#include "candidate_band.h"

#include <QSplitter>
#include <QVBoxLayout>

#include "allocation_layout.h"
#include "common/frames/frame_parts.h"
#include "common/frames/holdings_panel.h"
#include "common/host/host_access.h"
#include "common/host/theme_colors.h"

namespace holdwise {
namespace {

const QString kUnit = QStringLiteral("Znpz");
const QString kListPlace = QStringLiteral("list");
const QString kHoldingsPlace = QStringLiteral("holdings");
constexpr int kTitlePixels = 15;
constexpr QPoint kTitlePlace{14, 9};
constexpr QSize kPictureSize{20, 20};
constexpr int kLeastWidth = 260;
constexpr int kCandidatesShare = 4;
constexpr int kHoldingsShare = 3;

}  // namespace

CandidateBand::CandidateBand(QWidget* parent)
    : FramePart(parent),
      Splitter1(new QSplitter(Qt::Horizontal, this)),
      left_(new QWidget(Splitter1)),
      title_(new TitleStrip({}, DesignFont(kTitlePixels, true), kTitlePlace, left_)),
      candidates_(new PortfolioList({.unit = kUnit,
                                     .statement = {},
                                     .columns = allocation::CandidateTable(),
                                     .keyColumn = allocation::kNumber,
                                     .emptyText = {}},
                                    left_)),
      holdings_(new HoldingsPanel(
          {.unit = kUnit, .columns = allocation::PartTable(), .caption = QStringLiteral("成分股")}, Splitter1)),
      save_(candidates_->Grid(), allocation::kOperation,
            {{.normal = QPixmap(kPictureSize),
              .pressed = QPixmap(kPictureSize),
              .hint = QStringLiteral("保存（F4）"),
              .onPress = [this](int row) {
                if (OnSave) OnSave(row);
              }}}) {
  setObjectName(QStringLiteral("RzPanel2"));
  Splitter1->setObjectName(QStringLiteral("ZNPZ.Splitter1"));
  Splitter1->setChildrenCollapsible(false);
  for (QWidget* side : {left_, static_cast<QWidget*>(holdings_)}) side->setMinimumWidth(kLeastWidth);
  Splitter1->setStretchFactor(0, kCandidatesShare);
  Splitter1->setStretchFactor(1, kHoldingsShare);
  Splitter1->setSizes({kCandidatesShare * kLeastWidth, kHoldingsShare * kLeastWidth});
  StackedIn(*this)->addWidget(Splitter1);
  auto* rows = StackedIn(*left_);
  rows->addWidget(title_);
  rows->addWidget(candidates_, 1);
  candidates_->SetTitles(allocation::CandidateCaptions());
  candidates_->SetButtons(save_);
  TStringGrid& list = candidates_->Grid();
  list.SetWholeRows(false);
  list.setFocusPolicy(Qt::StrongFocus);
  candidates_->OnEnter = [this](int) { holdings_->Grid().setFocus(); };
  candidates_->OnKey = [this](int key, int row) {
    if (key == Qt::Key_F4 && OnSave) OnSave(row);
  };
  TStringGrid& parts = holdings_->Grid();
  holdings_->SetTitles(allocation::PartCaptions());
  parts.SetTitles(allocation::PartTitles());
}

void CandidateBand::SetCaption(const QString& caption) {
  title_->SetCaption(caption);
}

void CandidateBand::ApplyTheme() {
  const IImageSet2& pictures = ModuleHost().ColorTheme().Images();
  SetPanelColor(*this, ThemeBackground());
  SetPanelColor(*Splitter1, ThemeBackground());
  title_->ApplyTheme();
  candidates_->ApplyTheme();
  holdings_->ApplyTheme();
  save_.SetPictures(0, pictures.PictureOf(theme::kSavePicture, kPictureSize),
                    pictures.PictureOf(theme::kSaveHoverPicture, kPictureSize));
  candidates_->Grid().viewport()->update();
}

void CandidateBand::Fit() {
  candidates_->Fit();
  holdings_->Fit();
}

std::vector<const TStringGrid*> CandidateBand::Grids() const {
  return {&candidates_->Grid(), &holdings_->Grid()};
}

QStringList CandidateBand::PortfolioIds() const {
  return candidates_->PortfolioIds();
}

bool CandidateBand::SelectPortfolio(const QString& portfolioId) {
  return candidates_->SelectPortfolio(portfolioId);
}

QString CandidateBand::HoldingsGridName() const {
  return holdings_->HoldingsGridName();
}

QVariantMap CandidateBand::Place() const {
  return {{kListPlace, candidates_->Place()}, {kHoldingsPlace, PlaceIn(holdings_->Grid())}};
}

void CandidateBand::PutPlace(const QVariantMap& place) {
  candidates_->PutPlace(place.value(kListPlace).toMap());
  PutPlaceIn(holdings_->Grid(), place.value(kHoldingsPlace).toMap());
}

}  // namespace holdwise
