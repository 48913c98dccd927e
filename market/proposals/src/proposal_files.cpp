// SPDX-License-Identifier: MIT
#include "proposal_files.h"

#include <QRegularExpression>
#include <map>

#include "holdwise/packet/dates.h"

namespace holdwise {
namespace {

constexpr const char* kFolder = "QMTL/TZZH/";

QString InFolder(const QString& name) {
  return QString::fromUtf8(kFolder) + name;
}

// A candidate list has exactly one "_" in its name, a composition two: the terminal tells them apart by that.
QString ListName(int count) {
  return QStringLiteral("zh_%1.dat").arg(count);
}
QString CompositionName(int count, int number) {
  return QStringLiteral("zh_%1_%2.dat").arg(count).arg(number);
}

ResultSet CapitalTable(const std::vector<ProposalList>& lists) {
  ResultSet table;
  const int count = table.AddColumn("StockCount", ColumnType::Integer);
  const int money = table.AddColumn("StockMoney", ColumnType::Real);
  for (const ProposalList& list : lists) {
    const int row = table.AppendRow();
    table.SetInteger(row, count, list.count);
    table.SetReal(row, money, list.capitalLimit);
  }
  return table;
}

ResultSet CandidateTable(const ProposalList& list) {
  ResultSet table;
  const int style = table.AddColumn("ZHFG", ColumnType::Text);
  const int target = table.AddColumn("MBSYL", ColumnType::Real);
  const int variance = table.AddColumn("FC", ColumnType::Real);
  const int beta = table.AddColumn("BETA", ColumnType::Real);
  const int file = table.AddColumn("FILENAME", ColumnType::Text);
  for (const Proposal& proposal : list.candidates) {
    const int row = table.AppendRow();
    table.SetText(row, style, proposal.style);
    table.SetReal(row, target, proposal.targetReturn);
    table.SetReal(row, variance, proposal.variance);
    table.SetReal(row, beta, proposal.beta);
    table.SetText(row, file, CompositionName(list.count, row + 1));
  }
  return table;
}

ResultSet CompositionTable(const Proposal& proposal) {
  ResultSet table;
  const int code = table.AddColumn("SecuCode", ColumnType::Text);
  const int weight = table.AddColumn("PZBL", ColumnType::Real);
  for (const ProposedHolding& holding : proposal.holdings) {
    const int row = table.AppendRow();
    table.SetText(row, code, holding.code);
    table.SetReal(row, weight, static_cast<double>(holding.units) / kWeightUnits);
  }
  return table;
}

ResultSet StockPoolTable(const std::vector<StockFacts>& stocks, const std::vector<EstimateValue>& estimates, int date) {
  ResultSet table;
  const int code = table.AddColumn("SecuCode", ColumnType::Text);
  const int time = table.AddColumn("CTIme", ColumnType::Text);
  const int price = table.AddColumn("PRICE", ColumnType::Real);
  table.Reserve(static_cast<int>(stocks.size()));
  std::map<std::string, double> values;
  for (const EstimateValue& estimate : estimates) values.emplace(estimate.code, estimate.price);
  for (const StockFacts& stock : stocks) {
    const int row = table.AppendRow();
    table.SetText(row, code, stock.code);
    table.SetText(row, time, DateText(date));
    const auto estimate = values.find(stock.code);
    if (estimate != values.end()) table.SetReal(row, price, estimate->second);
  }
  return table;
}

// Who was left out, in the order of PoolExclusion.
QString ExclusionText(const StockPool& pool) {
  constexpr const char* kReasons[] = {"不是 A 股",  "科创板",         "ST 或退市", "停牌",
                                      "涨停或跌停", "收益率天数不足", "价格不动",  "成交额靠后"};
  static_assert(std::size(kReasons) == kPoolExclusions);
  QStringList parts;
  for (std::size_t reason = 0; reason < std::size(kReasons); ++reason) {
    if (pool.excluded[reason] == 0) continue;
    parts.push_back(QStringLiteral("%1 %2").arg(QString::fromUtf8(kReasons[reason])).arg(pool.excluded[reason]));
  }
  return parts.isEmpty() ? QStringLiteral("无") : parts.join(QStringLiteral("，"));
}

}  // namespace

ProposalFiles MakeProposalFiles(std::vector<StockFacts> stocks, const ReferenceFigures& reference,
                                const std::vector<EstimateValue>& estimates, const ProposalOptions& options,
                                unsigned threads, KeptProposals& kept) {
  const StockPool pool = ChoosePool(std::move(stocks), options.pool);
  const Proposals& proposals = kept.Make(pool, reference.index, reference.yearRate, options, threads);
  ProposalFiles files;
  files.remarks.push_back(QStringLiteral("股票池 %1 只，未收：%2").arg(pool.stocks.size()).arg(ExclusionText(pool)));
  const bool isCut = pool.excluded[static_cast<std::size_t>(PoolExclusion::Turnover)] > 0;
  if (isCut && !pool.knowsTurnover) {
    files.remarks.push_back(QStringLiteral("行情没有成交量，无法比较成交额：股票池取了代码靠前的股票"));
  }
  const ResultSet table = StockPoolTable(pool.stocks, estimates, reference.date);
  int unvalued = 0;
  for (int row = 0; row < table.RowCount(); ++row) unvalued += table.IsNull(row, table.Column("PRICE")) ? 1 : 0;
  if (unvalued > 0) {
    files.remarks.push_back(QStringLiteral("股票池里 %1 只股票没有估值（--estimates），该列为空").arg(unvalued));
  }
  files.remarks.insert(files.remarks.end(), proposals.remarks.begin(), proposals.remarks.end());
  files.tables.emplace_back(InFolder(QStringLiteral("StockPool.dat")), table);
  // Without any candidate the terminal's own table of capitals is in force.
  if (proposals.lists.empty()) return files;
  files.tables.emplace_back(InFolder(QStringLiteral("ZNPZ.dat")), CapitalTable(proposals.lists));
  for (const ProposalList& list : proposals.lists) {
    files.tables.emplace_back(InFolder(ListName(list.count)), CandidateTable(list));
    int number = 0;
    for (const Proposal& proposal : list.candidates) {
      files.tables.emplace_back(InFolder(CompositionName(list.count, ++number)), CompositionTable(proposal));
    }
    files.candidates += number;
  }
  return files;
}

bool IsProposalFile(const QString& name) {
  static const QRegularExpression pattern(QStringLiteral("^QMTL/TZZH/(ZNPZ|StockPool|zh_[0-9]+(_[0-9]+)?)\\.dat$"));
  return pattern.match(name).hasMatch();
}

}  // namespace holdwise
