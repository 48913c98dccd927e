#include "views/fxjl/fxjl.h"

#include "common/all_stock_data.h"
#include "common/event_guard.h"
#include "common/statements.h"
#include "common/untcommon.h"
#include "views/fxjl/risk_layout.h"
#include "views/fxjl/risk_rows.h"

namespace holdwise {

TFrm_FXJL::TFrm_FXJL(QWidget* parent)
    : TPortfolioFrame(
          {
              .unit = QStringLiteral("Fxjl"),
              .portfolios = {risk::kPortfolioColumns, risk::PortfolioTitles(), {risk::kId}, &risk::PortfolioWidths},
              .keyColumn = risk::kId,
              .holdings = {risk::kSecurityColumns, risk::SecurityTitles(), {}, &risk::SecurityWidths},
              .caption = QStringLiteral("组合名称"),
          },
          parent) {
  connect(g_AllStockData.get(), &TAllStockData::TableArrived, this,
          [this] { GuardEvent(UnitName(), QStringLiteral("ReflashData"), [this] { Reload(strngrd->Row()); }); });
}

void TFrm_FXJL::DoInit_() {
  g_AllStockData->RequestCurrentTable();
  ReflashData();
}

void TFrm_FXJL::ShowPortfolios(const ResultSet& portfolios) {
  risk::ShowPortfolios(portfolios, *strngrd);
}

void TFrm_FXJL::ShowHoldings(int row) {
  RzPanel3->SetCaption(strngrd->Cells(risk::kName, row));
  risk::ShowSecurities(Database().Query(sql::CodesOf(strngrd->Cells(risk::kId, row))), *StringGrid1);
}

}  // namespace holdwise
