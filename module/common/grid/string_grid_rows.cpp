// SPDX-License-Identifier: MIT
// The grid's rows: which are there, which are shown, which are selected, and all of them as texts.
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMenu>
#include <algorithm>

#include "common/grid/string_grid.h"
#include "common/grid/table_text.h"
#include "grid_model.h"

namespace holdwise {
namespace {

/// A context menu on the theme's colours, whatever the host's own windows have. What cannot be chosen is grey, yet to
/// be read.
QPalette MenuColors(QPalette menu, const GridColors& colors) {
  for (const auto role : {QPalette::Window, QPalette::Base}) menu.setColor(role, colors.oddRow);
  constexpr double kGreyShare = 0.7;
  const QColor grey = MixedColor(colors.oddRow, colors.unselectedText, kGreyShare);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    menu.setColor(role, colors.unselectedText);
    menu.setColor(QPalette::Disabled, role, grey);
  }
  return menu;
}

}  // namespace

RowId TStringGrid::IdOf(int row) const {
  return row >= 0 && row < RowCount() ? model_->IdOf(row) : 0;
}

void TStringGrid::DeleteRow(int row, int count) {
  for (; count > 0 && row >= 0 && row < RowCount(); --count) {
    if (RowCount() == 1) return model_->ClearTexts();
    const int current = Row() - (row < Row() ? 1 : 0);
    const int column = std::max(currentIndex().column(), 0);
    model_->RemoveRow(row);
    anchor_ = QModelIndex();
    MakeCurrent(column, std::min(current, RowCount() - 1));
  }
}

void TStringGrid::SetDefaultRowHeight(int pixels) {
  rowHeight_ = pixels;
  verticalHeader()->setMinimumSectionSize(pixels);
  verticalHeader()->setDefaultSectionSize(pixels);
}

int TStringGrid::RowHeight(int row) const {
  return model_->IsShown(row) ? rowHeight_ : 0;
}

void TStringGrid::ShowRows(const std::function<bool(int row)>& isShown) {
  const int row = Row();
  const int column = std::max(currentIndex().column(), 0);
  model_->ShowRows(isShown);
  if (currentIndex().isValid() && Row() == row) return;
  anchor_ = QModelIndex();
  MakeCurrent(column, model_->IsShown(row) ? row : std::max(GetVisualTopRow(), 0));
}

int TStringGrid::GetVisualTopRow() const {
  return model_->rowCount() > 0 ? model_->RowAt(0) : -1;
}

int TStringGrid::Row() const {
  return std::max(model_->RowAt(currentIndex().row()), 0);
}

void TStringGrid::BringIntoView(int row) {
  const QModelIndex index = model_->index(model_->PlaceOf(row), 0);
  if (index.isValid()) scrollTo(index);
}

GridRange TStringGrid::Selection() const {
  if (model_->rowCount() == 0) return {};
  const int start = anchor_.isValid() ? model_->RowAt(anchor_.row()) : Row();
  return {std::min(start, Row()), std::max(start, Row())};
}

bool TStringGrid::SelectCell(int column, int row) {
  return GoTo(column, row, false);
}

bool TStringGrid::GoTo(int column, int row, bool extends) {
  const auto isThere = [&] { return column >= 0 && column < ColCount() && RowHeight(row) > 0; };
  if (!isThere() || (OnSelectCell && !OnSelectCell(column, row)) || !isThere()) return false;
  const GridRange before = Selection();
  if (!isRangeSelect_ || !extends) {
    anchor_ = QModelIndex();
  } else if (!anchor_.isValid()) {
    anchor_ = currentIndex();
  }
  MakeCurrent(column, row);
  if (Selection() != before) viewport()->update();
  return true;
}

void TStringGrid::MakeCurrent(int column, int row) {
  const QModelIndex index = model_->index(model_->PlaceOf(row), column);
  if (!index.isValid()) return;
  selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
  scrollTo(index);
}

QStringList TStringGrid::TextsOf(int row) const {
  // An export asks for a long list again and again: the texts are shared with the cells where they are the same.
  QStringList texts = model_->TextsOf(row);
  for (const int column : percents_) {
    if (column < texts.size()) texts[column] = TextInItsUnit({column, row});
  }
  return texts;
}

GridText TStringGrid::ToGridText() const {
  GridText text;
  text.name = objectName();
  for (int column = 0; column < ColCount(); ++column) {
    text.titles << titles_.value(column);
    text.hidden.push_back(isColumnHidden(column));
  }
  if (IsEmpty()) return text;
  for (int row = 0; row < RowCount(); ++row) text.rows.push_back(TextsOf(row));
  return text;
}

void TStringGrid::CopyTable() const {
  if (IsEmpty()) return;
  GridText text = ToGridText();
  text.rows.clear();
  for (int row = 0; row < RowCount(); ++row) {
    if (RowHeight(row) > 0) text.rows.push_back(TextsOf(row));
  }
  QGuiApplication::clipboard()->setText(TabSeparated(text));
}

void TStringGrid::CopyRows() const {
  if (IsEmpty()) return;
  GridText text = ToGridText();
  text.rows.clear();
  for (int row = 0; row < RowCount(); ++row) {
    if (RowHeight(row) > 0 && StandsOut(row)) text.rows.push_back(TextsOf(row));
  }
  if (!text.rows.empty()) QGuiApplication::clipboard()->setText(TabSeparated(text));
}

void TStringGrid::CopyCell(const GridCell& cell) const {
  if (!IsEmpty()) QGuiApplication::clipboard()->setText(TextInItsUnit(cell).simplified());
}

void TStringGrid::FillMenu(QMenu& menu, const GridCell& cell) {
  const auto add = [&](const QString& text, bool isEnabled, const std::function<void()>& act) {
    QAction* action = menu.addAction(text);
    action->setEnabled(isEnabled);
    connect(action, &QAction::triggered, this, act);
  };
  const bool isOnRow = HasRow() && !cell.IsNone();
  add(QStringLiteral("复制单元格"), isOnRow, [this, cell] { CopyCell(cell); });
  add(QStringLiteral("复制行\tCtrl+C"), isOnRow, [this] { CopyRows(); });
  add(QStringLiteral("复制表格\tCtrl+Shift+C"), !IsEmpty(), [this] { CopyTable(); });
  const auto copying = menu.actions().size();
  if (OnContextMenu) OnContextMenu(menu);
  if (menu.actions().size() > copying) menu.insertSeparator(menu.actions().at(copying));
}

void TStringGrid::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();
  Guarded([this, event] {
    // The menu concerns the row that it is opened on; by keyboard, the current one.
    const bool isByMouse = event->reason() == QContextMenuEvent::Mouse;
    const GridCell current{std::max(currentIndex().column(), 0), Row()};
    const GridCell cell = isByMouse ? MouseToCell(event->pos()) : current;
    const bool isOther = isByMouse && !IsEmpty() && !cell.IsNone() && !StandsOut(cell.row);
    if (isOther && !SelectCell(cell.column, cell.row)) return;
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setPalette(MenuColors(menu->palette(), colors_));
    menu->setFont(font());
    FillMenu(*menu, cell);
    const QPoint below = viewport()->mapToGlobal(CellRect(cell.column, cell.row).bottomLeft());
    menu->popup(isByMouse ? event->globalPos() : below);
  });
}

}  // namespace holdwise
