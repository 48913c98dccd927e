// SPDX-License-Identifier: MIT
#include "common/frames/holdings_panel.h"

#include <QMenu>
#include <QVBoxLayout>

#include "common/frames/frame_parts.h"
#include "common/frames/totals_strip.h"
#include "common/host/event_guard.h"

namespace holdwise {
namespace {

constexpr int kTitlePixels = 15;
constexpr QPoint kTitlePlace{14, 9};

}  // namespace

HoldingsPanel::HoldingsPanel(const Design& design, QWidget* parent)
    : FramePart(parent),
      title_(new TitleStrip(design.caption, DesignFont(kTitlePixels, true), kTitlePlace, this)),
      grid_(new TStringGrid(design.unit, QStringLiteral("StringGrid1"), this)),
      header_(new HeaderStrip(*grid_, design.columns, this)),
      links_(*grid_, LinkColumnsOf(design.columns)),
      codeColumn_(LinkColumnsOf(design.columns).front()) {
  grid_->setAccessibleName(QStringLiteral("成分股"));
  auto* layout = StackedIn(*this);
  layout->addWidget(title_);
  layout->addWidget(header_);
  layout->addWidget(grid_, 1);
  grid_->OnMouseDown = [this](Qt::MouseButton button, Qt::KeyboardModifiers, const QPoint& position) {
    if (button == Qt::LeftButton) links_.MouseDown(position);
  };
  grid_->OnMouseMove = [this](const QPoint& position) { MouseMove(position); };
  grid_->OnClientWidthChanged = [this](int) { Fit(); };
  grid_->OnKeyDown = [this](int key, Qt::KeyboardModifiers modifiers) {
    const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (isEnter && (modifiers & ~Qt::KeypadModifier) == Qt::NoModifier) OpenRow();
  };
  grid_->OnContextMenu = [this](QMenu& menu) {
    if (!grid_->HasRow()) return;
    connect(menu.addAction(QStringLiteral("打开分时走势\tEnter")), &QAction::triggered, this,
            [this] { GuardEvent(grid_->Unit(), QStringLiteral("OpenSecurity"), [this] { OpenRow(); }); });
  };
}

TotalsStrip& HoldingsPanel::AddTotals(const QStringList& titles) {
  totals_ = new TotalsStrip(titles, this);
  layout()->addWidget(totals_);
  return *totals_;
}

void HoldingsPanel::OpenRow() {
  if (grid_->HasRow()) OpenSecurity(grid_->Cells(codeColumn_, grid_->Row()));
}

void HoldingsPanel::SetTitles(const QStringList& titles) {
  header_->SetTitles(titles);
}

void HoldingsPanel::SetCaption(const QString& caption) {
  title_->SetCaption(caption);
}

void HoldingsPanel::SetNotice(const QString& text, const QString& hint) {
  title_->SetNotice(text, hint);
}

void HoldingsPanel::Clear() {
  ClearStrnGrd(*grid_);
}

void HoldingsPanel::MouseMove(const QPoint& position) {
  links_.MouseMove(position);
  grid_->ShowHintAt(position, OnHint);
}

void HoldingsPanel::ApplyTheme() {
  SetPanelColor(*this, ThemeBackground());
  header_->ApplyTheme();
  title_->ApplyTheme();
  if (totals_ != nullptr) totals_->ApplyTheme();
}

void HoldingsPanel::Fit() {
  header_->FitColumns();
}

QString HoldingsPanel::HoldingsGridName() const {
  return grid_->objectName();
}

}  // namespace holdwise
