// SPDX-License-Identifier: MIT
#include "holdwise/packet/csv_reader.h"

#include <algorithm>
#include <cstring>

#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsBlank(char c) noexcept {
  return c == ' ' || c == '\t';
}

std::string_view Trimmed(std::string_view text) noexcept {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

bool Contains(std::string_view text, char c) noexcept {
  return !text.empty() && std::memchr(text.data(), c, text.size()) != nullptr;
}

}  // namespace

CsvReader::CsvReader(std::string_view utf8, BlankLines blankLines, char separator)
    : rest_(utf8), blankLines_(blankLines), separator_(separator), blanks_(separator == '\t' ? " " : " \t") {
  if (rest_.starts_with(kByteOrderMark)) rest_.remove_prefix(kByteOrderMark.size());
}

bool CsvReader::Next() {
  fields_.clear();
  quoted_.clear();
  while (!rest_.empty()) {
    line_ = nextLine_;
    std::string_view line = rest_.substr(0, rest_.find('\n'));
    if (Contains(line, '"')) {
      SplitQuoted();
      return true;
    }
    rest_.remove_prefix(std::min(line.size() + 1, rest_.size()));
    ++nextLine_;
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (blankLines_ == BlankLines::Skip && Trimmed(line).empty()) continue;
    SplitPlain(line);
    return true;
  }
  return false;
}

void CsvReader::SplitPlain(std::string_view line) {
  for (std::size_t end = line.find(separator_); end != std::string_view::npos; end = line.find(separator_)) {
    fields_.push_back(Trimmed(line.substr(0, end)));
    line.remove_prefix(end + 1);
  }
  fields_.push_back(Trimmed(line));
}

void CsvReader::SplitQuoted() {
  unquoted_.clear();
  for (;;) {
    const std::size_t start = rest_.find_first_not_of(blanks_);
    const bool quoted = start != std::string_view::npos && rest_[start] == '"';
    if (quoted) {
      rest_.remove_prefix(start + 1);
      fields_.push_back(TakeQuoted());
      rest_.remove_prefix(std::min(rest_.find_first_not_of(blanks_), rest_.size()));
    } else {
      const char ends[] = {separator_, '\n'};
      std::string_view field = rest_.substr(0, rest_.find_first_of(std::string_view(ends, sizeof ends)));
      rest_.remove_prefix(field.size());
      if (!rest_.starts_with(separator_) && field.ends_with('\r')) field.remove_suffix(1);
      fields_.push_back(Trimmed(field));
    }
    quoted_.push_back(quoted);
    if (!rest_.starts_with(separator_)) return EndLine();
    rest_.remove_prefix(1);
  }
}

/// From behind the opening quote to behind the closing one.
std::string_view CsvReader::TakeQuoted() {
  std::string_view field;
  bool doubled = false;
  for (std::size_t from = 0;;) {
    const std::size_t quote = rest_.find('"', from);
    if (quote == std::string_view::npos) {
      rest_ = {};
      throw Error(ErrorCategory::Corrupt, "引号没有结束，其后的内容不能读取");
    }
    field = rest_.substr(0, quote);
    if (quote + 1 >= rest_.size() || rest_[quote + 1] != '"') break;
    doubled = true;
    from = quote + 2;
  }
  rest_.remove_prefix(field.size() + 1);
  nextLine_ += std::count(field.begin(), field.end(), '\n');
  if (!doubled) return field;
  std::string& text = unquoted_.emplace_back();
  for (std::size_t i = 0; i < field.size(); ++i) {
    text.push_back(field[i]);
    if (field[i] == '"') ++i;
  }
  return text;
}

void CsvReader::EndLine() {
  if (rest_.starts_with('\r')) rest_.remove_prefix(1);
  const std::string_view left = rest_.substr(0, rest_.find('\n'));
  rest_.remove_prefix(std::min(left.size() + 1, rest_.size()));
  const std::int64_t line = nextLine_++;
  if (left.empty()) return;
  throw Error(ErrorCategory::Corrupt,
              line == line_ ? "引号之后有多余的字符" : "到第 " + std::to_string(line) + " 行，引号之后有多余的字符");
}

}  // namespace holdwise
