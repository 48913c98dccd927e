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
      candidates_(new TStringGrid(kUnit, QStringLiteral("strngrd"), left_)),
      header_(new HeaderStrip(*candidates_, allocation::CandidateTable(), left_)),
      holdings_(new HoldingsPanel(
          {.unit = kUnit, .columns = allocation::PartTable(), .caption = QStringLiteral("成分股")}, Splitter1)),
      save_(*candidates_, allocation::kOperation,
            {{.normal = QPixmap(kPictureSize),
              .pressed = QPixmap(kPictureSize),
              .hint = QStringLiteral("保存（F4）"),
              .onPress = [this](int row) {
                if (OnSave) OnSave(row);
              }}}) {
  setObjectName(QStringLiteral("RzPanel2"));
  Splitter1->setChildrenCollapsible(false);
  for (QWidget* side : {left_, static_cast<QWidget*>(holdings_)}) side->setMinimumWidth(kLeastWidth);
  Splitter1->setStretchFactor(0, kCandidatesShare);
  Splitter1->setStretchFactor(1, kHoldingsShare);
  Splitter1->setSizes({kCandidatesShare * kLeastWidth, kHoldingsShare * kLeastWidth});
  StackedIn(*this)->addWidget(Splitter1);
  BuildCandidates();
  TStringGrid& parts = holdings_->Grid();
  holdings_->SetTitles(allocation::PartCaptions());
  parts.SetTitles(allocation::PartTitles());
}

void CandidateBand::BuildCandidates() {
  auto* rows = StackedIn(*left_);
  rows->addWidget(title_);
  rows->addWidget(header_);
  rows->addWidget(candidates_, 1);
  header_->SetTitles(allocation::CandidateCaptions());
  candidates_->setFocusPolicy(Qt::StrongFocus);
  candidates_->OnSelectCell = [this](int, int row) { return !OnSelect || OnSelect(row); };
  candidates_->OnClientWidthChanged = [this](int) { header_->FitColumns(); };
  candidates_->OnMouseMove = [this](const QPoint& position) { MouseMove(position); };
  candidates_->OnMouseDown = [this](Qt::MouseButton button, Qt::KeyboardModifiers, const QPoint& position) {
    if (candidates_->IsEmpty()) return;
    MouseMove(position);  // rows may have changed under a resting mouse
    save_.MouseDown(button);
  };
  candidates_->OnMouseUp = [this](const QPoint& position) { save_.MouseUp(position); };
  candidates_->OnDrawCell = [this](QPainter& painter, const GridCellPaint& cell) {
    candidates_->DrawDefaultCell(painter, cell);
    save_.Draw(painter, cell);
  };
  candidates_->OnKeyDown = [this](int key, Qt::KeyboardModifiers modifiers) {
    const bool saves = key == Qt::Key_F4 && modifiers == Qt::NoModifier && !candidates_->IsEmpty();
    if (saves && OnSave) OnSave(candidates_->Row());
  };
}

void CandidateBand::MouseMove(const QPoint& position) {
  const QString hint = save_.MouseMove(position);
  const GridCell cell = candidates_->MouseToCell(position);
  candidates_->ShowHint(hint.isEmpty() && !cell.IsNone() ? candidates_->ClippedText(cell) : hint);
}

void CandidateBand::SetCaption(const QString& caption) {
  title_->SetCaption(caption);
}

void CandidateBand::ApplyTheme() {
  const IImageSet2& pictures = ModuleHost().ColorTheme().Images();
  SetPanelColor(*this, ThemeBackground());
  SetPanelColor(*Splitter1, ThemeBackground());
  title_->ApplyTheme();
  header_->ApplyTheme();
  holdings_->ApplyTheme();
  save_.SetPictures(0, pictures.PictureOf(theme::kSavePicture, kPictureSize),
                    pictures.PictureOf(theme::kSaveHoverPicture, kPictureSize));
  candidates_->viewport()->update();
}

void CandidateBand::Fit() {
  header_->FitColumns();
  holdings_->Fit();
}

std::vector<const TStringGrid*> CandidateBand::Grids() const {
  return {candidates_, &holdings_->Grid()};
}

QStringList CandidateBand::PortfolioIds() const {
  QStringList numbers;
  if (candidates_->IsEmpty()) return numbers;
  for (int row = 0; row < candidates_->RowCount(); ++row) numbers << candidates_->Cells(allocation::kNumber, row);
  return numbers;
}

bool CandidateBand::SelectPortfolio(const QString& portfolioId) {
  const auto row = PortfolioIds().indexOf(portfolioId);
  return row >= 0 && candidates_->SelectCell(0, static_cast<int>(row));
}

QString CandidateBand::HoldingsGridName() const {
  return holdings_->HoldingsGridName();
}

}  // namespace holdwise
