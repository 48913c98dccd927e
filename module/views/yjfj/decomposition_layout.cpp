// SPDX-License-Identifier: MIT
#include "decomposition_layout.h"

namespace holdwise::decomposition {

const ColumnTable& PortfolioTable() {
  static const ColumnTable table = [] {
    ColumnTable columns{{.title = QStringLiteral("组合名称")}};
    for (const auto& title :
         {QStringLiteral("回报率(%)"), QStringLiteral("超额回报率(%)"), QStringLiteral("风险增溢(%)"),
          QStringLiteral("选择回报率(%)"), QStringLiteral("多样化增溢(%)"), QStringLiteral("净选择回报率(%)")}) {
      columns.push_back({.title = title, .isSigned = true});
    }
    columns.back().takesRest = true;
    while (columns.size() < kColumns) columns.push_back({.isHidden = true});
    return columns;
  }();
  return table;
}

}  // namespace holdwise::decomposition
