// SPDX-License-Identifier: MIT
#include "holdwise/market/bar_reader.h"

#include <algorithm>
#include <cmath>

#include "bar_adjustment.h"
#include "bar_lines.h"
#include "headings.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

const LineFile& FileOf(const std::vector<LineFile>& files, std::uint32_t line) {
  const auto behind = std::upper_bound(files.begin(), files.end(), line,
                                       [](std::uint32_t l, const LineFile& file) { return l <= file.linesBefore; });
  return *std::prev(behind);
}

Rejection Repeated(const std::vector<LineFile>& files, const BarLine& line, const BarLine& first) {
  const LineFile& file = FileOf(files, line.line);
  const LineFile& fileOfFirst = FileOf(files, first.line);
  const QString where =
      &file == &fileOfFirst ? QStringLiteral("首次在第") : QStringLiteral("首次在 %1 第").arg(fileOfFirst.path);
  return {file.path, line.line - file.linesBefore,
          QStringLiteral("日期 %1 重复，%2 %3 行")
              .arg(QString::fromStdString(DateText(static_cast<int>(line.date))), where)
              .arg(first.line - fileOfFirst.linesBefore)};
}

void SortAndRejectRepeated(std::vector<BarLine>& lines, const std::vector<LineFile>& files, BarFile& file) {
  const auto isEarlier = [](const BarLine& a, const BarLine& b) { return a.date < b.date; };
  if (!std::is_sorted(lines.begin(), lines.end(), isEarlier)) std::stable_sort(lines.begin(), lines.end(), isEarlier);
  const auto isRepeated = [&](const BarLine& first, const BarLine& line) {
    if (first.date != line.date) return false;
    file.rejections.push_back(Repeated(files, line, first));
    return true;
  };
  lines.erase(std::unique(lines.begin(), lines.end(), isRepeated), lines.end());
}

int LongestStandstill(const std::vector<Bar>& bars) {
  int longest = 0;
  int length = 0;
  for (std::size_t day = 0; day < bars.size(); ++day) {
    length = day > 0 && bars[day].close == bars[day - 1].close ? length + 1 : 1;
    longest = std::max(longest, length);
  }
  return longest;
}

int DaysAfter(const std::vector<Bar>& bars, std::span<const int> tradingDates) {
  if (tradingDates.empty()) return 0;
  return static_cast<int>(std::count_if(bars.begin(), bars.end(),
                                        [last = tradingDates.back()](const Bar& bar) { return bar.date > last; }));
}

// Closes of whole cents that are none when they are divided: the factor is that of prices as traded.
bool LooksAsTraded(std::span<const BarLine> lines) {
  constexpr std::size_t kOneOf = 4;  // some quotients are whole cents by chance
  const auto isWholeCents = [](double price) {
    const double cents = price * 100;
    return std::fabs(cents - std::round(cents)) <= 1e-3 + cents * 1e-6;
  };
  const auto isWhole = [&](const BarLine& line) { return isWholeCents(line.close); };
  const auto isBroken = [&](const BarLine& line) { return !isWholeCents(line.close / line.basis); };
  const auto broken = static_cast<std::size_t>(std::count_if(lines.begin(), lines.end(), isBroken));
  return broken * kOneOf > lines.size() && std::all_of(lines.begin(), lines.end(), isWhole);
}

int MissingDays(const std::vector<Bar>& bars, const std::vector<std::uint32_t>& suspendedDates,
                std::span<const int> tradingDates) {
  if (bars.empty()) return 0;
  const int first = bars.front().date;
  const int last = bars.back().date;
  const auto from = std::lower_bound(tradingDates.begin(), tradingDates.end(), first);
  const auto to = std::upper_bound(tradingDates.begin(), tradingDates.end(), last);
  auto bar = bars.begin();  // both ascend, and the last bar is not before the last date
  const auto missing = std::count_if(from, to, [&bar](int date) {
    while (bar->date < date) ++bar;
    return bar->date != date;
  });
  const auto suspended = std::count_if(suspendedDates.begin(), suspendedDates.end(), [&](std::uint32_t date) {
    return std::binary_search(from, to, static_cast<int>(date));
  });
  return static_cast<int>(std::max<std::ptrdiff_t>(0, missing - suspended));
}

}  // namespace

BarFile AssembleBars(BarLines source, const std::vector<LineFile>& files, std::vector<Rejection> rejections,
                     const BarRules& rules) {
  BarFile file;
  file.rejections = std::move(rejections);
  SortAndRejectRepeated(source.lines, files, file);
  if (source.basis == BarBasis::PriceFactor && LooksAsTraded(source.lines)) {
    throw Error(ErrorCategory::Refused,
                "factor 一列应当使“价格 / factor”是成交价，而收盘价本身像成交价：是累计复权因子的，请把列名改为 "
                "adj_factor；价格是复权的，请多写几位小数：" +
                    files.front().path.toStdString());
  }
  file.bars.reserve(source.lines.size());
  for (const BarLine& line : source.lines) file.bars.push_back({static_cast<int>(line.date), line.close});
  if (source.hasVolumes) {
    file.volumes.reserve(source.lines.size());
    for (const BarLine& line : source.lines) file.volumes.push_back(line.volume);
  }
  file.adjustment = AdjustForward(source, rules, file.bars);
  if (!std::all_of(file.bars.begin(), file.bars.end(), [](const Bar& bar) { return IsPrice(bar.close); })) {
    throw Error(ErrorCategory::Refused,
                "复权后的价格超出范围，请核对昨收或复权因子：" + files.front().path.toStdString());
  }
  if (source.sayAsTraded && file.adjustment == Adjustment::AsTheyStand && source.basis != BarBasis::PreviousClose) {
    file.warnings.push_back({files.front().path, 0, QStringLiteral("行情不复权（adjustflag 为 3），又没有昨收")});
  }
  for (const QString& doubt : DoubtsAbout(file.bars, source, file.adjustment, rules)) {
    file.warnings.push_back({files.front().path, 0, doubt});
  }
  file.counts = {static_cast<int>(source.suspendedDates.size()),
                 MissingDays(file.bars, source.suspendedDates, rules.tradingDates),
                 source.zeroPrices,
                 LongestStandstill(file.bars),
                 source.laterLines,
                 DaysAfter(file.bars, rules.tradingDates)};
  return file;
}

BarFile ReadBars(const QString& path, const BarRules& rules) {
  CsvTable table(path, BarColumns());
  BarLineReader reader(table, rules);
  BarLines lines;
  lines.basis = reader.Basis();
  lines.hasVolumes = reader.HasVolumes();
  while (table.Next()) {
    BarLine line{};
    const BarLineReader::Use use = reader.Read(line);
    lines.Add(line, use, reader);
  }
  std::vector<Rejection> rejections;
  table.MoveRejectionsTo(rejections);
  BarFile file = AssembleBars(std::move(lines), {{path, 0}}, std::move(rejections), rules);
  file.understood = table.Understood();
  std::stable_sort(file.rejections.begin(), file.rejections.end(),
                   [](const Rejection& a, const Rejection& b) { return a.line < b.line; });
  return file;
}

BarFile ReadBars(const QString& path, std::span<const int> tradingDates, int lastDate) {
  BarRules rules;
  rules.tradingDates = tradingDates;
  rules.lastDate = lastDate;
  return ReadBars(path, rules);
}

}  // namespace holdwise
