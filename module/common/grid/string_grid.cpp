// SPDX-License-Identifier: MIT
#include "common/grid/string_grid.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QScopeGuard>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTextDocument>
#include <QToolTip>
#include <algorithm>
#include <utility>

#include "cell_flash.h"
#include "common/grid/focus_mark.h"
#include "common/host/event_guard.h"
#include "common/host/font.h"
#include "grid_model.h"

namespace holdwise {
namespace {

/// Hands the drawing of a cell to its grid.
class GridDelegate : public QStyledItemDelegate {
 public:
  explicit GridDelegate(TStringGrid& grid) : QStyledItemDelegate(&grid), grid_(grid) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    if (grid_.IsEmpty()) return;
    const QRect rect = grid_.ShownPart(option.rect);
    const int row = grid_.Model().RowAt(index.row());
    const GridCellPaint cell{index.column(), row, rect, grid_.Selection().Contains(row)};
    painter->save();
    painter->setClipRect(option.rect, Qt::IntersectClip);
    painter->setFont(grid_.font());
    grid_.OnDrawCell ? grid_.OnDrawCell(*painter, cell) : grid_.DrawDefaultCell(*painter, cell);
    const bool hasKeys = grid_.hasFocus() && row == grid_.Row() && index.column() == 0;
    const QColor& sign = grid_.Colors().focusFrame;
    if (hasKeys && sign.isValid()) PaintKeyBar(*painter, rect, sign);
    if (!grid_.RemarkOf({cell.column, cell.row}).isEmpty()) PaintCellMark(*painter, cell, grid_.Colors());
    painter->restore();
  }

 private:
  TStringGrid& grid_;
};

}  // namespace

TStringGrid::TStringGrid(QString unit, const QString& name, QWidget* parent)
    : QTableView(parent), unit_(std::move(unit)), model_(new GridModel(this)), flash_(std::make_unique<CellFlash>()) {
  setObjectName(name);
  setFont(DesignFont());
  setModel(model_);
  setItemDelegate(new GridDelegate(*this));
  horizontalHeader()->hide();
  horizontalHeader()->setMinimumSectionSize(0);
  verticalHeader()->hide();
  verticalHeader()->setMinimumSectionSize(kDefaultRowHeight);
  verticalHeader()->setDefaultSectionSize(kDefaultRowHeight);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  setShowGrid(false);
  setFrameShape(QFrame::NoFrame);
  setSelectionBehavior(SelectRows);
  // The rows' colours are the grid's own; a selection of the view's would be painted into an empty grid.
  setSelectionMode(NoSelection);
  setEditTriggers(NoEditTriggers);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::ClickFocus);
  setTabKeyNavigation(false);
  setAutoScroll(false);
  setMouseTracking(true);
  viewport()->setMouseTracking(true);

  emptyText_ = new QLabel(viewport());
  emptyText_->setAlignment(Qt::AlignCenter);
  emptyText_->setWordWrap(true);
  emptyText_->setAttribute(Qt::WA_TransparentForMouseEvents);
  emptyText_->hide();
  connect(model_, &QAbstractItemModel::dataChanged, this, &TStringGrid::UpdateEmptyText);
  // Another row stands in a place then.
  connect(model_, &QAbstractItemModel::rowsRemoved, this, [this] { flash_->PutOutAll(); });
  flash_->OnOver = [this](int column, int row) { RedrawCell({column, row}); };
  selectionModel()->setCurrentIndex(model_->index(0, 0), QItemSelectionModel::NoUpdate);
}

TStringGrid::~TStringGrid() = default;

int TStringGrid::ColCount() const {
  return model_->columnCount();
}
int TStringGrid::RowCount() const {
  return model_->RowCount();
}
void TStringGrid::SetColCount(int columns) {
  model_->SetColumnCount(columns);
}
void TStringGrid::SetRowCount(int rows) {
  model_->SetRowCount(rows);
}
const QString& TStringGrid::Cells(int column, int row) const {
  return model_->Text(column, row);
}
void TStringGrid::SetCells(int column, int row, const QString& text) {
  if (prices_.count(column) != 0) NotePrice(column, row, text);
  model_->SetText(column, row, text);
}

GridCell TStringGrid::MouseToCell(const QPoint& position) const {
  const QModelIndex index = indexAt(position);
  return index.isValid() ? GridCell{index.column(), model_->RowAt(index.row())} : GridCell{};
}

QRect TStringGrid::CellRect(int column, int row) const {
  const QModelIndex index = model_->index(model_->PlaceOf(row), column);
  return index.isValid() ? visualRect(index) : QRect();
}

void TStringGrid::RedrawCell(const GridCell& cell) {
  viewport()->update(CellRect(cell.column, cell.row));
}

void TStringGrid::SetColWidths(const std::vector<int>& widths) {
  const int count = std::min(static_cast<int>(widths.size()), ColCount());
  for (int column = 0; column < count; ++column) {
    setColumnWidth(column, std::max(widths[static_cast<size_t>(column)], 0));
  }
}

void TStringGrid::SetHiddenColumns(const std::vector<int>& columns) {
  for (int column = 0; column < ColCount(); ++column) {
    setColumnHidden(column, std::find(columns.begin(), columns.end(), column) != columns.end());
  }
}

void TStringGrid::SetWholeRows(bool whole) {
  isWholeRows_ = whole;
  updateGeometries();
}

void TStringGrid::updateGeometries() {
  // Setting margins resizes the viewport, which comes back here.
  if (std::exchange(isInGeometry_, true)) return;
  const auto leave = qScopeGuard([this] { isInGeometry_ = false; });
  QTableView::updateGeometries();
  // After the base class, which sets the margins for headers that are not there. As many whole rows fit as before, so
  // the scroll bar stays right.
  if (!isWholeRows_) return;
  setViewportMargins(0, 0, 0, contentsRect().height() % rowHeight_);
  // At the end of the scroll bar the rows lie where the hidden header, as high as it is, has its last one.
  verticalHeader()->resize(verticalHeader()->width(), viewport()->height());
  QMetaObject::invokeMethod(verticalHeader(), "updateGeometries");  // a hidden one does not by itself
  const QScrollBar& bar = *verticalScrollBar();
  if (bar.maximum() == 0 || bar.value() != bar.maximum()) return;
  verticalHeader()->setOffsetToLastSection();  // of the height that it has now
  viewport()->update();
}

void TStringGrid::SetEmptyText(const QString& text) {
  emptyText_->setText(text);
  UpdateEmptyText();
}

void TStringGrid::UpdateEmptyText() {
  emptyText_->setVisible((IsEmpty() || model_->rowCount() == 0) && !emptyText_->text().isEmpty());
  // Leaving and entering the empty state changes how every cell is drawn, not only the changed ones.
  const bool wasEmpty = std::exchange(wasEmpty_, IsEmpty());
  if (wasEmpty != wasEmpty_) viewport()->update();
}

void TStringGrid::SetHandCursor(bool hand) {
  hand ? viewport()->setCursor(Qt::PointingHandCursor) : viewport()->unsetCursor();
}

void TStringGrid::ShowHint(const QString& text) {
  if (!text.isEmpty()) {
    // A tool tip takes what looks like mark-up for it.
    QToolTip::showText(QCursor::pos(), Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text, viewport());
  } else if (QToolTip::isVisible()) {
    QToolTip::hideText();
  }
}

void TStringGrid::ShowHintAt(const QPoint& position, const Hint& other) {
  const GridCell cell = MouseToCell(position);
  if (cell.IsNone()) return ShowHint({});
  const QString remark = RemarkOf(cell);
  if (!remark.isEmpty()) return ShowHint(remark);
  ShowHint(other ? other(cell, position) : ClippedText(cell));
}

void TStringGrid::Guarded(const std::function<void()>& body) const {
  GuardEvent(unit_, objectName(), body);
}

bool TStringGrid::viewportEvent(QEvent* event) {
  // A mouse that rests asks for the cell's own tool tip, which would take the hint away: there is none.
  if (event->type() == QEvent::ToolTip) return true;
  return QTableView::viewportEvent(event);
}

void TStringGrid::mousePressEvent(QMouseEvent* event) {
  event->accept();
  Guarded([this, button = event->button(), modifiers = event->modifiers(), position = event->pos()] {
    const GridCell cell = MouseToCell(position);
    const bool selects = button == Qt::LeftButton && !cell.IsNone();
    isDragging_ = isRangeSelect_ && selects && !modifiers.testFlag(Qt::ControlModifier);
    if (selects) GoTo(cell.column, cell.row, modifiers.testFlag(Qt::ShiftModifier));
    if (OnMouseDown) OnMouseDown(button, modifiers, position);
  });
}

void TStringGrid::mouseMoveEvent(QMouseEvent* event) {
  event->accept();
  Guarded([this, event] {
    const GridCell cell = MouseToCell(event->pos());
    // A press that has opened an entry over its cell has given the focus away.
    const bool drags = isDragging_ && event->buttons().testFlag(Qt::LeftButton) && hasFocus();
    if (drags && !cell.IsNone() && cell.row != Row()) GoTo(cell.column, cell.row, true);
    OnMouseMove ? OnMouseMove(event->pos()) : ShowHintAt(event->pos());
  });
}

void TStringGrid::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
  Guarded([this, event] {
    if (OnMouseUp) OnMouseUp(event->pos());
  });
}

void TStringGrid::mouseDoubleClickEvent(QMouseEvent* event) {
  const QPointer<TStringGrid> alive(this);
  const QPoint position = event->pos();
  const bool isLeft = event->button() == Qt::LeftButton;
  mousePressEvent(event);
  if (alive.isNull() || !isLeft) return;
  Guarded([this, position] {
    if (OnDoubleClick) OnDoubleClick(position);
  });
}

int TStringGrid::RowForKey(int key) const {
  const int page = std::max(viewport()->height() / rowHeight_, 1);
  const int place = std::max(currentIndex().row(), 0);
  const int last = model_->rowCount() - 1;
  switch (key) {
    case Qt::Key_Up:
      return model_->RowAt(place - 1);
    case Qt::Key_Down:
      return model_->RowAt(place + 1);
    case Qt::Key_PageUp:
      return model_->RowAt(std::max(place - page, 0));
    case Qt::Key_PageDown:
      return model_->RowAt(std::min(place + page, last));
    case Qt::Key_Home:
      return model_->RowAt(0);
    case Qt::Key_End:
      return model_->RowAt(last);
    default:
      return -1;
  }
}

void TStringGrid::keyPressEvent(QKeyEvent* event) {
  const auto isControl = [event](Qt::KeyboardModifiers also) {
    return event->key() == Qt::Key_C && event->modifiers() == (Qt::ControlModifier | also);
  };
  if (event->matches(QKeySequence::Copy) || isControl(Qt::ShiftModifier)) {
    event->accept();
    return isControl(Qt::ShiftModifier) ? CopyTable() : CopyRows();
  }
  const int row = RowForKey(event->key());
  // Keys the grid has no use for go on to the host.
  event->setAccepted(row >= 0);
  Guarded([this, row, key = event->key(), modifiers = event->modifiers()] {
    const bool extends = modifiers.testFlag(Qt::ShiftModifier);
    const bool ends = isRangeSelect_ && !extends;
    if (row >= 0 && (row != Row() || ends)) GoTo(std::max(currentIndex().column(), 0), row, extends);
    if (OnKeyDown) OnKeyDown(key, modifiers);
  });
}

void TStringGrid::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  emptyText_->setGeometry(viewport()->rect());
  if (std::exchange(lastClientWidth_, ClientWidth()) == ClientWidth()) return;
  Guarded([this] {
    if (OnClientWidthChanged) OnClientWidthChanged(ClientWidth());
  });
}

GridBatch::GridBatch(TStringGrid& grid) : model_(grid.Model()) {
  model_.BeginBatch();
}
GridBatch::~GridBatch() {
  model_.EndBatch();
}

void ClearStrnGrd(TStringGrid& grid) {
  grid.Model().ClearTexts();
  grid.ClearRemarks();
  grid.SetRowCount(0);
}

}  // namespace holdwise
