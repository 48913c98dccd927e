#include "views/zhbx/zhbx.h"

#include <QPointer>
#include <QScopeGuard>
#include <QVBoxLayout>

#include "common/grid/cell_geometry.h"
#include "common/host_access.h"
#include "common/statements.h"
#include "common/theme_colors.h"
#include "common/untcommon.h"
#include "views/zhbx/performance_layout.h"
#include "views/zhbx/performance_rows.h"

// Outside every namespace, as the resource compiler names its functions.
static void InitPictures() {
  Q_INIT_RESOURCE(zhbx);
}

namespace holdwise {
namespace {

constexpr int kListPanelHeight = 201;
constexpr int kRowsShown = 5;
constexpr int kFrameOfRows = 4;

QString Unit() {
  return QStringLiteral("Zhbx");
}

QString HoldingsCaption() {
  return QStringLiteral("成分股表现");
}

}  // namespace

TFrm_ZHBX::TFrm_ZHBX(QWidget* parent)
    : TViewFrame(parent),
      RzPanel1(new QWidget(this)),
      strngrd(new TStringGrid(Unit(), QStringLiteral("strngrd"), RzPanel1)),
      RzPanel2(new QWidget(this)),
      RzPanel3(new TitleStrip(HoldingsCaption(), DesignFont(15, true), {14, 9}, RzPanel2)),
      StringGrid1(new TStringGrid(Unit(), QStringLiteral("StringGrid1"), RzPanel2)),
      links_(*StringGrid1) {
  InitPictures();
  img_DeleteOff_.load(QStringLiteral(":/holdwise/zhbx/delete_off.png"));
  img_deleteOn_.load(QStringLiteral(":/holdwise/zhbx/delete_on.png"));
  InitAppear();
  ConnectGrids();
  MakeSkin();
}

QString TFrm_ZHBX::UnitName() const {
  return Unit();
}

void TFrm_ZHBX::InitAppear() {
  strngrd->SetColCount(performance::kPortfolioColumns);
  strngrd->SetTitles(performance::PortfolioTitles());
  strngrd->SetHiddenColumns({performance::kId});
  strngrd->SetEmptyText(QStringLiteral("暂无已保存的组合"));
  strngrd->setFixedHeight(TStringGrid::kDefaultRowHeight * kRowsShown + kFrameOfRows);
  strngrd->SetWholeRows(true);
  StringGrid1->SetColCount(performance::kHoldingColumns);
  StringGrid1->SetTitles(performance::HoldingTitles());
  StringGrid1->SetHiddenColumns({performance::kBuyPrice, performance::kWeekClose, performance::kMonthClose});
  StringGrid1->SetColumnAlignment(performance::kIndustry, Qt::AlignLeft);

  RzPanel4 = new HeaderStrip(*strngrd, RzPanel1);
  RzPanel5 = new HeaderStrip(*StringGrid1, RzPanel2);
  RzPanel1->setFixedHeight(kListPanelHeight);
  auto* list = StackedIn(*RzPanel1);
  list->addWidget(RzPanel4);
  list->addWidget(strngrd);
  list->addStretch();
  auto* holdings = StackedIn(*RzPanel2);
  holdings->addWidget(RzPanel3);
  holdings->addWidget(RzPanel5);
  holdings->addWidget(StringGrid1, 1);
  auto* frame = StackedIn(*this);
  frame->addWidget(RzPanel1);
  frame->addWidget(RzPanel2, 1);
}

void TFrm_ZHBX::ConnectGrids() {
  strngrd->OnSelectCell = [this](int, int row) {
    strngrdSelectCell(row);
    return true;
  };
  strngrd->OnMouseDown = [this](Qt::MouseButton button, Qt::KeyboardModifiers, const QPoint& position) {
    strngrdMouseDown(button, position);
  };
  strngrd->OnMouseMove = [this](const QPoint& position) { strngrdMouseMove(position); };
  strngrd->OnMouseUp = [this](const QPoint& position) { strngrdMouseUp(position); };
  strngrd->OnDrawCell = [this](QPainter& painter, const GridCellPaint& cell) { strngrdDrawCell(painter, cell); };
  strngrd->OnClientWidthChanged = [this](int) { FrameResize(); };
  StringGrid1->OnSelectCell = [](int column, int) { return column < performance::kBuyPrice; };
  StringGrid1->OnMouseDown = [this](Qt::MouseButton, Qt::KeyboardModifiers, const QPoint& position) {
    links_.MouseDown(position);
  };
  StringGrid1->OnMouseMove = [this](const QPoint& position) { StringGrid1MouseMove(position); };
  StringGrid1->OnClientWidthChanged = [this](int) { FrameResize(); };
}

void TFrm_ZHBX::MakeSkin() {
  const IColorSet2& colors = ModuleHost().ColorTheme().Colors();
  const GridColors gridColors = ReadGridColors(colors);
  strngrd->SetColors(gridColors);
  StringGrid1->SetColors(gridColors);
  const QColor background = colors.ColorOf(theme::kBackground);
  for (QWidget* panel : {static_cast<QWidget*>(this), RzPanel1, RzPanel2}) SetPanelColor(*panel, background);
  const QColor titles = colors.ColorOf(theme::kTitleFont);
  RzPanel4->ApplyTheme(titles, theme::kTitleBackgroundPicture);
  RzPanel5->ApplyTheme(titles, theme::kTitleBackgroundPicture);
  RzPanel3->ApplyPicture(theme::kTitleBackgroundPicture);
  SetTextColor(RzPanel3->Caption(), colors.ColorOf(theme::kSectionBigText));
}

void TFrm_ZHBX::FrameResize() {
  strngrd->SetColWidths(performance::PortfolioWidths(strngrd->ClientWidth()));
  StringGrid1->SetColWidths(performance::HoldingWidths(StringGrid1->ClientWidth()));
  RzPanel4->FollowColumns();
  RzPanel5->FollowColumns();
}

void TFrm_ZHBX::DoInit_() {
  ReflashData();
  SendFrameMessage(*this, FrameMessage::ReflashNowPrice);
}

void TFrm_ZHBX::msg_changeskin() {
  MakeSkin();
}

void TFrm_ZHBX::ReflashNowPrice() {
  if (StringGrid1->IsEmpty() || strngrd->IsEmpty()) return;
  performance::RefreshHoldings(*StringGrid1);
  performance::RefreshPortfolios(*strngrd);
}

void TFrm_ZHBX::ReflashData() {
  const ResultSet portfolios = Database().Query(sql::kSavedPortfolios);
  ClearStrnGrd(*strngrd);
  ClearStrnGrd(*StringGrid1);
  performance::ShowPortfolios(portfolios, *strngrd);
  isForcedReload_ = true;
  const auto reset = qScopeGuard([this] { isForcedReload_ = false; });
  strngrdSelectCell(0);
}

void TFrm_ZHBX::strngrdSelectCell(int row) {
  if (strngrd->IsEmpty()) {
    RzPanel3->SetCaption({});
    return;
  }
  if (row == strngrd->Row() && !isForcedReload_) return;
  const QString& name = strngrd->Cells(performance::kName, row);
  RzPanel3->SetCaption(name + QStringLiteral("-") + HoldingsCaption());
  const auto id = Database().Count(sql::PortfolioByName(name));
  if (id <= -1) return;
  performance::ShowHoldings(Database().Query(sql::HoldingsOf(QString::number(id))), *StringGrid1);
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
  strngrd->SetHandCursor(false);
  isOverDelete_ = false;
  const GridCell cell = strngrd->MouseToCell(position);
  QString hint;
  if (!cell.IsNone() && !strngrd->IsEmpty()) {
    if (cell.column == performance::kName) {
      // The value column is the measure, not the name's own: intended.
      const int measure = strngrd->ColWidth(performance::kValue);
      const QSize text(strngrd->TextWidth(cell), strngrd->fontMetrics().height());
      const QRect box = LeftTextBox(strngrd->CellRect(cell.column, cell.row), text);
      if (IsClipped(text.width(), measure) && box.contains(position)) hint = strngrd->Cells(cell.column, cell.row);
    } else if (cell.column == performance::kOperation) {
      isOverDelete_ = IsOverDeletePicture(cell, position);
      strngrd->SetHandCursor(isOverDelete_);
    }
  }
  strngrd->ShowHint(hint);
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

void TFrm_ZHBX::StringGrid1MouseMove(const QPoint& position) {
  links_.MouseMove(position);
  const GridCell cell = StringGrid1->MouseToCell(position);
  QString hint;
  if (cell.column == performance::kIndustry && !StringGrid1->IsEmpty() &&
      StringGrid1->TextBox(cell).contains(position) &&
      IsClipped(StringGrid1->TextWidth(cell), StringGrid1->ColWidth(cell.column))) {
    hint = StringGrid1->Cells(cell.column, cell.row);
  }
  StringGrid1->ShowHint(hint);
}

void TFrm_ZHBX::strngrdDrawCell(QPainter& painter, const GridCellPaint& cell) {
  strngrd->DrawDefaultCell(painter, cell);
  if (cell.column != performance::kOperation) return;
  PaintCellPicture(painter, cell, cell.row == pressedRow_ ? img_DeleteOff_ : img_deleteOn_);
}

ViewCatalogue::Holdings TFrm_ZHBX::HoldingsGrid() const {
  return {StringGrid1->objectName(), PortfolioIds(*strngrd, performance::kId)};
}

bool TFrm_ZHBX::SelectPortfolio(const QString& portfolioId) {
  return SelectPortfolioRow(*strngrd, performance::kId, portfolioId);
}

}  // namespace holdwise
