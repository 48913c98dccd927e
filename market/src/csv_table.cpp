// SPDX-License-Identifier: MIT
#include "holdwise/market/csv_table.h"

#include <QStringList>
#include <algorithm>
#include <iterator>
#include <set>

#include "holdwise/packet/error.h"
#include "holdwise/packet/number_text.h"
#include "holdwise/packet/text_file.h"

namespace holdwise {
namespace {

constexpr double kLargestNumber = 1e9;

char LowerCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool IsSameWord(std::string_view text, std::string_view lowerCase) {
  return std::equal(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(),
                    [](char one, char other) { return LowerCase(one) == other; });
}

// "收盘价(元)" and "Close" are the headings "收盘价" and "close".
std::string PlainHeading(std::string_view heading) {
  const std::size_t bracket = std::min(heading.find('('), heading.find("（"));
  std::string plain(heading.substr(0, bracket));
  while (!plain.empty() && plain.back() == ' ') plain.pop_back();
  std::transform(plain.begin(), plain.end(), plain.begin(), LowerCase);
  return plain;
}

// What people do not see in a heading of which nothing is known.
std::string HintAbout(const std::vector<std::string>& headings) {
  if (headings.size() == 1 && headings.front().find_first_of(";\t") != std::string::npos) {
    return "（看来是用分号或制表符分隔的，请另存为逗号分隔的 CSV）";
  }
  if (headings.front() == "Price") return "（列名有几层，请在 yf.download 里加上 multi_level_index=False）";
  return {};
}

}  // namespace

QString Rejection::ToText() const {
  const QString shown = ShownText(reason);
  if (line == 0) return file + QStringLiteral(": ") + shown;
  return QStringLiteral("%1:%2: %3").arg(file, QString::number(line), shown);
}

CsvTable::CsvTable(const QString& path, std::span<const CsvColumn> columns, std::int64_t pieceBytes)
    : path_(path), columns_(columns.begin(), columns.end()), pieces_(path, pieceBytes) {
  NextPiece();  // every file has one
  try {
    if (!reader_->Next()) throw Error(ErrorCategory::Refused, "文件为空");
    headings_.assign(reader_->Fields().begin(), reader_->Fields().end());
    MapHeadings();
  } catch (const Error& error) {
    throw Error(ErrorCategory::Refused,
                ShownText(QString::fromUtf8(error.what())).toStdString() + "：" + path.toStdString());
  }
}

bool CsvTable::NextPiece() {
  linesBefore_ += text_.count('\n');
  if (!pieces_.Next(text_)) return false;
  reader_ = std::make_unique<CsvReader>(std::string_view(text_.constData(), static_cast<std::size_t>(text_.size())));
  return true;
}

void CsvTable::MapHeadings() {
  firstPlaces_.assign(columns_.size(), -1);
  std::set<std::string> seen;
  for (std::size_t place = 0; place < headings_.size(); ++place) {
    const std::string heading = PlainHeading(headings_[place]);
    for (std::size_t column = 0; column < columns_.size(); ++column) {
      const auto& known = columns_[column].headings;
      if (std::find(known.begin(), known.end(), heading) == known.end()) continue;
      if (!seen.insert(heading).second) throw Error(ErrorCategory::Refused, "表头重复“" + headings_[place] + "”");
      if (firstPlaces_[column] >= 0) {
        secondPlaces_.push_back({column, place});
      } else {
        firstPlaces_[column] = static_cast<int>(place);
      }
    }
  }
  SetBetterFirst();
  places_ = firstPlaces_;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    if (!columns_[column].isRequired || firstPlaces_[column] >= 0) continue;
    throw Error(ErrorCategory::Refused,
                "表头缺少列“" + std::string(columns_[column].headings.front()) + "”" + HintAbout(headings_));
  }
}

// Of a column of which one field counts, the one under the earliest of the headings comes first.
void CsvTable::SetBetterFirst() {
  for (SecondPlace& second : secondPlaces_) {
    const CsvColumn& column = columns_[second.column];
    if (column.isBetter == nullptr) continue;
    const auto rank = [&](std::size_t place) {
      return std::find(column.headings.begin(), column.headings.end(), PlainHeading(headings_[place]));
    };
    const auto first = static_cast<std::size_t>(firstPlaces_[second.column]);
    if (rank(second.place) >= rank(first)) continue;
    firstPlaces_[second.column] = static_cast<int>(second.place);
    second.place = first;
  }
}

void CsvTable::ChooseFields() {
  for (const SecondPlace& second : secondPlaces_) places_[second.column] = firstPlaces_[second.column];
  for (const SecondPlace& second : secondPlaces_) {
    const auto isBetter = columns_[second.column].isBetter;
    if (isBetter == nullptr || !isBetter(reader_->Fields()[second.place], Field(second.column))) continue;
    places_[second.column] = static_cast<int>(second.place);
  }
}

QString CsvTable::Understood() const {
  QStringList taken;
  QStringList unused;
  QStringList choices;
  for (std::size_t place = 0; place < headings_.size(); ++place) {
    const auto isHere = [place](int found) { return found == static_cast<int>(place); };
    const QString heading = ShownText(QString::fromStdString(headings_[place]));
    const auto first = std::find_if(firstPlaces_.begin(), firstPlaces_.end(), isHere);
    const auto second = std::find_if(secondPlaces_.begin(), secondPlaces_.end(),
                                     [place](const SecondPlace& found) { return found.place == place; });
    if (first != firstPlaces_.end()) {
      taken << QString::fromUtf8(columns_[static_cast<std::size_t>(first - firstPlaces_.begin())].title) + u'=' +
                   heading;
    } else if (second != secondPlaces_.end()) {
      const CsvColumn& column = columns_[second->column];
      taken << QString::fromUtf8(column.title) + u'=' + heading;
      if (column.choice != nullptr) choices << QString::fromUtf8(column.choice);
    } else {
      unused << (heading.isEmpty() ? QStringLiteral("（没有列名）") : heading);
    }
  }
  choices.removeDuplicates();
  const QString text = (taken + choices).join(QStringLiteral("，"));
  return unused.isEmpty() ? text : text + QStringLiteral("；未用：") + unused.join(QStringLiteral("，"));
}

std::optional<QString> CsvTable::Disagreement() const {
  for (const SecondPlace& second : secondPlaces_) {
    const std::string_view one = Field(second.column);
    const std::string_view other = reader_->Fields()[second.place];
    const auto agree = columns_[second.column].agree;
    if (columns_[second.column].isBetter != nullptr || one == other || (agree != nullptr && agree(one, other)))
      continue;
    return QStringLiteral("列“%1”与“%2”不一致：“%3”，“%4”")
        .arg(QString::fromStdString(headings_[static_cast<std::size_t>(firstPlaces_[second.column])]),
             QString::fromStdString(headings_[second.place]), FieldText(one), FieldText(other));
  }
  return std::nullopt;
}

bool CsvTable::Next() {
  for (;;) {
    bool isThere = false;
    try {
      isThere = reader_->Next();
    } catch (const Error& error) {
      Reject(QString::fromUtf8(error.what()));
      continue;
    }
    if (!isThere) {
      if (!NextPiece()) return false;
      continue;
    }
    const std::size_t count = reader_->Fields().size();
    if (count != headings_.size()) {
      Reject(QStringLiteral("字段数 %1 与表头的 %2 不符").arg(count).arg(headings_.size()));
    } else if (const std::optional<QString> reason = Disagreement()) {
      Reject(*reason);
    } else {
      ChooseFields();
      return true;
    }
  }
}

std::string_view CsvTable::Field(std::size_t column) const {
  const int place = places_[column];
  return place < 0 ? std::string_view() : reader_->Fields()[static_cast<std::size_t>(place)];
}

void CsvTable::Reject(const QString& reason) {
  rejections_.push_back({path_, Line(), reason});
}

void CsvTable::MoveRejectionsTo(std::vector<Rejection>& rejections) {
  std::move(rejections_.begin(), rejections_.end(), std::back_inserter(rejections));
  rejections_.clear();
}

QString FieldText(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

bool SaysYes(std::string_view text) noexcept {
  return text == "1" || text == "1.0" || IsSameWord(text, "true") || IsSameWord(text, "y") || text == "是";
}

bool SaysNo(std::string_view text) noexcept {
  return text == "0" || text == "0.0" || IsSameWord(text, "false") || IsSameWord(text, "n") || text == "否";
}

bool IsBlankCell(std::string_view text) noexcept {
  constexpr std::string_view kBlanks[] = {"",     "nan",  "NaN", "NAN",  "None", "none",
                                          "null", "NULL", "NaT", "<NA>", "-",    "--"};
  return std::find(std::begin(kBlanks), std::end(kBlanks), text) != std::end(kBlanks);
}

bool IsPrice(double value) noexcept {
  return value > 0 && value < kLargestNumber;
}

std::optional<QString> ReadPlainDecimal(std::string_view text, double& value) {
  if (text.empty()) return QStringLiteral("缺失");
  const std::optional<double> number = ParseReal(text);
  if (!number) return QStringLiteral("不是数字“%1”").arg(FieldText(text));
  if (*number < 0) return QStringLiteral("为负数“%1”").arg(FieldText(text));
  if (*number >= kLargestNumber) return QStringLiteral("过大“%1”").arg(FieldText(text));
  value = *number;
  return std::nullopt;
}

std::optional<QString> ReadPrice(std::string_view text, double& value) {
  double number = 0;
  if (auto reason = ReadPlainDecimal(text, number)) return reason;
  if (number <= 0) return QStringLiteral("不是正数“%1”").arg(FieldText(text));
  value = number;
  return std::nullopt;
}

}  // namespace holdwise
