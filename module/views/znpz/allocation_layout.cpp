// SPDX-License-Identifier: MIT
#include "allocation_layout.h"

namespace holdwise::allocation {

const ColumnTable& CandidateTable() {
  static const ColumnTable table = {
      {.title = QStringLiteral("序号"), .extra = -24},
      {.title = QStringLiteral("组合风格"), .extra = 12},
      {.title = QStringLiteral("目标收益率(%)")},
      {.title = QStringLiteral("方差"), .extra = 12},
      {.title = QStringLiteral("Beta系数"), .extra = 12},
      {.title = QStringLiteral("操作"), .extra = -12, .takesRest = true},
      {.isHidden = true},
  };
  return table;
}

QStringList CandidateCaptions() {
  QStringList captions = TitlesOf(CandidateTable());
  captions[kTarget] = QStringLiteral("目标收\r益率(%)");
  return captions;
}

const ColumnTable& PartTable() {
  static const ColumnTable table = {
      {.title = QStringLiteral("代码"), .isLink = true},
      {.title = QStringLiteral("名称"), .isLink = true},
      {.title = QStringLiteral("数量(股)")},
      {.title = QStringLiteral("比例(%)"), .takesRest = true, .isPercent = true},
      {.isHidden = true},
      {.isHidden = true},
      {.isHidden = true},
      {.isHidden = true},
  };
  return table;
}

// As high as those of the candidates beside them.
QStringList PartCaptions() {
  return {QStringLiteral("代码"), QStringLiteral("名称"), QStringLiteral("数量\r(股)"), QStringLiteral("比例\r(%)")};
}

QStringList PartTitles() {
  return TitlesOf(PartTable()) + QStringList{QStringLiteral("价格(元)"), QStringLiteral("比例误差(%)"),
                                             QStringLiteral("剩余资金(元)"), QStringLiteral("最大比例误差(%)")};
}

}  // namespace holdwise::allocation
