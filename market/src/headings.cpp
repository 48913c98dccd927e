// SPDX-License-Identifier: MIT
#include "headings.h"

#include <algorithm>
#include <array>

#include "holdwise/packet/code_text.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

bool AreSameCode(std::string_view one, std::string_view other) {
  const std::optional<NamedCode> first = ParseNamedCode(one);
  const std::optional<NamedCode> second = ParseNamedCode(other);
  return first && second && first->digits == second->digits &&
         (first->market == second->market || first->market == 0 || second->market == 0);
}

bool AreSameDate(std::string_view one, std::string_view other) {
  const std::optional<int> date = ReadTimedDate(one);
  return date && date == ReadTimedDate(other);
}

bool AreSameNumber(std::string_view one, std::string_view other) {
  if (IsBlankCell(one) && IsBlankCell(other)) return true;
  const std::optional<double> number = ParseReal(one);
  return number && number == ParseReal(other);
}

bool IsChinese(std::string_view text) {
  // The first bytes of ideographs in UTF-8; no other byte of a character is one.
  return std::any_of(text.begin(), text.end(), [](char c) { return c >= '\xE4' && c <= '\xE9'; });
}

// One family has the name under display_name and its initials under name.
bool IsBetterName(std::string_view one, std::string_view other) {
  if (IsBlankCell(other)) return !IsBlankCell(one);
  return IsChinese(one) && !IsChinese(other);
}

CsvColumn Code(bool isRequired) {
  return {"代码",
          {"code", "代码", "证券代码", "股票代码", "symbol", "ts_code", "a股代码", "stock_code", "wind_code",
           "sec_code", "security_code", "指数代码"},
          isRequired,
          AreSameCode};
}

CsvColumn Date(bool isRequired) {
  return {"日期",
          {"date", "日期", "交易日期", "生效日期", "trade_date", "tradedate", "trading_date", "cal_date",
           "calendar_date", "effective_date", "datetime", "trade_day", "交易日", "pubdate", "时间"},
          isRequired,
          AreSameDate};
}

CsvColumn Industry(bool isRequired) {
  return {"行业", {"industry", "行业", "所属行业", "行业名称", "行业分类", "industry_name"}, isRequired};
}

CsvColumn Exchange() {
  return {"交易所", {"exchange", "交易所"}};
}

CsvColumn PreviousClose(bool isRequired) {
  return {"昨收",
          {"prev_close", "昨收", "昨收价", "昨收盘", "昨收盘价", "昨日收盘价", "昨日收盘", "前收盘", "前收盘价", "前收",
           "前收价", "pre_close", "preclose", "prevclose", "previous_close", "pre_close_price", "last_close"},
          isRequired,
          AreSameNumber};
}

}  // namespace

std::span<const CsvColumn> BarColumns() {
  static const std::array<CsvColumn, kBarSpecialTreatment + 1> columns{{
      Date(true),
      {"收盘", {"close", "收盘", "收盘价", "close_price", "closeprice", "今收盘"}, true, AreSameNumber},
      {"开盘", {"open", "开盘", "开盘价", "open_price", "openprice", "今开盘", "今开"}, false, AreSameNumber},
      {"最高", {"high", "最高", "最高价", "high_price", "highprice"}, false, AreSameNumber},
      {"最低", {"low", "最低", "最低价", "low_price", "lowprice"}, false, AreSameNumber},
      {"成交量", {"volume", "成交量", "vol", "trade_volume", "成交股数"}, false, AreSameNumber},
      Code(false),
      PreviousClose(false),
      {"涨跌额", {"change", "涨跌额", "price_change", "change_amount"}, false, AreSameNumber},
      {"复权收盘", {"adj close", "adj_close", "adjclose", "adjusted_close", "adjusted close"}, false, AreSameNumber},
      {"价格因子", {"factor"}, false, AreSameNumber},
      {"复权因子", {"adj_factor", "adjfactor", "复权因子", "后复权因子", "hfq_factor"}, false, AreSameNumber},
      {"复权方式", {"adjustflag", "adjust_flag"}},
      {"交易状态", {"tradestatus", "trade_status"}},
      {"停牌", {"paused", "is_paused", "suspended", "is_suspended"}},
      {"ST", {"isst", "is_st", "是否st"}},
  }};
  return columns;
}

std::span<const CsvColumn> SecurityColumns() {
  static const std::array<CsvColumn, kSecurityType + 1> columns{{
      Code(true),
      {"名称",
       {"name", "证券简称", "股票简称", "简称", "a股简称", "display_name", "sec_name", "code_name", "名称", "证券名称",
        "股票名称"},
       true,
       nullptr,
       IsBetterName,
       "名称不同时取中文的"},
      Industry(false),
      {"市场", {"market", "市场", "板块", "board"}},
      Exchange(),
      {"上市日期",
       {"list_date", "上市日期", "listdate", "ipodate", "ipo_date", "a股上市日期", "上市时间", "start_date"},
       false,
       AreSameDate},
      {"证券类别", {"type", "证券类别", "证券类型"}},
  }};
  return columns;
}

std::span<const CsvColumn> IndustryColumns() {
  static const std::array<CsvColumn, kIndustryName + 1> columns{{
      Code(true),
      Industry(true),
  }};
  return columns;
}

std::span<const CsvColumn> CalendarColumns() {
  static const std::array<CsvColumn, kCalendarExchange + 1> columns{{
      Date(true),
      {"开市", {"is_open", "is_trading_day", "trade_status", "tradestatus", "isopen", "是否开市", "是否交易日"}},
      Exchange(),
  }};
  return columns;
}

std::span<const CsvColumn> RateColumns() {
  static const std::array<CsvColumn, 8> columns{{
      Date(true),
      {"一年", {"one_year", "一年", "一年期", "fixeddepositrate1year"}, true, AreSameNumber},
      {"活期", {"demand", "活期", "demanddepositrate"}, false, AreSameNumber},
      {"三个月", {"three_month", "三个月", "fixeddepositrate3month"}, false, AreSameNumber},
      {"半年", {"half_year", "半年", "六个月", "fixeddepositrate6month"}, false, AreSameNumber},
      {"二年", {"two_year", "二年", "两年", "二年期", "fixeddepositrate2year"}, false, AreSameNumber},
      {"三年", {"three_year", "三年", "三年期", "fixeddepositrate3year"}, false, AreSameNumber},
      {"五年", {"five_year", "五年", "五年期", "fixeddepositrate5year"}, false, AreSameNumber},
  }};
  return columns;
}

std::span<const CsvColumn> QuoteColumns() {
  static const std::array<CsvColumn, kQuotePreviousClose + 1> columns{{
      Code(true),
      {"价格", {"price", "最新价", "现价", "价格", "最新", "trade", "last_price"}, true, AreSameNumber},
      PreviousClose(true),
  }};
  return columns;
}

std::span<const CsvColumn> EstimateColumns() {
  static const std::array<CsvColumn, kEstimatePrice + 1> columns{{
      Code(true),
      {"估值", {"price", "估值", "估价", "价格", "目标价"}, true, AreSameNumber},
  }};
  return columns;
}

std::span<const CsvColumn> AccountColumns() {
  static const std::array<CsvColumn, kAccountShares + 1> columns{{
      Code(true),
      {"报告期",
       {"end_date", "报告期", "报告日期", "截止日期", "report_date", "statdate", "date", "日期"},
       false,
       AreSameDate},
      {"每股收益", {"eps", "每股收益", "基本每股收益", "basic_eps", "epsttm", "eps_ttm"}, true, AreSameNumber},
      {"每股净资产", {"net_asset_per_share", "每股净资产", "bps", "bvps", "book_value_per_share"}, true, AreSameNumber},
      // In shares: a "total_share" is counted in ten thousands by some.
      {"总股本", {"total_shares", "totalshare"}, false, AreSameNumber},
  }};
  return columns;
}

std::span<const CsvColumn> FactorColumns() {
  static const std::array<CsvColumn, kFactor + 1> columns{{
      Code(false),
      {"日期",
       {"date", "日期", "交易日期", "trade_date", "ex_date", "除权日", "除权除息日", "dividoperatedate", "datetime"},
       true,
       AreSameDate},
      {"累计复权因子",
       {"adj_factor", "adjfactor", "复权因子", "后复权因子", "hfq_factor", "backadjustfactor", "cumulative_factor"},
       false,
       AreSameNumber},
      {"前复权因子（乘）", {"foreadjustfactor", "前复权因子"}, false, AreSameNumber},
      {"前复权因子（除）", {"qfq_factor"}, false, AreSameNumber},
      {"除权因子", {"除权因子", "event_factor", "ex_factor"}, false, AreSameNumber},
      {"因子", {"factor"}, false, AreSameNumber},
  }};
  return columns;
}

}  // namespace holdwise
