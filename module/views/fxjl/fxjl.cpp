// SPDX-License-Identifier: MIT
#include "views/fxjl/fxjl.h"

#include "common/frames/holdings_panel.h"
#include "common/frames/portfolio_list.h"
#include "common/host/event_guard.h"
#include "common/series/missing_prices.h"
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
                               .emptyText = QStringLiteral("暂无已保存的组合")},
                              this)),
      holdings_(new HoldingsPanel(
          {.unit = kUnit, .columns = risk::SecurityTable(), .caption = QStringLiteral("组合名称")}, this)) {
  AddPart(*list_, false);
  AddPart(*holdings_, true);
  list_->OnClear = [this] { holdings_->Clear(); };
  list_->OnFill = [this](const ResultSet& portfolios) { risk::ShowPortfolios(portfolios, list_->Grid()); };
  list_->OnShow = [this](int row) { ShowHoldings(row); };
  connect(g_AllStockData.get(), &TAllStockData::TableArrived, this,
          [this] { GuardEvent(kUnit, QStringLiteral("ReflashData"), [this] { list_->Reload(list_->Grid().Row()); }); });
  connect(g_AllStockData.get(), &TAllStockData::TableFailed, this,
          [this] { GuardEvent(kUnit, QStringLiteral("NoticeChanged"), [this] { NoticeChanged(); }); });
  msg_changeskin();
}

void TFrm_FXJL::DoInit_() {
  g_AllStockData->RequestCurrentTable();
  list_->ReflashData();
}

ViewNotice TFrm_FXJL::Notice() const {
  if (list_->Grid().IsEmpty()) return {};
  const RiskTableNotice table = WithoutRiskTable();
  return {table.text, table.hint, {}};
}

void TFrm_FXJL::ShowHoldings(int row) {
  const TStringGrid& list = list_->Grid();
  holdings_->SetCaption(list.Cells(risk::kName, row));
  holdings_->SetNotice(QStringLiteral("风险系数的参考指数：%1").arg(IndexNames()[g_AllStockData->CurrentType()]),
                       QStringLiteral("在“压力测试”页选择参考指数；上方各组合的系数总是相对上证指数。"));
  if (row < 0) return;
  risk::ShowSecurities(Database().Query(sql::CodesOf(list.Cells(risk::kId, row))), holdings_->Grid());
}

}  // namespace holdwise
