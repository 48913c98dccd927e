// SPDX-License-Identifier: MIT
#include "common/grid/grid_picks.h"

#include <QKeyEvent>

#include "common/grid/string_grid.h"

namespace holdwise {
namespace {

bool MovesTheRow(int key) {
  switch (key) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
      return true;
    default:
      return false;
  }
}

bool IsModifier(int key) {
  return key == Qt::Key_Control || key == Qt::Key_Shift || key == Qt::Key_Alt || key == Qt::Key_Meta ||
         key == Qt::Key_AltGr;
}

}  // namespace

GridPicks::GridPicks(TStringGrid& grid) : grid_(grid) {
  grid.installEventFilter(this);
  grid.IsRowChosen = [this](int row) { return IsEmpty() ? grid_.Selection().Contains(row) : IsPicked(row); };
}

GridPicks::~GridPicks() {
  grid_.IsRowChosen = {};
}

bool GridPicks::IsPicked(int row) const {
  return rows_.Contains(grid_.IdOf(row));
}

bool GridPicks::IsOneShown() const {
  for (int row = 0; row < grid_.RowCount(); ++row) {
    if (IsPicked(row) && grid_.RowHeight(row) > 0) return true;
  }
  return false;
}

bool GridPicks::StandsOut(const GridCellPaint& cell) const {
  return IsEmpty() ? cell.isSelected : IsPicked(cell.row);
}

void GridPicks::Clear() {
  Set({});
}

void GridPicks::Set(const RowPicks& rows) {
  rows_ = rows;
  isProvisional_ = false;
  grid_.viewport()->update();
}

void GridPicks::MouseDown(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, const QPoint& position) {
  if (button != Qt::LeftButton) return;
  if (!modifiers.testFlag(Qt::ControlModifier)) return Clear();
  const GridCell cell = grid_.MouseToCell(position);
  RowPicks rows = rows_;
  if (!cell.IsNone() && !grid_.IsEmpty()) rows.Toggle(grid_.IdOf(cell.row));
  Set(rows);
}

bool GridPicks::eventFilter(QObject* watched, QEvent* event) {
  const auto type = event->type();
  if (type == QEvent::ShortcutOverride || type == QEvent::KeyPress || type == QEvent::KeyRelease) {
    const auto* key = static_cast<QKeyEvent*>(event);
    // An override comes before every key, and is all that the grid sees of one that somebody's shortcut takes.
    if (type == QEvent::ShortcutOverride) BeforeKey(key->key(), key->modifiers());
    if (type == QEvent::KeyPress) KeyDown(key->key(), key->modifiers());
    if (type == QEvent::KeyRelease && key->key() == Qt::Key_Control) isProvisional_ = false;
  }
  return QObject::eventFilter(watched, event);
}

void GridPicks::BeforeKey(int key, Qt::KeyboardModifiers modifiers) {
  const bool isCommand = modifiers.testFlag(Qt::ControlModifier) && !IsModifier(key) && !MovesTheRow(key);
  if (isCommand && isProvisional_) Clear();
}

void GridPicks::KeyDown(int key, Qt::KeyboardModifiers modifiers) {
  const bool moves = MovesTheRow(key);
  const bool isControl = key == Qt::Key_Control;
  if (moves && !modifiers.testFlag(Qt::ControlModifier)) return Clear();
  if (!isControl && !moves) return;
  const bool hasRow = !grid_.IsEmpty() && grid_.GetVisualTopRow() >= 0;
  if (IsEmpty() && hasRow) {
    RowPicks rows;
    rows.Toggle(grid_.IdOf(grid_.Row()));
    Set(rows);
    isProvisional_ = isControl;
  }
}

}  // namespace holdwise
