// SPDX-License-Identifier: MIT
#include "common/series/close_price.h"

#include "common/helpers/date_text.h"
#include "common/helpers/day_range.h"
#include "common/host/codes.h"
#include "common/host/host_access.h"
#include "common/series/holding_rows.h"
#include "common/store/database.h"
#include "common/store/statements.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

QDate CurrentDate() {
  const QString text = ModuleHost().DataCenter().CurrentDateText();
  const auto date = ParseDate(text);
  if (!date)
    throw Error(ErrorCategory::Refused, "the host's current date is not a date: \"" + text.toStdString() + "\"");
  return *date;
}

TNameValueSnapshot WithCloses(const TNameValueSnapshot& before, sql::PeriodType type, const TDayRange& range) {
  const ResultSet rows = Database().Query(sql::HeldCloses(type, range));
  auto closes = std::make_shared<TNameValueList>(*before);
  closes->Reserve(closes->Count() + rows.RowCount());
  const int codeColumn = rows.Column("SECUCODE");
  const int closeColumn = rows.Column("CLOSEPRICE");
  for (int row = 0; row < rows.RowCount(); ++row) {
    const QString code = rows.TextAt(row, codeColumn);
    if (!code.isEmpty()) closes->Set(code, ShortestText(NumberAt(rows, row, closeColumn)));
  }
  return closes;
}

TNameValueSnapshot WithSums(const TNameValueSnapshot& before, const ResultSet& holdings, const TNameValueList& closes,
                            TMissingCodes& missing) {
  missing.clear();
  auto sums = std::make_shared<TNameValueList>(*before);
  if (holdings.IsEmpty()) return sums;
  const int codeColumn = holdings.Column("SECUCODE");
  const int quantityColumn = holdings.Column("PZSL");
  const int idColumn = holdings.Column("MAINID");
  QHash<QString, qsizetype> counts;
  StoreSumsByPortfolio(
      holdings,
      [&](int row) {
        const QString code = holdings.TextAt(row, codeColumn);
        const double close = RealOr(closes.ValueOf(code));
        const QString id = holdings.TextAt(row, idColumn);
        ++counts[id];
        if (close <= 0) missing[id].append(GetCodeCNum(code));
        return close * NumberAt(holdings, row, quantityColumn);
      },
      *sums);
  // A sum without any close is 0, and nothing is compared with it.
  missing.removeIf([&](const auto& portfolio) { return portfolio.value().size() == counts[portfolio.key()]; });
  return sums;
}

}  // namespace

TClosePrice::TClosePrice()
    : weekCloses_(std::make_shared<TNameValueList>()),
      monthCloses_(std::make_shared<TNameValueList>()),
      weekSums_(std::make_shared<TNameValueList>()),
      monthSums_(std::make_shared<TNameValueList>()) {}

TNameValueSnapshot TClosePrice::GetWeekCloseStringList() {
  RefreshIfNeeded();
  return weekCloses_;
}

TNameValueSnapshot TClosePrice::GetMonthCloseStringList() {
  RefreshIfNeeded();
  return monthCloses_;
}

TNameValueSnapshot TClosePrice::GetWeekCloseStringList_Sum() {
  RefreshSumsIfNeeded();
  return weekSums_;
}

TNameValueSnapshot TClosePrice::GetMonthCloseStringList_Sum() {
  RefreshSumsIfNeeded();
  return monthSums_;
}

TMissingCodes TClosePrice::HoldingsWithoutWeekClose() {
  RefreshSumsIfNeeded();
  return withoutWeekClose_;
}

TMissingCodes TClosePrice::HoldingsWithoutMonthClose() {
  RefreshSumsIfNeeded();
  return withoutMonthClose_;
}

void TClosePrice::RefreshIfNeeded() {
  if (isGet_ && !isNeedUpdate_) return;
  isNeedUpdate_ = false;
  ReGetClosePrice();
}

void TClosePrice::SetIsGetClosePrice(bool flag) {
  isGet_ = false;  // until they have been read
  if (!flag) return;
  const QDate today = CurrentDate();
  // Both are made before the first is replaced, so that a failing query leaves a matching pair.
  auto weekCloses = WithCloses(weekCloses_, sql::PeriodType::Week, PreviousWeek(today));
  monthCloses_ = WithCloses(monthCloses_, sql::PeriodType::Month, PreviousMonth(today));
  weekCloses_ = std::move(weekCloses);
  areSumsDue_ = true;
  isGet_ = true;
}

void TClosePrice::RefreshSumsIfNeeded() {
  RefreshIfNeeded();
  if (!areSumsDue_) return;
  const ResultSet holdings = Database().Query(sql::kSavedHoldingsForCloses);
  auto weekSums = WithSums(weekSums_, holdings, *weekCloses_, withoutWeekClose_);
  monthSums_ = WithSums(monthSums_, holdings, *monthCloses_, withoutMonthClose_);
  weekSums_ = std::move(weekSums);
  areSumsDue_ = false;
}

}  // namespace holdwise
