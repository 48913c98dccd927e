// SPDX-License-Identifier: MIT
#include "holdwise/market/reference_files.h"

#include <algorithm>
#include <array>

#include "holdwise/market/market_rules.h"
#include "holdwise/packet/dates.h"

namespace holdwise {
namespace {

QString Text(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

void Append(std::vector<Rejection>& all, std::vector<Rejection> more) {
  std::move(more.begin(), more.end(), std::back_inserter(all));
}

// Of a name or an industry, in bytes.
constexpr std::size_t kLongestText = 512;

const CsvColumn& CodeColumn() {
  static const CsvColumn column{{"code", "代码", "证券代码", "股票代码", "symbol", "ts_code"}, true};
  return column;
}

const CsvColumn& DateColumn() {
  static const CsvColumn column{{"date", "日期", "交易日期", "生效日期", "trade_date", "cal_date", "effective_date"},
                                true};
  return column;
}

// 0 when the text names neither market.
int ReadMarket(std::string_view text) {
  for (const std::string_view shanghai : {"SH", "sh", "SSE", "1", "01", "上海", "沪", "沪市", "上证", "上交所"}) {
    if (text == shanghai) return 1;
  }
  for (const std::string_view shenzhen : {"SZ", "sz", "SZSE", "2", "02", "深圳", "深", "深市", "深证", "深交所"}) {
    if (text == shenzhen) return 2;
  }
  return 0;
}

enum SecurityColumn : std::size_t { kCode, kName, kIndustry, kMarket, kListDate, kSecurityColumnCount };

// The reason why the current line is not used; none when `security` is filled.
std::optional<QString> ReadSecurity(const CsvTable& table, Security& security) {
  const std::string_view codeText = table.Field(kCode);
  const std::optional<std::string> code = ParseStockCode(codeText);
  if (!code) return QStringLiteral("不是沪深证券代码“%1”").arg(Text(codeText));
  security.code = *code;
  security.market = MarketOfStock(*code);
  security.name = table.Field(kName);
  if (security.name.empty()) return QStringLiteral("名称缺失");
  security.industry = table.Field(kIndustry);
  if (std::max(security.name.size(), security.industry.size()) > kLongestText) return QStringLiteral("名称或行业过长");
  const std::string_view marketText = table.Field(kMarket);
  if (table.Has(kMarket) && ReadMarket(marketText) != security.market) {
    return QStringLiteral("市场“%1”与代码 %2 不符").arg(Text(marketText), QString::fromStdString(*code));
  }
  const std::string_view dateText = table.Field(kListDate);
  if (dateText.empty()) return std::nullopt;
  const std::optional<int> listDate = ReadMarketDate(dateText);
  if (!listDate) return QStringLiteral("上市日期无法识别“%1”").arg(Text(dateText));
  security.listDate = *listDate;
  return std::nullopt;
}

}  // namespace

std::vector<Security> ReadSecurities(const QString& path, std::vector<Rejection>& rejections) {
  static const std::array<CsvColumn, kSecurityColumnCount> columns{{
      CodeColumn(),
      {{"name", "名称", "证券名称", "股票名称", "证券简称", "股票简称", "简称"}, true},
      {{"industry", "行业", "所属行业", "行业名称"}},
      {{"market", "市场", "交易所", "exchange"}},
      {{"list_date", "上市日期", "listdate"}},
  }};
  CsvTable table(path, columns);
  std::vector<Security> securities;
  std::unordered_set<std::string> known;
  while (table.Next()) {
    Security security;
    std::optional<QString> reason = ReadSecurity(table, security);
    if (!reason && !known.insert(security.code).second) {
      reason = QStringLiteral("代码 %1 重复").arg(QString::fromStdString(security.code));
    }
    if (reason) {
      table.Reject(*reason);
    } else {
      securities.push_back(std::move(security));
    }
  }
  Append(rejections, table.TakeRejections());
  return securities;
}

std::vector<int> ReadTradingDates(const QString& path, std::vector<Rejection>& rejections) {
  const std::array<CsvColumn, 1> columns{DateColumn()};
  CsvTable table(path, columns);
  std::vector<int> dates;
  std::unordered_set<int> known;
  while (table.Next()) {
    const std::string_view text = table.Field(0);
    const std::optional<int> date = ReadMarketDate(text);
    if (!date) {
      table.Reject(QStringLiteral("日期无法识别“%1”").arg(Text(text)));
    } else if (!known.insert(*date).second) {
      table.Reject(QStringLiteral("日期 %1 重复").arg(Text(text)));
    } else {
      dates.push_back(*date);
    }
  }
  Append(rejections, table.TakeRejections());
  std::sort(dates.begin(), dates.end());
  return dates;
}

namespace {

struct DepositTerm {
  const char* type;
  const char* term;
  const char* rateCode;
};
constexpr const char* kFixedDeposit = "定期存款整存整取";
// In the order of the columns of ReadDepositRates behind the date.
constexpr DepositTerm kDepositTerms[] = {
    {kFixedDeposit, "一年", "FIXED_12M"}, {"活期存款", "活期", "DEMAND"},       {kFixedDeposit, "三个月", "FIXED_3M"},
    {kFixedDeposit, "半年", "FIXED_6M"},  {kFixedDeposit, "二年", "FIXED_24M"}, {kFixedDeposit, "三年", "FIXED_36M"},
    {kFixedDeposit, "五年", "FIXED_60M"},
};
constexpr double kHighestPercent = 100;

std::optional<QString> ReadRateLine(const CsvTable& table, std::vector<DepositRate>& rates) {
  for (std::size_t i = 0; i < std::size(kDepositTerms); ++i) {
    const std::string_view text = table.Field(i + 1);
    if (text.empty() && i > 0) continue;
    double percent = 0;
    std::optional<QString> reason = ReadPlainDecimal(text, percent);
    if (!reason && percent > kHighestPercent) reason = QStringLiteral("超过 100");
    if (reason) return QStringLiteral("%1利率").arg(QString::fromUtf8(kDepositTerms[i].term)) + *reason;
    rates.push_back({kDepositTerms[i].type, kDepositTerms[i].term, kDepositTerms[i].rateCode, percent});
  }
  return std::nullopt;
}

}  // namespace

DepositRates ReadDepositRates(const QString& path, int date, std::vector<Rejection>& rejections) {
  static const std::array<CsvColumn, 1 + std::size(kDepositTerms)> columns{{
      DateColumn(),
      {{"one_year", "一年", "一年期"}, true},
      {{"demand", "活期"}},
      {{"three_month", "三个月"}},
      {{"half_year", "半年", "六个月"}},
      {{"two_year", "二年", "两年", "二年期"}},
      {{"three_year", "三年", "三年期"}},
      {{"five_year", "五年", "五年期"}},
  }};
  CsvTable table(path, columns);
  DepositRates latest;
  std::unordered_set<int> known;
  while (table.Next()) {
    const std::string_view text = table.Field(0);
    const std::optional<int> effective = ReadMarketDate(text);
    std::vector<DepositRate> rates;
    std::optional<QString> reason =
        effective ? ReadRateLine(table, rates) : QStringLiteral("日期无法识别“%1”").arg(Text(text));
    if (!reason && !known.insert(*effective).second) reason = QStringLiteral("日期 %1 重复").arg(Text(text));
    if (reason) {
      table.Reject(*reason);
    } else if (*effective <= date && *effective > latest.effectiveDate) {
      latest = {*effective, std::move(rates)};
    }
  }
  Append(rejections, table.TakeRejections());
  return latest;
}

DepositRates BenchmarkRates(int date) {
  constexpr int kInForceSince = 20151024;
  if (date < kInForceSince) return {};
  const DepositTerm& oneYear = kDepositTerms[0];
  return {kInForceSince, {{oneYear.type, oneYear.term, oneYear.rateCode, 1.5}}};
}

double RiskFreePerYear(const DepositRates& rates) {
  return rates.rates.empty() ? 0 : rates.rates.front().percent / 100;
}

double RiskFreePerDay(const DepositRates& rates) {
  constexpr double kDaysOfYear = 250;
  return RiskFreePerYear(rates) / kDaysOfYear;
}

namespace {

// Feeds give a suspended security the price 0.
QuoteRow Traded(QuoteRow quote) {
  quote.isSuspended = quote.price == 0;
  if (quote.isSuspended) quote.price = quote.previousClose;
  return quote;
}

}  // namespace

std::unordered_map<int, QuoteRow> ReadQuotes(const QString& path, const std::unordered_set<int>& known,
                                             std::vector<Rejection>& rejections) {
  static const std::array<CsvColumn, 3> columns{{
      CodeColumn(),
      {{"price", "最新价", "现价", "价格", "最新"}, true},
      {{"prev_close", "昨收", "昨收价", "昨收盘", "昨日收盘价", "前收盘", "前收盘价", "pre_close"}, true},
  }};
  CsvTable table(path, columns);
  std::unordered_map<int, QuoteRow> quotes;
  while (table.Next()) {
    const std::string_view codeText = table.Field(0);
    int codeNumber = ParseIndexNumber(codeText, false);
    if (codeNumber == 0) {
      if (const auto stock = ParseStockCode(codeText)) codeNumber = CodeNumberOfStock(*stock);
    }
    QuoteRow quote;
    std::optional<QString> reason;
    if (codeNumber == 0) {
      reason = QStringLiteral("不是沪深证券代码“%1”").arg(Text(codeText));
    } else if (!known.contains(codeNumber)) {
      reason = QStringLiteral("代码 %1 不在证券表中").arg(Text(codeText));
    } else if ((reason = ReadPlainDecimal(table.Field(1), quote.price))) {
      reason = QStringLiteral("价格") + *reason;
    } else if ((reason = ReadPlainDecimal(table.Field(2), quote.previousClose))) {
      reason = QStringLiteral("昨收") + *reason;
    } else if (quote.price == 0 && quote.previousClose == 0) {
      reason = QStringLiteral("价格和昨收都是 0");
    } else if (!quotes.emplace(codeNumber, Traded(quote)).second) {
      reason = QStringLiteral("代码 %1 重复").arg(Text(codeText));
    }
    if (reason) table.Reject(*reason);
  }
  Append(rejections, table.TakeRejections());
  return quotes;
}

std::vector<EstimateValue> ReadEstimates(const QString& path, const std::unordered_set<int>& known,
                                         std::vector<Rejection>& rejections) {
  static const std::array<CsvColumn, 2> columns{{
      CodeColumn(),
      {{"price", "估值", "估价", "价格", "目标价"}, true},
  }};
  CsvTable table(path, columns);
  std::vector<EstimateValue> values;
  std::unordered_set<std::string> seen;
  while (table.Next()) {
    const std::string_view codeText = table.Field(0);
    const std::optional<std::string> code = ParseStockCode(codeText);
    double price = 0;
    std::optional<QString> reason;
    if (!code) {
      reason = QStringLiteral("不是沪深证券代码“%1”").arg(Text(codeText));
    } else if (!known.contains(CodeNumberOfStock(*code))) {
      reason = QStringLiteral("代码 %1 不在证券表中").arg(Text(codeText));
    } else if ((reason = ReadPrice(table.Field(1), price))) {
      reason = QStringLiteral("估值") + *reason;
    } else if (!seen.insert(*code).second) {
      reason = QStringLiteral("代码 %1 重复").arg(Text(codeText));
    }
    if (reason) {
      table.Reject(*reason);
    } else {
      values.push_back({*code, price});
    }
  }
  Append(rejections, table.TakeRejections());
  return values;
}

}  // namespace holdwise
