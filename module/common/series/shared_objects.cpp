// SPDX-License-Identifier: MIT
#include "common/series/shared_objects.h"

#include <chrono>
#include <exception>

namespace holdwise {
namespace {

constexpr std::chrono::milliseconds kOpenDelay{10};

}  // namespace

std::unique_ptr<TNowPrice> g_NowPrice;
std::unique_ptr<TClosePrice> g_ClosePrice;
std::unique_ptr<TUserValue> g_UserValue;
std::unique_ptr<TAllStockData> g_AllStockData;
std::unique_ptr<TExpectValue> g_ExpectValue;
std::unique_ptr<TStockClosePrice> g_StockClosePrice;
std::unique_ptr<QTimer> g_Timer;

void CreateSharedObjects() {
  g_NowPrice = std::make_unique<TNowPrice>();
  g_ClosePrice = std::make_unique<TClosePrice>();
  g_UserValue = std::make_unique<TUserValue>();
  g_AllStockData = std::make_unique<TAllStockData>();
  // The file has emptied the list of deviations: the next reader has it read again.
  QObject::connect(g_AllStockData.get(), &TAllStockData::TableArrived, g_AllStockData.get(),
                   [] { g_AllStockData->SetIsNeedUpdate(true); });
  g_ExpectValue = std::make_unique<TExpectValue>();
  g_StockClosePrice = std::make_unique<TStockClosePrice>();
  g_Timer = std::make_unique<QTimer>();
  g_Timer->setInterval(kOpenDelay);
}

void FreeSharedObjects() {
  if (g_Timer) g_Timer->stop();
  g_NowPrice.reset();
  g_ClosePrice.reset();
  g_UserValue.reset();
  g_AllStockData.reset();
  g_ExpectValue.reset();
  g_StockClosePrice.reset();
  g_Timer.reset();
}

void ForgetSeries() {
  if (g_ClosePrice) g_ClosePrice->SetIsNeedUpdate(true);
  if (g_AllStockData) g_AllStockData->SetIsNeedUpdate(true);
  if (!g_UserValue) return;
  g_UserValue->SetIsGetUserValue_Sum(false);
  g_UserValue->SetIsGetUserCloseValue(false);
}

// No date or time format is set for the process here: every date text of the module is made and read by date_text.h as
// "YYYY-MM-DD", so it does not depend on what the host or another plug-in has set.
void ReCalc() {
  // Those that wait for their next reader first: what the others read now may fail.
  if (g_ClosePrice) g_ClosePrice->SetIsNeedUpdate(true);
  if (g_AllStockData) g_AllStockData->SetIsNeedUpdate(true);
  // The expected values need no cost: they are not left behind when it cannot be read.
  std::exception_ptr failure;
  try {
    if (g_UserValue) g_UserValue->SetIsNeedUpdate(true);
  } catch (...) {
    failure = std::current_exception();
  }
  if (g_ExpectValue) g_ExpectValue->SetIsNeedUpdate(true);
  if (failure) std::rethrow_exception(failure);
}

}  // namespace holdwise
