// SPDX-License-Identifier: MIT
#include "holdwise/market/reference_files.h"

#include <algorithm>

#include "beijing_lines.h"
#include "headings.h"
#include "holdwise/market/market_rules.h"
#include "holdwise/packet/dates.h"

namespace holdwise {
namespace {

void Finish(CsvTable& table, std::vector<Rejection>& rejections, QString* understood) {
  table.MoveRejectionsTo(rejections);
  if (understood != nullptr) *understood = table.Understood();
}

// Of a name or an industry, in bytes.
constexpr std::size_t kLongestText = 512;

struct MarketWords {
  int market;  // 0 = a board of both exchanges
  std::vector<std::string_view> words;
};

// Whether the text names the market, or a board of it.
bool NamesMarket(std::string_view text, int market) {
  static const MarketWords known[] = {
      {1,
       {"SH", "sh", "SSE", "SHSE", "XSHG", "SS", "1", "01", "上海", "沪", "沪市", "上证", "上交所", "科创板", "沪主板",
        "上海证券交易所"}},
      {2,
       {"SZ", "sz", "SZSE", "XSHE", "2", "02", "深圳", "深", "深市", "深证", "深交所", "创业板", "中小板", "深主板",
        "深圳证券交易所"}},
      {0, {"主板", "CDR"}},
  };
  return std::any_of(std::begin(known), std::end(known), [&](const MarketWords& one) {
    return (one.market == 0 || one.market == market) &&
           std::find(one.words.begin(), one.words.end(), text) != one.words.end();
  });
}

// A list of all kinds of securities numbers them: 1 is a stock, 2 to 5 are indices, bonds, funds and others.
bool IsOfOtherKind(std::string_view type) {
  return type.size() == 1 && type.front() >= '2' && type.front() <= '5';
}

std::optional<QString> ReadIndustry(std::string_view text, std::string& industry) {
  if (text.size() > kLongestText) return QStringLiteral("名称或行业过长");
  if (!IsBlankCell(text)) industry = text;
  return std::nullopt;
}

// The reason why the current line is not used; none when `security` is filled.
std::optional<QString> ReadSecurity(const CsvTable& table, Security& security) {
  const std::string_view codeText = table.Field(kSecurityCode);
  const std::optional<std::string> code = ParseStockCode(codeText);
  if (!code) return QStringLiteral("不是沪深证券代码“%1”").arg(FieldText(codeText));
  security.code = *code;
  security.market = MarketOfStock(*code);
  security.name = table.Field(kSecurityName);
  if (IsBlankCell(security.name)) return QStringLiteral("名称缺失");
  if (security.name.size() > kLongestText) return QStringLiteral("名称或行业过长");
  if (auto reason = ReadIndustry(table.Field(kSecurityIndustry), security.industry)) return reason;
  for (const SecurityColumn column : {kSecurityMarket, kSecurityExchange}) {
    const std::string_view marketText = table.Field(column);
    if (!table.Has(column) || NamesMarket(marketText, security.market)) continue;
    return QStringLiteral("市场“%1”与代码 %2 不符").arg(FieldText(marketText), QString::fromStdString(*code));
  }
  const std::string_view dateText = table.Field(kSecurityListDate);
  if (IsBlankCell(dateText)) return std::nullopt;
  const std::optional<int> listDate = ReadTimedDate(dateText);
  if (!listDate) return QStringLiteral("上市日期无法识别“%1”").arg(FieldText(dateText));
  security.listDate = *listDate;
  return std::nullopt;
}

// What the file says of the day: 1 open, 0 closed; none when it cannot be told.
std::optional<int> OpenFlag(const CsvTable& table) {
  if (!table.Has(kCalendarOpen)) return 1;
  const std::string_view text = table.Field(kCalendarOpen);
  if (SaysYes(text)) return 1;
  return SaysNo(text) ? std::optional(0) : std::nullopt;
}

QString Repeated(std::string_view code) {
  return QStringLiteral("代码 %1 重复").arg(FieldText(code));
}

}  // namespace

std::vector<Security> ReadSecurities(const QString& path, std::vector<Rejection>& rejections, QString* understood) {
  CsvTable table(path, SecurityColumns());
  std::vector<Security> securities;
  std::unordered_set<std::string> known;
  BeijingLines beijing;
  while (table.Next()) {
    if (IsOfOtherKind(table.Field(kSecurityType))) continue;
    if (beijing.Take(table.Field(kSecurityCode), path, table.Line())) continue;
    Security security;
    std::optional<QString> reason = ReadSecurity(table, security);
    if (!reason && !known.insert(security.code).second) reason = Repeated(security.code);
    if (reason) {
      table.Reject(*reason);
    } else {
      securities.push_back(std::move(security));
    }
  }
  Finish(table, rejections, understood);
  beijing.AddTo(rejections);
  return securities;
}

void ReadIndustries(const QString& path, std::vector<Security>& securities, std::vector<Rejection>& rejections,
                    QString* understood) {
  CsvTable table(path, IndustryColumns());
  std::unordered_map<std::string, Security*> byCode;
  for (Security& security : securities) byCode.emplace(security.code, &security);
  std::unordered_set<std::string> known;
  BeijingLines beijing;
  while (table.Next()) {
    const std::string_view codeText = table.Field(kIndustryCode);
    if (beijing.Take(codeText, path, table.Line())) continue;
    const std::optional<std::string> code = ParseStockCode(codeText);
    std::string industry;
    std::optional<QString> reason = ReadIndustry(table.Field(kIndustryName), industry);
    if (!code) reason = QStringLiteral("不是沪深证券代码“%1”").arg(FieldText(codeText));
    if (!reason && !known.insert(*code).second) reason = Repeated(*code);
    if (reason) {
      table.Reject(*reason);
    } else if (const auto found = byCode.find(*code); found != byCode.end() && found->second->industry.empty()) {
      found->second->industry = industry;
    }
  }
  Finish(table, rejections, understood);
  beijing.AddTo(rejections);
}

std::vector<int> ReadTradingDates(const QString& path, std::vector<Rejection>& rejections, QString* understood) {
  CsvTable table(path, CalendarColumns());
  std::unordered_map<int, int> flags;
  while (table.Next()) {
    const std::string_view text = table.Field(kCalendarDate);
    const std::optional<int> date = ReadTimedDate(text);
    const std::optional<int> flag = OpenFlag(table);
    if (!date) {
      table.Reject(QStringLiteral("日期无法识别“%1”").arg(FieldText(text)));
    } else if (!flag) {
      table.Reject(QStringLiteral("是否开市无法识别“%1”").arg(FieldText(table.Field(kCalendarOpen))));
    } else if (const auto [known, isNew] = flags.emplace(*date, *flag); !isNew) {
      // One calendar of both exchanges has every day twice.
      if (table.Has(kCalendarExchange) && known->second == *flag) continue;
      table.Reject(QStringLiteral("日期 %1 重复").arg(FieldText(text)));
    }
  }
  Finish(table, rejections, understood);
  std::vector<int> dates;
  for (const auto& [date, flag] : flags) {
    if (flag == 1) dates.push_back(date);
  }
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
    const std::string_view text = table.Field(kFirstRate + i);
    if (IsBlankCell(text) && i > 0) continue;
    double percent = 0;
    std::optional<QString> reason = ReadPlainDecimal(text, percent);
    if (!reason && percent > kHighestPercent) reason = QStringLiteral("超过 100");
    if (reason) return QStringLiteral("%1利率").arg(QString::fromUtf8(kDepositTerms[i].term)) + *reason;
    rates.push_back({kDepositTerms[i].type, kDepositTerms[i].term, kDepositTerms[i].rateCode, percent});
  }
  return std::nullopt;
}

}  // namespace

DepositRates ReadDepositRates(const QString& path, int date, std::vector<Rejection>& rejections, QString* understood) {
  CsvTable table(path, RateColumns());
  DepositRates latest;
  std::unordered_set<int> known;
  while (table.Next()) {
    const std::string_view text = table.Field(kRateDate);
    const std::optional<int> effective = ReadTimedDate(text);
    std::vector<DepositRate> rates;
    std::optional<QString> reason =
        effective ? ReadRateLine(table, rates) : QStringLiteral("日期无法识别“%1”").arg(FieldText(text));
    if (!reason && !known.insert(*effective).second) reason = QStringLiteral("日期 %1 重复").arg(FieldText(text));
    if (reason) {
      table.Reject(*reason);
    } else if (*effective <= date && *effective > latest.effectiveDate) {
      latest = {*effective, std::move(rates)};
    }
  }
  Finish(table, rejections, understood);
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

// Feeds give a suspended security the price 0, or none.
QuoteRow Traded(QuoteRow quote) {
  quote.isSuspended = quote.price == 0;
  if (quote.isSuspended) quote.price = quote.previousClose;
  return quote;
}

}  // namespace

std::unordered_map<int, QuoteRow> ReadQuotes(const QString& path, const std::unordered_set<int>& known,
                                             std::vector<Rejection>& rejections, QString* understood) {
  CsvTable table(path, QuoteColumns());
  std::unordered_map<int, QuoteRow> quotes;
  BeijingLines beijing;
  while (table.Next()) {
    const std::string_view codeText = table.Field(kQuoteCode);
    if (beijing.Take(codeText, path, table.Line())) continue;
    int codeNumber = ParseIndexNumber(codeText, false);
    if (codeNumber == 0) {
      if (const auto stock = ParseStockCode(codeText)) codeNumber = CodeNumberOfStock(*stock);
    }
    QuoteRow quote;
    const bool isWithoutPrice = IsStockNumber(codeNumber) && IsBlankCell(table.Field(kQuotePrice));
    std::optional<QString> reason;
    if (codeNumber == 0) {
      reason = QStringLiteral("不是沪深证券代码“%1”").arg(FieldText(codeText));
    } else if (!known.contains(codeNumber)) {
      reason = QStringLiteral("代码 %1 不在证券表中").arg(FieldText(codeText));
    } else if (!isWithoutPrice && (reason = ReadPlainDecimal(table.Field(kQuotePrice), quote.price))) {
      reason = QStringLiteral("价格") + *reason;
    } else if ((reason = ReadPlainDecimal(table.Field(kQuotePreviousClose), quote.previousClose))) {
      reason = QStringLiteral("昨收") + *reason;
    } else if (quote.price == 0 && quote.previousClose == 0) {
      reason = QStringLiteral("价格和昨收都是 0");
    } else if (!quotes.emplace(codeNumber, Traded(quote)).second) {
      reason = QStringLiteral("代码 %1 重复").arg(FieldText(codeText));
    }
    if (reason) table.Reject(*reason);
  }
  Finish(table, rejections, understood);
  beijing.AddTo(rejections);
  return quotes;
}

std::vector<EstimateValue> ReadEstimates(const QString& path, const std::unordered_set<int>& known,
                                         std::vector<Rejection>& rejections, QString* understood) {
  CsvTable table(path, EstimateColumns());
  std::vector<EstimateValue> values;
  std::unordered_set<std::string> seen;
  while (table.Next()) {
    const std::string_view codeText = table.Field(kEstimateCode);
    const std::optional<std::string> code = ParseStockCode(codeText);
    double price = 0;
    std::optional<QString> reason;
    if (!code) {
      reason = QStringLiteral("不是沪深证券代码“%1”").arg(FieldText(codeText));
    } else if (!known.contains(CodeNumberOfStock(*code))) {
      reason = QStringLiteral("代码 %1 不在证券表中").arg(FieldText(codeText));
    } else if ((reason = ReadPrice(table.Field(kEstimatePrice), price))) {
      reason = QStringLiteral("估值") + *reason;
    } else if (!seen.insert(*code).second) {
      reason = QStringLiteral("代码 %1 重复").arg(FieldText(codeText));
    }
    if (reason) {
      table.Reject(*reason);
    } else {
      values.push_back({*code, price});
    }
  }
  Finish(table, rejections, understood);
  return values;
}

}  // namespace holdwise
