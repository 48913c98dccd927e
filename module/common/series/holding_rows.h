// SPDX-License-Identifier: MIT
#pragma once
#include <QHash>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <array>
#include <functional>

#include "common/helpers/name_value_list.h"
#include "holdwise/packet/result_set.h"

/// What the series objects share in walking rows of holdings.
namespace holdwise {

/// The cell as a number; 0 for null and for text that is no number.
[[nodiscard]] double NumberAt(const ResultSet& rows, int row, int column);

/// The last six characters of the code in a cell, as the price lists are keyed. It makes no text: a price reply looks
/// up ten thousand of them. Only codes of ASCII characters exist.
class SixDigitCode {
 public:
  SixDigitCode(const ResultSet& rows, int row, int column);
  [[nodiscard]] QStringView View() const { return {characters_.data(), size_}; }

 private:
  std::array<char16_t, 6> characters_{};
  qsizetype size_ = 0;
};

/// Six-digit codes of holdings that lack something, by portfolio id.
using TMissingCodes = QHash<QString, QStringList>;

/// Adds up term(row) over consecutive rows with the same MAINID and stores each sum under that id, shortest decimal
/// text. No rows: nothing is stored.
void StoreSumsByPortfolio(const ResultSet& holdings, const std::function<double(int row)>& term, TNameValueList& sums);

}  // namespace holdwise
