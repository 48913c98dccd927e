#include "views/fxjl/fxjl.h"

#include "common/host/event_guard.h"
#include "common/series/all_stock_data.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "common/store/statements.h"
#include "risk_layout.h"
#include "risk_rows.h"

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
