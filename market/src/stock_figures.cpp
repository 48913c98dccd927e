// SPDX-License-Identifier: MIT
#include "stock_figures.h"

#include <memory>
#include <utility>

#include "holdwise/market/market_rules.h"
#include "holdwise/packet/table_limits.h"

namespace holdwise {
namespace {

QString StockName(const std::string& code) {
  return StatisticsFolder() + QStringLiteral("股票/%1.dat").arg(QString::fromStdString(code));
}

}  // namespace

QString StatisticsFolder() {
  return QStringLiteral("QMTL/TZZH/Day250/");
}

ResultSet StatisticsTable(std::span<const SecurityStatistics> securities) {
  ResultSet table = MakeStatisticsTable();
  for (const SecurityStatistics& security : securities) AppendStatistics(table, security);
  return table;
}

QuoteRow ClosingQuote(const std::vector<Bar>& bars, Window window) {
  const Bar& last = bars.back();
  if (last.date < window.endDate) return {last.close, last.close, true};
  return {last.close, bars.size() < 2 ? 0 : bars[bars.size() - 2].close, false};
}

StockFigures FiguresOfStock(const std::string& code, const BarFile& file, const MarketBasis& market) {
  StockFigures result;
  if (file.bars.empty()) return result;
  result.isUsable = true;
  result.quote = ClosingQuote(file.bars, market.window);
  const SecurityBars bars{CodeNumberOfStock(code), file.bars, market.tradingDates};
  const auto statistics = std::make_shared<const SecurityStatistics>(
      ComputeStatistics(bars, market.indexReturns.front(), market.window, market.riskFreePerDay));
  const auto& [days, figures] = statistics->ofTypes.front();
  result.hasDays = !days.empty();
  result.risk.front() = figures;
  for (std::size_t i = 1; i < market.indexReturns.size(); ++i) {
    result.risk[i] = ComputeFigures(days, market.indexReturns[i].front(), market.riskFreePerDay);
  }
  if (market.forProposals) {
    result.facts.code = code;
    result.facts.turnover = MeanTurnover(file, market.tradingDates);
    result.facts.returns = AlignReturns(days, market.indexReturns.front().front());
  }
  result.file = {StockName(code), [statistics] { return StatisticsTable({statistics.get(), 1}); }, kStockSeriesLimits};
  return result;
}

}  // namespace holdwise
