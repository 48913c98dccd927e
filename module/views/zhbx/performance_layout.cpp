#include "performance_layout.h"

namespace holdwise::performance {
namespace {

constexpr int kShownPortfolioColumns = 9;
constexpr int kShownHoldingColumns = 12;

}  // namespace

QStringList PortfolioTitles() {
  return {QStringLiteral("组合名称"),     QStringLiteral("创建日期"),      QStringLiteral("最新市值(元)"),
          QStringLiteral("日涨跌幅(%)"),  QStringLiteral("周涨跌幅(%)"),   QStringLiteral("月涨跌幅(%)"),
          QStringLiteral("期间收益(元)"), QStringLiteral("期间收益率(%)"), QStringLiteral("操作")};
}

QStringList HoldingTitles() {
  return {QStringLiteral("代码"),       QStringLiteral("名称"),         QStringLiteral("所属行业"),
          QStringLiteral("最新价(元)"), QStringLiteral("涨跌幅(%)"),    QStringLiteral("数量(股)"),
          QStringLiteral("比例(%)"),    QStringLiteral("日贡献(元)"),   QStringLiteral("周贡献(元)"),
          QStringLiteral("月贡献(元)"), QStringLiteral("期间收益(元)"), QStringLiteral("期间收益率(%)")};
}

std::vector<int> PortfolioWidths(int clientWidth) {
  const int share = clientWidth / kShownPortfolioColumns;
  std::vector<int> widths(kPortfolioColumns, share);
  widths[kName] = share + 30;
  widths[kOperation] = share + clientWidth % kShownPortfolioColumns - 30;
  widths[kId] = 0;
  return widths;
}

std::vector<int> HoldingWidths(int clientWidth) {
  const int share = clientWidth / kShownHoldingColumns;
  std::vector<int> widths(kHoldingColumns, share);
  widths[kCode] = share - 10;
  widths[kIndustry] = share + 16;
  widths[kChange] = share - 5;
  widths[kHoldingGain] = share + 5;
  widths[kHoldingGainRate] = share + clientWidth % kShownHoldingColumns + 10;
  widths[kBuyPrice] = widths[kWeekClose] = widths[kMonthClose] = 0;
  return widths;
}

}  // namespace holdwise::performance
