// SPDX-License-Identifier: MIT
#include "views/fxjl/fxjl.h"

#include "common/frames/holdings_panel.h"
#include "common/frames/portfolio_list.h"
#include "common/frames/risk_table_link.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "common/store/statements.h"
#include "risk_layout.h"
#include "risk_rows.h"

namespace holdwise {
namespace {

const QString kUnit = QStringLiteral("Fxjl");

}  // namespace

TFrm_FXJL::TFrm_FXJL(QWidget* parent)
    : TViewFrame(kUnit, parent),
      list_(new PortfolioList({.unit = kUnit,
                               .statement = sql::kSavedPortfolios,
                               .columns = risk::PortfolioTable(),
                               .keyColumn = risk::kId,
                               .emptyText = NoSavedPortfolios},
                              this)),
      holdings_(new HoldingsPanel(
          {.unit = kUnit, .columns = risk::SecurityTable(), .caption = QStringLiteral("组合名称")}, this)) {
  AddParts(*list_, PortfolioList::kHeight, *holdings_);
  list_->OnEnter = [this](int) { holdings_->Grid().setFocus(); };
  list_->OnClear = [this] { holdings_->Clear(); };
  list_->OnFill = [this](const ResultSet& portfolios) { risk::ShowPortfolios(portfolios, list_->Grid()); };
  list_->OnShow = [this](int row) { ShowHoldings(row); };
  FollowRiskTable(*this, kUnit, *list_);
  msg_changeskin();
}

void TFrm_FXJL::DoInit_() {
  g_AllStockData->RequestCurrentTable();
  list_->ReflashData();
}

ViewNotice TFrm_FXJL::Notice() const {
  if (list_->Grid().IsEmpty()) return {};
  return RiskTableNotice();
}

void TFrm_FXJL::ShowHoldings(int row) {
  const TStringGrid& list = list_->Grid();
  holdings_->SetCaption(list.Cells(risk::kName, row));
  ShowReferenceIndex(*holdings_);
  if (row < 0) return;
  risk::ShowSecurities(Database().Query(sql::CodesOf(list.Cells(risk::kId, row))), holdings_->Grid());
}

}  // namespace holdwise
