#include "common/recalc.h"

#include "common/all_stock_data.h"
#include "common/expect_value.h"
#include "common/untcommon.h"

namespace holdwise {

// No date or time format is set for the process here: every date text of the module is made and read by date_text.h as
// "YYYY-MM-DD", so it does not depend on what the host or another plug-in has set.
void ReCalc() {
  if (g_ClosePrice) g_ClosePrice->SetIsNeedUpdate(true);
  if (g_UserValue) g_UserValue->SetIsNeedUpdate(true);
  if (g_AllStockData) g_AllStockData->SetIsNeedUpdate(true);
  if (g_ExpectValue) g_ExpectValue->SetIsNeedUpdate(true);
}

}  // namespace holdwise
