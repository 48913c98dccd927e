#include "risk_layout.h"

#include "holdwise/packet/number_text.h"

namespace holdwise::risk {
namespace {

constexpr int kDecimals = 6;

std::vector<int> EqualShares(int columns, int clientWidth) {
  std::vector<int> widths(static_cast<std::size_t>(columns), clientWidth / columns);
  widths.back() += clientWidth % columns;
  return widths;
}

QStringList WithFigureTitles(QStringList titles) {
  return titles << QStringLiteral("方差") << QStringLiteral("标准差") << QStringLiteral("Alpha系数")
                << QStringLiteral("BETA系数");
}

}  // namespace

QStringList PortfolioTitles() {
  return WithFigureTitles({QStringLiteral("组合名称")});
}

QStringList SecurityTitles() {
  return WithFigureTitles({QStringLiteral("股票代码"), QStringLiteral("股票名称")});
}

std::vector<int> PortfolioWidths(int clientWidth) {
  std::vector<int> widths = EqualShares(kId, clientWidth);
  widths.push_back(0);
  return widths;
}

std::vector<int> SecurityWidths(int clientWidth) {
  return EqualShares(kSecurityColumns, clientWidth);
}

QString FigureText(double figure) {
  return FormatFixed(figure, kDecimals);
}

DeviationTexts TextsOfDeviation(double deviation) {
  return {FigureText(deviation * deviation), FigureText(deviation)};
}

}  // namespace holdwise::risk
