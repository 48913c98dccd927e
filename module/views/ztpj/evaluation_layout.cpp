// SPDX-License-Identifier: MIT
#include "evaluation_layout.h"

namespace holdwise::evaluation {
namespace {

void AddFigures(ColumnTable& table) {
  table.push_back({.title = QStringLiteral("回报率(%)"), .isSigned = true});
  table.push_back({.title = QStringLiteral("无风险利率(%)")});
  table.push_back({.title = QStringLiteral("超额回报率(%)"), .isSigned = true});
  for (const auto& title : {QStringLiteral("夏普指数"), QStringLiteral("特雷诺指数"), QStringLiteral("Beta系数")})
    table.push_back({.title = title});
  table.back().takesRest = true;
  table.push_back({.isHidden = true});
}

}  // namespace

const ColumnTable& PortfolioTable() {
  static const ColumnTable table = [] {
    ColumnTable columns{{.title = QStringLiteral("组合名称")}};
    AddFigures(columns);
    return columns;
  }();
  return table;
}

const ColumnTable& HoldingTable() {
  static const ColumnTable table = [] {
    ColumnTable columns{{.title = QStringLiteral("股票代码"), .isLink = true},
                        {.title = QStringLiteral("股票名称"), .isLink = true}};
    AddFigures(columns);
    return columns;
  }();
  return table;
}

}  // namespace holdwise::evaluation
