// SPDX-License-Identifier: MIT
#include "common/series/user_value.h"

#include "common/host/codes.h"
#include "common/host/host_access.h"
#include "common/series/holding_rows.h"
#include "common/store/database.h"
#include "common/store/statements.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

// A reply on a bus thread may look for the object while the user-interface thread frees it; g_UserValue itself gives no
// protection against that.
Mutex existingLock;
TUserValue* existing HOLDWISE_GUARDED_BY(existingLock) = nullptr;

}  // namespace

TUserValue::TUserValue()
    : costs_(std::make_shared<TNameValueList>()),
      previousCloses_(std::make_shared<TNameValueList>()),
      previousCloseValues_(std::make_shared<TNameValueList>()) {
  const MutexLock lock(existingLock);
  existing = this;
}

TUserValue::~TUserValue() {
  const MutexLock lock(existingLock);
  existing = nullptr;
}

TNameValueSnapshot PreviousCloses() {
  const MutexLock lock(existingLock);
  return existing != nullptr ? existing->GetUserPrvCloseValues() : std::make_shared<const TNameValueList>();
}

TNameValueSnapshot TUserValue::GetUserValuesStringList() {
  const MutexLock lock(lock_);
  if (!isGetSum_) ReadSums();
  return costs_;
}

TNameValueSnapshot TUserValue::GetUserPrvCloseValues() {
  const MutexLock lock(lock_);
  if (!isGetClose_) ReadPreviousCloses();
  return previousCloses_;
}

TNameValueSnapshot TUserValue::GetUserValuesPrvCloseValues() {
  const MutexLock lock(lock_);
  if (!isGetClose_) ReadPreviousCloses();
  return previousCloseValues_;
}

TMissingCodes TUserValue::HoldingsWithoutPreviousClose() {
  const MutexLock lock(lock_);
  if (!isGetClose_) ReadPreviousCloses();
  return withoutPreviousClose_;
}

void TUserValue::SetIsGetUserValue_Sum(bool flag) {
  const MutexLock lock(lock_);
  isGetSum_ = false;
  if (flag) ReadSums();
}

void TUserValue::SetIsGetUserCloseValue(bool flag) {
  const MutexLock lock(lock_);
  isGetClose_ = false;
  if (flag) ReadPreviousCloses();
}

void TUserValue::SetIsNeedUpdate(bool flag) {
  if (!flag) return;
  SetIsGetUserCloseValue(false);  // due also when the costs cannot be read
  ReGetUserValue_Sum();
  ReGetUserCloseValue();
}

void TUserValue::ReadSums() {
  const ResultSet rows = Database().Query(sql::kPortfolioCosts);
  auto costs = std::make_shared<TNameValueList>(*costs_);
  const int idColumn = rows.Column("MAINID");
  const int sumColumn = rows.Column("SUM_VALUE");
  for (int row = 0; row < rows.RowCount(); ++row) costs->Set(rows.TextAt(row, idColumn), rows.TextAt(row, sumColumn));
  costs_ = std::move(costs);
  isGetSum_ = true;
}

void TUserValue::ReadPreviousCloses() {
  const ResultSet holdings = Database().Query(sql::kHoldingsForPreviousCloses);
  auto closes = std::make_shared<TNameValueList>(*previousCloses_);
  auto values = std::make_shared<TNameValueList>(*previousCloseValues_);
  TMissingCodes missing;
  const int idColumn = holdings.Column("MAINID");
  const int codeColumn = holdings.Column("SECUCODE");
  const int quantityColumn = holdings.Column("PZSL");
  const TDataCenter& dataCenter = ModuleHost().DataCenter();
  const auto valueOfRow = [&](int row) {
    const QString code = holdings.TextAt(row, codeColumn);
    const double close = dataCenter.StockNowData(static_cast<int>(IntegerOr(code))).previousClose;
    closes->Set(GetCodeCNum(code), FormatFixed(close, 2));
    if (close <= 0) missing[holdings.TextAt(row, idColumn)].append(GetCodeCNum(code));
    return NumberAt(holdings, row, quantityColumn) * close;
  };
  StoreSumsByPortfolio(holdings, valueOfRow, *values);
  previousCloses_ = std::move(closes);
  previousCloseValues_ = std::move(values);
  withoutPreviousClose_ = std::move(missing);
  isGetClose_ = true;
}

}  // namespace holdwise
