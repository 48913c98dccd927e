// SPDX-License-Identifier: MIT
#include "beijing_lines.h"

#include "holdwise/packet/code_text.h"

namespace holdwise {
namespace {

constexpr int kBeijing = 3;

bool IsOfBeijing(std::string_view text) {
  const std::optional<NamedCode> code = ParseNamedCode(text);
  if (!code || code->market != 0) return code && code->market == kBeijing;
  return code->digits.starts_with('4') || code->digits.starts_with('8') || code->digits.starts_with("92");
}

}  // namespace

bool BeijingLines::Take(std::string_view code, const QString& path, std::int64_t line, std::int64_t lines) {
  if (!IsOfBeijing(code)) return false;
  if (code_.isEmpty()) {
    first_ = {path, line, {}, 0};
    code_ = FieldText(code);
  }
  first_.lines += lines;
  return true;
}

void BeijingLines::AddTo(std::vector<Rejection>& rejections) const {
  if (code_.isEmpty()) return;
  rejections.push_back(first_);
  rejections.back().reason =
      QStringLiteral("北京证券交易所的代码，如“%1”，不采用（共 %2 行）").arg(code_).arg(first_.lines);
}

}  // namespace holdwise
