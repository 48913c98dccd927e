// SPDX-License-Identifier: MIT
#include "holdwise/market/csv_table.h"

#include <algorithm>

#include "holdwise/packet/error.h"
#include "holdwise/packet/number_text.h"
#include "holdwise/packet/text_file.h"

namespace holdwise {
namespace {

constexpr double kLargestNumber = 1e9;
constexpr std::size_t kDecimals = 4;

QString Text(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

// "收盘价(元)" and "Close" are the headings "收盘价" and "close".
std::string PlainHeading(std::string_view heading) {
  const std::size_t bracket = std::min(heading.find('('), heading.find("（"));
  std::string plain(heading.substr(0, bracket));
  while (!plain.empty() && plain.back() == ' ') plain.pop_back();
  std::transform(plain.begin(), plain.end(), plain.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return plain;
}

}  // namespace

QString Rejection::ToText() const {
  const QString shown = ShownText(reason);
  if (line == 0) return file + QStringLiteral(": ") + shown;
  return QStringLiteral("%1:%2: %3").arg(file, QString::number(line), shown);
}

CsvTable::CsvTable(const QString& path, std::span<const CsvColumn> columns)
    : path_(path),
      text_(ReadTextFile(path)),
      reader_(
          std::make_unique<CsvReader>(std::string_view(text_.constData(), static_cast<std::size_t>(text_.size())))) {
  try {
    if (!reader_->Next()) throw Error(ErrorCategory::Refused, "文件为空");
    MapHeadings(columns);
  } catch (const Error& error) {
    throw Error(ErrorCategory::Refused,
                ShownText(QString::fromUtf8(error.what())).toStdString() + "：" + path.toStdString());
  }
}

void CsvTable::MapHeadings(std::span<const CsvColumn> columns) {
  const std::vector<std::string_view>& headings = reader_->Fields();
  fieldCount_ = headings.size();
  places_.assign(columns.size(), -1);
  for (std::size_t place = 0; place < headings.size(); ++place) {
    const std::string heading = PlainHeading(headings[place]);
    for (std::size_t column = 0; column < columns.size(); ++column) {
      const auto& known = columns[column].headings;
      if (std::find(known.begin(), known.end(), heading) == known.end()) continue;
      if (places_[column] >= 0) {
        throw Error(ErrorCategory::Refused, "表头重复“" + std::string(headings[place]) + "”");
      }
      places_[column] = static_cast<int>(place);
    }
  }
  for (std::size_t column = 0; column < columns.size(); ++column) {
    if (!columns[column].isRequired || places_[column] >= 0) continue;
    throw Error(ErrorCategory::Refused, "表头缺少列“" + std::string(columns[column].headings.front()) + "”");
  }
}

bool CsvTable::Next() {
  for (;;) {
    try {
      if (!reader_->Next()) return false;
    } catch (const Error& error) {
      Reject(QString::fromUtf8(error.what()));
      continue;
    }
    const std::size_t count = reader_->Fields().size();
    if (count == fieldCount_) return true;
    Reject(QStringLiteral("字段数 %1 与表头的 %2 不符").arg(count).arg(fieldCount_));
  }
}

std::string_view CsvTable::Field(std::size_t column) const {
  const int place = places_[column];
  return place < 0 ? std::string_view() : reader_->Fields()[static_cast<std::size_t>(place)];
}

void CsvTable::Reject(const QString& reason) {
  rejections_.push_back({path_, reader_->Line(), reason});
}

std::optional<QString> ReadPlainDecimal(std::string_view text, double& value) {
  if (text.empty()) return QStringLiteral("缺失");
  const bool isPlain =
      std::all_of(text.begin(), text.end(), [](char c) { return (c >= '0' && c <= '9') || c == '.' || c == '-'; });
  const std::optional<double> number = isPlain ? ParseReal(text) : std::nullopt;
  if (!number) return QStringLiteral("不是数字“%1”").arg(Text(text));
  if (*number < 0) return QStringLiteral("为负数“%1”").arg(Text(text));
  if (*number >= kLargestNumber) return QStringLiteral("过大“%1”").arg(Text(text));
  if (const std::size_t point = text.find('.'); point != std::string_view::npos) {
    const std::size_t last = text.find_last_not_of('0');
    if (last - point > kDecimals) return QStringLiteral("超过四位小数“%1”").arg(Text(text));
  }
  value = *number;
  return std::nullopt;
}

std::optional<QString> ReadPrice(std::string_view text, double& value) {
  double number = 0;
  if (auto reason = ReadPlainDecimal(text, number)) return reason;
  if (number <= 0) return QStringLiteral("不是正数“%1”").arg(Text(text));
  value = number;
  return std::nullopt;
}

}  // namespace holdwise
