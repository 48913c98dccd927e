// SPDX-License-Identifier: MIT
#include "input_report.h"

#include <QFileInfo>
#include <algorithm>

#include "holdwise/packet/dates.h"

namespace holdwise {
namespace {

// One close for so many bars in a row is hardly a market's.
constexpr int kLongStandstill = 20;

const char* AdjustmentText(Adjustment adjustment) {
  switch (adjustment) {
    case Adjustment::PreviousClose:
      return "按昨收复权";
    case Adjustment::Factors:
      return "按 --factors 复权";
    case Adjustment::OwnFactors:
      return "按复权因子列复权";
    case Adjustment::PriceFactors:
      return "已复权，按价格因子还原到成交价";
    case Adjustment::AdjustedCloses:
      return "按复权收盘价列复权";
    case Adjustment::LaterFactors:
      return "的 --factors 晚于行情开始，只复权了一部分";
    case Adjustment::AsTheyStand:
      break;
  }
  return "按原样采用（应为前复权）";
}

QString Date(int date) {
  return QString::fromStdString(DateText(date));
}

}  // namespace

void InputReport::Some::Add(const QString& text) {
  if (count++ == 0) example = text;
}

QString InputReport::Some::Text() const {
  return count == 0 ? QStringLiteral("无") : QStringLiteral("%1 只（如 %2）").arg(count).arg(example);
}

void InputReport::AddFile(const QString& path, const QString& understood) {
  const QString folder = QFileInfo(path).path();
  const auto isSame = [&](const Files& files) {
    return files.understood == understood && QFileInfo(files.first).path() == folder;
  };
  const auto known = std::find_if(files_.begin(), files_.end(), isSame);
  if (known == files_.end()) {
    files_.push_back({path, understood, 1});
  } else {
    ++known->count;
  }
}

void InputReport::AddStock(const StockFile& stock, const BarFile& file, int lastDate) {
  const QString code = QString::fromStdString(stock.code);
  if (!file.understood.isEmpty()) AddFile(stock.path, file.understood);
  ++stocks_;
  ++adjusted_[static_cast<std::size_t>(file.adjustment)];
  const int first = file.bars.front().date;
  const int last = file.bars.back().date;
  firstDate_ = firstDate_ == 0 ? first : std::min(firstDate_, first);
  lastDate_ = std::max(lastDate_, last);
  suspendedDays_ += file.counts.suspendedDays;
  zeroPrices_ += file.counts.zeroPrices;
  if (file.counts.missingDays > 0) gaps_.Add(QStringLiteral("%1 缺 %2 日").arg(code).arg(file.counts.missingDays));
  if (last < lastDate) stale_.Add(QStringLiteral("%1 到 %2").arg(code, Date(last)));
  if (file.counts.longestStandstill >= kLongStandstill) {
    still_.Add(QStringLiteral("%1 连续 %2 日").arg(code).arg(file.counts.longestStandstill));
  }
  doubts_ += static_cast<std::int64_t>(file.warnings.size());
  if (!file.warnings.empty()) doubted_.Add(code + u' ' + file.warnings.front().reason);
}

void InputReport::AddDoubt(const QString& doubt) {
  oddReferences_.Add(doubt);
}

std::vector<QString> InputReport::Understood(std::span<const int> tradingDates) const {
  std::vector<QString> lines;
  for (const Files& files : files_) {
    const QString more = files.count == 1 ? QString() : QStringLiteral(" 等 %1 个文件").arg(files.count);
    lines.push_back(QStringLiteral("%1%2：%3").arg(files.first, more, files.understood));
  }
  lines.push_back(QStringLiteral("交易日：%1 个，%2 至 %3")
                      .arg(tradingDates.size())
                      .arg(Date(tradingDates.front()), Date(tradingDates.back())));
  const std::vector<QString> brief = Brief();
  lines.insert(lines.end(), brief.begin(), brief.end());
  lines.push_back(QStringLiteral("收盘价久不变动：%1").arg(still_.Text()));
  return lines;
}

std::vector<QString> InputReport::Brief() const {
  std::vector<QString> lines;
  if (stocks_ == 0) return lines;
  lines.push_back(QStringLiteral("行情：%1 只，%2 至 %3").arg(stocks_).arg(Date(firstDate_), Date(lastDate_)));
  for (int kind = 0; kind < kAdjustments; ++kind) {
    const int count = adjusted_[static_cast<std::size_t>(kind)];
    if (count == 0) continue;
    lines.push_back(QStringLiteral("复权：%1 只%2")
                        .arg(count)
                        .arg(QString::fromUtf8(AdjustmentText(static_cast<Adjustment>(kind)))));
  }
  lines.push_back(QStringLiteral("停牌的行：%1，价格为零或负数的行：%2").arg(suspendedDays_).arg(zeroPrices_));
  lines.push_back(QStringLiteral("中间缺交易日：%1").arg(gaps_.Text()));
  lines.push_back(QStringLiteral("没有最后一个交易日：%1").arg(stale_.Text()));
  return lines;
}

std::vector<QString> InputReport::Advice() const {
  std::vector<QString> lines;
  if (oddReferences_.count > 0) {
    lines.push_back(QStringLiteral("指数行情和交易日历有 %1 处要核对，如 %2")
                        .arg(oddReferences_.count)
                        .arg(oddReferences_.example));
  }
  if (doubts_ == 0) return lines;
  lines.push_back(QStringLiteral("行情像是未复权的：%1 只股票 %2 处，如 %3。请用前复权的行情、带昨收一列的行情，或用 "
                                 "--factors 给出复权因子")
                      .arg(doubted_.count)
                      .arg(doubts_)
                      .arg(doubted_.example));
  return lines;
}

}  // namespace holdwise
