// SPDX-License-Identifier: MIT
#include "common/frames/cell_buttons.h"

#include <QPointer>
#include <QScopeGuard>

#include "common/grid/cell_geometry.h"

namespace holdwise {
namespace {

constexpr int kGap = 2;

}  // namespace

QRect CellButtons::PartOf(const QRect& cell, int button) const {
  if (places_ == Places::FromLeft) {
    QPoint corner = cell.topLeft() + QPoint(kGap, kGap);
    for (int left = 0; left < button; ++left) {
      corner.rx() += buttons_[static_cast<std::size_t>(left)].normal.width() + kGap;
    }
    return {corner, buttons_[static_cast<std::size_t>(button)].normal.size()};
  }
  const int count = static_cast<int>(buttons_.size());
  const int left = cell.width() * button / count;
  const int right = cell.width() * (button + 1) / count;
  return {cell.left() + left, cell.top(), right - left, cell.height()};
}

QRect CellButtons::AreaOf(const QRect& cell, int button) const {
  const QRect part = PartOf(cell, button);
  if (places_ == Places::FromLeft) return part.adjusted(0, 0, 1, 1);
  return PictureBox(part, buttons_[static_cast<std::size_t>(button)].normal.size());
}

CellButtons::Place CellButtons::PlaceAt(const QPoint& position) const {
  const GridCell cell = grid_.MouseToCell(position);
  if (cell.column != column_ || grid_.IsEmpty()) return {};
  const QRect rect = grid_.CellRect(cell.column, cell.row);
  for (int button = 0; button < static_cast<int>(buttons_.size()); ++button) {
    if (AreaOf(rect, button).contains(position)) return {button, cell.row};
  }
  return {};
}

void CellButtons::SetPictures(int button, const QPixmap& normal, const QPixmap& pressed) {
  Button& one = buttons_[static_cast<std::size_t>(button)];
  one.normal = normal;
  one.pressed = pressed;
}

void CellButtons::Draw(QPainter& painter, const GridCellPaint& cell) const {
  if (cell.column != column_) return;
  for (int button = 0; button < static_cast<int>(buttons_.size()); ++button) {
    const Button& one = buttons_[static_cast<std::size_t>(button)];
    const bool isPressed = cell.row == pressed_.row && button == pressed_.button;
    GridCellPaint part = cell;
    part.rect = PartOf(cell.rect, button);
    PaintCellPicture(painter, part, isPressed ? one.pressed : one.normal);
  }
}

QString CellButtons::MouseMove(const QPoint& position) {
  hovered_ = PlaceAt(position);
  grid_.SetHandCursor(hovered_.button >= 0);
  return hovered_.button >= 0 ? buttons_[static_cast<std::size_t>(hovered_.button)].hint : QString();
}

void CellButtons::MouseDown(Qt::MouseButton button) {
  if (button != Qt::LeftButton || hovered_.button < 0 || isBusy_) return;
  const QPointer<TStringGrid> alive(&grid_);
  const GridCell cell{column_, hovered_.row};
  const auto onPress = buttons_[static_cast<std::size_t>(hovered_.button)].onPress;
  const bool staysPressed = buttons_[static_cast<std::size_t>(hovered_.button)].staysPressed;
  isBusy_ = true;
  pressed_ = hovered_;
  grid_.RedrawCell(cell);
  const auto done = qScopeGuard([this, alive, cell, staysPressed] {
    if (alive.isNull()) return;
    isBusy_ = false;
    if (!staysPressed) pressed_ = {};
    grid_.RedrawCell(cell);
  });
  if (onPress) onPress(cell.row);
}

void CellButtons::MouseUp(const QPoint& position) {
  const GridCell cell = grid_.MouseToCell(position);
  if (isBusy_ || cell.column == -1 || cell.row == -1) return;
  Release();
}

void CellButtons::Release() {
  const GridCell cell{column_, pressed_.row};
  pressed_ = {};
  grid_.RedrawCell(cell);
}

}  // namespace holdwise
