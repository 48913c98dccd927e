// SPDX-License-Identifier: MIT
#include "editor_layout.h"

namespace holdwise::editor {
namespace {

QStringList Texts(std::initializer_list<const char*> texts) {
  QStringList list;
  for (const char* text : texts) list << QString::fromUtf8(text);
  return list;
}

}  // namespace

// What the number column gives goes to the columns whose texts are long; the pictures need 68 pixels.
const ColumnTable& PortfolioTable() {
  static const ColumnTable table = [] {
    const QStringList titles = CaptionsOf(TitleMode::OneLine).list;
    ColumnTable columns;
    for (const QString& title : titles) columns.push_back({.title = title});
    columns[kNumber].extra = -28;
    columns[kName].extra = 6;
    columns[kCreated].extra = 6;
    columns[kTarget].extra = 8;
    columns[kOperation].extra = 8;
    columns[kOperation].takesRest = true;
    columns[kOperation].isLeft = true;  // as its pictures
    return columns;
  }();
  return table;
}

const ColumnTable& DetailTable() {
  static const ColumnTable table = [] {
    const QStringList titles = CaptionsOf(TitleMode::OneLine).details;
    ColumnTable columns;
    for (const QString& title : titles) columns.push_back({.title = title});
    columns[kSecurityName].extra = 6;
    columns[kWeight].extra = -6;
    columns[kWeight].takesRest = true;
    columns[kWeight].isPercent = true;
    columns.push_back({.isHidden = true});
    return columns;
  }();
  return table;
}

Captions CaptionsOf(TitleMode mode) {
  const QStringList details = Texts({"代码", "名称", "数量(股)", "比例(%)"});
  if (mode == TitleMode::OneLine) {
    return {Texts({"序号", "组合名称", "创建日期", "组合风格", "目标收益率(%)", "方差", "Beta系数", "操作"}), details,
            Texts({"股票代码", "股票名称", "买入价(元)", "数量(股)"})};
  }
  return {Texts({"序号", "组合\r名称", "创建\r日期", "组合\r风格", "目标收\r益率(%)", "方差", "Beta\r系数", "操作"}),
          details, Texts({"股票\r代码", "股票\r名称", "买入\r价(元)", "数量(股)"})};
}

}  // namespace holdwise::editor
