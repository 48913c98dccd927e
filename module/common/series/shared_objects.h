// SPDX-License-Identifier: MIT
#pragma once
#include <QTimer>
#include <memory>

#include "common/series/all_stock_data.h"
#include "common/series/close_price.h"
#include "common/series/expect_value.h"
#include "common/series/now_price.h"
#include "common/series/stock_close_price.h"
#include "common/series/user_value.h"

/// The objects that all views read. The main frame makes and frees them; null outside its life. The pointers themselves
/// belong to the user-interface thread.
namespace holdwise {

extern std::unique_ptr<TNowPrice> g_NowPrice;
extern std::unique_ptr<TClosePrice> g_ClosePrice;
extern std::unique_ptr<TUserValue> g_UserValue;
extern std::unique_ptr<TAllStockData> g_AllStockData;
extern std::unique_ptr<TExpectValue> g_ExpectValue;
extern std::unique_ptr<TStockClosePrice> g_StockClosePrice;
/// One-shot, 10 ms: a view enables it to have the host open the intraday chart of the current security.
extern std::unique_ptr<QTimer> g_Timer;

/// Makes all of them, in this order; the timer does not run and nobody is connected to it. Needs the module's host.
void CreateSharedObjects();
/// Stops the timer and frees them in the same order. Frees what there is when only some were made.
void FreeSharedObjects();

/// Nothing that was read from the database counts any more: whoever asks next has it read again. The stress test, which
/// nobody asks for, waits for ReCalc. User-interface thread.
void ForgetSeries();

/// Marks the shared objects as out of date: close prices and deviations are read again when a view next asks, portfolio
/// values and the stress test at once. What a failing query throws reaches the caller. User-interface thread.
void ReCalc();

}  // namespace holdwise
