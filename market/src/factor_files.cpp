// SPDX-License-Identifier: MIT
#include "factor_files.h"

#include <QFileInfo>
#include <algorithm>
#include <utility>

#include "bar_folder.h"
#include "headings.h"
#include "holdwise/market/market_rules.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

struct DatedFactor {
  int date = 0;
  double factor = 1;
};
using Factors = std::map<int, std::vector<DatedFactor>>;

}  // namespace

struct FactorFile {
  QString path;
  QString understood;
  FactorColumn column = kFactor;
  Factors factors;  // by code number, ascending by date
  std::vector<Rejection> rejections;
};

namespace {

enum class FactorKind { Cumulative, Divisor, OfEvent };

FactorColumn ColumnOf(const CsvTable& table, const QString& path) {
  for (const FactorColumn column : {kCumulative, kForward, kDivisor, kOfEvent, kFactor}) {
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
    if (number == 0) reason = QStringLiteral("不是该证券的代码“%1”").arg(FieldText(table.Field(kFactorCode)));
    if (!date) reason = QStringLiteral("日期无法识别“%1”").arg(FieldText(dateText));
    if (reason) {
      table.Reject(*reason);
    } else {
      factors[number].push_back({*date, factor});
    }
  }
  return factors;
}

/// How the values of all files that do not say it themselves look.
class FactorLook {
 public:
  /// @param factors of one stock, ascending
  void Add(const std::vector<DatedFactor>& factors);
  /// A row a day, which repeats the value until something goes off.
  [[nodiscard]] bool IsDaily() const { return repeatedSoon_ * 2 > pairs_; }
  [[nodiscard]] bool CanBeCumulative() const { return IsDaily() && !returns_; }
  /// Prices fall when rights or dividends go off.
  [[nodiscard]] bool CanBeOfEvents() const { return !IsDaily() && highest_ <= 1; }
  [[nodiscard]] bool MustBeOfEvents() const { return CanBeOfEvents() && highest_ < 1 && repeated_ * 2 <= pairs_; }

 private:
  std::size_t pairs_ = 0;
  std::size_t repeated_ = 0;
  std::size_t repeatedSoon_ = 0;
  bool returns_ = false;  // to the value before a single other one: events in a row a day
  double highest_ = 0;
};

void FactorLook::Add(const std::vector<DatedFactor>& factors) {
  constexpr int kSoon = 12;  // days: over the longest holidays
  for (std::size_t i = 0; i < factors.size(); ++i) {
    highest_ = std::max(highest_, factors[i].factor);
    if (i == 0) continue;
    ++pairs_;
    if (factors[i].factor == factors[i - 1].factor) {
      ++repeated_;
      if (DayNumber(factors[i].date) - DayNumber(factors[i - 1].date) <= kSoon) ++repeatedSoon_;
    } else if (i > 1 && factors[i].factor == factors[i - 2].factor) {
      returns_ = true;
    }
  }
}

FactorKind KindOf(FactorColumn column, const FactorLook& look, const QString& path) {
  if (column == kDivisor) return FactorKind::Divisor;
  if (column == kCumulative || column == kForward) return FactorKind::Cumulative;
  if (column == kFactor ? look.MustBeOfEvents() : look.CanBeOfEvents()) return FactorKind::OfEvent;
  if (column == kFactor && look.CanBeCumulative()) return FactorKind::Cumulative;
  throw Error(ErrorCategory::Refused,
              column == kFactor
                  ? "看不出 factor 一列是累计因子还是每次除权一个：是累计因子的，请把列名改为 adj_factor；"
                    "每次除权一个、都小于 1 的，请改为 event_factor：" +
                        path.toStdString()
                  : "除权因子应当每次除权一行、小于 1（之前的价格乘以它）：是累计因子的，请把列名改为 "
                    "adj_factor；大于 1 的请换成它的倒数：" +
                        path.toStdString());
}

/// @param isDaily there is a row a day, and where there is none it is missing
FactorSteps StepsOf(const std::vector<DatedFactor>& factors, FactorKind kind, bool isDaily) {
  FactorSteps steps;
  double before = 0;
  int dayBefore = 0;
  for (const DatedFactor& dated : factors) {
    const int after = isDaily && kind != FactorKind::OfEvent ? std::exchange(dayBefore, dated.date) : 0;
    double ratio = dated.factor;
    if (kind != FactorKind::OfEvent) {
      ratio = before == 0 ? 1 : kind == FactorKind::Cumulative ? before / dated.factor : dated.factor / before;
      before = dated.factor;
    }
    if (ratio == 1) continue;
    if (!steps.empty() && steps.back().date == dated.date) {
      steps.back().ratio *= ratio;
    } else {
      steps.push_back({dated.date, ratio, after});
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

// With the code number of the file's name, or 0: then there must be a column of codes.
FactorFile ReadFile(const QString& path, int number) {
  CsvTable table(path, FactorColumns());
  if (number == 0 && !table.Has(kFactorCode)) {
    throw Error(ErrorCategory::Refused, "表头缺少列“code”：" + path.toStdString());
  }
  FactorFile file{path, {}, ColumnOf(table, path), {}, {}};
  file.factors = ReadTable(table, file.column, number);
  for (auto& [code, factors] : file.factors) {
    std::stable_sort(factors.begin(), factors.end(),
                     [](const DatedFactor& a, const DatedFactor& b) { return a.date < b.date; });
  }
  table.MoveRejectionsTo(file.rejections);
  file.understood = table.Understood();
  return file;
}

using FactorFiles = std::vector<std::shared_ptr<const FactorFile>>;

FactorFiles ReadFiles(const BarSources& sources, KeptFactorFiles& kept) {
  FactorFiles files;
  KeptFactorFiles now;
  const auto add = [&](const QString& path, int number) {
    const std::optional<FileState> state = FileStateOf(path);
    std::shared_ptr<const FactorFile> file = state ? kept.Find(path, *state) : nullptr;
    if (file == nullptr) file = std::make_shared<const FactorFile>(ReadFile(path, number));
    if (state && HasSettled(*state)) now.Add(path, *state, file);
    files.push_back(std::move(file));
  };
  for (const StockFile& file : sources.stocks) add(file.path, CodeNumberOfStock(file.code));
  for (const QString& path : sources.tables) add(path, 0);
  kept = std::move(now);
  return files;
}

}  // namespace

FactorTable ReadFactors(const QString& place, std::vector<Rejection>& rejections,
                        std::vector<std::pair<QString, QString>>& understood, KeptFactorFiles& kept) {
  const BarSources sources = QFileInfo(place).isDir() ? ListStockFiles(place, rejections) : BarSources{{}, {place}};
  const FactorFiles files = ReadFiles(sources, kept);
  std::map<FactorColumn, FactorLook> looks;
  for (const auto& file : files) {
    rejections.insert(rejections.end(), file->rejections.begin(), file->rejections.end());
    for (const auto& [code, factors] : file->factors) looks[file->column].Add(factors);
  }
  FactorTable all;
  for (const auto& file : files) {
    const FactorKind kind = KindOf(file->column, looks[file->column], file->path);
    for (const auto& [code, factors] : file->factors) {
      all[code] = {StepsOf(factors, kind, looks[file->column].IsDaily()),
                   kind == FactorKind::OfEvent ? 0 : factors.front().date};
    }
    understood.emplace_back(file->path,
                            file->understood + QStringLiteral("（") + KindText(kind) + QStringLiteral("）"));
  }
  if (all.empty()) throw Error(ErrorCategory::Refused, "没有可用的复权因子：" + place.toStdString());
  return all;
}

}  // namespace holdwise
