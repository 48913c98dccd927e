// SPDX-License-Identifier: MIT
#include "transfer/import_report.h"

namespace holdwise {

HandOverAnswer AnswerOf(const QString& file, const ImportResult& result) {
  if (result.cancelled) return {QStringLiteral("导入已取消，没有写入任何组合。"), 1};
  QStringList lines;
  if (!result.problems.empty()) {
    lines.append(QStringLiteral("“%1”没有导入，共有 %2 处问题：").arg(file).arg(result.problems.size()));
    for (const ImportProblem& problem : result.problems) {
      if (static_cast<std::size_t>(lines.size()) > kMostProblemsNamed) break;
      lines.append(problem.line > 0 ? QStringLiteral("第 %1 行：%2").arg(problem.line).arg(problem.reason)
                                    : problem.reason);
    }
    if (result.problems.size() > kMostProblemsNamed)
      lines.append(QStringLiteral("其余 %1 处没有列出。").arg(result.problems.size() - kMostProblemsNamed));
    return {lines.join(QLatin1Char('\n')), 1};
  }
  if (!result.understood.isEmpty()) lines.append(result.understood);
  lines.append(QStringLiteral("已导入 %1 个组合，%2 条持仓。").arg(result.portfolios).arg(result.holdings));
  return {(lines + result.warnings).join(QLatin1Char('\n')), 0};
}

}  // namespace holdwise
