// SPDX-License-Identifier: MIT
#include "common/frames/title_hints.h"

#include "title_hint_table.h"

namespace holdwise {

const std::vector<ViewHints>& FigureHints() {
  static const std::vector<ViewHints> hints = {AllocationHints(), EditorHints(),     PerformanceHints(),  RiskHints(),
                                               StressHints(),     EvaluationHints(), DecompositionHints()};
  return hints;
}

QString HintOfTitle(const QString& unit, const QString& grid, const QString& title) {
  for (const ViewHints& view : FigureHints()) {
    for (const GridHints& of : view.grids) {
      if (of.unit != unit || of.grid != grid) continue;
      for (const TitleHint& hint : of.titles) {
        if (hint.title != title) continue;
        QString text = hint.meaning;
        if (!hint.formula.isEmpty()) text += QStringLiteral("\n公式：") + hint.formula;
        if (!hint.basis.isEmpty()) text += QStringLiteral("\n口径：") + hint.basis;
        return text;
      }
    }
  }
  return {};
}

}  // namespace holdwise
