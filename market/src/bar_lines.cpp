// SPDX-License-Identifier: MIT
#include "bar_lines.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "headings.h"
#include "holdwise/market/market_rules.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/error.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

constexpr double kUnknown = std::numeric_limits<double>::quiet_NaN();

struct BasisColumn {
  BarBasis basis;
  BarColumn column;
  const char* title;
};
constexpr BasisColumn kBasisColumns[] = {
    {BarBasis::AdjustedClose, kBarAdjustedClose, "复权收盘价"},
    {BarBasis::PriceFactor, kBarFactor, "价格因子"},
    {BarBasis::PreviousClose, kBarPreviousClose, "昨收"},
    {BarBasis::CumulativeFactor, kBarCumulativeFactor, "复权因子"},
    {BarBasis::Change, kBarChange, "涨跌额"},
};

const BasisColumn* BasisColumnOf(BarBasis basis) {
  const auto* const found = std::find_if(std::begin(kBasisColumns), std::end(kBasisColumns),
                                         [basis](const BasisColumn& known) { return known.basis == basis; });
  return found == std::end(kBasisColumns) ? nullptr : found;
}

BarBasis BasisOf(const CsvTable& table) {
  for (const BasisColumn& known : kBasisColumns) {
    if (table.Has(known.column)) return known.basis;
  }
  return BarBasis::None;
}

bool IsTradingDate(std::span<const int> tradingDates, int date) {
  if (tradingDates.empty() || date < tradingDates.front() || date > tradingDates.back()) return true;
  return std::binary_search(tradingDates.begin(), tradingDates.end(), date);
}

int CodeNumberIn(std::string_view text, bool isIndex) {
  if (isIndex) return ParseIndexNumber(text, true);
  const std::optional<std::string> code = ParseStockCode(text);
  return code ? CodeNumberOfStock(*code) : 0;
}

}  // namespace

BarLineReader::BarLineReader(CsvTable& table, const BarRules& rules)
    : table_(table), rules_(rules), basis_(BasisOf(table)) {
  if (rules_.isIndex && basis_ == BarBasis::PreviousClose) basis_ = BarBasis::None;
}

bool BarLineReader::HasVolumes() const {
  return table_.Has(kBarVolume);
}

bool BarLineReader::SaysAsTraded() const {
  const std::string_view flag = table_.Field(kBarAdjustFlag);
  return !rules_.isIndex && (flag == "3" || flag == "3.0");
}

BarLineReader::Use BarLineReader::Read(BarLine& line) {
  wasZeroPrice_ = false;
  const std::string_view dateText = table_.Field(kBarDate);
  const std::optional<int> date = ReadTimedDate(dateText);
  if (!date) {
    table_.Reject(dateText.empty() ? QStringLiteral("日期缺失")
                                   : QStringLiteral("日期无法识别“%1”").arg(FieldText(dateText)));
    return Use::Rejected;
  }
  if (rules_.lastDate != 0 && *date > rules_.lastDate) return Use::Later;
  if (const std::string_view flag = table_.Field(kBarAdjustFlag); flag == "1" || flag == "1.0") {
    throw Error(ErrorCategory::Refused,
                "后复权行情（adjustflag 为 1）的价格不是成交价，请导出不复权（3）或前复权（2）的：" +
                    table_.Path().toStdString());
  }
  line.date = static_cast<std::uint32_t>(*date);
  line.isSpecialTreatment = SaysYes(table_.Field(kBarSpecialTreatment)) ? 1U : 0U;
  line.line = static_cast<std::uint32_t>(table_.Line());
  if (IsNoTrade()) return Use::NoTrade;
  bool isSuspended = false;
  std::optional<QString> reason = CheckPrices(line.close);
  if (!reason) reason = CheckVolume(line.volume, line.close, isSuspended);
  if (!reason && isSuspended) return Use::NoTrade;
  if (!reason) reason = CheckDay(*date);
  if (!reason) reason = ReadBasis(line.basis);
  if (!reason) return Use::Bar;
  table_.Reject(*reason);
  return Use::Rejected;
}

bool BarLineReader::IsNoTrade() const {
  const std::string_view trades = table_.Field(kBarTrades);
  return SaysNo(trades) || trades == "停牌" || SaysYes(table_.Field(kBarPaused)) || SaysNothing();
}

// A line that has no price and no volume is that of a day without a trade; some sources repeat the last close in it.
bool BarLineReader::SaysNothing() const {
  bool hasOthers = false;
  for (const BarColumn column : {kBarOpen, kBarHigh, kBarLow}) {
    if (!IsBlankCell(table_.Field(column))) return false;
    hasOthers = hasOthers || table_.Has(column);
  }
  if (!IsBlankCell(table_.Field(kBarClose)) && !(hasOthers && HasVolumes())) return false;
  const std::string_view volume = table_.Field(kBarVolume);
  return IsBlankCell(volume) || ParseReal(volume) == 0.0;
}

// The reason why the current line's prices cannot be used; none when `close` is set.
std::optional<QString> BarLineReader::CheckPrices(double& close) {
  struct Price {
    BarColumn column;
    const char* title;
    double value = 0;
  };
  Price prices[] = {{kBarClose, "收盘价"}, {kBarOpen, "开盘价"}, {kBarHigh, "最高价"}, {kBarLow, "最低价"}};
  for (Price& price : prices) {
    price.value = prices[0].value;
    if (!table_.Has(price.column)) continue;
    const std::string_view text = table_.Field(price.column);
    if (const auto reason = ReadPrice(text, price.value)) {
      wasZeroPrice_ = ParseReal(text).value_or(1) <= 0;
      return QString::fromUtf8(price.title) + *reason;
    }
  }
  close = prices[0].value;
  if (close > prices[2].value || close < prices[3].value) return QStringLiteral("收盘价不在最低价与最高价之间");
  return std::nullopt;
}

std::optional<QString> BarLineReader::CheckVolume(double& volume, double close, bool& isSuspended) const {
  volume = 0;
  if (!table_.Has(kBarVolume)) return std::nullopt;
  const std::string_view text = table_.Field(kBarVolume);
  // Some sources repeat the last close on days without a trade.
  const auto isStandingStill = [&] {
    return table_.Has(kBarHigh) && table_.Has(kBarLow) && ParseReal(table_.Field(kBarHigh)) == close &&
           ParseReal(table_.Field(kBarLow)) == close;
  };
  if (IsBlankCell(text)) {
    isSuspended = isStandingStill();
    return isSuspended ? std::nullopt : std::optional(QStringLiteral("成交量缺失"));
  }
  // Index volumes pass a price's bounds: the form is checked, not the size.
  const std::optional<double> number = ParseReal(text);
  if (!number) return QStringLiteral("成交量不是数字“%1”").arg(FieldText(text));
  if (*number < 0) return QStringLiteral("成交量为负数“%1”").arg(FieldText(text));
  isSuspended = *number == 0 && !rules_.isIndex && isStandingStill();
  volume = *number;
  return std::nullopt;
}

std::optional<QString> BarLineReader::ReadBasis(double& basis) const {
  basis = kUnknown;
  const BasisColumn* known = BasisColumnOf(basis_);
  if (known == nullptr) return std::nullopt;
  const std::string_view text = table_.Field(known->column);
  const auto named = [known](const QString& reason) { return QString::fromUtf8(known->title) + reason; };
  if (basis_ == BarBasis::Change) {
    basis = ParseReal(text).value_or(kUnknown);
    return std::nullopt;
  }
  if (basis_ == BarBasis::PreviousClose) {
    if (IsBlankCell(text)) return std::nullopt;
    if (const auto reason = ReadPlainDecimal(text, basis)) return named(*reason);
    if (basis == 0) basis = kUnknown;  // a first trading day
    return std::nullopt;
  }
  if (const auto reason = ReadPrice(text, basis)) return named(*reason);
  return std::nullopt;
}

std::optional<QString> BarLineReader::CheckDay(int date) const {
  const std::string_view dateText = table_.Field(kBarDate);
  if (!IsWeekday(date)) return QStringLiteral("%1 是周末，不是交易日").arg(FieldText(dateText));
  if (!IsTradingDate(rules_.tradingDates, date)) return QStringLiteral("%1 不是交易日").arg(FieldText(dateText));
  const std::string_view code = table_.Field(kBarCode);
  if (rules_.codeNumber == 0 || code.empty()) return std::nullopt;
  if (CodeNumberIn(code, IsIndexNumber(rules_.codeNumber)) == rules_.codeNumber) return std::nullopt;
  return QStringLiteral("代码“%1”与文件名不符").arg(FieldText(code));
}

void BarLines::Add(const BarLine& line, BarLineReader::Use use, const BarLineReader& reader) {
  switch (use) {
    case BarLineReader::Use::Bar:
      lines.push_back(line);
      sayAsTraded = sayAsTraded || reader.SaysAsTraded();
      break;
    case BarLineReader::Use::NoTrade:
      suspendedDates.push_back(line.date);
      break;
    case BarLineReader::Use::Later:
      ++laterLines;
      break;
    case BarLineReader::Use::Rejected:
      if (reader.WasZeroPrice()) ++zeroPrices;
      break;
  }
}

}  // namespace holdwise
