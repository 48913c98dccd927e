// SPDX-License-Identifier: MIT
#include "factor_files.h"

#include <QFileInfo>
#include <algorithm>

#include "bar_folder.h"
#include "headings.h"
#include "holdwise/market/market_rules.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

enum class FactorKind { Cumulative, Divisor, OfEvent };

struct DatedFactor {
  int date = 0;
  double factor = 1;
};
using Factors = std::map<int, std::vector<DatedFactor>>;

QString Text(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

FactorColumn ColumnOf(const CsvTable& table, const QString& path) {
  for (const FactorColumn column : {kCumulative, kForward, kDivisor, kOfEvent}) {
    if (table.Has(column)) return column;
  }
  throw Error(ErrorCategory::Refused, "表头缺少列“adj_factor”：" + path.toStdString());
}

Factors ReadTable(CsvTable& table, FactorColumn column, int numberOfFile) {
  Factors factors;
  while (table.Next()) {
    const std::string_view dateText = table.Field(kFactorDate);
    const std::optional<int> date = ReadTimedDate(dateText);
    int number = numberOfFile;
    if (table.Has(kFactorCode)) {
      const std::optional<std::string> code = ParseStockCode(table.Field(kFactorCode));
      const int ofLine = code ? CodeNumberOfStock(*code) : 0;
      number = numberOfFile == 0 || ofLine == numberOfFile ? ofLine : 0;
    }
    double factor = 0;
    std::optional<QString> reason = ReadPrice(table.Field(column), factor);
    if (reason) reason = QStringLiteral("因子") + *reason;
    if (number == 0) reason = QStringLiteral("不是该证券的代码“%1”").arg(Text(table.Field(kFactorCode)));
    if (!date) reason = QStringLiteral("日期无法识别“%1”").arg(Text(dateText));
    if (reason) {
      table.Reject(*reason);
    } else {
      factors[number].push_back({*date, factor});
    }
  }
  return factors;
}

FactorKind KindOf(FactorColumn column, const Factors& factors) {
  if (column == kDivisor) return FactorKind::Divisor;
  if (column != kOfEvent) return FactorKind::Cumulative;
  // Prices fall when rights or dividends go off: a factor of 1 or more is that of a series.
  const bool isSeries = std::any_of(factors.begin(), factors.end(), [](const auto& ofOne) {
    return std::any_of(ofOne.second.begin(), ofOne.second.end(),
                       [](const DatedFactor& dated) { return dated.factor >= 1; });
  });
  return isSeries ? FactorKind::Cumulative : FactorKind::OfEvent;
}

FactorSteps StepsOf(std::vector<DatedFactor> factors, FactorKind kind) {
  std::stable_sort(factors.begin(), factors.end(),
                   [](const DatedFactor& a, const DatedFactor& b) { return a.date < b.date; });
  FactorSteps steps;
  double before = 0;
  for (const DatedFactor& dated : factors) {
    double ratio = dated.factor;
    if (kind != FactorKind::OfEvent) {
      ratio = before == 0 ? 1 : kind == FactorKind::Cumulative ? before / dated.factor : dated.factor / before;
      before = dated.factor;
    }
    if (ratio == 1) continue;
    if (!steps.empty() && steps.back().date == dated.date) {
      steps.back().ratio *= ratio;
    } else {
      steps.push_back({dated.date, ratio});
    }
  }
  return steps;
}

QString KindText(FactorKind kind) {
  switch (kind) {
    case FactorKind::Cumulative:
      return QStringLiteral("累计因子，价格乘以它");
    case FactorKind::Divisor:
      return QStringLiteral("累计因子，价格除以它");
    case FactorKind::OfEvent:
      break;
  }
  return QStringLiteral("每次除权一个，之前的价格乘以它");
}

}  // namespace

FactorTable ReadFactors(const QString& place, std::vector<Rejection>& rejections,
                        std::vector<std::pair<QString, QString>>& understood) {
  const BarSources sources = QFileInfo(place).isDir() ? ListStockFiles(place, rejections) : BarSources{{}, {place}};
  FactorTable all;
  const auto read = [&](const QString& path, int number) {
    CsvTable table(path, FactorColumns());
    if (number == 0 && !table.Has(kFactorCode)) {
      throw Error(ErrorCategory::Refused, "表头缺少列“code”：" + path.toStdString());
    }
    const FactorColumn column = ColumnOf(table, path);
    Factors factors = ReadTable(table, column, number);
    const FactorKind kind = KindOf(column, factors);
    for (auto& [code, ofOne] : factors) all[code] = StepsOf(std::move(ofOne), kind);
    std::vector<Rejection> more = table.TakeRejections();
    std::move(more.begin(), more.end(), std::back_inserter(rejections));
    understood.emplace_back(path, table.Understood() + QStringLiteral("（") + KindText(kind) + QStringLiteral("）"));
  };
  for (const StockFile& file : sources.stocks) read(file.path, CodeNumberOfStock(file.code));
  for (const QString& path : sources.tables) read(path, 0);
  if (all.empty()) throw Error(ErrorCategory::Refused, "没有可用的复权因子：" + place.toStdString());
  return all;
}

}  // namespace holdwise
