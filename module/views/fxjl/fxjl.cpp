#include "views/fxjl/fxjl.h"

#include <QScopeGuard>
#include <QVBoxLayout>

#include "common/all_stock_data.h"
#include "common/event_guard.h"
#include "common/grid/cell_geometry.h"
#include "common/host_access.h"
#include "common/statements.h"
#include "common/theme_colors.h"
#include "common/untcommon.h"
#include "views/fxjl/risk_layout.h"
#include "views/fxjl/risk_rows.h"

namespace holdwise {
namespace {

constexpr int kListPanelHeight = 201;

QString Unit() {
  return QStringLiteral("Fxjl");
}

}  // namespace

TFrm_FXJL::TFrm_FXJL(QWidget* parent)
    : TViewFrame(parent),
      RzPanel1(new QWidget(this)),
      strngrd(new TStringGrid(Unit(), QStringLiteral("strngrd"), RzPanel1)),
      RzPanel2(new QWidget(this)),
      RzPanel3(new TitleStrip(QStringLiteral("组合名称"), DesignFont(15, true), {14, 9}, RzPanel2)),
      StringGrid1(new TStringGrid(Unit(), QStringLiteral("StringGrid1"), RzPanel2)),
      links_(*StringGrid1) {
  InitAppear();
  ConnectGrids();
  MakeSkin();
}

QString TFrm_FXJL::UnitName() const {
  return Unit();
}

void TFrm_FXJL::InitAppear() {
  strngrd->SetColCount(risk::kPortfolioColumns);
  strngrd->SetTitles(risk::PortfolioTitles());
  strngrd->SetHiddenColumns({risk::kId});
  strngrd->SetEmptyText(QStringLiteral("暂无已保存的组合"));
  strngrd->SetWholeRows(true);
  StringGrid1->SetColCount(risk::kSecurityColumns);
  StringGrid1->SetTitles(risk::SecurityTitles());

  RzPanel4 = new HeaderStrip(*strngrd, RzPanel1);
  RzPanel5 = new HeaderStrip(*StringGrid1, RzPanel2);
  RzPanel1->setFixedHeight(kListPanelHeight);
  auto* list = StackedIn(*RzPanel1);
  list->addWidget(RzPanel4);
  list->addWidget(strngrd, 1);
  auto* securities = StackedIn(*RzPanel2);
  securities->addWidget(RzPanel3);
  securities->addWidget(RzPanel5);
  securities->addWidget(StringGrid1, 1);
  auto* frame = StackedIn(*this);
  frame->addWidget(RzPanel1);
  frame->addWidget(RzPanel2, 1);
}

void TFrm_FXJL::ConnectGrids() {
  strngrd->OnSelectCell = [this](int, int row) {
    strngrdSelectCell(row);
    return true;
  };
  strngrd->OnClientWidthChanged = [this](int) { FrameResize(); };
  StringGrid1->OnMouseDown = [this](Qt::MouseButton, Qt::KeyboardModifiers, const QPoint& position) {
    links_.MouseDown(position);
  };
  StringGrid1->OnMouseMove = [this](const QPoint& position) { StringGrid1MouseMove(position); };
  StringGrid1->OnClientWidthChanged = [this](int) { FrameResize(); };
  connect(g_AllStockData.get(), &TAllStockData::TableArrived, this,
          [this] { GuardEvent(Unit(), QStringLiteral("ReflashData"), [this] { Reload(strngrd->Row()); }); });
}

void TFrm_FXJL::MakeSkin() {
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

void TFrm_FXJL::FrameResize() {
  strngrd->SetColWidths(risk::PortfolioWidths(strngrd->ClientWidth()));
  StringGrid1->SetColWidths(risk::SecurityWidths(StringGrid1->ClientWidth()));
  RzPanel4->FollowColumns();
  RzPanel5->FollowColumns();
}

void TFrm_FXJL::DoInit_() {
  g_AllStockData->RequestCurrentTable();
  ReflashData();
}

void TFrm_FXJL::msg_changeskin() {
  MakeSkin();
}

void TFrm_FXJL::ReflashData() {
  const ResultSet portfolios = Database().Query(sql::kSavedPortfolios);
  ClearStrnGrd(*strngrd);
  ClearStrnGrd(*StringGrid1);
  risk::ShowPortfolios(portfolios, *strngrd);
  Reload(0);
}

void TFrm_FXJL::Reload(int row) {
  isForcedReload_ = true;
  const auto reset = qScopeGuard([this] { isForcedReload_ = false; });
  strngrdSelectCell(row);
}

void TFrm_FXJL::strngrdSelectCell(int row) {
  if (strngrd->IsEmpty()) {
    RzPanel3->SetCaption({});
    return;
  }
  if (row == strngrd->Row() && !isForcedReload_) return;
  RzPanel3->SetCaption(strngrd->Cells(risk::kName, row));
  risk::ShowSecurities(Database().Query(sql::CodesOf(strngrd->Cells(risk::kId, row))), *StringGrid1);
}

void TFrm_FXJL::StringGrid1MouseMove(const QPoint& position) {
  links_.MouseMove(position);
  // Alpha and beta have as many digits as their table gives them.
  const GridCell cell = StringGrid1->MouseToCell(position);
  const bool isClipped = IsClipped(StringGrid1->TextWidth(cell), StringGrid1->ColWidth(cell.column));
  StringGrid1->ShowHint(isClipped ? StringGrid1->Cells(cell.column, cell.row) : QString());
}

ViewCatalogue::Holdings TFrm_FXJL::HoldingsGrid() const {
  return {StringGrid1->objectName(), PortfolioIds(*strngrd, risk::kId)};
}

bool TFrm_FXJL::SelectPortfolio(const QString& portfolioId) {
  return SelectPortfolioRow(*strngrd, risk::kId, portfolioId);
}

}  // namespace holdwise
