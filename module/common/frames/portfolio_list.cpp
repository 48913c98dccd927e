// SPDX-License-Identifier: MIT
#include "common/frames/portfolio_list.h"

#include <QScopeGuard>
#include <QVBoxLayout>

#include "common/frames/cell_buttons.h"
#include "common/frames/frame_parts.h"
#include "common/store/database.h"

namespace holdwise {

QString NoSavedPortfolios() {
  return QStringLiteral(
      "暂无已保存的组合\n在“自选配置”中选股或粘贴持仓（Ctrl+V）建立，在“智能配置”中取用候选组合，\n"
      "或用终端的“文件→导入组合”（Ctrl+O）读入组合或券商持仓表");
}

PortfolioList::PortfolioList(const Design& design, QWidget* parent)
    : FramePart(parent),
      statement_(design.statement),
      keyColumn_(design.keyColumn),
      grid_(new TStringGrid(design.unit, QStringLiteral("strngrd"), this)),
      header_(new HeaderStrip(*grid_, design.columns, this)) {
  if (design.height > 0) setFixedHeight(design.height);
  grid_->SetEmptyText(design.emptyText);
  grid_->SetWholeRows(true);
  auto* layout = StackedIn(*this);
  layout->addWidget(header_);
  layout->addWidget(grid_, 1);
  grid_->OnSelectCell = [this](int, int row) {
    Show(row);
    return true;
  };
  grid_->OnMouseMove = [this](const QPoint& position) { MouseMove(position); };
  grid_->OnClientWidthChanged = [this](int) { Fit(); };
}

void PortfolioList::SetTitles(const QStringList& titles) {
  header_->SetTitles(titles);
}

int PortfolioList::TitleWidth() const {
  return header_->width();
}

void PortfolioList::SetButtons(CellButtons& buttons) {
  buttons_ = &buttons;
  grid_->OnMouseDown = [this](Qt::MouseButton button, Qt::KeyboardModifiers, const QPoint& position) {
    if (grid_->Cells(0, 0).trimmed().isEmpty()) return;
    MouseMove(position);  // rows may have changed under a resting mouse
    buttons_->MouseDown(button);
  };
  grid_->OnMouseUp = [this](const QPoint& position) { buttons_->MouseUp(position); };
  grid_->OnDrawCell = [this](QPainter& painter, const GridCellPaint& cell) {
    grid_->DrawDefaultCell(painter, cell);
    buttons_->Draw(painter, cell);
  };
}

void PortfolioList::ReflashData() {
  const ResultSet portfolios = Database().Query(statement_);
  ClearStrnGrd(*grid_);
  if (OnClear) OnClear();
  if (OnFill) OnFill(portfolios);
  Reload(0);
}

void PortfolioList::Reload(int row) {
  isForcedReload_ = true;
  const auto reset = qScopeGuard([this] { isForcedReload_ = false; });
  Show(row);
  grid_->BringIntoView(row);
}

void PortfolioList::Show(int row) {
  if (!OnShow) return;
  if (grid_->IsEmpty()) return OnShow(-1);
  if (row == grid_->Row() && !isForcedReload_) return;
  OnShow(row);
}

void PortfolioList::MouseMove(const QPoint& position) {
  const QString hintOfButton = buttons_ == nullptr ? QString() : buttons_->MouseMove(position);
  hintOfButton.isEmpty() ? grid_->ShowHintAt(position, OnHint) : grid_->ShowHint(hintOfButton);
}

void PortfolioList::ApplyTheme() {
  SetPanelColor(*this, ThemeBackground());
  header_->ApplyTheme();
}

void PortfolioList::Fit() {
  header_->FitColumns();
}

QStringList PortfolioList::PortfolioIds() const {
  QStringList ids;
  if (grid_->IsEmpty()) return ids;
  for (int row = 0; row < grid_->RowCount(); ++row) ids << grid_->Cells(keyColumn_, row);
  return ids;
}

bool PortfolioList::SelectPortfolio(const QString& portfolioId) {
  const auto row = PortfolioIds().indexOf(portfolioId);
  return row >= 0 && grid_->SelectCell(0, static_cast<int>(row));
}

}  // namespace holdwise
