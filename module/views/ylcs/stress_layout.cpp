// SPDX-License-Identifier: MIT
#include "stress_layout.h"

namespace holdwise::stress {

const ColumnTable& PortfolioTable() {
  static const ColumnTable table = {
      {.title = QStringLiteral("组合名称")},
      {.title = QStringLiteral("创建日期")},
      {.title = QStringLiteral("预期市值(元)")},
      {.title = QStringLiteral("预期涨跌幅(%)"), .isSigned = true},
      {.title = QStringLiteral("预期收益(元)"), .isSigned = true},
      {.title = QStringLiteral("预期收益率(%)"), .takesRest = true, .isSigned = true},
      {.isHidden = true},
  };
  return table;
}

const ColumnTable& HoldingTable() {
  static const ColumnTable table = {
      {.title = QStringLiteral("股票代码"), .isLink = true},
      {.title = QStringLiteral("股票名称"), .isLink = true},
      {.title = QStringLiteral("预期价(元)")},
      {.title = QStringLiteral("预期涨跌幅(%)"), .isSigned = true},
      {.title = QStringLiteral("预期损益(元)"), .takesRest = true, .isSigned = true},
  };
  return table;
}

}  // namespace holdwise::stress
