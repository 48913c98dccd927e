// SPDX-License-Identifier: MIT
// The grid's cells: what they say beside their texts, and how they are drawn.
#include <QPainter>
#include <algorithm>
#include <utility>

#include "cell_flash.h"
#include "common/grid/cell_geometry.h"
#include "common/grid/focus_mark.h"
#include "common/grid/string_grid.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

void SetIn(std::set<int>& columns, int column, bool isOn) {
  isOn ? static_cast<void>(columns.insert(column)) : static_cast<void>(columns.erase(column));
}

}  // namespace

void TStringGrid::SetColumnAlignment(int column, Qt::Alignment alignment) {
  std::erase(leftColumns_, column);
  if (alignment.testFlag(Qt::AlignLeft)) leftColumns_.push_back(column);
}

Qt::Alignment TStringGrid::ColumnAlignment(int column) const {
  const bool left = std::find(leftColumns_.begin(), leftColumns_.end(), column) != leftColumns_.end();
  return left ? Qt::AlignLeft : Qt::AlignHCenter;
}

void TStringGrid::SetColumnDecimals(int column, int decimals) {
  decimals_.erase(column);
  if (decimals != kWholeText) decimals_.emplace(column, decimals);
}

void TStringGrid::SetColumnPercent(int column, bool isOn) {
  SetIn(percents_, column, isOn);
}

void TStringGrid::SetColumnSigned(int column, bool isOn) {
  SetIn(signed_, column, isOn);
}

void TStringGrid::SetColumnPrice(int column, bool isOn) {
  SetIn(prices_, column, isOn);
}

void TStringGrid::NotePrice(int column, int row, const QString& text) {
  const QString& before = Cells(column, row);
  if (before == text) return;
  flash_->PutOut(column, row);
  if (!isVisible() || !colors_.TellsRiseFromFall()) return;
  const double from = RealOr(before);
  const double to = RealOr(text);
  // A first figure, or another row's, is no change.
  if (from != 0 && to != 0 && from != to) flash_->Light(column, row, to > from ? 1 : -1);
}

QString TStringGrid::TextInItsUnit(const GridCell& cell) const {
  constexpr int kDecimals = 2;
  const QString& text = Cells(cell.column, cell.row);
  return percents_.count(cell.column) == 0 ? text : FormatFixed(RealOr(text) * 100, kDecimals);
}

TStringGrid::DrawnCell TStringGrid::Drawn(const GridCell& cell, const GridColors& colors) const {
  DrawnCell drawn{UnsignedText(cell)};
  if (signed_.count(cell.column) == 0 || !colors.TellsRiseFromFall()) return drawn;
  // A figure that lacks something must not look like a gain or a loss.
  if (!RemarkOf(cell).isEmpty()) return drawn;
  const double number = RealOr(drawn.text);
  drawn.sign = number > 0 ? 1 : number < 0 ? -1 : 0;
  if (number > 0 && !drawn.text.startsWith(QLatin1Char('+'))) drawn.text.prepend(QLatin1Char('+'));
  return drawn;
}

QString TStringGrid::UnsignedText(const GridCell& cell) const {
  if (noFigures_.count({cell.column, cell.row}) != 0) return QStringLiteral("—");
  QString text = TextInItsUnit(cell).trimmed();
  const auto decimals = decimals_.find(cell.column);
  if (decimals == decimals_.end()) return text;
  const auto number = ParseReal(text);
  return number ? FormatFixed(*number, decimals->second) : text;
}

void TStringGrid::SetRemark(const GridCell& cell, const QString& remark) {
  if (remark == RemarkOf(cell)) return;
  const std::pair key(cell.column, cell.row);
  remark.isEmpty() ? static_cast<void>(remarks_.erase(key)) : static_cast<void>(remarks_[key] = remark);
  RedrawCell(cell);
}

QString TStringGrid::RemarkOf(const GridCell& cell) const {
  const auto found = remarks_.find({cell.column, cell.row});
  return found == remarks_.end() ? QString() : found->second;
}

void TStringGrid::SetNoFigure(const GridCell& cell, const QString& remark) {
  noFigures_.emplace(cell.column, cell.row);
  SetRemark(cell, remark);
}

void TStringGrid::ClearRemarks() {
  remarks_.clear();
  noFigures_.clear();
  viewport()->update();
}

void TStringGrid::SetColors(const GridColors& colors) {
  colors_ = colors;
  QPalette area = palette();
  area.setColor(QPalette::Base, colors.background);
  area.setColor(QPalette::Window, colors.background);
  // A label on the cell area takes its colour from the text of that area.
  for (const auto role : {QPalette::WindowText, QPalette::Text}) area.setColor(role, colors.unselectedText);
  setPalette(area);
  FocusMark& mark = FocusMark::On(*this);
  mark.SetColor(colors.focusFrame);
  mark.SetForKeysOnly(!(focusPolicy() & Qt::TabFocus));
  viewport()->update();
}

void TStringGrid::DrawCellIn(QPainter& painter, const GridCellPaint& cell, const GridColors& colors) const {
  PaintCellBackground(painter, cell, colors);
  const int flash = colors.TellsRiseFromFall() ? flash_->SignOf(cell.column, cell.row) : 0;
  if (flash != 0)
    painter.fillRect(cell.rect, FlashColor(RowColor(cell, colors), flash > 0 ? colors.rise : colors.fall));
  const auto [text, sign] = Drawn({cell.column, cell.row}, colors);
  const QColor& ink = sign > 0 ? colors.rise : sign < 0 ? colors.fall : TextColor(cell, colors);
  PaintCellText(painter, cell, ink, text, ColumnAlignment(cell.column));
}

QRect TStringGrid::ShownPart(QRect cell) const {
  cell.setRight(std::min(cell.right(), ClientWidth() - 1));
  return cell;
}

QRect TStringGrid::TextBox(const GridCell& cell) const {
  const QRect rect = ShownPart(CellRect(cell.column, cell.row));
  const QSize size(TextWidth(cell), fontMetrics().height());
  return ColumnAlignment(cell.column) == Qt::AlignLeft ? LeftTextBox(rect, size) : CentredTextBox(rect, size);
}

int TStringGrid::TextWidth(const GridCell& cell) const {
  return fontMetrics().horizontalAdvance(Drawn(cell, colors_).text);
}

QString TStringGrid::ClippedText(const GridCell& cell) const {
  const int width = ShownPart(CellRect(cell.column, cell.row)).width();
  const QString text = TextInItsUnit(cell);
  const bool losesDigits = RealOr(text) != RealOr(UnsignedText(cell));
  return losesDigits || IsClipped(TextWidth(cell), width) ? text : QString();
}

}  // namespace holdwise
