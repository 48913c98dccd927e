// SPDX-License-Identifier: MIT
#include "import_preview.h"

#include <algorithm>

#include "holdwise/packet/number_text.h"
#include "holdwise/packet/text_file.h"

namespace holdwise {
namespace {

constexpr std::size_t kMostNamed = 100;
constexpr int kCostDecimals = 2;

QString SeparatorName(char separator) {
  if (separator == '\t') return QStringLiteral("制表符");
  return separator == ';' ? QStringLiteral("分号") : QStringLiteral("逗号");
}

QString ShapeText(const TableShape& shape) {
  QStringList used;
  for (const auto& [heading, meaning] : shape.used) used << QStringLiteral("%1=“%2”").arg(meaning, ShownText(heading));
  QString text =
      QStringLiteral("%1，%2分隔，表头在第 %3 行：%4。")
          .arg(shape.isStatement ? QStringLiteral("券商持仓表") : QStringLiteral("组合表"),
               SeparatorName(shape.separator), QString::number(shape.headingLine), used.join(QStringLiteral("，")));
  if (!shape.unused.isEmpty()) text += QStringLiteral("没有用的列：%1。").arg(shape.unused.join(QStringLiteral("、")));
  return text;
}

void AddRows(QStringList& lines, const QString& title, const std::vector<LeftOutRow>& rows) {
  if (rows.empty()) return;
  lines << title.arg(rows.size());
  for (std::size_t place = 0; place < std::min(rows.size(), kMostNamed); ++place) {
    const LeftOutRow& row = rows[place];
    lines << QStringLiteral("  第 %1 行：%2（%3）").arg(QString::number(row.line), row.what, row.reason);
  }
  if (rows.size() > kMostNamed) lines << QStringLiteral("  其余 %1 行没有列出").arg(rows.size() - kMostNamed);
}

}  // namespace

QStringList LinesOf(const std::vector<PreviewedPortfolio>& portfolios) {
  QStringList lines;
  for (std::size_t place = 0; place < std::min(portfolios.size(), kMostNamed); ++place) {
    const PreviewedPortfolio& portfolio = portfolios[place];
    lines << QStringLiteral("组合“%1”：%2 只股票，总成本 %3 元")
                 .arg(portfolio.name)
                 .arg(portfolio.stocks)
                 .arg(FormatFixed(portfolio.cost, kCostDecimals));
  }
  if (portfolios.size() > kMostNamed)
    lines << QStringLiteral("其余 %1 个组合没有列出").arg(portfolios.size() - kMostNamed);
  return lines;
}

QString PreviewText(const CsvPortfolios& file) {
  std::vector<PreviewedPortfolio> portfolios;
  portfolios.reserve(file.portfolios.size());
  for (const CsvPortfolio& portfolio : file.portfolios)
    portfolios.push_back({portfolio.name, portfolio.holdings.size(), CostOf(portfolio)});
  QStringList lines = QStringList{ShapeText(file.shape)} + LinesOf(portfolios);
  AddRows(lines, QStringLiteral("不是可以导入的沪深A股，略去 %1 行："), file.strangers);
  AddRows(lines, QStringLiteral("数量为0，略去 %1 行："), file.sold);
  AddRows(lines, QStringLiteral("不是持仓，没有读 %1 行："), file.others);
  if (!file.remarks.isEmpty()) lines << QStringLiteral("请核对：");
  for (const QString& remark : file.remarks.mid(0, kMostNamed)) lines << QStringLiteral("  ") + remark;
  if (file.remarks.size() > static_cast<qsizetype>(kMostNamed))
    lines << QStringLiteral("  其余 %1 处没有列出").arg(file.remarks.size() - static_cast<qsizetype>(kMostNamed));
  return lines.join(QLatin1Char('\n'));
}

}  // namespace holdwise
