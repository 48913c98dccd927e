#include "views/zhbx/zhbx.h"

#include <QLayout>
#include <QPointer>
#include <QScopeGuard>

#include "common/grid/cell_geometry.h"
#include "common/grid/delete_picture.h"
#include "common/host/host_access.h"
#include "common/store/database.h"
#include "common/store/statements.h"
#include "performance_layout.h"
#include "performance_rows.h"

namespace holdwise {
namespace {

constexpr int kRowsShown = 5;
constexpr int kFrameOfRows = 4;

QString HoldingsCaption() {
  return QStringLiteral("成分股表现");
}

}  // namespace

TFrm_ZHBX::TFrm_ZHBX(QWidget* parent)
    : TPortfolioFrame({.unit = QStringLiteral("Zhbx"),
                       .portfolios = {performance::kPortfolioColumns,
                                      performance::PortfolioTitles(),
                                      {performance::kId},
                                      &performance::PortfolioWidths},
                       .keyColumn = performance::kId,
                       .holdings = {performance::kHoldingColumns,
                                    performance::HoldingTitles(),
                                    {performance::kBuyPrice, performance::kWeekClose, performance::kMonthClose},
                                    &performance::HoldingWidths},
                       .caption = HoldingsCaption()},
                      parent),
      img_DeleteOff_(DeletePicture(true)),
      img_deleteOn_(DeletePicture(false)) {
  strngrd->setFixedHeight(TStringGrid::kDefaultRowHeight * kRowsShown + kFrameOfRows);
  RzPanel1->layout()->setAlignment(strngrd, Qt::AlignTop);
  StringGrid1->SetColumnAlignment(performance::kIndustry, Qt::AlignLeft);
  ConnectGrids();
}

void TFrm_ZHBX::ConnectGrids() {
  strngrd->OnMouseDown = [this](Qt::MouseButton button, Qt::KeyboardModifiers, const QPoint& position) {
    strngrdMouseDown(button, position);
  };
  strngrd->OnMouseUp = [this](const QPoint& position) { strngrdMouseUp(position); };
  strngrd->OnDrawCell = [this](QPainter& painter, const GridCellPaint& cell) { strngrdDrawCell(painter, cell); };
  StringGrid1->OnSelectCell = [](int column, int) { return column < performance::kBuyPrice; };
}

void TFrm_ZHBX::DoInit_() {
  ReflashData();
  SendFrameMessage(*this, FrameMessage::ReflashNowPrice);
}

void TFrm_ZHBX::ReflashNowPrice() {
  if (StringGrid1->IsEmpty() || strngrd->IsEmpty()) return;
  performance::RefreshHoldings(*StringGrid1, closesDue_);
  performance::RefreshPortfolios(*strngrd);
}

void TFrm_ZHBX::ShowPortfolios(const ResultSet& portfolios) {
  performance::ShowPortfolios(portfolios, *strngrd);
}

void TFrm_ZHBX::ShowHoldings(int row) {
  const QString& name = strngrd->Cells(performance::kName, row);
  RzPanel3->SetCaption(name + QStringLiteral("-") + HoldingsCaption());
  const auto id = Database().Count(sql::PortfolioByName(name));
  if (id <= -1) return;
  closesDue_ = performance::ShowHoldings(Database().Query(sql::HoldingsOf(QString::number(id))), *StringGrid1);
  SendFrameMessage(*this, FrameMessage::ReflashNowPrice);
}

void TFrm_ZHBX::strngrdMouseDown(Qt::MouseButton button, const QPoint& position) {
  if (strngrd->Cells(0, 0).trimmed().isEmpty()) return;
  strngrdMouseMove(position);  // rows may have changed under a resting mouse
  if (button != Qt::LeftButton || !isOverDelete_ || isBusy_) return;
  const GridCell cell = strngrd->MouseToCell(position);
  if (!cell.IsNone()) AskAndDelete(cell);
}

void TFrm_ZHBX::AskAndDelete(const GridCell& cell) {
  const QPointer<TFrm_ZHBX> alive(this);
  isBusy_ = true;
  pressedRow_ = cell.row;
  strngrd->RedrawCell(cell);
  const auto done = qScopeGuard([this, alive, cell] {
    if (alive.isNull()) return;
    isBusy_ = false;
    pressedRow_ = -1;
    strngrd->RedrawCell(cell);
  });
  // The list may be read again while the question waits; the portfolio that was asked about is the one that goes.
  const QString name = strngrd->Cells(performance::kName, cell.row);
  const int answer = ModuleHost().MessageBoxes().Vex_MessageBox(QStringLiteral("是否真的要删除当前组合?"),
                                                                QStringLiteral("询问"), 1, 32);
  if (answer != 1 || alive.isNull()) return;
  Database().Execute(sql::DeleteRecord(name));
  ReflashData();
}

void TFrm_ZHBX::strngrdMouseMove(const QPoint& position) {
  const GridCell cell = strngrd->MouseToCell(position);
  isOverDelete_ = cell.column == performance::kOperation && !strngrd->IsEmpty() && IsOverDeletePicture(cell, position);
  strngrd->SetHandCursor(isOverDelete_);
  TPortfolioFrame::strngrdMouseMove(position);
}

QString TFrm_ZHBX::HintAt(const TStringGrid& grid, const GridCell& cell, const QPoint& position) const {
  const bool isName = &grid == strngrd && cell.column == performance::kName;
  const bool isIndustry = &grid == StringGrid1 && cell.column == performance::kIndustry;
  if (!isName && !isIndustry) return TPortfolioFrame::HintAt(grid, cell, position);
  // For a name the value column is the measure, not the name's own: intended.
  const int measure = grid.ColWidth(isName ? int{performance::kValue} : int{performance::kIndustry});
  const QSize text(grid.TextWidth(cell), grid.fontMetrics().height());
  const QRect box = LeftTextBox(grid.CellRect(cell.column, cell.row), text);
  return IsClipped(text.width(), measure) && box.contains(position) ? grid.Cells(cell.column, cell.row) : QString();
}

void TFrm_ZHBX::strngrdMouseUp(const QPoint& position) {
  const GridCell cell = strngrd->MouseToCell(position);
  if (cell.column == -1 || cell.row == -1) return;
  pressedRow_ = -1;
  strngrd->RedrawCell(cell);
}

bool TFrm_ZHBX::IsOverDeletePicture(const GridCell& cell, const QPoint& position) const {
  return PictureBox(strngrd->CellRect(cell.column, cell.row), img_DeleteOff_.size()).contains(position);
}

void TFrm_ZHBX::strngrdDrawCell(QPainter& painter, const GridCellPaint& cell) {
  strngrd->DrawDefaultCell(painter, cell);
  if (cell.column != performance::kOperation) return;
  PaintCellPicture(painter, cell, cell.row == pressedRow_ ? img_DeleteOff_ : img_deleteOn_);
}

}  // namespace holdwise
