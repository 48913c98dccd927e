// SPDX-License-Identifier: MIT
#include "holdwise/market/bar_reader.h"

#include <algorithm>
#include <array>

#include "holdwise/packet/dates.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

enum BarColumn : std::size_t { kDate, kClose, kOpen, kHigh, kLow, kVolume, kColumnCount };

const std::array<CsvColumn, kColumnCount>& BarColumns() {
  static const std::array<CsvColumn, kColumnCount> columns{{
      {{"date", "日期", "交易日期", "trade_date", "tradedate", "trading_date"}, true},
      {{"close", "收盘", "收盘价", "close_price"}, true},
      {{"open", "开盘", "开盘价", "open_price"}},
      {{"high", "最高", "最高价", "high_price"}},
      {{"low", "最低", "最低价", "low_price"}},
      {{"volume", "成交量", "vol"}},
  }};
  return columns;
}

struct NumberedBar {
  Bar bar;
  double volume = 0;
  std::int64_t line = 0;
};

QString Text(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

// The reason why the current line's prices cannot be used; none when `close` is set.
std::optional<QString> CheckPrices(const CsvTable& table, double& close) {
  if (auto reason = ReadPrice(table.Field(kClose), close)) return QStringLiteral("收盘价") + *reason;
  double open = close;
  double high = close;
  double low = close;
  if (table.Has(kOpen)) {
    if (auto reason = ReadPrice(table.Field(kOpen), open)) return QStringLiteral("开盘价") + *reason;
  }
  if (table.Has(kHigh)) {
    if (auto reason = ReadPrice(table.Field(kHigh), high)) return QStringLiteral("最高价") + *reason;
  }
  if (table.Has(kLow)) {
    if (auto reason = ReadPrice(table.Field(kLow), low)) return QStringLiteral("最低价") + *reason;
  }
  if (close > high || close < low) return QStringLiteral("收盘价不在最低价与最高价之间");
  return std::nullopt;
}

std::optional<QString> CheckVolume(const CsvTable& table, double& volume) {
  if (!table.Has(kVolume)) return std::nullopt;
  const std::string_view text = table.Field(kVolume);
  if (text.empty()) return QStringLiteral("成交量缺失");
  // Index volumes pass a price's bounds: the form is checked, not the size.
  const bool isPlain = std::all_of(text.begin(), text.end(), [](char c) { return (c >= '0' && c <= '9') || c == '.'; });
  if (!isPlain || text.find('.') != text.rfind('.') || text == ".") {
    return QStringLiteral("成交量不是数字“%1”").arg(Text(text));
  }
  volume = ParseReal(text).value_or(0);
  return std::nullopt;
}

bool IsTradingDate(std::span<const int> tradingDates, int date) {
  if (tradingDates.empty() || date < tradingDates.front() || date > tradingDates.back()) return true;
  return std::binary_search(tradingDates.begin(), tradingDates.end(), date);
}

void RejectRepeatedDates(const QString& path, bool hasVolumes, std::vector<NumberedBar>& bars, BarFile& file) {
  const auto isEarlier = [](const NumberedBar& a, const NumberedBar& b) { return a.bar.date < b.bar.date; };
  if (!std::is_sorted(bars.begin(), bars.end(), isEarlier)) std::stable_sort(bars.begin(), bars.end(), isEarlier);
  file.bars.reserve(bars.size());
  std::int64_t firstLine = 0;
  for (const NumberedBar& numbered : bars) {
    if (!file.bars.empty() && file.bars.back().date == numbered.bar.date) {
      const QString date = QString::fromStdString(DateText(numbered.bar.date));
      file.rejections.push_back(
          {path, numbered.line, QStringLiteral("日期 %1 重复，首次在第 %2 行").arg(date).arg(firstLine)});
      continue;
    }
    file.bars.push_back(numbered.bar);
    if (hasVolumes) file.volumes.push_back(numbered.volume);
    firstLine = numbered.line;
  }
}

}  // namespace

BarFile ReadBars(const QString& path, std::span<const int> tradingDates, int lastDate) {
  CsvTable table(path, BarColumns());
  std::vector<NumberedBar> bars;
  while (table.Next()) {
    const std::string_view dateText = table.Field(kDate);
    const std::optional<int> date = ReadMarketDate(dateText);
    if (!date) {
      table.Reject(dateText.empty() ? QStringLiteral("日期缺失")
                                    : QStringLiteral("日期无法识别“%1”").arg(Text(dateText)));
      continue;
    }
    if (lastDate != 0 && *date > lastDate) continue;
    double close = 0;
    double volume = 0;
    std::optional<QString> reason = CheckPrices(table, close);
    if (!reason) reason = CheckVolume(table, volume);
    if (!reason && !IsWeekday(*date)) reason = QStringLiteral("%1 是周末，不是交易日").arg(Text(dateText));
    if (!reason && !IsTradingDate(tradingDates, *date)) reason = QStringLiteral("%1 不是交易日").arg(Text(dateText));
    if (reason) {
      table.Reject(*reason);
    } else {
      bars.push_back({{*date, close}, volume, table.Line()});
    }
  }
  BarFile file;
  file.rejections = table.TakeRejections();
  RejectRepeatedDates(path, table.Has(kVolume), bars, file);
  std::stable_sort(file.rejections.begin(), file.rejections.end(),
                   [](const Rejection& a, const Rejection& b) { return a.line < b.line; });
  return file;
}

}  // namespace holdwise
