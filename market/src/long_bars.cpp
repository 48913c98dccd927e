// SPDX-License-Identifier: MIT
#include "long_bars.h"

#include <limits>

#include "beijing_lines.h"
#include "headings.h"
#include "holdwise/packet/code_text.h"
#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

const char* WhyUnknown(std::string_view code) {
  const std::optional<NamedCode> named = ParseNamedCode(code);
  const int market = named ? MarketOfStock(named->digits) : 0;
  const bool contradicts = market != 0 && named->market != 0 && named->market != market;
  return contradicts ? "的市场与代码不符" : "不在证券表中，或不是沪深证券代码";
}

}  // namespace

LongBars::LongBars(std::function<int(std::string_view)> numberOf, const BarRules& rules)
    : numberOf_(std::move(numberOf)), rules_(rules) {}

void LongBars::Read(const QString& path) {
  CsvTable table(path, BarColumns());
  if (!table.Has(kBarCode)) throw Error(ErrorCategory::Refused, "表头缺少列“code”：" + path.toStdString());
  BarLineReader reader(table, rules_);
  files_.push_back({path, linesBefore_});
  while (table.Next()) {
    BarLines* lines = LinesOf(table.Field(kBarCode), table, path);
    if (lines == nullptr) continue;
    if (!lines->lines.empty() && lines->basis != reader.Basis()) {
      throw Error(ErrorCategory::Refused, "与前面的文件的复权依据列不一致：" + path.toStdString());
    }
    lines->basis = reader.Basis();
    lines->hasVolumes = reader.HasVolumes();
    BarLine line{};
    const BarLineReader::Use use = reader.Read(line);
    line.line += linesBefore_;
    lines->Add(line, use, reader);
  }
  if (table.Line() > std::numeric_limits<std::uint32_t>::max() - linesBefore_) {
    throw Error(ErrorCategory::Refused, "行数过多：" + path.toStdString());
  }
  linesBefore_ += static_cast<std::uint32_t>(table.Line());
  table.MoveRejectionsTo(rejections_);
  understood_.emplace_back(path, table.Understood());
}

BarLines* LongBars::LinesOf(std::string_view code, const CsvTable& table, const QString& path) {
  // Lines of one security mostly stand together, or those of one date in the same order.
  if (code != lastCode_ || lastLines_ == nullptr) {
    lastCode_ = code;
    const auto [known, isNew] = byCode_.try_emplace(lastCode_, nullptr);
    if (isNew) {
      const int number = numberOf_(code);
      if (number != 0) known->second = &lines_[number];
    }
    lastLines_ = known->second;
  }
  if (lastLines_ != nullptr) return lastLines_;
  Unknown& unknown = unknown_[lastCode_];
  if (unknown.lines++ == 0) {
    unknown.path = path;
    unknown.line = table.Line();
  }
  return nullptr;
}

std::vector<Rejection> LongBars::TakeRejections() {
  BeijingLines beijing;
  for (const auto& [code, unknown] : unknown_) {
    if (beijing.Take(code, unknown.path, unknown.line, unknown.lines)) continue;
    rejections_.push_back(
        {unknown.path, unknown.line,
         QStringLiteral("代码“%1”%2（共 %3 行）")
             .arg(QString::fromStdString(code), QString::fromUtf8(WhyUnknown(code)), QString::number(unknown.lines)),
         unknown.lines});
  }
  beijing.AddTo(rejections_);
  unknown_.clear();
  return std::move(rejections_);
}

std::vector<int> LongBars::Numbers() const {
  std::vector<int> numbers;
  for (const auto& [number, lines] : lines_) numbers.push_back(number);
  return numbers;
}

BarFile LongBars::Take(int number, const BarRules& rules) {
  return AssembleBars(std::move(lines_.at(number)), files_, {}, rules);
}

}  // namespace holdwise
