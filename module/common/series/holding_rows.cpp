// SPDX-License-Identifier: MIT
#include "common/series/holding_rows.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>

#include "common/host/codes.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

bool SameId(const ResultSet& rows, int column, int left, int right) {
  const bool isNull = rows.IsNull(left, column);
  if (isNull || rows.IsNull(right, column)) return isNull == rows.IsNull(right, column);
  if (rows.TypeOf(column) != ColumnType::Integer) return rows.TextAt(left, column) == rows.TextAt(right, column);
  return rows.IntegerAt(left, column) == rows.IntegerAt(right, column);
}

}  // namespace

double NumberAt(const ResultSet& rows, int row, int column) {
  if (rows.IsNull(row, column)) return 0;
  if (rows.TypeOf(column) == ColumnType::Text) return RealOr(rows.TextAt(row, column));
  return rows.RealAt(row, column);
}

SixDigitCode::SixDigitCode(const ResultSet& rows, int row, int column) {
  std::array<char, 24> digits{};
  std::string text;
  std::string_view code;
  if (rows.TypeOf(column) == ColumnType::Integer && !rows.IsNull(row, column)) {
    const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), rows.IntegerAt(row, column)).ptr;
    code = std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data()));
  } else {
    text = GetCodeCNum(rows.TextAt(row, column)).toStdString();
    code = text;
  }
  if (code.size() > characters_.size()) code.remove_prefix(code.size() - characters_.size());
  size_ = static_cast<qsizetype>(code.size());
  std::copy(code.begin(), code.end(), characters_.begin());
}

void StoreSumsByPortfolio(const ResultSet& holdings, const std::function<double(int row)>& term, TNameValueList& sums) {
  if (holdings.IsEmpty()) return;
  const int idColumn = holdings.Column("MAINID");
  double sum = 0;
  for (int row = 0; row < holdings.RowCount(); ++row) {
    sum += term(row);
    const bool isLast = row + 1 == holdings.RowCount();
    if (!isLast && SameId(holdings, idColumn, row, row + 1)) continue;
    sums.Set(holdings.TextAt(row, idColumn), ShortestText(sum));
    sum = 0;
  }
}

}  // namespace holdwise
