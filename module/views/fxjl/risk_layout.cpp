// SPDX-License-Identifier: MIT
#include "risk_layout.h"

#include "holdwise/packet/number_text.h"

namespace holdwise::risk {
namespace {

constexpr int kDecimals = 6;

void AddFigures(ColumnTable& table) {
  for (const auto& title :
       {QStringLiteral("方差"), QStringLiteral("标准差"), QStringLiteral("Alpha系数"), QStringLiteral("BETA系数")}) {
    table.push_back({.title = title, .decimals = kDecimals});
  }
  table.back().takesRest = true;
}

}  // namespace

const ColumnTable& PortfolioTable() {
  static const ColumnTable table = [] {
    ColumnTable columns{{.title = QStringLiteral("组合名称")}};
    AddFigures(columns);
    columns.push_back({.isHidden = true});
    return columns;
  }();
  return table;
}

const ColumnTable& SecurityTable() {
  static const ColumnTable table = [] {
    ColumnTable columns{{.title = QStringLiteral("股票代码"), .isLink = true},
                        {.title = QStringLiteral("股票名称"), .isLink = true}};
    AddFigures(columns);
    return columns;
  }();
  return table;
}

QString FigureText(double figure) {
  return FormatFixed(figure, kDecimals);
}

DeviationTexts TextsOfDeviation(double deviation) {
  return {FigureText(deviation * deviation), FigureText(deviation)};
}

}  // namespace holdwise::risk
