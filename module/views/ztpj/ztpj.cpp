// SPDX-License-Identifier: MIT
#include "views/ztpj/ztpj.h"

#include "common/frames/holdings_panel.h"
#include "common/frames/portfolio_list.h"
#include "common/frames/risk_table_link.h"
#include "common/host/host_access.h"
#include "common/series/deposit_rate.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "common/store/statements.h"
#include "evaluation_layout.h"
#include "evaluation_rows.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

const QString kUnit = QStringLiteral("Ztpj");

/// The colours are asked for at every cell, not kept from one change of the theme to the next: intended.
void DrawInTheColoursOfTheMoment(TStringGrid& grid) {
  grid.OnDrawCell = [&grid](QPainter& painter, const GridCellPaint& cell) {
    grid.DrawCellIn(painter, cell, ReadGridColors(ModuleHost().ColorTheme().Colors()));
  };
}

}  // namespace

TFrM_ZTPJ::TFrM_ZTPJ(QWidget* parent)
    : TViewFrame(kUnit, parent),
      list_(new PortfolioList({.unit = kUnit,
                               .statement = sql::kSavedPortfolios,
                               .columns = evaluation::PortfolioTable(),
                               .keyColumn = evaluation::kId,
                               .emptyText = NoSavedPortfolios},
                              this)),
      holdings_(new HoldingsPanel(
          {.unit = kUnit, .columns = evaluation::HoldingTable(), .caption = QStringLiteral("组合名称")}, this)),
      shown_(std::make_unique<evaluation::ShownPortfolios>()) {
  AddParts(*list_, PortfolioList::kHeight, *holdings_);
  list_->OnEnter = [this](int) { holdings_->Grid().setFocus(); };
  DrawInTheColoursOfTheMoment(list_->Grid());
  DrawInTheColoursOfTheMoment(holdings_->Grid());
  list_->OnClear = [this] {
    *shown_ = {};
    holdings_->Clear();
  };
  list_->OnFill = [this](const ResultSet& portfolios) {
    evaluation::ShowPortfolios(portfolios, rate_.value_or(0), list_->Grid());
  };
  list_->OnShow = [this](int row) { ShowHoldings(row); };
  FollowRiskTable(*this, kUnit, *list_);
  msg_changeskin();
}

TFrM_ZTPJ::~TFrM_ZTPJ() = default;

void TFrM_ZTPJ::DoInit_() {
  g_AllStockData->RequestCurrentTable();
  ReflashData();
}

void TFrM_ZTPJ::ReflashData() {
  rate_ = OneYearDepositRate(Database());
  list_->ReflashData();
}

void TFrM_ZTPJ::ShowHoldings(int row) {
  const TStringGrid& list = list_->Grid();
  withoutReturn_.clear();
  holdings_->SetCaption(list.Cells(evaluation::kName, row));
  ShowReferenceIndex(*holdings_);
  if (row < 0) return;
  const QString id = QString::number(IntegerOr(list.Cells(evaluation::kId, row)));
  evaluation::ShowHoldings(Database().Query(sql::HoldingsOf(id)), list.Cells(evaluation::kRiskFree, 0),
                           holdings_->Grid());
  SendFrameMessage(*this, FrameMessage::ReflashNowPrice);
}

void TFrM_ZTPJ::ReflashNowPrice() {
  if (list_->Grid().IsEmpty()) return;
  evaluation::RefreshHoldings(holdings_->Grid());
  withoutReturn_ = evaluation::RefreshPortfolios(list_->Grid(), *shown_);
}

ViewNotice TFrM_ZTPJ::Notice() const {
  if (list_->Grid().IsEmpty()) return {};
  ViewNotice notice = RiskTableNotice();
  notice.lacking = withoutReturn_;
  if (!rate_) notice.awaited = WithoutDepositRate();
  return notice;
}

}  // namespace holdwise
