#include "common/frames/portfolio_frame.h"

#include <QScopeGuard>
#include <QVBoxLayout>

#include "common/host/font.h"
#include "common/host/host_access.h"
#include "common/host/theme_colors.h"
#include "common/store/database.h"
#include "common/store/statements.h"

namespace holdwise {
namespace {

constexpr int kListPanelHeight = 201;

QStringList IdsOf(const TStringGrid& portfolios, int keyColumn) {
  QStringList ids;
  if (portfolios.IsEmpty()) return ids;
  for (int row = 0; row < portfolios.RowCount(); ++row) ids << portfolios.Cells(keyColumn, row);
  return ids;
}

}  // namespace

TPortfolioFrame::TPortfolioFrame(const Design& design, QWidget* parent)
    : TViewFrame(parent),
      RzPanel1(new QWidget(this)),
      strngrd(new TStringGrid(design.unit, QStringLiteral("strngrd"), RzPanel1)),
      RzPanel4(new HeaderStrip(*strngrd, design.portfolios, RzPanel1)),
      RzPanel2(new QWidget(this)),
      RzPanel3(new TitleStrip(design.caption, DesignFont(15, true), {14, 9}, RzPanel2)),
      StringGrid1(new TStringGrid(design.unit, QStringLiteral("StringGrid1"), RzPanel2)),
      RzPanel5(new HeaderStrip(*StringGrid1, design.holdings, RzPanel2)),
      unit_(design.unit),
      keyColumn_(design.keyColumn),
      links_(*StringGrid1) {
  InitAppear();
  ConnectGrids();
  MakeSkin();
}

void TPortfolioFrame::InitAppear() {
  strngrd->SetEmptyText(QStringLiteral("暂无已保存的组合"));
  strngrd->SetWholeRows(true);
  RzPanel1->setFixedHeight(kListPanelHeight);
  auto* list = StackedIn(*RzPanel1);
  list->addWidget(RzPanel4);
  list->addWidget(strngrd, 1);
  auto* holdings = StackedIn(*RzPanel2);
  holdings->addWidget(RzPanel3);
  holdings->addWidget(RzPanel5);
  holdings->addWidget(StringGrid1, 1);
  auto* frame = StackedIn(*this);
  frame->addWidget(RzPanel1);
  frame->addWidget(RzPanel2, 1);
}

void TPortfolioFrame::ConnectGrids() {
  strngrd->OnSelectCell = [this](int, int row) {
    strngrdSelectCell(row);
    return true;
  };
  strngrd->OnMouseMove = [this](const QPoint& position) { strngrdMouseMove(position); };
  strngrd->OnClientWidthChanged = [this](int) { FrameResize(); };
  StringGrid1->OnMouseDown = [this](Qt::MouseButton, Qt::KeyboardModifiers, const QPoint& position) {
    links_.MouseDown(position);
  };
  StringGrid1->OnMouseMove = [this](const QPoint& position) { StringGrid1MouseMove(position); };
  StringGrid1->OnClientWidthChanged = [this](int) { FrameResize(); };
}

void TPortfolioFrame::MakeSkin() {
  const QColor background = ModuleHost().ColorTheme().Colors().ColorOf(theme::kBackground);
  for (QWidget* panel : {static_cast<QWidget*>(this), RzPanel1, RzPanel2}) SetPanelColor(*panel, background);
  RzPanel4->ApplyTheme();
  RzPanel5->ApplyTheme();
  RzPanel3->ApplyTheme();
}

void TPortfolioFrame::FrameResize() {
  RzPanel4->FitColumns();
  RzPanel5->FitColumns();
}

void TPortfolioFrame::ReflashData() {
  const ResultSet portfolios = Database().Query(sql::kSavedPortfolios);
  ClearStrnGrd(*strngrd);
  ClearStrnGrd(*StringGrid1);
  ShowPortfolios(portfolios);
  Reload(0);
}

void TPortfolioFrame::Reload(int row) {
  isForcedReload_ = true;
  const auto reset = qScopeGuard([this] { isForcedReload_ = false; });
  strngrdSelectCell(row);
}

void TPortfolioFrame::strngrdSelectCell(int row) {
  if (strngrd->IsEmpty()) {
    RzPanel3->SetCaption({});
    return;
  }
  if (row == strngrd->Row() && !isForcedReload_) return;
  ShowHoldings(row);
}

void TPortfolioFrame::strngrdMouseMove(const QPoint& position) {
  const GridCell cell = strngrd->MouseToCell(position);
  strngrd->ShowHint(cell.IsNone() ? QString() : HintAt(*strngrd, cell, position));
}

void TPortfolioFrame::StringGrid1MouseMove(const QPoint& position) {
  links_.MouseMove(position);
  const GridCell cell = StringGrid1->MouseToCell(position);
  StringGrid1->ShowHint(cell.IsNone() ? QString() : HintAt(*StringGrid1, cell, position));
}

QString TPortfolioFrame::HintAt(const TStringGrid& grid, const GridCell& cell, const QPoint& /*position*/) const {
  return grid.ClippedText(cell);
}

ViewCatalogue::Holdings TPortfolioFrame::HoldingsGrid() const {
  return {StringGrid1->objectName(), IdsOf(*strngrd, keyColumn_)};
}

bool TPortfolioFrame::SelectPortfolio(const QString& portfolioId) {
  const auto row = IdsOf(*strngrd, keyColumn_).indexOf(portfolioId);
  return row >= 0 && strngrd->SelectCell(0, static_cast<int>(row));
}

}  // namespace holdwise
