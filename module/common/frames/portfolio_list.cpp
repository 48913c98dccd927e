// SPDX-License-Identifier: MIT
#include "common/frames/portfolio_list.h"

#include <QScopeGuard>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "common/frames/cell_buttons.h"
#include "common/frames/entry_bar.h"
#include "common/frames/frame_parts.h"
#include "common/frames/list_filter.h"
#include "common/frames/totals_strip.h"
#include "common/store/database.h"
#include "common/store/statements.h"

namespace holdwise {
namespace {

constexpr int kBelowTotals = 18;  // pixels; with the strip five whole rows fit into the height of the design
const QString kFilter = QStringLiteral("filter");
const QString kId = QStringLiteral("id");

}  // namespace

QString NoSavedPortfolios() {
  const QString none = QStringLiteral("暂无已保存的组合\n");
  if (const std::int64_t waiting = Database().Count(sql::kCountUnsavedPortfolios); waiting > 0) {
    return none + QStringLiteral(
                      "“自选配置”里有 %1 个组合还没有保存：算完后在那里的列表中选中它，\n"
                      "按 F4 或单击它那一行的保存图标，就列在这里")
                      .arg(waiting);
  }
  return none + QStringLiteral(
                    "在“自选配置”中选股或粘贴持仓（Ctrl+V）建立，在“智能配置”中取用候选组合，\n"
                    "或用终端的“文件→导入组合”（Ctrl+O）读入组合或券商持仓表");
}

PortfolioList::PortfolioList(const Design& design, QWidget* parent)
    : FramePart(parent),
      statement_(design.statement),
      keyColumn_(design.keyColumn),
      nameColumn_(design.nameColumn),
      emptyText_(design.emptyText),
      filter_(new ListFilter(design.unit, this)),
      grid_(new TStringGrid(design.unit, QStringLiteral("strngrd"), this)),
      header_(new HeaderStrip(*grid_, design.columns, this)) {
  grid_->setAccessibleName(QStringLiteral("组合"));
  grid_->SetWholeRows(true);
  auto* layout = StackedIn(*this);
  layout->addWidget(filter_);
  layout->addWidget(header_);
  layout->addWidget(grid_, 1);
  filter_->hide();
  filter_->OnChange = [this] { FilterChanged(); };
  filter_->OnLeave = [this] { grid_->setFocus(); };
  grid_->OnSelectCell = [this](int, int row) {
    Show(row);
    return true;
  };
  grid_->OnMouseMove = [this](const QPoint& position) { MouseMove(position); };
  grid_->OnClientWidthChanged = [this](int) { Fit(); };
  grid_->OnKeyDown = [this](int key, Qt::KeyboardModifiers modifiers) { KeyDown(key, modifiers); };
  grid_->OnContextMenu = [this](QMenu& menu) {
    if (OnMenu && grid_->HasRow()) OnMenu(menu, grid_->Row());
  };
}

TotalsStrip& PortfolioList::AddTotals(const QStringList& titles) {
  totals_ = new TotalsStrip(titles, this);
  auto* rows = static_cast<QVBoxLayout*>(layout());
  rows->addWidget(totals_);
  rows->addSpacing(kBelowTotals);
  return *totals_;
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
  const int row = grid_->Row();
  const QStringList kept = std::exchange(kept_, {});
  ClearStrnGrd(*grid_);
  if (OnClear) OnClear();
  if (OnFill) OnFill(portfolios);
  ShowFilter();
  ApplyFilter();
  Reload(!kept.isEmpty() && kept == Listing() ? row : 0);
}

void PortfolioList::Reload(int row) {
  isForcedReload_ = true;
  const auto reset = qScopeGuard([this] { isForcedReload_ = false; });
  if (grid_->RowHeight(row) == 0) row = std::max(grid_->GetVisualTopRow(), 0);
  if (row == grid_->Row() || !grid_->SelectCell(0, row)) Show(row);
  grid_->BringIntoView(row);
}

bool PortfolioList::SelectRow(int row) {
  if (row >= 0 && grid_->RowHeight(row) == 0) filter_->Clear();
  return grid_->SelectCell(0, row);
}

int PortfolioList::BlankBelow() const {
  const QWidget& lowest = totals_ != nullptr ? static_cast<const QWidget&>(*totals_) : *grid_->viewport();
  return height() - lowest.mapTo(this, QPoint(0, lowest.height())).y();
}

void PortfolioList::KeepSelection() {
  kept_ = Listing();
}

QVariantMap PortfolioList::Place() const {
  QVariantMap place = PlaceIn(*grid_);
  place.insert(kFilter, filter_->Text());
  if (grid_->HasRow()) place.insert(kId, grid_->Cells(keyColumn_, grid_->Row()));
  return place;
}

void PortfolioList::PutPlace(const QVariantMap& place) {
  if (place.isEmpty()) return;
  filter_->Entry().setText(place.value(kFilter).toString());
  const auto row = static_cast<int>(PortfolioIds().indexOf(place.value(kId).toString()));
  const bool isThere = row >= 0 && grid_->RowHeight(row) > 0;
  QVariantMap here = place;
  here.insert(QStringLiteral("row"), isThere ? row : grid_->Row());
  PutPlaceIn(*grid_, here);
}

QStringList PortfolioList::Listing() const {
  QStringList listing;
  for (int row = 0; !grid_->IsEmpty() && row < grid_->RowCount(); ++row)
    listing << grid_->Cells(keyColumn_, row) << grid_->Cells(nameColumn_, row);
  return listing;
}

std::vector<QWidget*> PortfolioList::TabStops() const {
  return {&filter_->Entry(), grid_};
}

void PortfolioList::ShowFilter() {
  const bool isLong = !grid_->IsEmpty() && grid_->RowCount() >= ListFilter::kLeastRows;
  filter_->setVisible(isLong || !filter_->Text().isEmpty());
}

bool PortfolioList::ApplyFilter() {
  const int before = grid_->Row();
  const bool hadRow = grid_->HasRow();
  int shown = 0;
  grid_->ShowRows([&](int row) {
    const bool isShown = filter_->Admits(grid_->Cells(nameColumn_, row));
    shown += isShown ? 1 : 0;
    return isShown;
  });
  filter_->SetCounts(shown, grid_->RowCount());
  const bool isWhole = shown == grid_->RowCount();
  // The sums are of all portfolios all the same.
  if (totals_ != nullptr) totals_->SetCaption(isWhole ? QStringLiteral("合计") : QStringLiteral("全部组合合计"));
  const bool isAll = filter_->Text().isEmpty() || grid_->IsEmpty();
  if (!isAll)
    grid_->SetEmptyText(QStringLiteral("没有名称含“%1”的组合\n按 Esc 重新列出全部组合").arg(filter_->Text()));
  else
    grid_->SetEmptyText(grid_->IsEmpty() && emptyText_ ? emptyText_() : QString());
  return hadRow && grid_->HasRow() && grid_->Row() == before;
}

void PortfolioList::FilterChanged() {
  const bool isSame = ApplyFilter();
  ShowFilter();
  if (grid_->IsEmpty() || isSame) return;
  if (grid_->HasRow()) return Reload(grid_->Row());
  if (OnClear) OnClear();
  if (OnShow) OnShow(-1);
}

void PortfolioList::Show(int row) {
  if (!OnShow) return;
  if (!grid_->HasRow()) return OnShow(-1);
  if (row == grid_->Row() && !isForcedReload_) return;
  OnShow(row);
}

void PortfolioList::KeyDown(int key, Qt::KeyboardModifiers modifiers) {
  if (!grid_->HasRow() || (modifiers & ~Qt::KeypadModifier) != Qt::NoModifier) return;
  if (key == Qt::Key_Delete && OnDelete) return OnDelete(grid_->Row());
  if ((key == Qt::Key_Return || key == Qt::Key_Enter) && OnEnter) return OnEnter(grid_->Row());
  if (OnKey) OnKey(key, grid_->Row());
}

void PortfolioList::MouseMove(const QPoint& position) {
  const QString hintOfButton = buttons_ == nullptr ? QString() : buttons_->MouseMove(position);
  hintOfButton.isEmpty() ? grid_->ShowHintAt(position, OnHint) : grid_->ShowHint(hintOfButton);
}

void PortfolioList::ApplyTheme() {
  SetPanelColor(*this, ThemeBackground());
  header_->ApplyTheme();
  filter_->ApplyTheme();
  if (totals_ != nullptr) totals_->ApplyTheme();
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
  if (grid_->IsEmpty()) return SelectRow(-1);
  int row = 0;
  while (row < grid_->RowCount() && grid_->Cells(keyColumn_, row) != portfolioId) ++row;
  return SelectRow(row < grid_->RowCount() ? row : -1);
}

}  // namespace holdwise
