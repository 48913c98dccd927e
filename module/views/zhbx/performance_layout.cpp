// SPDX-License-Identifier: MIT
#include "performance_layout.h"

namespace holdwise::performance {

const ColumnTable& PortfolioTable() {
  static const ColumnTable table = {
      {.title = QStringLiteral("组合名称"), .extra = 30},
      {.title = QStringLiteral("创建日期")},
      {.title = QStringLiteral("最新市值(元)"), .isPrice = true},
      {.title = QStringLiteral("日涨跌幅(%)"), .isSigned = true},
      {.title = QStringLiteral("周涨跌幅(%)"), .isSigned = true},
      {.title = QStringLiteral("月涨跌幅(%)"), .isSigned = true},
      {.title = QStringLiteral("期间收益(元)"), .isSigned = true},
      {.title = QStringLiteral("期间收益率(%)"), .isSigned = true},
      {.title = QStringLiteral("操作"), .extra = -30, .takesRest = true},
      {.isHidden = true},
  };
  return table;
}

const ColumnTable& HoldingTable() {
  static const ColumnTable table = {
      {.title = QStringLiteral("代码"), .extra = -10, .isLink = true},
      {.title = QStringLiteral("名称"), .isLink = true},
      {.title = QStringLiteral("所属行业"), .extra = 16, .isLeft = true},
      {.title = QStringLiteral("最新价(元)"), .isPrice = true},
      {.title = QStringLiteral("涨跌幅(%)"), .extra = -5, .isSigned = true},
      {.title = QStringLiteral("数量(股)")},
      {.title = QStringLiteral("比例(%)")},
      {.title = QStringLiteral("日贡献(元)"), .isSigned = true},
      {.title = QStringLiteral("周贡献(元)"), .isSigned = true},
      {.title = QStringLiteral("月贡献(元)"), .isSigned = true},
      {.title = QStringLiteral("期间收益(元)"), .extra = 5, .isSigned = true},
      {.title = QStringLiteral("期间收益率(%)"), .extra = 10, .takesRest = true, .isSigned = true},
      {.isHidden = true},
      {.isHidden = true},
      {.isHidden = true},
  };
  return table;
}

}  // namespace holdwise::performance
